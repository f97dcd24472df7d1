// Numbers in texts, files and formulas keep the "C" conventions (a point as
// decimal separator) while the host process runs under a German locale.
#include <gtest/gtest.h>

#include <clocale>

#include "expression/expression_test_support.h"
#include "strings/conversions.h"

namespace {

using namespace expression_test;

class GermanLocale : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::setlocale(LC_ALL, "de_DE.UTF-8")) GTEST_SKIP() << "de_DE.UTF-8 is missing (scripts/bootstrap makes it)";
    ASSERT_STREQ(std::localeconv()->decimal_point, ",") << "the locale really uses a comma";
  }
  void TearDown() override { std::setlocale(LC_ALL, "C"); }
};

TEST_F(GermanLocale, NumbersAreWrittenAndReadWithAPoint) {
  struct Written { double value; int16_t precision; std::wstring expected; } written[] = {
      {2.5, -1, L"2.5"}, {0.125, 3, L"0.125"}, {-1234.5, 1, L"-1234.5"}, {1e20, 2, L"100000000000000000000.00"}};
  for (const Written& c : written) {
    EXPECT_EQ(TextOf(SmartPtr<IString>::Adopt(ISCreate(MakeDouble(c.value).get(), c.precision))), c.expected)
        << c.value;
  }
  struct Read { std::wstring text; double expected; } read[] = {{L"3.25", 3.25}, {L"-0.5", -0.5}, {L"2,5", 2}};
  for (const Read& c : read) EXPECT_EQ(_IS2Double(ViewOf(c.text)), c.expected) << c.text;  // a comma ends the number
  const std::wstring text = L"0.75";
  CREFString view = ViewOf(text);
  SmartPtr<IVariant> converted = SmartPtr<IVariant>::Adopt(IVCreateConvert(view));
  EXPECT_EQ(converted->GetType(), kVariantReal);
  EXPECT_EQ(converted->GetDouble(), 0.75);
  SmartPtr<IParametersCreatable> set = SetOf({{L"x", MakeDouble(2.5)}});
  ExpectAll({{L"1.5*2+0.25", 3.25}, {L"x/2", 1.25}, {L"(x+0.5)/0.25", 12}}, set.get());
}

// A set with a real written to XML and INI files and read back.
TEST_F(GermanLocale, FilesHoldNumbersWithAPoint) {
  SmartPtr<IParametersCreatable> set = SetOf({{L"ratio", MakeDouble(0.375)}});
  EXPECT_EQ(SavedXML(set.get(), 0), L"<ratio>0.375</ratio>");
  const std::string path = ScratchFolder("locale") + "/set.ini";
  SmartPtr<IINIStream> ini = CreateObjectAs<IINIStream>(L"INIStream");
  ini->put_Parameters(set.get());
  ASSERT_EQ(ini->Save(MakeString(Wide(path)).get(), 0), S_OK);
  EXPECT_EQ(FileBytes(path), "ratio=0.375\n");
  SmartPtr<IParametersCreatable> loaded = NewParameters();
  ini->put_Parameters(loaded.get());
  ASSERT_EQ(ini->Load(MakeString(Wide(path)).get(), kLoadReplace), S_OK);
  SmartPtr<IVariant> value;
  loaded->get_ItemVariant(0, value.Receive());
  EXPECT_EQ(value->GetDouble(), 0.375) << "INI values load as text, read as a number with a point";
}

}  // namespace
