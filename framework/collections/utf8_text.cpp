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
bool AppendUtf8(std::string& out, const wchar_t* text, size_t length) {
  bool ascii = true;
  for (size_t i = 0; i < length; ++i) ascii &= static_cast<unsigned>(text[i]) < 0x80;
  const size_t start = out.size();
  if (ascii) {
    out.resize(start + length);
    char* at = out.data() + start;
    for (size_t i = 0; i < length; ++i) at[i] = static_cast<char>(text[i]);
    return true;
  }
  size_t bytes = 0;
  bool exact = true;
  for (size_t i = 0; i < length; ++i) {
    exact &= IsScalarValue(text[i]);
    bytes += Utf8Length(ScalarOrReplacement(text[i]));
  }
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
  return exact;
}

void AppendWideOfUtf8(WideTextBuffer& out, const std::string& utf8) {
  // Every character takes at least one byte: make room for the most, write, then give back the rest.
  const size_t start = out.size();
  const size_t count = utf8.size();
  wchar_t* const begin = out.Extend(count);
  const auto* bytes = reinterpret_cast<const unsigned char*>(utf8.data());
  bool ascii = true;
  for (size_t i = 0; i < count; ++i) ascii &= bytes[i] < 0x80;
  if (ascii) {
    for (size_t i = 0; i < count; ++i) begin[i] = static_cast<wchar_t>(bytes[i]);
    return;
  }
  wchar_t* at = begin;
  size_t i = 0;
  while (i < count) {
    const unsigned lead = bytes[i];
    unsigned c = lead;
    size_t followers = 0;
    if (lead >= 0xF0) {
      c = lead & 0x07u;
      followers = 3;
    } else if (lead >= 0xE0) {
      c = lead & 0x0Fu;
      followers = 2;
    } else if (lead >= 0xC0) {
      c = lead & 0x1Fu;
      followers = 1;
    }
    for (++i; followers > 0 && i < count; --followers, ++i) c = c << 6 | (bytes[i] & 0x3Fu);
    *at++ = static_cast<wchar_t>(c);
  }
  out.Truncate(start + static_cast<size_t>(at - begin));
}
