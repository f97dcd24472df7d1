// Wide text (UTF-32) to and from UTF-8.
#include "wide_text.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsScalarValue(char32_t c) { return c < 0xD800 || (c > 0xDFFF && c <= 0x10FFFF); }

// Length of the valid UTF-8 sequence at `at` and its character, or 0 when none starts there.
size_t DecodeSequence(std::string_view bytes, size_t at, char32_t* character) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(bytes[at + i]); };
  const unsigned char lead = byte(0);
  size_t length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 0;
  if (length == 0 || at + length > bytes.size()) return 0;
  char32_t value = length == 1 ? lead : lead & (0x7F >> length);
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    value = (value << 6) | (byte(i) & 0x3F);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  if (value < kSmallest[length] || !IsScalarValue(value)) return 0;  // overlong or not a character
  *character = value;
  return length;
}

}  // namespace

std::string Utf8Of(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  for (const wchar_t wide : text) {
    char32_t c = static_cast<char32_t>(wide);
    if (!IsScalarValue(c)) c = kReplacement;
    if (c < 0x80) {
      out += static_cast<char>(c);
    } else if (c < 0x800) {
      out += static_cast<char>(0xC0 | (c >> 6));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      out += static_cast<char>(0xE0 | (c >> 12));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
      out += static_cast<char>(0xF0 | (c >> 18));
      out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (c & 0x3F));
    }
  }
  return out;
}

std::wstring WideOf(std::string_view bytes) {
  std::wstring out;
  out.reserve(bytes.size());
  for (size_t at = 0; at < bytes.size();) {
    char32_t c = 0;
    const size_t length = DecodeSequence(bytes, at, &c);
    out += static_cast<wchar_t>(length ? c : static_cast<unsigned char>(bytes[at]));
    at += length ? length : 1;
  }
  return out;
}
