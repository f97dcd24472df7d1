// NumberText: the text of one number, formatted into a buffer of its own.
//
// Every number the module writes (to files, to strings) is formatted here, in
// the "C" conventions whatever the process locale: integers as printf's "%d",
// reals as "%.*f", flags and colours as "#%06X". The text lives in the object,
// so a caller that only passes the text on (an XML or CSV writer taking a
// view) needs no string object and no allocation for it.
#pragma once

#include <cstdint>
#include <string>

#include "strings/ref_string.h"

class NumberText {
 public:
  NumberText() = default;
  NumberText(const NumberText&) = delete;
  NumberText& operator=(const NumberText&) = delete;

  // The decimal text of `value`.
  void SetInteger(int32_t value);
  // `value` with `decimals` decimals (0 or more), rounded as "%.*f" rounds.
  void SetFixedPoint(double value, int decimals);
  // `value` with the fewest decimals (0 to 8) that show it within 1e-8, else 9.
  void SetAutomatic(double value);
  // "#" and at least six upper-case hexadecimal digits.
  void SetHex(uint32_t value);

  // The text of the last Set; valid while this object lives and is not set again.
  CREFString view() const { return m_View; }

 private:
  static constexpr int32_t kSmallLength = 64;

  // Writes an exact fixed-point text straight from the digits of value * 10^decimals; false when
  // that product is not a whole number small enough to be exact, and nothing was written.
  bool SetExactFixedPoint(double value, int decimals);
  void SetNarrow(const char* begin, const char* end);

  wchar_t m_Small[kSmallLength];
  std::wstring m_Large;  // texts longer than m_Small (huge values, many decimals)
  CREFString m_View;
};
