// The tool's UTF-8 conversions: arguments in, explanations out.
#include <gtest/gtest.h>

#include "wide_text.h"

namespace {

TEST(WideText, Utf8BothWays) {
  struct Case {
    std::string bytes;
    std::wstring text;
  };
  const Case cases[] = {
      {"Speed", L"Speed"},
      {"\xC3\xA9t\xC3\xA9", L"\u00E9t\u00E9"},                // two-byte sequences
      {"\xE2\x82\xAC", L"\u20AC"},                            // three bytes
      {"\xF0\x9F\x98\x80", std::wstring(1, wchar_t(0x1F600))},  // four bytes
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bytes);
    EXPECT_EQ(WideOf(c.bytes), c.text);
    EXPECT_EQ(Utf8Of(c.text), c.bytes);
  }
}

// Bytes that start no valid sequence are taken one by one; characters that are no scalar value become U+FFFD.
TEST(WideText, InvalidInputIsKept) {
  struct Case {
    std::string bytes;
    std::wstring text;
  };
  const Case cases[] = {
      {"a\xFF" "b", L"a\u00FF" L"b"},     // a byte that starts nothing
      {"\xC3", L"\u00C3"},                // a sequence cut short
      {"\xC0\xAF", L"\u00C0\u00AF"},      // an overlong "/"
      {"\xED\xA0\x80", L"\u00ED\u00A0\u0080"},  // a surrogate
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bytes);
    EXPECT_EQ(WideOf(c.bytes), c.text);
  }
  EXPECT_EQ(Utf8Of(std::wstring(1, wchar_t(0xD800))), "\xEF\xBF\xBD");
  EXPECT_EQ(Utf8Of(std::wstring(1, wchar_t(0x110000))), "\xEF\xBF\xBD");
}

}  // namespace
