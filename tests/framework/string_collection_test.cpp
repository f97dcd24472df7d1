// "StringCollection": a text given through its string setter, split into lines.
#include <gtest/gtest.h>

#include <vector>

#include "test_support.h"

namespace {

using test_support::Ref;
using test_support::TextOf;
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
      {L"", {}},
      {L"a", {L"a"}},
      {L"a\nb", {L"a", L"b"}},
      {L"a\r\nb", {L"a", L"b"}},
      {L"a\rb", {L"a", L"b"}},
      {L"a\r\rb", {L"a", L"", L"b"}},
      {L"a\n\rb", {L"a", L"", L"b"}},
      {L"a\r\n", {L"a"}},
      {L"a\n\n", {L"a", L""}},
      {L" a \t\n b ", {L" a \t", L" b "}},
  };
  for (const Case& c : cases) {
    SmartPtr<IStringCollection> lines = LinesFor(c.text);
    ASSERT_TRUE(lines);
    EXPECT_EQ(LinesOf(lines.get()), c.lines) << testing::PrintToString(c.text);
    EXPECT_EQ(TextOf(QueryAs<IString>(lines.get())), c.text) << "the whole text is kept";
  }
  SmartPtr<IStringCollection> lines = LinesFor(L"one\r\ntwo");
  SmartPtr<IUnknown> item;
  EXPECT_EQ(lines->get_Item(2, item.Receive()), E_INVALIDARG);
  EXPECT_EQ(lines->Reset(0), S_OK);
  EXPECT_EQ(LinesOf(lines.get()), Lines{});
  EXPECT_EQ(TextOf(QueryAs<IString>(lines.get())), L"");
}

}  // namespace
