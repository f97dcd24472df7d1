// Formatting numbers into a buffer of their own.
#include "strings/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>

#include "strings/c_locale.h"

namespace {

// Texts std::to_chars writes on the stack before they are widened.
constexpr int kNarrowLength = 256;
constexpr int kMaxAutomaticDecimals = 9;
constexpr int kHexMinDigits = 6;
// Below 2^52 a double's rounding error is under a quarter, so a whole product
// stands for the exact decimal value (see SetExactFixedPoint).
constexpr double kExactWholeLimit = 4503599627370496.0;
constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,
                                   1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
constexpr int kMaxExactDecimals = static_cast<int>(std::size(kPowersOfTen)) - 1;

// The smallest count of decimals (0 to 8) that shows the value within 1e-8, else 9.
// Only the fraction is looked at, not its distance to the next integer, so a
// value whose scaled product falls just under a whole number gets more
// decimals than it needs (0.29 prints as "0.290"): intended, it is how numbers
// have always been written to files.
int AutomaticDecimals(double value) {
  const double magnitude = std::fabs(value);
  for (int k = 0; k < kMaxAutomaticDecimals; ++k) {
    double whole = 0;
    if (std::modf(magnitude * kPowersOfTen[k], &whole) < 1e-8) return k;
  }
  return kMaxAutomaticDecimals;
}

}  // namespace

void NumberText::SetNarrow(const char* begin, const char* end) {
  const auto length = static_cast<size_t>(end - begin);
  wchar_t* out = m_Small;
  if (length > static_cast<size_t>(kSmallLength)) {
    m_Large.resize(length);
    out = m_Large.data();
  }
  std::copy(begin, end, out);  // digits, sign, point, "inf" or "nan": ASCII only
  m_View = CREFString(out, static_cast<int32_t>(length));
}

void NumberText::SetInteger(int32_t value) {
  char narrow[16];
  const std::to_chars_result written = std::to_chars(narrow, narrow + sizeof(narrow), value);
  SetNarrow(narrow, written.ptr);
}

void NumberText::SetHex(uint32_t value) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  char reversed[8];
  int count = 0;
  do {
    reversed[count++] = kDigits[value & 0xF];
    value >>= 4;
  } while (value != 0);
  wchar_t* out = m_Small;
  *out++ = L'#';
  for (int pad = count; pad < kHexMinDigits; ++pad) *out++ = L'0';
  while (count > 0) *out++ = static_cast<wchar_t>(reversed[--count]);
  m_View = CREFString(m_Small, static_cast<int32_t>(out - m_Small));
}

// When the double product p = |value| * 10^decimals is a whole number below
// 2^52, the exact product lies within a quarter of p, so "%.*f" (which rounds
// the exact value) prints the digits of p with the point put in: no rounding
// decision is left to make. Most stored values (whole numbers, halves,
// quarters, short decimals) take this way, which costs a tenth of a general
// formatter's.
bool NumberText::SetExactFixedPoint(double value, int decimals) {
  if (decimals > kMaxExactDecimals) return false;
  const double product = std::fabs(value) * kPowersOfTen[decimals];
  if (!(product < kExactWholeLimit) || product != std::floor(product)) return false;  // NaN fails too
  char digits[24];
  const std::to_chars_result written =
      std::to_chars(digits, digits + sizeof(digits), static_cast<uint64_t>(product));
  const int count = static_cast<int>(written.ptr - digits);
  const int wholeDigits = count - decimals;
  wchar_t* out = m_Small;
  if (std::signbit(value)) *out++ = L'-';
  if (wholeDigits <= 0) *out++ = L'0';
  out = std::copy(digits, digits + std::max(wholeDigits, 0), out);
  if (decimals > 0) {
    *out++ = L'.';
    out = std::fill_n(out, std::max(-wholeDigits, 0), L'0');
    out = std::copy(digits + std::max(wholeDigits, 0), written.ptr, out);
  }
  m_View = CREFString(m_Small, static_cast<int32_t>(out - m_Small));
  return true;
}

// std::to_chars gives exactly printf's "%.*f" text in the "C" locale and
// costs several times less. Texts longer than its buffer (huge values with
// many decimals) go through printf rather than failing.
void NumberText::SetFixedPoint(double value, int decimals) {
  if (SetExactFixedPoint(value, decimals)) return;
  char narrow[kNarrowLength];
  const std::to_chars_result written =
      std::to_chars(narrow, narrow + kNarrowLength, value, std::chars_format::fixed, decimals);
  if (written.ec == std::errc()) {
    SetNarrow(narrow, written.ptr);
    return;
  }
  CLocaleScope numbersAsInC;  // printf follows the process locale
  const int needed = std::snprintf(nullptr, 0, "%.*f", decimals, value);
  m_Large.resize(static_cast<size_t>(std::max(needed, 0)) + 1);
  const int count = _swprintf(m_Large.data(), static_cast<unsigned>(m_Large.size()), L"%.*f", decimals, value);
  m_View = CREFString(m_Large.data(), count);
}

void NumberText::SetAutomatic(double value) { SetFixedPoint(value, AutomaticDecimals(value)); }
