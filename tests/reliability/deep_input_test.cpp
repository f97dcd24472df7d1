// XML nested 100,000 levels, read as a parameter set and as objects inside
// objects: read in bounded time and stack, with a defined result. (A template
// line of 100 MB is read in the text parser's tests.)
#include <gtest/gtest.h>

#include <string>

#include "parameters/persistence_test_support.h"

namespace {

using namespace persistence_test;

constexpr int kLevels = 100000;

std::wstring Repeat(const std::wstring& piece, int count) {
  std::wstring text;
  text.reserve(piece.size() * static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) text += piece;
  return text;
}

// In replace mode child elements are not interpreted, so the deepest document
// still gives one parameter holding empty text.
TEST(DeepInput, XMLNestedAHundredThousandLevelsAsAParameterSet) {
  const std::wstring text = L"<r><first>1</first>" + Repeat(L"<a>", kLevels) + Repeat(L"</a>", kLevels) + L"</r>";
  SmartPtr<IParametersCreatable> set = NewParameters();
  EXPECT_EQ(set->Params_LoadXML(XMLReading(text, true).get(), kLoadReplace, 0), S_OK);
  EXPECT_EQ(Describe(set.get()), (std::vector<std::wstring>{L"first=i1/0", L"a=t''/0"}));
}

// Descriptor objects nested 50,000 deep (100,000 elements) in merge mode: the
// descriptor loads itself in replace mode, which does not interpret children,
// so the nesting ends at its first level.
TEST(DeepInput, XMLNestedAHundredThousandLevelsAsObjects) {
  const std::wstring text = L"<r>" + Repeat(L"<a><ParametersCreatable>", kLevels / 2) +
                            Repeat(L"</ParametersCreatable></a>", kLevels / 2) + L"</r>";
  SmartPtr<IParametersCreatable> set = SetOf({{L"a", MakeLong(7)}});
  EXPECT_EQ(set->Params_LoadXML(XMLReading(text, true).get(), 0, 0), S_OK);
  EXPECT_EQ(Describe(set.get()), std::vector<std::wstring>{L"a=i7/0+d"});
  SmartPtr<IUnknown> descriptor;
  ASSERT_EQ(set->get_ItemDescriptor(0, descriptor.Receive()), S_OK);
  EXPECT_EQ(Describe(QueryAs<IParameters>(descriptor.get()).get()), std::vector<std::wstring>{L"a=t''/0"});
}

}  // namespace
