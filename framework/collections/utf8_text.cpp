// Wide text to UTF-8.
#include "utf8_text.h"

bool IsScalarValue(wchar_t c) {
  const unsigned value = static_cast<unsigned>(c);
  return value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

void AppendUtf8(std::string& out, const wchar_t* text, size_t length) {
  for (size_t i = 0; i < length; ++i) {
    const unsigned c = IsScalarValue(text[i]) ? static_cast<unsigned>(text[i]) : 0xFFFDu;
    if (c < 0x80) {
      out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
      out.push_back(static_cast<char>(0xC0 | c >> 6));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | c >> 12));
      out.push_back(static_cast<char>(0x80 | (c >> 6 & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | c >> 18));
      out.push_back(static_cast<char>(0x80 | (c >> 12 & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (c >> 6 & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
  }
}
