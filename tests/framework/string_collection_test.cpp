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

// Made as the text parser makes it: created by name, reset with 0, given the text, then given more.
SmartPtr<IStringCollection> LinesFor(const std::wstring& text, const std::wstring& appended = L"") {
  SmartPtr<IStringCollection> lines = CreateObjectAs<IStringCollection>(L"StringCollection");
  if (!lines) return lines;
  lines->Reset(0);
  QueryAs<ICreatableString>(lines.get())->SetText(Ref(text));
  if (!appended.empty()) QueryAs<ICreatableString>(lines.get())->Append(Ref(appended));
  return lines;
}

TEST(StringCollectionTest, LineEnds) {
  struct Case { std::wstring text; std::wstring appended; Lines lines; };
  const Case cases[] = {
      {L"", L"", {}}, {L"a", L"", {L"a"}}, {L"a\nb", L"", {L"a", L"b"}}, {L"a\r\nb", L"", {L"a", L"b"}},
      {L"a\rb", L"", {L"a", L"b"}}, {L"a\r\rb", L"", {L"a", L"", L"b"}}, {L"a\n\rb", L"", {L"a", L"", L"b"}},
      {L"a\r\n", L"", {L"a"}}, {L"a\n\n", L"", {L"a", L""}}, {L"\r\n\r\n", L"", {L"", L""}},
      {L" a \t\n b ", L"", {L" a \t", L" b "}},
      // Appended text continues the last line; a CR at the end meets an LF at the start.
      {L"a\r", L"\nb", {L"a", L"b"}}, {L"a", L"b\nc", {L"ab", L"c"}}, {L"a\n\n", L"b", {L"a", L"", L"b"}},
      {L"", L"x", {L"x"}},
  };
  for (const Case& c : cases) {
    SmartPtr<IStringCollection> lines = LinesFor(c.text, c.appended);
    ASSERT_TRUE(lines);
    EXPECT_EQ(LinesOf(lines.get()), c.lines) << testing::PrintToString(c.text) << " + "
                                             << testing::PrintToString(c.appended);
    EXPECT_EQ(TextOf(QueryAs<IString>(lines.get())), c.text + c.appended) << "the whole text is kept";
  }
  SmartPtr<IStringCollection> lines = LinesFor(L"one\r\ntwo");
  SmartPtr<IUnknown> item;
  EXPECT_EQ(lines->get_Item(2, item.Receive()), E_INVALIDARG);
  EXPECT_EQ(lines->Reset(0), S_OK);
  EXPECT_EQ(LinesOf(lines.get()), Lines{});
  EXPECT_EQ(TextOf(QueryAs<IString>(lines.get())), L"");
}

}  // namespace
