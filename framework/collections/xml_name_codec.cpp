// Reversible escaping of element names.
#include "xml_name_codec.h"

#include <cwchar>

namespace {

constexpr wchar_t kEmptyName[] = L"_x_";
constexpr int kMinHexDigits = 4;
constexpr int kMaxHexDigits = 8;

bool InRange(unsigned c, unsigned first, unsigned last) { return c >= first && c <= last; }

// The XML NameStartChar set within the 16-bit range, without ":".
bool IsNameStart(unsigned c) {
  return InRange(c, 'A', 'Z') || InRange(c, 'a', 'z') || c == '_' || InRange(c, 0xC0, 0xD6) ||
         InRange(c, 0xD8, 0xF6) || InRange(c, 0xF8, 0x2FF) || InRange(c, 0x370, 0x37D) ||
         InRange(c, 0x37F, 0x1FFF) || InRange(c, 0x200C, 0x200D) || InRange(c, 0x2070, 0x218F) ||
         InRange(c, 0x2C00, 0x2FEF) || InRange(c, 0x3001, 0xD7FF) || InRange(c, 0xF900, 0xFDCF) ||
         InRange(c, 0xFDF0, 0xFFFD);
}

bool IsNameChar(unsigned c) {
  return IsNameStart(c) || InRange(c, '0', '9') || c == '-' || c == '.' || c == 0xB7 || InRange(c, 0x300, 0x36F) ||
         InRange(c, 0x203F, 0x2040);
}

void AppendEscape(std::wstring& out, unsigned c) {
  wchar_t digits[16];
  std::swprintf(digits, 16, L"_x%04X_", c);
  out += digits;
}

int HexValue(wchar_t c) {
  if (c >= L'0' && c <= L'9') return c - L'0';
  if (c >= L'A' && c <= L'F') return c - L'A' + 10;
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  return -1;
}

// Reads an escape at `at` ("_x" + hex digits + "_"); its length, or 0 when there is none.
size_t ReadEscape(const std::wstring& text, size_t at, unsigned* value) {
  if (text.compare(at, 2, L"_x") != 0) return 0;
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

std::wstring EncodeXMLName(tagREFString name) {
  if (name.length <= 0 || !name.text) return kEmptyName;
  std::wstring out;
  out.reserve(static_cast<size_t>(name.length));
  for (int32_t i = 0; i < name.length; ++i) {
    const unsigned c = static_cast<unsigned>(name.text[i]);
    const bool allowed = i == 0 ? IsNameStart(c) : IsNameChar(c);
    const bool startsEscape = c == '_' && i + 1 < name.length && name.text[i + 1] == L'x';
    if (allowed && !startsEscape) {
      out.push_back(name.text[i]);
    } else {
      AppendEscape(out, c);
    }
  }
  return out;
}

std::wstring DecodeXMLName(const std::wstring& encoded) {
  if (encoded == kEmptyName) return std::wstring();
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
