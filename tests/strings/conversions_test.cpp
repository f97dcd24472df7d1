// Tests of the conversions between text, numbers, framework strings and variants.
#include "strings/conversions.h"

#include <gtest/gtest.h>

#include <cmath>

#include "test_support.h"

namespace {

using namespace test_support;

std::wstring Adopted(IString* string) { return TextOf(SmartPtr<IString>::Adopt(string)); }

TEST(ISCreateVariantPrecision, NumbersAndPlainNumberTexts) {
  struct Case { SmartPtr<IVariant> value; int16_t precision; std::wstring expected; } cases[] = {
      // Automatic decimals (-1): the fewest that leave no fraction, at most nine.
      {MakeDouble(2.5), -1, L"2.5"}, {MakeDouble(3.0), -1, L"3"}, {MakeDouble(1.0 / 3.0), -1, L"0.333333333"},
      {MakeDouble(-0.125), -1, L"-0.125"},
      {MakeDouble(0.29), -1, L"0.290"},  // 0.29 * 100 falls just under 29, so one decimal more
      // Fixed decimals, and the integer form of a long at precision 0 and -1.
      {MakeDouble(2.5), 2, L"2.50"}, {MakeDouble(2.7), 0, L"3"}, {MakeLong(7), 0, L"7"}, {MakeLong(-42), -1, L"-42"},
      {MakeLong(7), 2, L"7.00"},
      // Values whose scaled product is whole are written from its digits; the others rounded as
      // printf rounds the exact binary value (ties to even, 1.005 is just below 1.005).
      {MakeDouble(0.0625), 4, L"0.0625"}, {MakeDouble(-7.0), 3, L"-7.000"}, {MakeDouble(-0.0), 2, L"-0.00"},
      {MakeDouble(123.125), -1, L"123.125"}, {MakeDouble(0.1), -1, L"0.1"}, {MakeDouble(2.5), 0, L"2"},
      {MakeDouble(3.5), 0, L"4"}, {MakeDouble(0.125), 2, L"0.12"}, {MakeDouble(1.005), 2, L"1.00"},
      {MakeDouble(-1e-9), -1, L"-0"},  // within 1e-8 of a whole number: no decimals, sign kept
      {MakeDouble(4503599627370495.5), 1, L"4503599627370495.5"}, {MakeDouble(1e22), -1, L"10000000000000000000000"},
      {MakeDouble(HUGE_VAL), 2, L"inf"}, {MakeDouble(-HUGE_VAL), -1, L"-inf"},
      // -16 gives the hexadecimal form; other precisions below -1 one byte in binary.
      {MakeLong(255), -16, L"#0000FF"}, {MakeDouble(2.9), -16, L"#000002"}, {MakeLong(4660), -22, L"00010010"},
      {MakeLong(0x12345678), -42, L"00010010"}, {MakeLong(0x12345678), -24, L"00010010"},
      {MakeLong(0x12345678), -32, L"00110100"}, {MakeLong(0x12345678), -23, L"00110100"},
      {MakeLong(0x12345678), -5, L"01111000"},
      // A text that is a plain number is formatted as one; any other stays as it is.
      {MakeText(L"000000042"), -1, L"42"},
      {MakeText(L"0000000042"), -1, L"0000000042"},  // ten characters: stays a text
      {MakeText(L"12.50"), -1, L"12.5"},
      {MakeText(L"00000000007.5"), -1, L"7.5"},  // decimals have no length limit
      {MakeText(L"7"), 2, L"7.00"}, {MakeText(L"12 apples"), -1, L"12"}, {MakeText(L"-"), -1, L"-"},
      {MakeText(L"1.2.3"), -1, L"1.2.3"}, {MakeText(L"1e5"), -1, L"1e5"}, {MakeText(L" 5"), -1, L" 5"},
      {MakeText(L"#FF"), -1, L"#FF"}, {MakeText(L""), -1, L""}};
  for (const Case& c : cases) {
    EXPECT_EQ(c.expected, Adopted(ISCreate(c.value.get(), c.precision)))
        << DescribeValue(c.value.get()) << " precision " << c.precision;
  }
  const std::wstring huge = Adopted(ISCreate(MakeDouble(1e300).get(), 2));  // printed in full
  EXPECT_EQ(304u, huge.size());
  EXPECT_EQ(L".00", huge.substr(301));
}

TEST(ISCreateVariant, TextOfEveryKind) {
  EXPECT_EQ(nullptr, ISCreate(static_cast<IVariant*>(nullptr)));
  EXPECT_EQ(nullptr, ISCreate(static_cast<IVariant*>(nullptr), 2));
  EXPECT_EQ(L"2.5", Adopted(ISCreate(MakeDouble(2.5).get())));
  EXPECT_EQ(L"", Adopted(ISCreate(MakeVariant().get())));
  SmartPtr<IVariant> named = MakeHolding(CreateObjectAs<IDblVector>(L"DblBuffer").get());
  SmartPtr<IVariant> anonymous = MakeHolding(NewObject<CAnonymousObject>()->GetUnknown());
  EXPECT_EQ(L"DblBuffer", Adopted(ISCreate(named.get())));
  EXPECT_EQ(L"", Adopted(ISCreate(anonymous.get())));
}

// IVCreate holds the given string, and a text variant that is not a plain number gives that string back itself,
// with a new reference.
TEST(IVCreate, TextVariantHoldsAndGivesTheSameString) {
  SmartPtr<ICreatableString> text = MakeString(L"0000000042");
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(IVCreate(text.get()));
  ASSERT_TRUE(value);
  const uint32_t before = RefCountOf(text.get());
  SmartPtr<IString> plain = SmartPtr<IString>::Adopt(ISCreate(value.get()));
  SmartPtr<IString> formatted = SmartPtr<IString>::Adopt(ISCreate(value.get(), 2));
  EXPECT_TRUE(SameObject(text.get(), plain.get()));
  EXPECT_TRUE(SameObject(text.get(), formatted.get()));
  EXPECT_EQ(before + 2, RefCountOf(text.get()));
}

TEST(ISCreateNumbers, DecimalAndHexadecimal) {
  EXPECT_EQ(L"42", Adopted(ISCreate(int32_t{42})));
  EXPECT_EQ(L"-2147483648", Adopted(ISCreate(INT32_MIN)));
  struct Case { uint32_t value; std::wstring expected; } cases[] = {
      {0, L"#000000"}, {255, L"#0000FF"}, {0xABCDEF, L"#ABCDEF"}, {0xFFFFFF, L"#FFFFFF"}, {16777216, L"#1000000"},
      {0xFFFFFFFFu, L"#FFFFFFFF"},
  };
  for (const Case& c : cases) EXPECT_EQ(c.expected, Adopted(ISCreateHex(c.value))) << c.value;
}

TEST(ISCreateText, WideTextViewsAndLenientUtf8) {
  EXPECT_EQ(L"", Adopted(ISCreate(static_cast<const wchar_t*>(nullptr))));
  EXPECT_EQ(L"abc", Adopted(ISCreate(L"abc")));
  const std::wstring source = L"key=value";
  EXPECT_EQ(L"val", Adopted(ISCreate(tagREFString{3, source.c_str() + 4})));
  EXPECT_EQ(L"", Adopted(ISCreate("abc", -1)));
  struct Case { std::string bytes; std::wstring expected; } cases[] = {
      {"\xC3\xA9", std::wstring(1, wchar_t(233))}, {"\xE2\x82\xAC", std::wstring(1, wchar_t(0x20AC))},
      {"\xF0\x9F\x98\x80", std::wstring(1, wchar_t(0x1F600))},
      {"\x80", std::wstring(1, wchar_t(0))},         // a stray follower gives its low six bits
      {"a\xC3", std::wstring(L"a") + wchar_t(3)},    // a lead byte at the end likewise
      {"\xE2\x82", std::wstring(1, wchar_t(0x82))},  // a cut sequence keeps what it has
      {"\xC3\x41", std::wstring(1, wchar_t(0xC1))},  // followers are not checked
      {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
      {std::string(300, 'a'), std::wstring(300, L'a')},  // longer than any formatting buffer
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.expected, Adopted(ISCreate(c.bytes.data(), static_cast<int32_t>(c.bytes.size()))))
        << "bytes " << testing::PrintToString(c.bytes);
  }
}

TEST(IVCreateConvert, KindByTheLookOfTheText) {
  // `rest` is the caller's view after trimming, and the text of a string result.
  struct Case { std::wstring text; int32_t type; double number; std::wstring rest; } cases[] = {
      {L"-0.5", kVariantReal, -0.5, L"-0.5"}, {L"5.", kVariantReal, 5, L"5."},
      {L"123456789", kVariantInteger, 123456789, L"123456789"}, {L"1234567890", kVariantNotNumber, 0, L"1234567890"},
      {L"12 apples", kVariantInteger, 12, L"12 apples"},
      {L"12 apples!", kVariantNotNumber, 0, L"12 apples!"},  // ten characters with what follows the blank
      {L"  7", kVariantInteger, 7, L"7"}, {L"\u00EF\u00FE5", kVariantInteger, 5, L"5"},
      {L"#FF", kVariantNotNumber, 0, L"#FF"}, {L"+5", kVariantNotNumber, 0, L"+5"},
      {L"- 5", kVariantNotNumber, 0, L"- 5"}, {L"1.5e3", kVariantNotNumber, 0, L"1.5e3"},
      {L"", kVariantNotNumber, 0, L""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "'");
    CREFString view = ViewOf(c.text);
    SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(IVCreateConvert(view));
    ASSERT_TRUE(value);
    EXPECT_EQ(c.rest, TextOf(view));
    EXPECT_EQ(c.type, value->GetType());
    if (c.type != kVariantNotNumber) {
      EXPECT_DOUBLE_EQ(c.number, value->GetDouble());
    } else {
      EXPECT_TRUE(value->IsString());
      EXPECT_EQ(c.rest, Adopted(ISCreate(value.get())));
    }
  }
}

TEST(IS2Integer, PrefixesBasesAndWrapping) {
  struct Case { std::wstring text; int base; int32_t expected; } cases[] = {
      {L"#ff", 10, 255}, {L"12F", 10, 12}, {L"12F", 16, 303}, {L"G", 16, 0},
      {L"F", 12, 15}, {L"19", 8, 17},  // letters and digits beyond a smaller base are still taken
      {L"-42", 10, -42}, {L"+42", 10, 42}, {L" 5", 10, 0}, {L"2147483648", 10, INT32_MIN}};
  for (const Case& c : cases) EXPECT_EQ(c.expected, _IS2Integer(ViewOf(c.text), c.base)) << c.text << " in " << c.base;
}

TEST(IS2Double, SignDigitsAndFractionOnly) {
  struct Case { std::wstring text; double expected; } cases[] = {
      {L"-.5", -0.5}, {L"+2.25", 2.25}, {L"-", -0.0}, {L"1.2.3", 1.2}, {L"#ff", 255}, {L"abc", 0},
      {L"1.5e3", 1.5},  // exponents are not read
      {L"0.0000000000000000009", 0},  // only 18 fraction digits count
      {L"12345678901234567890123", 12345678901234567890123.0}};
  for (const Case& c : cases) {
    const double actual = _IS2Double(ViewOf(c.text));
    EXPECT_DOUBLE_EQ(c.expected, actual) << c.text;
    EXPECT_EQ(std::signbit(c.expected), std::signbit(actual)) << c.text;
  }
}

TEST(XMLFindStr, PositionsAdvanceAndRestart) {
  struct Case { std::wstring view, pattern; int16_t advance, caseSensitive; HRESULT result; std::wstring rest; };
  const Case cases[] = {
      {L"<a><b>", L"<b>", 0, 1, 5, L"<a><b>"}, {L"<a><b>x", L"<b>", 1, 1, 6, L"x"},
      {L"aab", L"ab", 0, 1, 2, L"aab"},         // the mismatching character starts the pattern again
      {L"aaab", L"aab", 0, 1, E_FAIL, L"aaab"},  // but an overlapping start is missed
      {L"<A>", L"<a>", 0, 0, 2, L"<A>"}, {L"<A>", L"<a>", 0, 1, E_FAIL, L"<A>"}, {L"ab", L"abc", 0, 1, E_FAIL, L"ab"},
      {L"ab", std::wstring(L"b\0", 2), 1, 1, 2, L""},  // the terminating zero is looked at
      {L"a", L"", 0, 1, E_FAIL, L"a"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "'" << c.pattern << "' in '" << c.view << "' advance " << c.advance);
    tagREFString view = ViewOf(c.view);
    EXPECT_EQ(c.result, XMLFindStr(view, ViewOf(c.pattern), c.advance, c.caseSensitive));
    EXPECT_EQ(c.rest, TextOf(view));
  }
}

}  // namespace
