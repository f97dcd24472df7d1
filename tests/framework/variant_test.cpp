// The stand-in "Variant": kinds, conversions between them, and assignment.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "test_support.h"

namespace {

using namespace test_support;

TEST(Variant, KindsAnswered) {
  struct Case {
    const char* what;
    SmartPtr<IVariant> value;
    int32_t type;
    int32_t isString;
    int32_t isObject;
  } cases[] = {
      {"empty", MakeVariant(), kVariantNotNumber, 0, 0},
      {"long", MakeLong(3), kVariantInteger, 0, 0},
      {"double", MakeDouble(3.5), kVariantReal, 0, 0},
      {"text", MakeText(L"12"), kVariantNotNumber, 1, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.value->GetType(), c.type) << c.what;
    EXPECT_EQ(c.value->IsString(), c.isString) << c.what;
    EXPECT_EQ(c.value->IsObject(), c.isObject) << c.what;
  }
}

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
    EXPECT_DOUBLE_EQ(value->GetDouble(), c.asDouble) << "text '" << testing::PrintToString(std::wstring(c.text));
    EXPECT_EQ(value->GetLong(), c.asLong) << "text '" << testing::PrintToString(std::wstring(c.text));
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

TEST(Variant, SettersReplaceTheKind) {
  SmartPtr<IVariant> value = MakeText(L"x");
  value->SetDouble(1.25);
  EXPECT_EQ(value->IsString(), 0);
  EXPECT_EQ(value->GetType(), kVariantReal);
  value->SetLong(4);
  EXPECT_EQ(value->GetType(), kVariantInteger);
  EXPECT_DOUBLE_EQ(value->GetDouble(), 4.0);
  SmartPtr<IString> none;
  EXPECT_EQ(value->GetString(none.Receive()), E_FAIL) << "a number gives no string object";
  EXPECT_FALSE(none);
  SmartPtr<IUnknown> object;
  EXPECT_EQ(value->GetObject(object.Receive()), E_FAIL);
}

TEST(Variant, SetStringSharesTheStringObject) {
  SmartPtr<ICreatableString> text = MakeString(L"shared");
  SmartPtr<IVariant> value = MakeVariant();
  value->SetString(text.get());
  SmartPtr<IString> held;
  ASSERT_EQ(value->GetString(held.Receive()), S_OK);
  EXPECT_TRUE(held == text.get());
  text->Append(RefOf(L"!"));
  EXPECT_EQ(TextOf(held), L"shared!");
  value->SetString(nullptr);
  EXPECT_EQ(value->IsString(), 0) << "a null string empties the value";
}

TEST(Variant, AssignCopiesValuesAndTexts) {
  SmartPtr<IVariant> source = MakeText(L"abc");
  SmartPtr<IVariant> copy = MakeVariant();
  ASSERT_EQ(copy->Assign(source.get()), S_OK);
  SmartPtr<IString> sourceText, copyText;
  source->GetString(sourceText.Receive());
  copy->GetString(copyText.Receive());
  EXPECT_EQ(TextOf(copyText), L"abc");
  EXPECT_FALSE(copyText == sourceText.get()) << "the copy does not share the text object";

  copy->Assign(MakeLong(9).get());
  EXPECT_EQ(copy->GetType(), kVariantInteger);
  EXPECT_EQ(copy->GetLong(), 9);
  copy->Assign(MakeDouble(0.5).get());
  EXPECT_EQ(copy->GetType(), kVariantReal);
  copy->Assign(MakeVariant().get());
  EXPECT_EQ(copy->GetType(), kVariantNotNumber);
  EXPECT_EQ(copy->IsString(), 0);

  SmartPtr<ICreatableString> text = MakeString(L"from a string");
  copy->Assign(text.get());
  EXPECT_EQ(copy->IsString(), 1) << "a framework string becomes the value's text";
  SmartPtr<IString> taken;
  copy->GetString(taken.Receive());
  EXPECT_TRUE(taken == text.get()) << "the same string object, not a copy";
  text->Append(RefOf(L" and more"));
  EXPECT_EQ(TextOf(taken), L"from a string and more");

  copy->Assign(copy.get());
  EXPECT_EQ(copy->IsString(), 1) << "assigning a value to itself keeps it";
  copy->Assign(nullptr);
  EXPECT_EQ(copy->IsString(), 0);
}

TEST(Variant, AssignHoldsOtherObjects) {
  SmartPtr<IComponentCollection> collection = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  SmartPtr<IVariant> value = MakeVariant();
  value->Assign(collection.get());
  EXPECT_EQ(value->IsObject(), 1);
  EXPECT_EQ(value->GetType(), kVariantNotNumber);
  SmartPtr<IUnknown> held;
  ASSERT_EQ(value->GetObject(held.Receive()), S_OK);
  EXPECT_TRUE(held == collection.get());

  SmartPtr<IVariant> copy = MakeVariant();
  copy->Assign(value.get());
  SmartPtr<IUnknown> copied;
  copy->GetObject(copied.Receive());
  EXPECT_TRUE(copied == collection.get()) << "copying a value that holds an object holds the same object";
}

}  // namespace
