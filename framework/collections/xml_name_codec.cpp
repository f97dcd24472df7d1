// Reversible escaping of element names.
#include "xml_name_codec.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <iterator>

namespace {

constexpr wchar_t kEmptyName[] = L"_x_";
constexpr int kMinHexDigits = 4;
constexpr int kMaxHexDigits = 8;

constexpr bool InRange(unsigned c, unsigned first, unsigned last) { return c >= first && c <= last; }

// What each ASCII character may be in a name: a start character, a following one, or neither.
constexpr unsigned char kNameStarts = 1;
constexpr unsigned char kNameFollows = 2;
constexpr auto kAsciiNameChars = [] {
  std::array<unsigned char, 128> kinds{};
  for (unsigned c = 0; c < 128; ++c) {
    if (InRange(c, 'A', 'Z') || InRange(c, 'a', 'z') || c == '_') kinds[c] = kNameStarts | kNameFollows;
    if (InRange(c, '0', '9') || c == '-' || c == '.') kinds[c] = kNameFollows;
  }
  return kinds;
}();

// The XML NameStartChar set within the 16-bit range, without ":".
bool IsNameStart(unsigned c) {
  if (c < 128) return kAsciiNameChars[c] & kNameStarts;
  return InRange(c, 0xC0, 0xD6) || InRange(c, 0xD8, 0xF6) || InRange(c, 0xF8, 0x2FF) || InRange(c, 0x370, 0x37D) ||
         InRange(c, 0x37F, 0x1FFF) || InRange(c, 0x200C, 0x200D) || InRange(c, 0x2070, 0x218F) ||
         InRange(c, 0x2C00, 0x2FEF) || InRange(c, 0x3001, 0xD7FF) || InRange(c, 0xF900, 0xFDCF) ||
         InRange(c, 0xFDF0, 0xFFFD);
}

bool IsNameChar(unsigned c) {
  if (c < 128) return kAsciiNameChars[c] & kNameFollows;
  return IsNameStart(c) || c == 0xB7 || InRange(c, 0x300, 0x36F) || InRange(c, 0x203F, 0x2040);
}

void AppendEscape(WideTextBuffer& out, unsigned c) {
  wchar_t digits[16];
  const int length = std::swprintf(digits, 16, L"_x%04X_", c);
  out.Append(digits, static_cast<size_t>(std::max(length, 0)));
}

int HexValue(wchar_t c) {
  if (c >= L'0' && c <= L'9') return c - L'0';
  if (c >= L'A' && c <= L'F') return c - L'A' + 10;
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  return -1;
}

// Reads an escape at `at` ("_x" + hex digits + "_"); its length, or 0 when there is none.
size_t ReadEscape(const std::wstring& text, size_t at, unsigned* value) {
  if (text[at] != L'_' || at + 1 >= text.size() || text[at + 1] != L'x') return 0;
  size_t i = at + 2;
  unsigned result = 0;
  int digits = 0;
  while (i < text.size() && digits < kMaxHexDigits && HexValue(text[i]) >= 0) {
    result = result << 4 | static_cast<unsigned>(HexValue(text[i]));
    ++digits;
    ++i;
  }
  if (digits < kMinHexDigits || i >= text.size() || text[i] != L'_') return 0;
  *value = result;
  return i + 1 - at;
}

}  // namespace

void AppendEncodedXMLName(WideTextBuffer& out, tagREFString name) {
  if (name.length <= 0 || !name.text) {
    out.Append(kEmptyName, std::size(kEmptyName) - 1);
    return;
  }
  // Characters that stand for themselves are appended a run at a time.
  int32_t runStart = 0;
  for (int32_t i = 0; i < name.length; ++i) {
    const unsigned c = static_cast<unsigned>(name.text[i]);
    const bool allowed = i == 0 ? IsNameStart(c) : IsNameChar(c);
    const bool startsEscape = c == '_' && i + 1 < name.length && name.text[i + 1] == L'x';
    if (allowed && !startsEscape) continue;
    out.Append(name.text + runStart, static_cast<size_t>(i - runStart));
    AppendEscape(out, c);
    runStart = i + 1;
  }
  out.Append(name.text + runStart, static_cast<size_t>(name.length - runStart));
}

std::wstring DecodeXMLName(std::wstring encoded) {
  if (encoded == kEmptyName) return std::wstring();
  if (encoded.find(L"_x") == std::wstring::npos) return encoded;  // no escape: most names
  std::wstring out;
  out.reserve(encoded.size());
  for (size_t i = 0; i < encoded.size();) {
    unsigned value = 0;
    const size_t length = ReadEscape(encoded, i, &value);
    if (length == 0) {
      out.push_back(encoded[i++]);
    } else {
      out.push_back(static_cast<wchar_t>(value));
      i += length;
    }
  }
  return out;
}
