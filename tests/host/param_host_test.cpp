// The host library: values parsed and printed as the module does, UTF-8 at the edges. (Typed access to a
// set is exercised end to end by the paramtool tests.)
#include "param_host.h"

#include <gtest/gtest.h>

namespace {

using paramhost::Value;

class ParamHostTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(paramhost::Start(".").ok()); }
};

TEST_F(ParamHostTest, ParseKeepsNumbersAsNumbersAndTheRestAsText) {
  struct Case { const wchar_t* text; Value::Kind kind; std::wstring printed; } cases[] = {
      {L"12", Value::Kind::kInteger, L"12"},   {L"-0.5", Value::Kind::kReal, L"-0.5"},
      {L"1e3", Value::Kind::kReal, L"1000"},   {L".25", Value::Kind::kReal, L"0.25"},
      {L"inf", Value::Kind::kText, L"inf"},    {L"12abc", Value::Kind::kText, L"12abc"},
      {L"0x10", Value::Kind::kText, L"0x10"},  {L"", Value::Kind::kText, L""},
  };
  for (const Case& c : cases) {
    const Value value = Value::Parse(c.text);
    EXPECT_EQ(value.kind(), c.kind) << paramhost::ToUtf8(c.text);
    EXPECT_EQ(value.ToText(), c.printed) << paramhost::ToUtf8(c.text);
  }
  EXPECT_EQ(Value::Number(1.0 / 3).ToText(), L"0.333333333");  // automatic decimals, as in files
}

TEST(ParamHostTextTest, Utf8RoundTripsAndStrayBytesStandForThemselves) {
  const std::wstring text = L"Gr\u00fc\u00dfe \u20ac\U0001D11E";
  const std::string bytes = "Gr\xC3\xBC\xC3\x9F" "e \xE2\x82\xAC\xF0\x9D\x84\x9E";
  EXPECT_EQ(paramhost::ToUtf8(text), bytes);
  EXPECT_EQ(paramhost::FromUtf8(bytes), text);
  EXPECT_EQ(paramhost::FromUtf8("a\xFF" "b\xC3"), std::wstring(L"a\u00ff" L"b\u00c3"));
}

}  // namespace
