// The stand-in "Variant" (kinds, conversions between them, assignment) and "StringCollection" (a text given
// through its string setter, split into lines).
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "test_support.h"

namespace {

using namespace test_support;

// A text converts to the number at its start (blanks, sign, digits, fraction, exponent); a real converts to an
// integer toward zero, saturating, NaN giving 0.
TEST(Variant, NumbersFromTextsAndReals) {
  struct Case { SmartPtr<IVariant> value; double asDouble; int32_t asLong; } cases[] = {
      {MakeText(L"12.75"), 12.75, 12},    {MakeText(L"-12.75"), -12.75, -12}, {MakeText(L"  42"), 42, 42},
      {MakeText(L"+7"), 7, 7},            {MakeText(L"-3e2x"), -300, -300},   {MakeText(L"1.5E-1"), 0.15, 0},
      {MakeText(L"12 apples"), 12, 12},   {MakeText(L"abc"), 0, 0},           {MakeText(L""), 0, 0},
      {MakeText(L"#FF"), 0, 0},           {MakeText(L"1e"), 1, 1},            {MakeText(L"-"), 0, 0},
      {MakeText(L"99999999999"), 99999999999.0, std::numeric_limits<int32_t>::max()},
      {MakeDouble(2.9), 2.9, 2},          {MakeDouble(-2.9), -2.9, -2},
      {MakeDouble(1e12), 1e12, std::numeric_limits<int32_t>::max()},
      {MakeDouble(-1e12), -1e12, std::numeric_limits<int32_t>::min()},
      {MakeDouble(2147483647.5), 2147483647.5, 2147483647}, {MakeDouble(std::nan("")), std::nan(""), 0},
      {MakeLong(-7), -7, -7},
  };
  for (const Case& c : cases) {
    const std::wstring shown = DescribeValue(c.value.get());
    if (!std::isnan(c.asDouble)) {
      EXPECT_DOUBLE_EQ(c.value->GetDouble(), c.asDouble) << testing::PrintToString(shown);
    }
    EXPECT_EQ(c.value->GetLong(), c.asLong) << testing::PrintToString(shown);
  }
}

// Assigning takes the kind and value of the source; setters replace them.
TEST(Variant, SettersAndAssignReplaceTheValue) {
  SmartPtr<IComponentCollection> collection = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  SmartPtr<IVariant> holding = MakeHolding(collection.get());
  struct Case { const char* what; SmartPtr<IUnknown> from; const wchar_t* expected; int32_t type; };
  const Case cases[] = {
      {"text", AsUnknown(MakeText(L"12")), L"t'12'", kVariantNotNumber},  // a text holding a number is no number
      {"integer", AsUnknown(MakeLong(9)), L"i9", kVariantInteger},
      {"real", AsUnknown(MakeDouble(0.5)), L"r0.5", kVariantReal},
      {"empty", AsUnknown(MakeVariant()), L"e", kVariantNotNumber},
      {"null", SmartPtr<IUnknown>(), L"e", kVariantNotNumber},
      {"framework string", AsUnknown(MakeString(L"from a string")), L"t'from a string'", kVariantNotNumber},
      {"other object", AsUnknown(collection), L"oGlobalComponentCollection", kVariantNotNumber},
      {"value holding an object", AsUnknown(holding), L"oGlobalComponentCollection", kVariantNotNumber},
  };
  for (const Case& c : cases) {
    SmartPtr<IVariant> value = MakeText(L"old");
    EXPECT_EQ(value->Assign(c.from.get()), S_OK) << c.what;
    EXPECT_EQ(DescribeValue(value.get()), c.expected) << c.what;
    EXPECT_EQ(value->GetType(), c.type) << c.what;
  }
  SmartPtr<IVariant> value = MakeText(L"x");
  value->SetLong(4);
  EXPECT_EQ(DescribeValue(value.get()), L"i4");
  SmartPtr<IString> none;
  EXPECT_EQ(value->GetString(none.Receive()), E_FAIL) << "a number gives no string object";
  EXPECT_FALSE(none);
  SmartPtr<IUnknown> object;
  EXPECT_EQ(value->GetObject(object.Receive()), E_FAIL);
  value->Assign(holding.get());
  ASSERT_EQ(value->GetObject(object.Receive()), S_OK);
  EXPECT_TRUE(object == collection.get()) << "a copied value holds the same object";
}

// Each setter replaces the previous kind entirely: no part of the old value shows through.
TEST(Variant, SuccessiveSettersReplaceTheKind) {
  SmartPtr<IComponentCollection> collection = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  // setter: l SetLong, d SetDouble, s SetString, o Assign an object, n Assign null.
  struct Step { char setter; double number; const wchar_t* text; };
  struct Case { const char* what; std::vector<Step> steps; const wchar_t* expected; double asDouble; int32_t asLong; };
  const Case cases[] = {
      {"real then integer", {{'d', 2.5, nullptr}, {'l', -7, nullptr}}, L"i-7", -7, -7},
      {"integer then real", {{'l', 3, nullptr}, {'d', -0.5, nullptr}}, L"r-0.5", -0.5, 0},
      {"text then integer", {{'s', 0, L"12.5"}, {'l', 4, nullptr}}, L"i4", 4, 4},
      {"object then real", {{'o', 0, nullptr}, {'d', 1e10, nullptr}}, L"r10000000000", 1e10, 2147483647},
      {"integer then text", {{'l', 9, nullptr}, {'s', 0, L"-3.75x"}}, L"t'-3.75x'", -3.75, -3},
      {"real then object", {{'d', 6, nullptr}, {'o', 0, nullptr}}, L"oGlobalComponentCollection", 0, 0},
      {"text then null", {{'s', 0, L"a"}, {'n', 0, nullptr}}, L"e", 0, 0},
  };
  for (const Case& c : cases) {
    SmartPtr<IVariant> value = MakeVariant();
    for (const Step& step : c.steps) {
      switch (step.setter) {
        case 'l': value->SetLong(static_cast<int32_t>(step.number)); break;
        case 'd': value->SetDouble(step.number); break;
        case 's': value->SetString(MakeString(step.text).get()); break;
        case 'o': value->Assign(collection.get()); break;
        default: value->Assign(nullptr); break;
      }
    }
    EXPECT_EQ(DescribeValue(value.get()), c.expected) << c.what;
    EXPECT_DOUBLE_EQ(value->GetDouble(), c.asDouble) << c.what;
    EXPECT_EQ(value->GetLong(), c.asLong) << c.what;
  }
}

// Copying a value copies its text; a framework string, given or assigned, is shared.
TEST(Variant, TextsAreCopiedFromValuesAndSharedFromStrings) {
  SmartPtr<IVariant> source = MakeText(L"abc"), copy = MakeVariant();
  copy->Assign(source.get());
  copy->Assign(copy.get());
  SmartPtr<ICreatableString> text = MakeString(L"shared");
  SmartPtr<IVariant> given = MakeVariant(), assigned = MakeHolding(text.get());
  given->SetString(text.get());
  text->Append(RefOf(L"!"));
  SmartPtr<IString> sourceText;
  source->GetString(sourceText.Receive());
  QueryAs<ICreatableString>(sourceText.get())->Append(RefOf(L"?"));
  EXPECT_EQ(DescribeValue(copy.get()) + DescribeValue(given.get()) + DescribeValue(assigned.get()),
            L"t'abc't'shared!'t'shared!'") << "the copy owns its text, even assigned to itself";
  given->SetString(nullptr);
  EXPECT_EQ(DescribeValue(given.get()), L"e") << "a null string empties the value";
}

using Lines = std::vector<std::wstring>;

Lines LinesOf(IStringCollection* lines) {
  Lines result;
  int32_t count = 0;
  lines->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IUnknown> item;
    lines->get_Item(i, item.Receive());
    result.push_back(TextOf(QueryAs<IString>(item.get())));
  }
  return result;
}

// Made as the text parser makes it: created by name, reset with 0, given the text.
SmartPtr<IStringCollection> LinesFor(const std::wstring& text) {
  SmartPtr<IStringCollection> lines = CreateObjectAs<IStringCollection>(L"StringCollection");
  if (!lines) return lines;
  lines->Reset(0);
  QueryAs<ICreatableString>(lines.get())->SetText(Ref(text));
  return lines;
}

TEST(StringCollectionTest, LineEnds) {
  struct Case { std::wstring text; Lines lines; };
  const Case cases[] = {
      {L"", {}}, {L"a", {L"a"}}, {L"a\nb", {L"a", L"b"}}, {L"a\r\nb", {L"a", L"b"}}, {L"a\rb", {L"a", L"b"}},
      {L"a\r\rb", {L"a", L"", L"b"}}, {L"a\n\rb", {L"a", L"", L"b"}}, {L"a\r\n", {L"a"}}, {L"a\n\n", {L"a", L""}},
      {L" a \t\n b ", {L" a \t", L" b "}},
  };
  for (const Case& c : cases) {
    SmartPtr<IStringCollection> lines = LinesFor(c.text);
    ASSERT_TRUE(lines);
    EXPECT_EQ(LinesOf(lines.get()), c.lines) << testing::PrintToString(c.text);
    EXPECT_EQ(TextOf(QueryAs<IString>(lines.get())), c.text) << "the whole text is kept";
  }
  SmartPtr<IStringCollection> lines = LinesFor(L"one\r\ntwo");
  EXPECT_EQ(lines->Reset(0), S_OK);
  EXPECT_EQ(LinesOf(lines.get()), Lines{});
  EXPECT_EQ(TextOf(QueryAs<IString>(lines.get())), L"");
}

}  // namespace
