// The function library of the formula language: functions of one operand,
// constants and functions of several operands.
#include <algorithm>
#include <cmath>

#include "expression/formula_scanner.h"
#include "expression/formula_text.h"
#include "expression/random32.h"

namespace {

using namespace function_code;

constexpr double kPiValue = 3.141592653589793;
constexpr double kEulerValue = 2.718281828459045;
constexpr double kRandomHigh = 100;
constexpr double kRandomScale = 4294967295.0;
constexpr int32_t kRoundMaxDecimals = 10;
constexpr int kCircleMaxSteps = 10;

int32_t AsInt32(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 2147483647.0) return INT32_MAX;
  if (value <= -2147483648.0) return INT32_MIN;
  return static_cast<int32_t>(value);
}

// Logarithms are odd-symmetric for negative arguments instead of failing (intended).
double OddLog(double x, double (*log)(double)) { return x >= 0 ? log(x) : -log(-x); }

double OneOperandFunction(int32_t code, double x) {
  switch (code) {
    case kCos: return std::cos(x);
    case kSin: return std::sin(x);
    case kTan: return std::tan(x);
    case kArcCos: return std::acos(x);
    case kArcSin: return std::asin(x);
    case kArcTan: return std::atan(x);
    case kLog10: return OddLog(x, [](double v) { return std::log10(v); });
    case kLn: return OddLog(x, [](double v) { return std::log(v); });
    case kAbs: return std::fabs(x);
    case kSqr: return x * x;
    case kSqrt: return std::sqrt(x);
    case kFloor: return std::floor(x);
    case kExp: return std::exp(x);
    case kTrunc: return x < 0 ? std::ceil(x) : std::floor(x);
    case kLoByte: return AsInt32(x) & 0xFF;
    case kHiByte: return (AsInt32(x) >> 8) & 0xFF;
    case kLoWord: return AsInt32(x) & 0xFFFF;
    case kHiWord: return static_cast<uint32_t>(AsInt32(x)) >> 16;
    default: return 0;
  }
}

bool IsOneOperandFunction(int32_t code) {
  switch (code) {
    case kCos: case kSin: case kTan: case kArcCos: case kArcSin: case kArcTan: case kLog10: case kLn:
    case kAbs: case kSqr: case kSqrt: case kFloor: case kExp: case kTrunc: case kLoByte: case kHiByte:
    case kLoWord: case kHiWord:
      return true;
    default:
      return false;
  }
}

// The factor is 10 multiplied d times in 32-bit arithmetic with d capped at
// 10, so d >= 10 gives 1410065408 rather than ten billion (intended).
int32_t RoundFactor(int32_t decimals) {
  if (decimals < 1) return 1;
  if (decimals > kRoundMaxDecimals) decimals = kRoundMaxDecimals;
  uint32_t factor = 1;
  for (int32_t i = 0; i < decimals; ++i) factor *= 10u;
  return static_cast<int32_t>(factor);
}

}  // namespace

void ValueStatistics::Add(double value) {
  if (count++ == 0) {
    minimum = maximum = value;
  } else if (value < minimum) {
    minimum = value;
  } else if (value > maximum) {
    maximum = value;
  }
  sum += value;
  sumOfSquares += value * value;
}

double ValueStatistics::StandardDeviation() const {
  if (count < 2) return 0;
  const double mean = sum / count;
  const double variance = sumOfSquares - mean * mean * count;
  return variance > 0 ? std::sqrt(variance / (count - 1)) : 0;
}

// How a function of a fixed number of operands reads them after its name.
struct OperandRule {
  int32_t most;                // operands read at most
  bool onlyInParentheses;      // without "(" nothing is read
  bool emptyParentheses;       // "()" reads no operand
  bool moreOnlyInParentheses;  // the operands after the first (and the ")") only after "("
};

namespace {

constexpr int32_t kMostOperands = 5;

// False for functions that read no fixed operand list (constants, one-operand
// functions, lists, string and range functions).
bool OperandRuleOf(int32_t code, OperandRule* rule) {
  switch (code) {
    case kArcTan2: case kPow: *rule = {2, false, false, false}; return true;
    case kLimit: case kCir: *rule = {3, false, false, false}; return true;
    case kIf: *rule = {5, false, false, false}; return true;
    case kRound: *rule = {2, false, false, true}; return true;
    case kRandom: *rule = {2, true, true, false}; return true;
    case kErr: case kScore: *rule = {2, true, false, false}; return true;
    default: return false;
  }
}

bool IsListFunction(int32_t code) { return code == kMin || code == kMax || code == kSum || code == kMean || code == kStdDev; }

double ListResult(int32_t code, const ValueStatistics& values) {
  switch (code) {
    case kMin: return values.minimum;
    case kMax: return values.maximum;
    case kSum: return values.sum;
    case kMean: return values.sum / values.count;
    default: return values.StandardDeviation();
  }
}

double Round(double x, double decimals) {
  const int32_t factor = RoundFactor(AsInt32(decimals));
  double t = x * factor;
  t = t >= 0 ? t + 0.5 : t - 0.5;
  return static_cast<double>(AsInt32(t)) / factor;
}

// At most ten steps each way: a value further out stays outside the range (intended).
double Circle(double x, double low, double high) {
  if (low == high) return x;
  const double width = std::fabs(high - low);
  for (int step = 0; step < kCircleMaxSteps && x > high; ++step) x -= width;
  for (int step = 0; step < kCircleMaxSteps && x < low; ++step) x += width;
  return x;
}

double RelativeError(double a, double b) { return (a + b == 0) ? 1.0 : (a - b) / ((a + b) * 0.5); }

}  // namespace

double ApplyFunction(int32_t code, const double* operands, int32_t count) {
  if (IsOneOperandFunction(code)) return OneOperandFunction(code, count > 0 ? operands[0] : 0);
  if (IsListFunction(code)) {
    ValueStatistics values;
    for (int32_t i = 0; i < count; ++i) values.Add(operands[i]);
    return ListResult(code, values);
  }
  // An operand that was not read takes its function's default.
  const auto operand = [&](int32_t i, double fallback) { return i < count ? operands[i] : fallback; };
  const double x = operand(0, 0);
  switch (code) {
    case kPi: return kPiValue;
    case kEuler: return kEulerValue;
    case kArcTan2: return std::atan2(x, operand(1, 0));
    case kPow: return std::pow(x, operand(1, 0));
    // The lower bound first, then the upper one: with lo > hi the result is hi (intended).
    case kLimit: return std::min(operand(2, 0), std::max(operand(1, 0), x));
    case kRound: return Round(x, operand(1, 0));
    case kRandom: {
      const double low = x, high = operand(1, kRandomHigh);
      return low + (high - low) * (CRandom32::Shared().Next() / kRandomScale);
    }
    case kIf: return (operand(1, 0) <= x && x <= operand(2, 0)) ? operand(3, 0) : operand(4, x);
    case kCir: return Circle(x, operand(1, 0), operand(2, 0));
    case kErr: return RelativeError(x, operand(1, 1));
    case kScore: return 1.0 - RelativeError(x, operand(1, 1));
    default: return 0;
  }
}

double FormulaScanner::Function(int32_t code, CREFString& rest) {
  if (IsOneOperandFunction(code)) {
    const double x = Variable(rest);
    return OneOperandFunction(code, x);
  }
  if (IsListFunction(code)) return ListFunction(code, rest);
  OperandRule rule;
  if (OperandRuleOf(code, &rule)) {
    double operands[kMostOperands];
    const int32_t count = ReadOperands(rule, rest, operands);
    return ApplyFunction(code, operands, count);
  }
  switch (code) {
    case kStrLen: case kChr: case kFind: case kStrToNum: return StringFunction(code, rest);
    case kRangeSum: case kRangeMean: case kRangeMin: case kRangeMax: case kRangeStdDev:
      return RangeFunction(code, rest);
    default: return ApplyFunction(code, nullptr, 0);
  }
}

int32_t FormulaScanner::ReadOperands(const OperandRule& rule, CREFString& rest, double* operands) {
  const bool parenthesised = OpenArguments(rest);
  if (rule.onlyInParentheses && !parenthesised) return 0;
  int32_t count = 0;
  const bool readsMore = parenthesised || !rule.moreOnlyInParentheses;
  if (!(rule.emptyParentheses && NextIs(rest, L')'))) {
    operands[count++] = Variable(rest);
    while (readsMore && count < rule.most && NextArgument(rest, &operands[count])) ++count;
  }
  if (readsMore) CloseArguments(rest);
  return count;
}

// The values are taken as they are read: a list has no length limit.
double FormulaScanner::ListFunction(int32_t code, CREFString& rest) {
  OpenArguments(rest);
  ValueStatistics values;
  double value = Variable(rest);
  do values.Add(value);
  while (NextArgument(rest, &value));
  CloseArguments(rest);
  return ListResult(code, values);
}
