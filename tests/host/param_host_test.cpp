// The host library: values parsed and printed as the module does, typed access to a set, UTF-8 at the edges.
#include "param_host.h"

#include <gtest/gtest.h>

namespace {

using paramhost::Value;

class ParamHostTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(paramhost::Start(".").ok()); }
};

TEST_F(ParamHostTest, ParseKeepsNumbersAsNumbersAndTheRestAsText) {
  struct Case {
    const wchar_t* text;
    Value::Kind kind;
    std::wstring printed;
  } cases[] = {
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

TEST_F(ParamHostTest, TypedAccessReadsAssignsAndAdds) {
  paramhost::ParameterSet set = paramhost::ParameterSet::New();
  ASSERT_TRUE(set.valid());
  set[L"Speed"] = 12.5;
  set[L"Mode"] = L"auto";
  ASSERT_TRUE(set.Put(L"Gain", Value::Integer(3), 0x10, nullptr).ok());
  set[L"gain"] = 4;  // replaces the value of "Gain"; its flags stay
  EXPECT_EQ(set.Count(), 3);
  EXPECT_EQ(set[L"SPEED"].Number(), 12.5);
  EXPECT_EQ(set[L"Mode"].Text(), L"auto");
  EXPECT_EQ(set.At(2).flags, 0x10);
  EXPECT_EQ(set[L"Gain"].Text(), L"4");
  EXPECT_FALSE(set[L"Missing"].Exists());
  EXPECT_TRUE(set.Holds(L"Speed>=12"));
  EXPECT_FALSE(set.Holds(L"Mode='manual'"));
  EXPECT_EQ(paramhost::Evaluate(L"Speed*2+Gain", set)->ToText(), L"29");
  paramhost::TemplateOptions options;
  options.opening = L"{";
  options.closing = L"}";
  EXPECT_EQ(*paramhost::FillTemplate(L"{Mode} at {Speed}", set, options), L"auto at 12.5\r\n");
}

TEST(ParamHostTextTest, Utf8RoundTripsAndStrayBytesStandForThemselves) {
  const std::wstring text = L"Gr\u00fc\u00dfe \u20ac\U0001D11E";
  const std::string bytes = "Gr\xC3\xBC\xC3\x9F" "e \xE2\x82\xAC\xF0\x9D\x84\x9E";
  EXPECT_EQ(paramhost::ToUtf8(text), bytes);
  EXPECT_EQ(paramhost::FromUtf8(bytes), text);
  EXPECT_EQ(paramhost::FromUtf8("a\xFF" "b\xC3"), std::wstring(L"a\u00ff" L"b\u00c3"));
}

}  // namespace
