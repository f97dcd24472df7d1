// FormulaScanner: the one-pass evaluator of the formula language.
//
// There is no parse tree: the text is scanned front to back and every operand
// and operator is evaluated as it is read. All binary operators have the same
// precedence and apply strictly left to right; nothing is a syntax error and
// text that fits no rule is skipped. The operator chain and the operand rules
// are in formula_scanner.cpp, function names in function_names.cpp, the
// function library in function_library.cpp, string_functions.cpp and
// range_functions.cpp.
//
// Nesting is bounded: an operand nested deeper than kMaxOperandDepth
// (parentheses, unary minus, function arguments) counts as 0 and consumes
// nothing, so the text that follows is read by the enclosing chain. A text of
// any length therefore evaluates in bounded stack space and linear time.
//
// A FormulaTrace (formula_trace.h) given to the scanner is told about every
// operand and operator as it is read; explanations of formulas come from it.
#pragma once

#include "expression/formula_trace.h"
#include "expression/parameter_reader.h"

// Function codes: 1 to 49 for ordinary functions, 0x801 to 0x805 for
// functions over a spreadsheet range, -1 for a word that names no function.
namespace function_code {
constexpr int32_t kNone = -1;
constexpr int32_t kCos = 1, kSin = 2, kTan = 3, kArcCos = 4, kArcSin = 5, kArcTan = 6, kArcTan2 = 7;
constexpr int32_t kLog10 = 8, kLn = 9, kAbs = 10, kSqr = 11, kSqrt = 12, kFloor = 13, kPow = 14;
constexpr int32_t kMin = 15, kMax = 16, kSum = 17, kExp = 18, kRound = 19, kTrunc = 20, kMean = 21;
constexpr int32_t kStdDev = 22, kStrToNum = 30, kFind = 31, kStrLen = 32, kChr = 33, kPi = 35;
constexpr int32_t kEuler = 36, kRandom = 37, kLoByte = 40, kHiByte = 41, kLoWord = 42, kHiWord = 43;
constexpr int32_t kIf = 45, kCir = 46, kLimit = 47, kScore = 48, kErr = 49;
constexpr int32_t kRangeSum = 0x801, kRangeMean = 0x802, kRangeMin = 0x803, kRangeMax = 0x804;
constexpr int32_t kRangeStdDev = 0x805;
}  // namespace function_code

struct OperandRule;

class FormulaScanner {
 public:
  // Deepest operand nesting that is evaluated; deeper operands count as 0.
  static constexpr int32_t kMaxOperandDepth = 100;

  // `trace` (may be null) watches the reading; it must outlive the scanner.
  explicit FormulaScanner(const ParameterReader& parameters, FormulaTrace* trace = nullptr)
      : m_Parameters(parameters), m_Trace(trace) {}

  // A chain of operands and operators from the front of `text`; stops at the
  // end or before a ")" (left for the caller).
  double SimpleExpression(CREFString& text);
  // One operand: a parenthesised chain, a negated operand, a function call, a
  // number or a parameter name.
  double Variable(CREFString& text);
  // The function code of `word` (case ignored), or -1. `rest` is the text
  // after the word, used to choose the range form of the list functions.
  int32_t IsFunction(CREFString& word, CREFString& rest);
  // S_OK when the attached set is a spreadsheet and ".." occurs anywhere in `rest`, else E_FAIL.
  HRESULT IsSpreadSheetFunction(CREFString& rest);
  // Reads the arguments of function `code` from `rest` and computes it.
  double Function(int32_t code, CREFString& rest);

 private:
  // Argument reading shared by the functions of several operands.
  bool OpenArguments(CREFString& rest);
  bool NextArgument(CREFString& rest, double* value);
  void CloseArguments(CREFString& rest);

  // Reads the operands of a function with a fixed operand list; returns how many were read.
  int32_t ReadOperands(const OperandRule& rule, CREFString& rest, double* operands);
  double ListFunction(int32_t code, CREFString& rest);
  double StringFunction(int32_t code, CREFString& rest);
  double StrToNumFunction(CREFString& rest);
  double FindFunction(CREFString& rest);
  double RangeFunction(int32_t code, CREFString& rest);

  // Tells the trace (if any) that the current operand ended before `end` as `kind` with `value`; returns `value`.
  double OperandRead(OperandKind kind, const CREFString& end, double value, CREFString word = CREFString()) {
    if (m_Trace) [[unlikely]] m_Trace->OperandEnd(kind, end.text, value, word);
    return value;
  }

  const ParameterReader& m_Parameters;
  FormulaTrace* m_Trace;
  int32_t m_Depth = 0;  // operands being evaluated, one inside the other
};

// Statistics of a list of values, accumulated in reading order.
struct ValueStatistics {
  int32_t count = 0;
  double sum = 0, sumOfSquares = 0, minimum = 0, maximum = 0;

  void Add(double value);
  // Sample standard deviation: sqrt((q - m*m*n) / (n - 1)); 0 for fewer than
  // two values or when the variance term is not above 0 (or NaN).
  double StandardDeviation() const;
};

// `left` and `right` combined by the binary operator `op` (kNone gives `left`).
double CombineOperands(FormulaOperator op, double left, double right);

// The value of function `code` (no string or range function) computed from
// the `count` operands read for it, in reading order; operands that were not
// read take the function's defaults. Evaluation of scanned and of compiled
// formulas both end here.
double ApplyFunction(int32_t code, const double* operands, int32_t count);

// The function code of `word` (case ignored) without the range forms, or -1.
int32_t FunctionCodeOf(const CREFString& word);

// Evaluates a formula text as the expression objects do: prepared by
// PrepareFormulaText, then one operator chain against `parameters`, watched by
// `trace` when one is given.
double EvaluateFormulaText(tagREFString text, const ParameterReader& parameters, FormulaTrace* trace = nullptr);
