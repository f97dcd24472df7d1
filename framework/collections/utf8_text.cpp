// Wide text to UTF-8.
#include "utf8_text.h"

bool IsScalarValue(wchar_t c) {
  const unsigned value = static_cast<unsigned>(c);
  return value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF);
}

namespace {

unsigned ScalarOrReplacement(wchar_t c) { return IsScalarValue(c) ? static_cast<unsigned>(c) : 0xFFFDu; }

size_t Utf8Length(unsigned c) { return c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4; }

}  // namespace

// Two passes: the exact size first, then the bytes written in place (a
// document's text runs to megabytes; appending byte by byte costs several
// times as much). Text that is all ASCII, as most documents are, is copied
// in a loop the compiler vectorises.
void AppendUtf8(std::string& out, const wchar_t* text, size_t length) {
  bool ascii = true;
  for (size_t i = 0; i < length; ++i) ascii &= static_cast<unsigned>(text[i]) < 0x80;
  const size_t start = out.size();
  if (ascii) {
    out.resize(start + length);
    char* at = out.data() + start;
    for (size_t i = 0; i < length; ++i) at[i] = static_cast<char>(text[i]);
    return;
  }
  size_t bytes = 0;
  for (size_t i = 0; i < length; ++i) bytes += Utf8Length(ScalarOrReplacement(text[i]));
  out.resize(start + bytes);
  char* at = out.data() + start;
  for (size_t i = 0; i < length; ++i) {
    const unsigned c = ScalarOrReplacement(text[i]);
    if (c < 0x80) {
      *at++ = static_cast<char>(c);
    } else if (c < 0x800) {
      *at++ = static_cast<char>(0xC0 | c >> 6);
      *at++ = static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      *at++ = static_cast<char>(0xE0 | c >> 12);
      *at++ = static_cast<char>(0x80 | (c >> 6 & 0x3F));
      *at++ = static_cast<char>(0x80 | (c & 0x3F));
    } else {
      *at++ = static_cast<char>(0xF0 | c >> 18);
      *at++ = static_cast<char>(0x80 | (c >> 12 & 0x3F));
      *at++ = static_cast<char>(0x80 | (c >> 6 & 0x3F));
      *at++ = static_cast<char>(0x80 | (c & 0x3F));
    }
  }
}
