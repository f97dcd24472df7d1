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

double FormulaScanner::Function(int32_t code, CREFString& rest) {
  if (IsOneOperandFunction(code)) return OneOperandFunction(code, Variable(rest));
  switch (code) {
    case kPi: return kPiValue;
    case kEuler: return kEulerValue;
    case kMin: case kMax: case kSum: case kMean: case kStdDev: return ListFunction(code, rest);
    case kArcTan2: case kPow: case kLimit: {
      OpenArguments(rest);
      const double x = Variable(rest);
      double second = 0, third = 0;
      NextArgument(rest, &second);
      if (code == kLimit) NextArgument(rest, &third);
      CloseArguments(rest);
      if (code == kArcTan2) return std::atan2(x, second);
      if (code == kPow) return std::pow(x, second);
      // The lower bound first, then the upper one: with lo > hi the result is hi (intended).
      return std::min(third, std::max(second, x));
    }
    case kRound: return RoundFunction(rest);
    case kRandom: return RandomFunction(rest);
    case kIf: return IfFunction(rest);
    case kCir: return CirFunction(rest);
    case kErr: case kScore: return ErrFunction(code, rest);
    case kStrLen: case kChr: case kFind: case kStrToNum: return StringFunction(code, rest);
    case kRangeSum: case kRangeMean: case kRangeMin: case kRangeMax: case kRangeStdDev:
      return RangeFunction(code, rest);
    default: return 0;
  }
}

double FormulaScanner::ListFunction(int32_t code, CREFString& rest) {
  OpenArguments(rest);
  ValueStatistics values;
  double value = Variable(rest);
  do values.Add(value);
  while (NextArgument(rest, &value));
  CloseArguments(rest);
  switch (code) {
    case kMin: return values.minimum;
    case kMax: return values.maximum;
    case kSum: return values.sum;
    case kMean: return values.sum / values.count;
    default: return values.StandardDeviation();
  }
}

double FormulaScanner::RoundFunction(CREFString& rest) {
  const bool parenthesised = OpenArguments(rest);
  const double x = Variable(rest);
  double decimals = 0;
  if (parenthesised) {
    NextArgument(rest, &decimals);
    CloseArguments(rest);
  }
  const int32_t factor = RoundFactor(AsInt32(decimals));
  double t = x * factor;
  t = t >= 0 ? t + 0.5 : t - 0.5;
  return static_cast<double>(AsInt32(t)) / factor;
}

double FormulaScanner::RandomFunction(CREFString& rest) {
  double low = 0, high = kRandomHigh;
  if (OpenArguments(rest)) {
    if (!NextIs(rest, L')')) {
      low = Variable(rest);
      NextArgument(rest, &high);
    }
    CloseArguments(rest);
  }
  return low + (high - low) * (CRandom32::Shared().Next() / kRandomScale);
}

double FormulaScanner::IfFunction(CREFString& rest) {
  OpenArguments(rest);
  const double x = Variable(rest);
  double low = 0, high = 0, inside = 0, outside = x;
  if (NextArgument(rest, &low) && NextArgument(rest, &high) && NextArgument(rest, &inside))
    NextArgument(rest, &outside);
  CloseArguments(rest);
  return (low <= x && x <= high) ? inside : outside;
}

// At most ten steps each way: a value further out stays outside the range (intended).
double FormulaScanner::CirFunction(CREFString& rest) {
  OpenArguments(rest);
  double x = Variable(rest);
  double low = 0, high = 0;
  if (NextArgument(rest, &low)) NextArgument(rest, &high);
  CloseArguments(rest);
  if (low == high) return x;
  const double width = std::fabs(high - low);
  for (int step = 0; step < kCircleMaxSteps && x > high; ++step) x -= width;
  for (int step = 0; step < kCircleMaxSteps && x < low; ++step) x += width;
  return x;
}

double FormulaScanner::ErrFunction(int32_t code, CREFString& rest) {
  double a = 0, b = 1;
  if (OpenArguments(rest)) {
    a = Variable(rest);
    NextArgument(rest, &b);
    CloseArguments(rest);
  }
  const double error = (a + b == 0) ? 1.0 : (a - b) / ((a + b) * 0.5);
  return code == kErr ? error : 1.0 - error;
}
