// Input nested or sized far beyond anything real: XML nested 100,000 levels
// (read as a parameter set and as objects inside objects) and a template line
// of 100 MB. Each is read in bounded time and stack, with a defined result.
#include <gtest/gtest.h>

#include <string>

#include "test_support.h"

namespace {

using namespace test_support;

constexpr int kLevels = 100000;

std::wstring Repeat(const std::wstring& piece, int count) {
  std::wstring text;
  text.reserve(piece.size() * static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

// A stream standing on the first element of `text`.
SmartPtr<IDataStream> FirstElementOf(IXMLStream* xml, const std::wstring& text) {
  EXPECT_EQ(xml->LoadContent(text.c_str(), static_cast<int32_t>(text.size() * sizeof(wchar_t)), 0), S_OK);
  SmartPtr<IDataStream> element;
  xml->OpenChild({0, nullptr}, nullptr, element.Receive(), 0);
  return element;
}

std::wstring NamesAndValues(IParameters* set) {
  std::wstring shown;
  for (int32_t i = 0;; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IVariant> value;
    if (set->Iterate(i, name.Receive(), value.Receive(), nullptr, nullptr) < 0) return shown;
    shown += TextOf(name) + L"=" + DescribeValue(value.get()) + L";";
  }
}

// In replace mode child elements are not interpreted, so the deepest document
// still gives one parameter holding empty text.
TEST(DeepInput, XMLNestedAHundredThousandLevelsAsAParameterSet) {
  SmartPtr<IXMLStream> xml = CreateObjectAs<IXMLStream>(L"XMLStream");
  std::wstring text = L"<r><first>1</first>" + Repeat(L"<a>", kLevels) + Repeat(L"</a>", kLevels) + L"</r>";
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  EXPECT_EQ(set->Params_LoadXML(FirstElementOf(xml.get(), text).get(), kLoadReplace, 0), S_OK);
  EXPECT_EQ(NamesAndValues(set.get()), L"first=i1;a=t'';");
}

// Descriptor objects nested 50,000 deep (100,000 elements) in merge mode: the
// descriptor loads itself in replace mode, which does not interpret children,
// so the nesting ends at its first level.
TEST(DeepInput, XMLNestedAHundredThousandLevelsAsObjects) {
  SmartPtr<IXMLStream> xml = CreateObjectAs<IXMLStream>(L"XMLStream");
  std::wstring text = L"<r>" + Repeat(L"<a><ParametersCreatable>", kLevels / 2) +
                      Repeat(L"</ParametersCreatable></a>", kLevels / 2) + L"</r>";
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  set->Add(MakeString(L"a").get(), MakeLong(7).get(), nullptr, 0);
  EXPECT_EQ(set->Params_LoadXML(FirstElementOf(xml.get(), text).get(), 0, 0), S_OK);
  EXPECT_EQ(NamesAndValues(set.get()), L"a=i7;");
  SmartPtr<IUnknown> descriptor;
  ASSERT_EQ(set->get_ItemDescriptor(0, descriptor.Receive()), S_OK);
  EXPECT_EQ(NamesAndValues(QueryAs<IParameters>(descriptor.get()).get()), L"a=t'';");
}

// One line of 100 MB (25 million characters) with a tag at each end: both
// tags are filled in and the line is copied once.
TEST(DeepInput, TemplateLineOfAHundredMegabytes) {
  const size_t middle = 25u * 1000 * 1000;
  std::wstring line = L"__v__" + std::wstring(middle, L'x') + L"__v__ __open";
  SmartPtr<IParametersCreatable> values = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  values->Add(MakeString(L"v").get(), MakeText(L"[value]").get(), nullptr, 0);
  SmartPtr<ITextParser> parser = CreateObjectAs<ITextParser>(L"TextParser");
  SmartPtr<IString> result;
  ASSERT_EQ(parser->ParseTags(MakeString(line).get(), result.Receive(), values.get(), 0), S_OK);
  std::wstring filled = TextOf(result);
  ASSERT_EQ(filled.size(), 7 + middle + 7 + 7 + 2);
  EXPECT_EQ(filled.substr(0, 8), L"[value]x");
  EXPECT_EQ(filled.substr(filled.size() - 17), L"x[value] __open\r\n");
}

}  // namespace
