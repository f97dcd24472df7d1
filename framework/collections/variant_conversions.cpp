// Text to number conversions of the variant.
#include "variant_conversions.h"

#include <charconv>
#include <cmath>
#include <cwctype>
#include <limits>
#include <string>

double LeadingNumberOf(const wchar_t* text, int32_t length) {
  if (!text || length <= 0) return 0;
  int32_t i = 0;
  while (i < length && std::iswspace(static_cast<wint_t>(text[i]))) ++i;
  // Gather the characters that can belong to a decimal number as ASCII, then parse them in the "C" locale.
  std::string number;
  if (i < length && (text[i] == L'-' || text[i] == L'+')) {
    if (text[i] == L'-') number.push_back('-');
    ++i;
  }
  for (; i < length; ++i) {
    const wchar_t c = text[i];
    const bool exponentSign = (c == L'+' || c == L'-') && !number.empty() && (number.back() == 'e' || number.back() == 'E');
    if ((c >= L'0' && c <= L'9') || c == L'.' || c == L'e' || c == L'E' || exponentSign)
      number.push_back(static_cast<char>(c));
    else
      break;
  }
  double value = 0;
  std::from_chars(number.data(), number.data() + number.size(), value, std::chars_format::general);
  return value;
}

int32_t TruncateToInt32(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 2147483647.0) return std::numeric_limits<int32_t>::max();
  if (value <= -2147483648.0) return std::numeric_limits<int32_t>::min();
  return static_cast<int32_t>(value);
}
