// The stand-in "Variant": kinds, conversions between them, and assignment.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "test_support.h"

namespace {

using namespace test_support;

// An object that shows a text through IString but is no framework string (as an expression does).
class CShownText final : public CObjectImpl<CShownText, IString> {
 public:
  static constexpr wchar_t kObjectName[] = L"ShownText";
  static constexpr InterfaceEntry<CShownText> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CShownText, IObjectInfo>},
      {&IID_IString, InterfaceOf<CShownText, IString>},
  };
  HRESULT GetBuffer(const wchar_t** text, int32_t* length) override {
    *text = L"shown";
    *length = 5;
    return S_OK;
  }
};

// A text converts to the number at its start (blanks, sign, digits, fraction, exponent).
TEST(Variant, TextToNumbers) {
  struct Case {
    const wchar_t* text;
    double asDouble;
    int32_t asLong;
  } cases[] = {
      {L"12.75", 12.75, 12},    {L"-12.75", -12.75, -12}, {L"  42", 42, 42},       {L"+7", 7, 7},
      {L"-3e2x", -300, -300},   {L"1.5E-1", 0.15, 0},     {L"12 apples", 12, 12},  {L"abc", 0, 0},
      {L"", 0, 0},              {L"#FF", 0, 0},           {L"1e", 1, 1},           {L"-", 0, 0},
      {L"99999999999", 99999999999.0, std::numeric_limits<int32_t>::max()},
  };
  for (const Case& c : cases) {
    SmartPtr<IVariant> value = MakeText(c.text);
    EXPECT_DOUBLE_EQ(value->GetDouble(), c.asDouble) << testing::PrintToString(std::wstring(c.text));
    EXPECT_EQ(value->GetLong(), c.asLong) << testing::PrintToString(std::wstring(c.text));
  }
}

// A real number converts to an integer toward zero, saturating; NaN gives 0.
TEST(Variant, RealToLong) {
  struct Case {
    double value;
    int32_t expected;
  } cases[] = {
      {2.9, 2}, {-2.9, -2}, {0.0, 0}, {1e12, std::numeric_limits<int32_t>::max()},
      {-1e12, std::numeric_limits<int32_t>::min()}, {std::nan(""), 0}, {2147483647.5, 2147483647},
  };
  for (const Case& c : cases) EXPECT_EQ(MakeDouble(c.value)->GetLong(), c.expected) << c.value;
  EXPECT_DOUBLE_EQ(MakeLong(-7)->GetDouble(), -7.0);
}

// Assigning takes the kind and value of the source; setters replace them.
TEST(Variant, SettersAndAssignReplaceTheValue) {
  SmartPtr<IComponentCollection> collection = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  SmartPtr<IVariant> holding = MakeVariant();
  holding->Assign(collection.get());
  auto unknown = [](const auto& pointer) { return SmartPtr<IUnknown>(pointer.get()); };
  struct Case {
    const char* what;
    SmartPtr<IUnknown> from;
    const wchar_t* expected;
    int32_t type;
  };
  const Case cases[] = {
      {"text", unknown(MakeText(L"12")), L"t'12'", kVariantNotNumber},  // a text holding a number is no number
      {"integer", unknown(MakeLong(9)), L"i9", kVariantInteger},
      {"real", unknown(MakeDouble(0.5)), L"r0.5", kVariantReal},
      {"empty", unknown(MakeVariant()), L"e", kVariantNotNumber},
      {"null", SmartPtr<IUnknown>(), L"e", kVariantNotNumber},
      {"framework string", unknown(MakeString(L"from a string")), L"t'from a string'", kVariantNotNumber},
      {"other object", unknown(collection), L"oGlobalComponentCollection", kVariantNotNumber},
      {"object showing a text", SmartPtr<IUnknown>(NewObject<CShownText>()->GetUnknown()), L"oShownText", kVariantNotNumber},
      {"value holding an object", unknown(holding), L"oGlobalComponentCollection", kVariantNotNumber},
  };
  for (const Case& c : cases) {
    SmartPtr<IVariant> value = MakeText(L"old");
    EXPECT_EQ(value->Assign(c.from.get()), S_OK) << c.what;
    EXPECT_EQ(DescribeValue(value.get()), c.expected) << c.what;
    EXPECT_EQ(value->GetType(), c.type) << c.what;
  }
  SmartPtr<IVariant> value = MakeText(L"x");
  value->SetDouble(1.25);
  EXPECT_EQ(DescribeValue(value.get()), L"r1.25");
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

// Copying a value copies its text; a framework string, given or assigned, is shared.
TEST(Variant, TextsAreCopiedFromValuesAndSharedFromStrings) {
  SmartPtr<IVariant> source = MakeText(L"abc");
  SmartPtr<IVariant> copy = MakeVariant();
  copy->Assign(source.get());
  SmartPtr<IString> sourceText, copyText;
  source->GetString(sourceText.Receive());
  copy->GetString(copyText.Receive());
  EXPECT_FALSE(copyText == sourceText.get()) << "the copy does not share the text object";
  copy->Assign(copy.get());
  EXPECT_EQ(DescribeValue(copy.get()), L"t'abc'") << "assigning a value to itself keeps it";

  SmartPtr<ICreatableString> text = MakeString(L"shared");
  SmartPtr<IVariant> given = MakeVariant(), assigned = MakeVariant();
  given->SetString(text.get());
  assigned->Assign(text.get());
  for (IVariant* value : {given.get(), assigned.get()}) {
    SmartPtr<IString> held;
    ASSERT_EQ(value->GetString(held.Receive()), S_OK);
    EXPECT_TRUE(held == text.get()) << "the same string object, not a copy";
  }
  text->Append(RefOf(L"!"));
  EXPECT_EQ(DescribeValue(given.get()) + DescribeValue(assigned.get()), L"t'shared!'t'shared!'");
  given->SetString(nullptr);
  EXPECT_EQ(DescribeValue(given.get()), L"e") << "a null string empties the value";
}

}  // namespace
