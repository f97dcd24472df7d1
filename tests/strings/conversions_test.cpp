// Tests of the conversions between text, numbers, framework strings and variants.
#include "strings/conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "runtime/object.h"
#include "test_support.h"

namespace {

using test_support::MakeDouble;
using test_support::MakeLong;
using test_support::MakeText;
using test_support::MakeVariant;
using test_support::TextOf;

constexpr HRESULT kFail = E_FAIL;

CREFString View(const std::wstring& text) { return CREFString(text.c_str(), static_cast<int32_t>(text.size())); }
std::wstring Text(const tagREFString& view) { return std::wstring(view.text, static_cast<size_t>(view.length)); }
std::wstring Adopted(IString* string) { return TextOf(SmartPtr<IString>::Adopt(string)); }

enum class Kind { kLong, kDouble, kText };

struct Value {
  Kind kind;
  double number;
  std::wstring text;
};

SmartPtr<IVariant> Make(const Value& value) {
  switch (value.kind) {
    case Kind::kLong: return MakeLong(static_cast<int32_t>(value.number));
    case Kind::kDouble: return MakeDouble(value.number);
    case Kind::kText: return MakeText(value.text);
  }
  return SmartPtr<IVariant>();
}

Value Long(int32_t n) { return {Kind::kLong, static_cast<double>(n), L""}; }
Value Double(double x) { return {Kind::kDouble, x, L""}; }

TEST(ISCreateVariantPrecision, NumberForms) {
  struct Case {
    Value value;
    int16_t precision;
    std::wstring expected;
  } cases[] = {
      {Double(2.5), -1, L"2.5"},
      {Double(3.0), -1, L"3"},
      {Double(1.0 / 3.0), -1, L"0.333333333"},
      {Double(-0.125), -1, L"-0.125"},
      {Double(0.29), -1, L"0.290"},  // 0.29 * 100 falls just under 29, so one decimal more
      {Double(2.5), 2, L"2.50"},
      {Double(2.7), 0, L"3"},
      {Long(7), 0, L"7"},
      {Long(-42), -1, L"-42"},
      {Long(7), 2, L"7.00"},
      {Long(255), -16, L"#0000FF"},
      {Double(2.9), -16, L"#000002"},
      {Long(4660), -22, L"00010010"},
      {Long(4660), -2, L"00110100"},
      {Long(0x12345678), -42, L"00010010"},
      {Long(0x12345678), -24, L"00010010"},
      {Long(0x12345678), -32, L"00110100"},
      {Long(0x12345678), -23, L"00110100"},
      {Long(0x12345678), -5, L"01111000"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "value " << c.value.number << " precision " << c.precision);
    EXPECT_EQ(c.expected, Adopted(ISCreate(Make(c.value).get(), c.precision)));
  }
}

TEST(ISCreateVariantPrecision, TextsThatArePlainNumbers) {
  struct Case {
    std::wstring text;
    int16_t precision;
    std::wstring expected;
  } cases[] = {
      {L"42", -1, L"42"},
      {L"000000042", -1, L"42"},
      {L"0000000042", -1, L"0000000042"},  // ten characters: stays a text
      {L"12.50", -1, L"12.5"},
      {L"00000000007.5", -1, L"7.5"},  // decimals have no length limit
      {L"7", 2, L"7.00"},
      {L"12 apples", -1, L"12"},
      {L"-", -1, L"-"},
      {L"1.2.3", -1, L"1.2.3"},
      {L"1e5", -1, L"1e5"},
      {L" 5", -1, L" 5"},
      {L"#FF", -1, L"#FF"},
      {L"abc", 2, L"abc"},
      {L"", -1, L""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "' precision " << c.precision);
    EXPECT_EQ(c.expected, Adopted(ISCreate(MakeText(c.text).get(), c.precision)));
  }
}

TEST(ISCreateVariantPrecision, NonNumberTextIsTheSameObject) {
  SmartPtr<IVariant> value = MakeText(L"abc");
  SmartPtr<IString> held;
  value->GetString(held.Receive());
  SmartPtr<IString> text = SmartPtr<IString>::Adopt(ISCreate(value.get(), 2));
  EXPECT_TRUE(SameObject(held.get(), text.get()));
}

TEST(ISCreateVariantPrecision, HugeValuesPrintInFull) {
  const std::wstring text = Adopted(ISCreate(MakeDouble(1e300).get(), 2));
  ASSERT_EQ(304u, text.size());
  EXPECT_EQ(L"1", text.substr(0, 1));
  EXPECT_EQ(L".00", text.substr(301));
}

// Objects held by a variant: one that tells its class name and one that does not.
class CNamedObject final : public CObjectImpl<CNamedObject> {
 public:
  static constexpr wchar_t kObjectName[] = L"NamedObject";
  static constexpr InterfaceEntry<CNamedObject> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CNamedObject, IObjectInfo>},
  };
};

class CAnonymousObject final : public CObjectImpl<CAnonymousObject> {
 public:
  static constexpr wchar_t kObjectName[] = L"AnonymousObject";
  static constexpr InterfaceEntry<CAnonymousObject> kInterfaces[] = {
      {&IID_IObjectInfo, [](CAnonymousObject*) -> IUnknown* { return nullptr; }},
  };
};

TEST(ISCreateVariant, TextOfEveryKind) {
  EXPECT_EQ(nullptr, ISCreate(static_cast<IVariant*>(nullptr)));
  EXPECT_EQ(nullptr, ISCreate(static_cast<IVariant*>(nullptr), 2));
  EXPECT_EQ(L"2.5", Adopted(ISCreate(MakeDouble(2.5).get())));
  EXPECT_EQ(L"7", Adopted(ISCreate(MakeLong(7).get())));
  EXPECT_EQ(L"", Adopted(ISCreate(MakeVariant().get())));

  SmartPtr<IVariant> named = MakeVariant();
  named->Assign(NewObject<CNamedObject>()->GetUnknown());
  EXPECT_EQ(L"NamedObject", Adopted(ISCreate(named.get())));
  SmartPtr<IVariant> anonymous = MakeVariant();
  anonymous->Assign(NewObject<CAnonymousObject>()->GetUnknown());
  EXPECT_EQ(L"", Adopted(ISCreate(anonymous.get())));
}

TEST(ISCreateVariant, TextVariantGivesItsOwnStringWithANewReference) {
  SmartPtr<IVariant> value = MakeText(L"0000000042");
  SmartPtr<IString> held;
  value->GetString(held.Receive());
  const uint32_t before = test_support::RefCountOf(held.get());
  SmartPtr<IString> text = SmartPtr<IString>::Adopt(ISCreate(value.get()));
  EXPECT_TRUE(SameObject(held.get(), text.get()));
  EXPECT_EQ(before + 1, test_support::RefCountOf(held.get()));
}

TEST(ISCreateNumbers, DecimalAndHexadecimal) {
  struct Case {
    IString* (*make)(uint32_t);
    uint32_t value;
    std::wstring expected;
  } cases[] = {
      {[](uint32_t v) { return ISCreate(static_cast<int32_t>(v)); }, 42, L"42"},
      {[](uint32_t v) { return ISCreate(static_cast<int32_t>(v)); }, 0x80000000u, L"-2147483648"},
      {ISCreateHex, 255, L"#0000FF"},
      {ISCreateHex, 0, L"#000000"},
      {ISCreateHex, 0xFFFFFF, L"#FFFFFF"},
      {ISCreateHex, 16777216, L"#1000000"},
      {ISCreateHex, 0xFFFFFFFFu, L"#FFFFFFFF"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "value " << c.value);
    EXPECT_EQ(c.expected, Adopted(c.make(c.value)));
  }
}

TEST(ISCreateText, WideTextAndViews) {
  EXPECT_EQ(L"", Adopted(ISCreate(static_cast<const wchar_t*>(nullptr))));
  EXPECT_EQ(L"abc", Adopted(ISCreate(L"abc")));
  const std::wstring source = L"key=value";
  const tagREFString part{3, source.c_str() + 4};
  EXPECT_EQ(L"val", Adopted(ISCreate(part)));
}

TEST(ISCreateUtf8, DecodesLenientlyAndKeepsZeros) {
  struct Case {
    std::string bytes;
    std::wstring expected;
  } cases[] = {
      {"A", L"A"},
      {"\xC3\xA9", std::wstring(1, wchar_t(233))},
      {"\xE2\x82\xAC", std::wstring(1, wchar_t(0x20AC))},
      {"\xF0\x9F\x98\x80", std::wstring(1, wchar_t(0x1F600))},
      {"\x80", std::wstring(1, wchar_t(0))},           // a stray follower gives its low six bits
      {"\xBF", std::wstring(1, wchar_t(63))},
      {"a\xC3", std::wstring(L"a") + wchar_t(3)},      // a lead byte at the end likewise
      {"\xE2\x82", std::wstring(1, wchar_t(0x82))},    // a cut sequence keeps what it has
      {"\xC3\x41", std::wstring(1, wchar_t(0xC1))},    // followers are not checked
      {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "bytes " << testing::PrintToString(c.bytes));
    EXPECT_EQ(c.expected, Adopted(ISCreate(c.bytes.data(), static_cast<int32_t>(c.bytes.size()))));
  }
  EXPECT_EQ(L"", Adopted(ISCreate("abc", 0)));
  EXPECT_EQ(L"", Adopted(ISCreate("abc", -1)));
}

TEST(ISCreateUtf8, LongTextIsComplete) {
  std::string bytes;
  for (int i = 0; i < 300; ++i) bytes += "\xC3\xA9";
  EXPECT_EQ(std::wstring(300, wchar_t(233)), Adopted(ISCreate(bytes.data(), static_cast<int32_t>(bytes.size()))));
}

TEST(IVCreate, HoldsTheGivenString) {
  SmartPtr<ICreatableString> text = test_support::MakeString(L"abc");
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(IVCreate(text.get()));
  ASSERT_TRUE(value);
  SmartPtr<IString> held;
  value->GetString(held.Receive());
  EXPECT_TRUE(SameObject(held.get(), text.get()));
}

TEST(IVCreateConvert, KindByTheLookOfTheText) {
  struct Case {
    std::wstring text;
    Kind kind;
    double number;
    std::wstring rest;  // the caller's view after trimming (and the text of a string result)
  } cases[] = {
      {L"42", Kind::kLong, 42, L"42"},
      {L"-0.5", Kind::kDouble, -0.5, L"-0.5"},
      {L"5.", Kind::kDouble, 5, L"5."},
      {L"123456789", Kind::kLong, 123456789, L"123456789"},
      {L"1234567890", Kind::kText, 0, L"1234567890"},
      {L"12 apples", Kind::kLong, 12, L"12 apples"},
      {L"12 apples!", Kind::kText, 0, L"12 apples!"},  // ten characters with what follows the blank
      {L"  7", Kind::kLong, 7, L"7"},
      {L"\u00EF\u00FE5", Kind::kLong, 5, L"5"},
      {L"#FF", Kind::kText, 0, L"#FF"},
      {L"+5", Kind::kText, 0, L"+5"},
      {L"- 5", Kind::kText, 0, L"- 5"},
      {L"1.5e3", Kind::kText, 0, L"1.5e3"},
      {L"true", Kind::kText, 0, L"true"},
      {L"", Kind::kText, 0, L""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "'");
    CREFString view = View(c.text);
    SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(IVCreateConvert(view));
    ASSERT_TRUE(value);
    EXPECT_EQ(c.rest, Text(view));
    switch (c.kind) {
      case Kind::kLong:
        EXPECT_EQ(kVariantInteger, value->GetType());
        EXPECT_EQ(static_cast<int32_t>(c.number), value->GetLong());
        break;
      case Kind::kDouble:
        EXPECT_EQ(kVariantReal, value->GetType());
        EXPECT_DOUBLE_EQ(c.number, value->GetDouble());
        break;
      case Kind::kText: {
        ASSERT_TRUE(value->IsString());
        SmartPtr<IString> text;
        value->GetString(text.Receive());
        EXPECT_EQ(c.rest, TextOf(text));
        break;
      }
    }
  }
}

TEST(IS2Integer, PrefixesBasesAndWrapping) {
  struct Case {
    std::wstring text;
    int base;
    int32_t expected;
  } cases[] = {
      {L"#ff", 10, 255},
      {L"12F", 10, 12},
      {L"12F", 16, 303},
      {L"F", 12, 15},   // a letter beyond a smaller base is still taken
      {L"19", 8, 17},   // so is a digit
      {L"G", 16, 0},
      {L"-42", 10, -42},
      {L"+42", 10, 42},
      {L"-", 10, 0},
      {L"#", 10, 0},
      {L"", 10, 0},
      {L" 5", 10, 0},
      {L"2147483648", 10, INT32_MIN},
      {L"4294967297", 10, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "' base " << c.base);
    EXPECT_EQ(c.expected, _IS2Integer(View(c.text), c.base));
  }
}

TEST(IS2Double, SignDigitsAndFractionOnly) {
  struct Case {
    std::wstring text;
    double expected;
  } cases[] = {
      {L"-.5", -0.5},
      {L"+2.25", 2.25},
      {L"3", 3},
      {L"1.5e3", 1.5},  // exponents are not read
      {L"1.2.3", 1.2},
      {L"#ff", 255},
      {L"0.0000000000000000009", 0},  // only 18 fraction digits count
      {L"12345678901234567890123", 12345678901234567890123.0},
      {L"abc", 0},
      {L"", 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "'");
    EXPECT_DOUBLE_EQ(c.expected, _IS2Double(View(c.text)));
  }
  const double minusZero = _IS2Double(View(L"-"));
  EXPECT_EQ(0.0, minusZero);
  EXPECT_TRUE(std::signbit(minusZero));
}

TEST(XMLFindStrTest, PositionsAdvanceAndRestart) {
  struct Case {
    std::wstring view;
    std::wstring pattern;
    int16_t advance;
    int16_t caseSensitive;
    HRESULT result;
    std::wstring rest;
  } cases[] = {
      {L"<a><b>", L"<b>", 0, 1, 5, L"<a><b>"},
      {L"<a><b>x", L"<b>", 1, 1, 6, L"x"},
      {L"<a><b>", L"<b>", 1, 1, 6, L""},
      {L"aab", L"ab", 0, 1, 2, L"aab"},          // the mismatching character starts the pattern again
      {L"aaab", L"aab", 0, 1, kFail, L"aaab"},   // but an overlapping start is missed
      {L"<A>", L"<a>", 0, 0, 2, L"<A>"},
      {L"<A>", L"<a>", 0, 1, kFail, L"<A>"},
      {L"ab", L"abc", 0, 1, kFail, L"ab"},
      {L"ab", std::wstring(L"b\0", 2), 1, 1, 2, L""},  // the terminating zero is looked at
      {L"", L"a", 0, 1, kFail, L""},
      {L"a", L"", 0, 1, kFail, L"a"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "'" << c.pattern << "' in '" << c.view << "' advance " << c.advance);
    tagREFString view = View(c.view);
    EXPECT_EQ(c.result, XMLFindStr(view, View(c.pattern), c.advance, c.caseSensitive));
    EXPECT_EQ(c.rest, Text(view));
  }
}

}  // namespace
