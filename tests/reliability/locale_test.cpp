// Numbers in texts, files and formulas keep the "C" conventions (a point as
// decimal separator) while the host process runs under a German locale.
#include <gtest/gtest.h>

#include <clocale>
#include <fstream>
#include <iterator>
#include <unistd.h>

#include "strings/conversions.h"
#include "test_support.h"

namespace {

using namespace test_support;

class GermanLocale : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::setlocale(LC_ALL, "de_DE.UTF-8")) GTEST_SKIP() << "de_DE.UTF-8 is not installed (scripts/bootstrap makes it)";
  }
  void TearDown() override { std::setlocale(LC_ALL, "C"); }
};

std::wstring TextOfValue(IVariant* value, int16_t precision) {
  return TextOf(SmartPtr<IString>::Adopt(ISCreate(value, precision)));
}

double Evaluated(const std::wstring& formula, IParameters* set) {
  SmartPtr<IExpression> expression = CreateObjectAs<IExpression>(L"Expression");
  expression->put_Expression(Ref(formula));
  SmartPtr<IVariant> value;
  if (expression->Evaluate(set) != S_OK || expression->get_Value(value.Receive()) != S_OK) return -1;
  return value->GetDouble();
}

TEST_F(GermanLocale, NumbersAreWrittenWithAPoint) {
  ASSERT_STREQ(std::localeconv()->decimal_point, ",") << "the locale really uses a comma";
  struct Case {
    double value;
    int16_t precision;
    std::wstring expected;
  } cases[] = {{2.5, -1, L"2.5"}, {0.125, 3, L"0.125"}, {-1234.5, 1, L"-1234.5"}, {1e20, 2, L"100000000000000000000.00"}};
  for (const Case& c : cases) EXPECT_EQ(TextOfValue(MakeDouble(c.value).get(), c.precision), c.expected) << c.value;
}

TEST_F(GermanLocale, NumbersAreReadWithAPoint) {
  struct Case {
    std::wstring text;
    double expected;
  } cases[] = {{L"3.25", 3.25}, {L"-0.5", -0.5}, {L"2,5", 2}};  // a comma ends the number
  for (const Case& c : cases) EXPECT_EQ(_IS2Double(ViewOf(c.text)), c.expected) << c.text;
  std::wstring text = L"0.75";
  CREFString view = ViewOf(text);
  SmartPtr<IVariant> converted = SmartPtr<IVariant>::Adopt(IVCreateConvert(view));
  EXPECT_EQ(converted->GetType(), kVariantReal);
  EXPECT_EQ(converted->GetDouble(), 0.75);
}

TEST_F(GermanLocale, FormulasUseAPoint) {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  set->Add(MakeString(L"x").get(), MakeDouble(2.5).get(), nullptr, 0);
  struct Case {
    std::wstring formula;
    double expected;
  } cases[] = {{L"1.5*2+0.25", 3.25}, {L"x/2", 1.25}, {L"(x+0.5)/0.25", 12}};
  for (const Case& c : cases) EXPECT_EQ(Evaluated(c.formula, set.get()), c.expected) << testing::PrintToString(c.formula);
}

// A set with a real written to XML and INI files and read back.
TEST_F(GermanLocale, FilesHoldNumbersWithAPoint) {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  set->Add(MakeString(L"ratio").get(), MakeDouble(0.375).get(), nullptr, 0);
  SmartPtr<IXMLStreamEx> xml = CreateObjectAs<IXMLStreamEx>(L"XMLStreamEx");
  xml->SetOptions(-1, kXMLOptionLean);
  set->Params_SaveXML(QueryAs<IDataStream>(xml.get()).get(), 0);
  void* text = nullptr;
  int32_t size = 0;
  xml->GetTextBuffer(&text, &size);
  EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(text), static_cast<size_t>(size) / sizeof(wchar_t)),
            L"<ratio>0.375</ratio>");

  const std::string path = "locale-test-" + std::to_string(getpid()) + ".ini";
  SmartPtr<IINIStream> ini = CreateObjectAs<IINIStream>(L"INIStream");
  ini->put_Parameters(set.get());
  SmartPtr<ICreatableString> name = MakeString(std::wstring(path.begin(), path.end()));
  ASSERT_EQ(ini->Save(name.get(), 0), S_OK);
  std::ifstream in(path, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "ratio=0.375\n");
  SmartPtr<IParametersCreatable> loaded = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  ini->put_Parameters(loaded.get());
  ASSERT_EQ(ini->Load(name.get(), kLoadReplace), S_OK);
  SmartPtr<IVariant> value;
  loaded->get_ItemVariant(0, value.Receive());
  EXPECT_EQ(value->GetDouble(), 0.375);
  std::remove(path.c_str());
}

}  // namespace
