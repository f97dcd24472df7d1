// The operator chain and the operand rules of the formula language.
#include "expression/formula_scanner.h"

#include <cmath>

#include "expression/formula_text.h"
#include "runtime/scoped_count.h"
#include "strings/conversions.h"

namespace {

// Division and remainder by zero give this value instead of failing (intended:
// formulas never report errors).
constexpr double kDivisionByZero = 1000000000.0;

// The double converted toward zero to int32 (saturating, NaN gives 0).
int32_t TruncateToInt32(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 2147483647.0) return INT32_MAX;
  if (value <= -2147483648.0) return INT32_MIN;
  return static_cast<int32_t>(value);
}

using Operator = FormulaOperator;

// True when `word` (two characters or more) equals the start of `keyword` over
// the word's own length, folding only A-Z. So "AN" reads as "AND" while "ANDX"
// matches nothing: intended, it is how operator words have always been read.
bool MatchesOperatorWord(const CREFString& word, const wchar_t* keyword, int32_t keywordLength) {
  if (word.length < 2 || word.length > keywordLength) return false;
  return _wcsnicmp(word.text, keyword, static_cast<unsigned>(word.length)) == 0;
}

// Takes the next operator off the text; an unknown word is consumed and gives kNone.
Operator TakeOperator(CREFString& text) {
  const wchar_t c = text.text[0];
  switch (c) {
    case L'+': case L'-': case L'*': case L'/': case L'%':
      ++text.text;
      --text.length;
      return c == L'+' ? Operator::kAdd
             : c == L'-' ? Operator::kSubtract
             : c == L'*' ? Operator::kMultiply
             : c == L'/' ? Operator::kDivide
                         : Operator::kRemainder;
    default: break;
  }
  const CREFString word = TakeWord(text);
  if (MatchesOperatorWord(word, L"AND", 3)) return Operator::kAnd;
  if (MatchesOperatorWord(word, L"OR", 2)) return Operator::kOr;
  return Operator::kNone;
}

}  // namespace

double CombineOperands(Operator op, double left, double right) {
  switch (op) {
    case Operator::kAdd: return left + right;
    case Operator::kSubtract: return left - right;
    case Operator::kMultiply: return left * right;
    case Operator::kDivide: return right == 0 ? kDivisionByZero : left / right;
    case Operator::kRemainder: {
      if (right == 0) return kDivisionByZero;
      const int32_t divisor = TruncateToInt32(right);
      // A divisor that truncates to 0 (0.5) or -1 with INT32_MIN cannot divide as integers.
      if (divisor == 0) return kDivisionByZero;
      const int64_t remainder = static_cast<int64_t>(TruncateToInt32(left)) % divisor;
      return static_cast<double>(remainder);
    }
    case Operator::kAnd: return TruncateToInt32(left) & TruncateToInt32(right);
    case Operator::kOr: return TruncateToInt32(left) | TruncateToInt32(right);
    case Operator::kNone: break;
  }
  return left;
}

namespace {

// isalpha in the "C" locale: ASCII letters only.
bool BeginsWithLetter(const CREFString& word) {
  if (word.IsEmpty()) return false;
  const wchar_t c = word.text[0];
  return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

}  // namespace

double FormulaScanner::SimpleExpression(CREFString& text) {
  double accumulator = Variable(text);
  for (;;) {
    SkipBlanks(text);
    if (text.IsEmpty() || text.text[0] == L')') return accumulator;
    const wchar_t* const operatorStart = text.text;
    const Operator op = TakeOperator(text);
    if (m_Trace) [[unlikely]] m_Trace->OperatorRead(op, operatorStart, text.text);
    if (op == Operator::kNone) continue;  // a word that is no operator is dropped
    const double operand = Variable(text);
    const double combined = CombineOperands(op, accumulator, operand);
    if (m_Trace) [[unlikely]] m_Trace->Combined(accumulator, operand, combined);
    accumulator = combined;
  }
}

double FormulaScanner::Variable(CREFString& text) {
  SkipBlanks(text);
  if (m_Trace) [[unlikely]] m_Trace->OperandBegin(text.text);
  if (text.IsEmpty()) return OperandRead(OperandKind::kMissing, text, 0);
  // Past the nesting bound the operand is 0 and nothing is consumed.
  if (m_Depth >= kMaxOperandDepth) return OperandRead(OperandKind::kTooDeep, text, 0);
  const ScopedCount<int32_t> depth(m_Depth);

  if (text.text[0] == L'(') {
    ++text.text;
    --text.length;
    const double value = SimpleExpression(text);
    ConsumeChar(text, L')');  // a missing ")" is tolerated
    return OperandRead(OperandKind::kGroup, text, value);
  }
  if (text.text[0] == L'-') {
    ++text.text;
    --text.length;
    const double negated = 0.0 - Variable(text);
    return OperandRead(OperandKind::kNegation, text, negated);
  }
  CREFString word = TakeWord(text);
  const int32_t code = IsFunction(word, text);
  if (code > 0) {
    const double result = Function(code, text);
    return OperandRead(OperandKind::kFunction, text, result, word);
  }
  double value = _IS2Double(word);  // no exponent is read: "1.5e3" is 1.5 (intended)
  const bool found = m_Parameters.Parameters() && BeginsWithLetter(word) && m_Parameters.FindNumber(word, &value);
  if (m_Trace) [[unlikely]] {
    const OperandKind kind = found                    ? OperandKind::kName
                             : BeginsWithLetter(word) ? OperandKind::kUnknownName
                                                      : OperandKind::kNumber;
    m_Trace->OperandEnd(kind, text.text, value, word);
  }
  return value;
}

bool FormulaScanner::OpenArguments(CREFString& rest) { return ConsumeChar(rest, L'('); }

bool FormulaScanner::NextArgument(CREFString& rest, double* value) {
  if (!ConsumeChar(rest, L',')) return false;
  *value = Variable(rest);
  return true;
}

void FormulaScanner::CloseArguments(CREFString& rest) { ConsumeChar(rest, L')'); }

double EvaluateFormulaText(tagREFString text, const ParameterReader& parameters, FormulaTrace* trace) {
  CREFString prepared = PrepareFormulaText(text);
  if (prepared.IsEmpty()) return 0;
  FormulaScanner scanner(parameters, trace);
  return scanner.SimpleExpression(prepared);
}
