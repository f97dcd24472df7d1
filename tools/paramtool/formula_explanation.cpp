// Explaining a formula: the module's scanner watched step by step, the pitfalls it shows, and the cross-check.
#include "formula_explanation.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cwctype>
#include <set>

#include "expression/formula_scanner.h"
#include "expression/formula_text.h"
#include "runtime/module_loader.h"
#include "param_host.h"

namespace {

constexpr double kDivisionByZero = 1000000000.0;

// Records the scanner's callbacks as steps, in reading order.
class StepRecorder : public FormulaTrace {
 public:
  StepRecorder(const wchar_t* base, std::vector<ExplanationStep>& steps) : m_Base(base), m_Steps(steps) {}

  void OperandBegin(const wchar_t* at) override {
    ExplanationStep step;
    step.kind = StepKind::kMissing;
    step.depth = static_cast<int>(m_Open.size());
    step.parent = m_Open.empty() ? -1 : m_Open.back();
    step.begin = step.operandBegin = Offset(at);
    if (m_PendingOperator) {
      step.op = m_PendingOperator;
      step.begin = m_PendingOperatorBegin;
      m_PendingOperator = 0;
    }
    m_Open.push_back(static_cast<int>(m_Steps.size()));
    m_Steps.push_back(std::move(step));
  }

  void OperandEnd(OperandKind kind, const wchar_t* end, double value, CREFString word) override {
    const int index = m_Open.back();
    m_Open.pop_back();
    ExplanationStep& step = m_Steps[static_cast<size_t>(index)];
    step.kind = StepKindOf(kind);
    step.end = Offset(end);
    step.value = value;
    if (word.length > 0) step.word.assign(word.text, static_cast<size_t>(word.length));
    if (step.parent >= 0) ++m_Steps[static_cast<size_t>(step.parent)].arguments;
    // The first operand inside a group starts that group's chain.
    if (kind == OperandKind::kGroup && static_cast<size_t>(index) + 1 < m_Steps.size()) StartsChain(index + 1);
    if (step.op) m_AwaitingCombine = index;
  }

  void OperatorRead(FormulaOperator op, const wchar_t* begin, const wchar_t* end) override {
    if (op != FormulaOperator::kNone) {
      m_PendingOperator = OperatorSign(op);
      m_PendingOperatorBegin = Offset(begin);
      return;
    }
    ExplanationStep dropped;
    dropped.kind = StepKind::kDropped;
    dropped.depth = static_cast<int>(m_Open.size());
    dropped.parent = m_Open.empty() ? -1 : m_Open.back();
    dropped.begin = dropped.operandBegin = Offset(begin);
    dropped.end = Offset(end);
    m_Steps.push_back(std::move(dropped));
  }

  void Combined(double left, double /*right*/, double result) override {
    if (m_AwaitingCombine < 0) return;
    ExplanationStep& step = m_Steps[static_cast<size_t>(m_AwaitingCombine)];
    step.hasRunning = true;
    step.runningBefore = left;
    step.running = result;
    m_AwaitingCombine = -1;
  }

  void StartsChain(int index) {
    ExplanationStep& step = m_Steps[static_cast<size_t>(index)];
    if (step.kind == StepKind::kDropped) return;
    step.hasRunning = true;
    step.running = step.value;
  }

 private:
  size_t Offset(const wchar_t* at) const { return static_cast<size_t>(at - m_Base); }

  static StepKind StepKindOf(OperandKind kind) {
    switch (kind) {
      case OperandKind::kMissing: return StepKind::kMissing;
      case OperandKind::kTooDeep: return StepKind::kTooDeep;
      case OperandKind::kGroup: return StepKind::kGroup;
      case OperandKind::kNegation: return StepKind::kNegation;
      case OperandKind::kFunction: return StepKind::kFunction;
      case OperandKind::kNumber: return StepKind::kNumber;
      case OperandKind::kName: return StepKind::kName;
      case OperandKind::kUnknownName: return StepKind::kUnknownName;
    }
    return StepKind::kNumber;
  }

  static wchar_t OperatorSign(FormulaOperator op) {
    switch (op) {
      case FormulaOperator::kAdd: return L'+';
      case FormulaOperator::kSubtract: return L'-';
      case FormulaOperator::kMultiply: return L'*';
      case FormulaOperator::kDivide: return L'/';
      case FormulaOperator::kRemainder: return L'%';
      case FormulaOperator::kAnd: return L'&';
      case FormulaOperator::kOr: return L'|';
      case FormulaOperator::kNone: break;
    }
    return 0;
  }

  const wchar_t* m_Base;
  std::vector<ExplanationStep>& m_Steps;
  std::vector<int> m_Open;  // operands begun and not yet ended, innermost last
  wchar_t m_PendingOperator = 0;
  size_t m_PendingOperatorBegin = 0;
  int m_AwaitingCombine = -1;
};

// --- text helpers ---------------------------------------------------------

// Longest piece of the formula quoted in a message; longer ones are cut, so a
// warning stays short however long the formula is.
constexpr size_t kLongestQuote = 40;
// Suggested fixes are evaluated (each a whole new reading) for the first few warnings only.
constexpr int kMostFixesEvaluated = 8;

std::string Quoted(const std::wstring& formula, size_t begin, size_t end) {
  const bool cut = end - begin > kLongestQuote;
  const std::wstring_view piece = std::wstring_view(formula).substr(begin, cut ? kLongestQuote : end - begin);
  return "\"" + paramhost::ToUtf8(piece) + (cut ? "...\"" : "\"");
}

size_t SkipBlanksFrom(const std::wstring& text, size_t at, size_t limit) {
  while (at < limit && IsFormulaBlank(text[at])) ++at;
  return at;
}

size_t TrimmedEnd(const std::wstring& text, size_t begin, size_t end) {
  while (end > begin && IsFormulaBlank(text[end - 1])) --end;
  return end;
}

bool IsMultiplicative(wchar_t op) { return op == L'*' || op == L'/' || op == L'%'; }
bool IsAdditive(wchar_t op) { return op == L'+' || op == L'-'; }

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// --- the explanation being built -------------------------------------------

class Explainer {
 public:
  Explainer(FormulaExplanation& result, const ParameterReader& reader) : m_Result(result), m_Reader(reader) {}

  void AddWarning(PitfallKind kind, size_t begin, size_t end, std::string message) {
    m_Result.warnings.push_back({kind, begin, end, std::move(message)});
  }

  // The formula with "(" inserted at `open` and ")" at `close`: the excerpt from `from` to `to`
  // of it, and (in *value) what the whole of it gives. "" past the first few fixes.
  std::string Rewritten(size_t open, size_t close, size_t from, size_t to, std::string* value) {
    *value = "";
    if (m_FixesEvaluated >= kMostFixesEvaluated) return "";
    ++m_FixesEvaluated;
    const std::wstring& f = m_Result.formula;
    const std::wstring text = f.substr(0, open) + L"(" + f.substr(open, close - open) + L")" + f.substr(close);
    // A rewritten formula that draws random numbers would move the generator on: it is not evaluated.
    if (!m_Result.drawsRandomNumbers)
      *value = FormatNumberForMessage(
          EvaluateFormulaText({static_cast<int32_t>(text.size()), text.c_str()}, m_Reader));
    return paramhost::ToUtf8(std::wstring_view(text).substr(from, to + 2 - from));
  }

  static std::string FixSentence(const std::string& lead, const std::string& fixed, const std::string& value) {
    if (fixed.empty()) return "";
    return " " + lead + fixed + (value.empty() ? "." : ": the formula then gives " + value + ".");
  }

  static std::string FormatNumberForMessage(double value) {
    char buffer[40];
    std::snprintf(buffer, sizeof(buffer), "%.15g", value);
    return buffer;
  }

  void OperandWarnings(size_t index) {
    const ExplanationStep& step = m_Result.steps[index];
    const std::wstring& f = m_Result.formula;
    switch (step.kind) {
      case StepKind::kUnknownName:
        if (!m_WarnedNames.insert(step.word).second) break;  // one warning per name
        AddWarning(PitfallKind::kUnknownName, step.operandBegin, step.end,
                   Quoted(f, step.operandBegin, step.end) +
                       " names no parameter of the files and bindings given, so it counts as 0.");
        break;
      case StepKind::kNumber: NumberWarnings(step); break;
      case StepKind::kName: TextValueWarning(step); break;
      case StepKind::kTooDeep:
        if (!m_WarnedTooDeep)
          AddWarning(PitfallKind::kTooDeep, step.operandBegin, step.end,
                     "Operands nested more than " + std::to_string(FormulaScanner::kMaxOperandDepth) +
                         " deep count as 0 and the text there is read by the enclosing chain.");
        m_WarnedTooDeep = true;
        break;
      case StepKind::kGroup:
        if (f[TrimmedEnd(f, step.operandBegin, step.end) - 1] != L')')
          AddWarning(PitfallKind::kUnclosedParenthesis, step.operandBegin, step.operandBegin + 1,
                     "This \"(\" is never closed; it is read as if closed at the end.");
        break;
      case StepKind::kFunction: FunctionWarnings(index); break;
      default: break;
    }
    if ((step.op == L'/' || step.op == L'%') && step.hasRunning && step.running == kDivisionByZero &&
        (step.value == 0 || (step.op == L'%' && std::fabs(step.value) < 1))) {
      AddWarning(PitfallKind::kDivisionByZero, step.begin, step.end,
                 Quoted(f, step.begin, step.end) + " divides by " + FormatNumberForMessage(step.value) +
                     (step.value == 0 ? "" : " (0 as an integer)") +
                     ": that is no error, the running value " + FormatNumberForMessage(step.runningBefore) +
                     " is replaced by 1000000000 and reading goes on.");
    }
  }

  // A parameter whose value is a text without digits counts as 0.
  void TextValueWarning(const ExplanationStep& step) {
    if (step.value != 0) return;
    const SmartPtr<IString> held = m_Reader.FindText({static_cast<int32_t>(step.word.size()), step.word.c_str()});
    const CREFString view = ViewOfString(held.get());
    const std::wstring text(view.text, static_cast<size_t>(view.length));
    if (!held || std::any_of(text.begin(), text.end(), IsDigit) || !m_WarnedNames.insert(step.word).second) return;
    AddWarning(PitfallKind::kTextValue, step.operandBegin, step.end,
               "\"" + paramhost::ToUtf8(step.word) + "\" holds the text " + Quoted(text, 0, text.size()) +
                   ", which counts as 0 in a formula.");
  }

  // The read part of a number word: optional sign, digits, one "." and digits.
  void NumberWarnings(const ExplanationStep& step) {
    const std::wstring& word = step.word;
    if (word.empty() || word[0] == L'#') return;
    size_t at = (word[0] == L'"') ? 1 : 0;
    const size_t start = at;
    if (at < word.size() && (word[at] == L'-' || word[at] == L'+')) ++at;
    bool digits = false, point = false;
    for (; at < word.size(); ++at) {
      if (IsDigit(word[at])) {
        digits = true;
      } else if (word[at] == L'.' && !point) {
        point = true;
      } else {
        break;
      }
    }
    const size_t end = (word.back() == L'"' && start == 1) ? word.size() - 1 : word.size();
    const std::string quotedWord = "\"" + paramhost::ToUtf8(word) + "\"";
    if (!digits) {
      AddWarning(PitfallKind::kNotANumber, step.operandBegin, step.end,
                 quotedWord + " is no number, and only words that begin with a letter are looked up as names:"
                              " it counts as 0" + (word == L"+" ? " (a leading \"+\" is not a sign)." : "."));
      return;
    }
    if (at >= end) return;
    if (IsExponentText(std::wstring_view(word).substr(at, end - at))) {
      ExponentWarning(step, word.substr(start, at - start), word.substr(at, end - at), step.end);
    } else {
      const std::string read = paramhost::ToUtf8(word.substr(start, at - start));
      AddWarning(PitfallKind::kTextNotRead, step.operandBegin, step.end,
                 "Only " + read + " of " + quotedWord + " is read as a number; the rest counts for nothing.");
    }
  }

  // "e" or "E", an optional sign and digits only.
  static bool IsExponentText(std::wstring_view text) {
    if (text.size() < 2 || (text[0] != L'e' && text[0] != L'E')) return false;
    size_t at = (text[1] == L'+' || text[1] == L'-') ? 2 : 1;
    if (at >= text.size()) return false;
    for (; at < text.size(); ++at)
      if (!IsDigit(text[at])) return false;
    return true;
  }

  bool IsExponent(size_t begin, size_t end) const {
    return IsExponentText(std::wstring_view(m_Result.formula).substr(begin, end - begin));
  }

  // `number` was read and `exponent` after it was not.
  void ExponentWarning(const ExplanationStep& step, const std::wstring& number, const std::wstring& exponent,
                       size_t end) {
    const std::string whole = paramhost::ToUtf8(number + exponent);
    AddWarning(PitfallKind::kExponentNotRead, step.operandBegin, end,
               "\"" + whole + "\" is read as " + paramhost::ToUtf8(number) + ": exponents are not read. Write " +
                   FormatNumberForMessage(std::strtod(whole.c_str(), nullptr)) + " instead.");
  }

  // A call that opened "(" for its arguments but stopped before a ")".
  void FunctionWarnings(size_t index) {
    const ExplanationStep& step = m_Result.steps[index];
    const std::wstring& f = m_Result.formula;
    const size_t open = SkipBlanksFrom(f, step.operandBegin + step.word.size(), step.end);
    if (open >= step.end || f[open] != L'(') return;
    if (f[TrimmedEnd(f, open, step.end) - 1] == L')') return;
    int lastArgument = -1;
    for (size_t i = index + 1; i < m_Result.steps.size() && m_Result.steps[i].depth > step.depth; ++i)
      if (m_Result.steps[i].parent == static_cast<int>(index)) lastArgument = static_cast<int>(i);
    // One-operand functions read the "(" as a group of their own, which reports itself.
    if (lastArgument >= 0 && m_Result.steps[static_cast<size_t>(lastArgument)].kind == StepKind::kGroup &&
        m_Result.steps[static_cast<size_t>(lastArgument)].operandBegin == open)
      return;
    const size_t next = SkipBlanksFrom(f, step.end, f.size());
    const std::string name = paramhost::ToUtf8(step.word);
    if (next >= m_PreparedEnd) {
      AddWarning(PitfallKind::kUnclosedParenthesis, open, open + 1,
                 "The argument list of " + name + " is never closed; it is read as if closed at the end.");
      return;
    }
    std::string message = name + "( takes each argument as a single operand: the call ended at " +
                          Quoted(f, next, m_PreparedEnd) + " and gave " + FormatNumberForMessage(step.value) +
                          "; the rest is read by the enclosing chain.";
    if (lastArgument >= 0 && m_FixesEvaluated < kMostFixesEvaluated) {
      const size_t argumentBegin = m_Result.steps[static_cast<size_t>(lastArgument)].operandBegin;
      std::string value;
      const std::string fixed =
          Rewritten(argumentBegin, ArgumentEnd(argumentBegin), step.operandBegin, CallEnd(open), &value);
      message += FixSentence("To pass a computed argument, put it in parentheses: ", fixed, value);
    }
    AddWarning(PitfallKind::kArgumentNotSingleOperand, step.operandBegin, next + 1, std::move(message));
  }

  // Where an argument that starts at `begin` was meant to end: before the next "," or ")" outside parentheses.
  size_t ArgumentEnd(size_t begin) const {
    const std::wstring& f = m_Result.formula;
    int nesting = 0;
    size_t at = begin;
    for (; at < m_PreparedEnd; ++at) {
      if (f[at] == L'(') ++nesting;
      if (f[at] == L')' && nesting-- == 0) break;
      if (f[at] == L',' && nesting == 0) break;
    }
    return TrimmedEnd(f, begin, at);
  }

  // Just after the ")" that matches the "(" at `open`, or the end of the formula.
  size_t CallEnd(size_t open) const {
    const std::wstring& f = m_Result.formula;
    int nesting = 0;
    for (size_t at = open; at < m_PreparedEnd; ++at) {
      if (f[at] == L'(') ++nesting;
      if (f[at] == L')' && --nesting == 0) return at + 1;
    }
    return m_PreparedEnd;
  }

  // 2+3*4: a "*", "/" or "%" after a "+" or "-" in the same chain; warned once per chain.
  void PrecedenceWarnings() {
    std::vector<ExplanationStep>& steps = m_Result.steps;
    struct Chain {
      bool sawAdditive = false, warned = false;
      int previous = -1;
    };
    std::vector<Chain> chains(steps.size() + 1);
    for (size_t i = 0; i < steps.size(); ++i) {
      const ExplanationStep& step = steps[i];
      if (!step.hasRunning) continue;
      Chain& chain = chains[static_cast<size_t>(step.parent + 1)];
      if (IsMultiplicative(step.op) && chain.sawAdditive && !chain.warned && chain.previous >= 0) {
        chain.warned = true;
        size_t runEnd = step.end;
        for (size_t j = i + 1; j < steps.size() && steps[j].depth >= step.depth; ++j) {
          if (steps[j].parent != step.parent || !steps[j].hasRunning) continue;
          if (!IsMultiplicative(steps[j].op)) break;
          runEnd = steps[j].end;
        }
        const size_t open = steps[static_cast<size_t>(chain.previous)].operandBegin;
        const size_t chainBegin = ChainBegin(step.parent);
        std::string value;
        const std::string fixed = Rewritten(open, runEnd, chainBegin, runEnd, &value);
        AddWarning(PitfallKind::kNoPrecedence, chainBegin, step.end,
                   "There is no operator precedence: " + Quoted(m_Result.formula, chainBegin, runEnd) +
                       " applies its operators in reading order, the \"" + std::string(1, static_cast<char>(step.op)) +
                       "\" to the running value " + FormatNumberForMessage(step.runningBefore) + "." +
                       FixSentence("For the usual reading write ", fixed, value));
      }
      if (IsAdditive(step.op)) chain.sawAdditive = true;
      chain.previous = static_cast<int>(i);
    }
  }

  // Where the chain inside `parent` (-1: the outermost) begins.
  size_t ChainBegin(int parent) const {
    for (size_t i = static_cast<size_t>(parent + 1); i < m_Result.steps.size(); ++i)
      if (m_Result.steps[i].parent == parent && m_Result.steps[i].hasRunning) return m_Result.steps[i].operandBegin;
    return 0;
  }

  // Dropped words next to each other make one warning; "1.5E3" splits into the number and a dropped "E3".
  void DroppedTextWarnings() {
    const std::vector<ExplanationStep>& steps = m_Result.steps;
    for (size_t i = 0; i < steps.size(); ++i) {
      if (steps[i].kind != StepKind::kDropped) continue;
      if (i > 0 && steps[i - 1].kind == StepKind::kNumber && steps[i - 1].end == steps[i].begin &&
          IsExponent(steps[i].begin, steps[i].end)) {
        const std::wstring exponent = m_Result.formula.substr(steps[i].begin, steps[i].end - steps[i].begin);
        ExponentWarning(steps[i - 1], steps[i - 1].word, exponent, steps[i].end);
        continue;
      }
      size_t last = i;
      while (last + 1 < steps.size() && steps[last + 1].kind == StepKind::kDropped) ++last;
      AddWarning(PitfallKind::kTextNotRead, steps[i].begin, steps[last].end,
                 Quoted(m_Result.formula, steps[i].begin, steps[last].end) +
                     (last > i ? " are" : " is") + " skipped: between two operands only + - * / % AND OR are read.");
      i = last;
    }
  }

  void Analyse(size_t preparedEnd) {
    m_PreparedEnd = preparedEnd;
    const size_t count = m_Result.steps.size();  // warnings below add no steps
    for (size_t i = 0; i < count; ++i) OperandWarnings(i);
    PrecedenceWarnings();
    DroppedTextWarnings();
  }

  void SortWarnings() {
    std::stable_sort(m_Result.warnings.begin(), m_Result.warnings.end(),
                     [](const ExplanationWarning& a, const ExplanationWarning& b) { return a.begin < b.begin; });
  }

 private:
  FormulaExplanation& m_Result;
  const ParameterReader& m_Reader;
  size_t m_PreparedEnd = 0;
  bool m_WarnedTooDeep = false;
  int m_FixesEvaluated = 0;
  std::set<std::wstring> m_WarnedNames;
};

ExplanationStep TextStep(StepKind kind, size_t begin, size_t end) {
  ExplanationStep step;
  step.kind = kind;
  step.begin = step.operandBegin = begin;
  step.end = end;
  return step;
}

// The value an "Expression" object created by class name gives, as a host would get it.
bool EvaluateThroughModule(const std::wstring& formula, IParameters* set, double* value) {
  SmartPtr<IExpression> expression = CreateObjectAs<IExpression>(L"Expression");
  if (!expression || FAILED(expression->put_Expression({static_cast<int32_t>(formula.size()), formula.c_str()})) ||
      FAILED(expression->Evaluate(set)))
    return false;
  SmartPtr<IVariant> result;
  if (FAILED(expression->get_Value(result.Receive())) || !result) return false;
  *value = result->GetDouble();
  return true;
}

bool SameValue(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

bool DrawsRandomNumbers(const std::vector<ExplanationStep>& steps) {
  for (const ExplanationStep& step : steps) {
    if (step.kind != StepKind::kFunction || step.word.size() != 6) continue;
    std::wstring lower;
    for (const wchar_t c : step.word) lower += static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
    if (lower == L"random") return true;
  }
  return false;
}

}  // namespace

FormulaExplanation ExplainFormula(const std::wstring& formula, IParameters* set, const OriginOfName& originOf) {
  FormulaExplanation result;
  result.formula = formula;
  const tagREFString whole{static_cast<int32_t>(formula.size()), formula.c_str()};
  const ParameterReader reader(set);
  StepRecorder recorder(formula.c_str(), result.steps);
  result.value = EvaluateFormulaText(whole, reader, &recorder);
  if (!result.steps.empty() && result.steps[0].parent < 0) recorder.StartsChain(0);

  // What was not read: the text after the point where reading stopped, and the comment.
  const CREFString prepared = PrepareFormulaText(whole);
  const size_t preparedBegin = prepared.length > 0 ? static_cast<size_t>(prepared.text - formula.c_str()) : 0;
  const size_t preparedEnd = preparedBegin + static_cast<size_t>(prepared.length);
  size_t consumed = preparedBegin;
  for (const ExplanationStep& step : result.steps) consumed = std::max(consumed, step.end);
  consumed = SkipBlanksFrom(formula, consumed, preparedEnd);
  if (consumed < preparedEnd) result.steps.push_back(TextStep(StepKind::kIgnored, consumed, preparedEnd));
  const size_t comment = formula.find(L';', SkipBlanksFrom(formula, 0, formula.size()));
  if (comment != std::wstring::npos)
    result.steps.push_back(TextStep(StepKind::kComment, comment, TrimmedEnd(formula, comment, formula.size())));

  for (ExplanationStep& step : result.steps)
    if (step.kind == StepKind::kName && originOf) step.origin = originOf(step.word);
  result.drawsRandomNumbers = DrawsRandomNumbers(result.steps);

  Explainer explainer(result, reader);
  explainer.Analyse(preparedEnd);
  if (consumed < preparedEnd) {
    explainer.AddWarning(PitfallKind::kTextNotRead, consumed, preparedEnd,
                         "Reading stopped at this \")\", which closes nothing: " +
                             Quoted(formula, consumed, preparedEnd) + " is ignored.");
  }
  explainer.SortWarnings();

  result.moduleEvaluated = EvaluateThroughModule(formula, set, &result.moduleValue);
  result.agrees = result.moduleEvaluated && SameValue(result.value, result.moduleValue);
  return result;
}

const char* StepKindName(StepKind kind) {
  switch (kind) {
    case StepKind::kNumber: return "number";
    case StepKind::kName: return "name";
    case StepKind::kUnknownName: return "unknown-name";
    case StepKind::kFunction: return "function";
    case StepKind::kGroup: return "group";
    case StepKind::kNegation: return "negation";
    case StepKind::kMissing: return "missing-operand";
    case StepKind::kTooDeep: return "too-deep";
    case StepKind::kDropped: return "dropped";
    case StepKind::kIgnored: return "ignored";
    case StepKind::kComment: return "comment";
  }
  return "";
}

const char* PitfallName(PitfallKind kind) {
  switch (kind) {
    case PitfallKind::kArgumentNotSingleOperand: return "argument-not-single-operand";
    case PitfallKind::kNoPrecedence: return "no-precedence";
    case PitfallKind::kUnknownName: return "unknown-name";
    case PitfallKind::kDivisionByZero: return "division-by-zero";
    case PitfallKind::kExponentNotRead: return "exponent-not-read";
    case PitfallKind::kTooDeep: return "too-deep";
    case PitfallKind::kNotANumber: return "not-a-number";
    case PitfallKind::kTextNotRead: return "text-not-read";
    case PitfallKind::kUnclosedParenthesis: return "unclosed-parenthesis";
    case PitfallKind::kTextValue: return "text-value";
  }
  return "";
}
