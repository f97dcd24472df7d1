// "StringCollection": a text given through its string setter, split into lines.
#include <gtest/gtest.h>

#include <vector>

#include "test_support.h"

namespace {

using test_support::TextOf;

tagREFString Ref(const std::wstring& text) { return {static_cast<int32_t>(text.size()), text.c_str()}; }

std::vector<std::wstring> LinesOf(IStringCollection* lines) {
  std::vector<std::wstring> result;
  int32_t count = 0;
  lines->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IUnknown> item;
    lines->get_Item(i, item.Receive());
    result.push_back(TextOf(QueryAs<IString>(item.get()).get()));
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
  struct Case {
    std::wstring text;
    std::vector<std::wstring> lines;
  };
  const Case cases[] = {
      {L"", {}},
      {L"a", {L"a"}},
      {L"a\nb", {L"a", L"b"}},
      {L"a\r\nb", {L"a", L"b"}},
      {L"a\rb", {L"a", L"b"}},
      {L"a\r\rb", {L"a", L"", L"b"}},
      {L"a\n\rb", {L"a", L"", L"b"}},
      {L"a\n", {L"a"}},
      {L"a\r\n", {L"a"}},
      {L"a\n\n", {L"a", L""}},
      {L"\n", {L""}},
      {L"\r\n\r\n", {L"", L""}},
      {L" a \t\n b ", {L" a \t", L" b "}},
  };
  for (const Case& c : cases) {
    SmartPtr<IStringCollection> lines = LinesFor(c.text);
    ASSERT_TRUE(lines);
    EXPECT_EQ(LinesOf(lines.get()), c.lines) << testing::PrintToString(c.text);
  }
}

TEST(StringCollectionTest, AppendedTextContinuesTheLastLine) {
  struct Case {
    std::wstring first;
    std::wstring appended;
    std::vector<std::wstring> lines;
  };
  const Case cases[] = {
      {L"a\r", L"\nb", {L"a", L"b"}},
      {L"a", L"b\nc", {L"ab", L"c"}},
      {L"a\n", L"b", {L"a", L"b"}},
      {L"a\n\n", L"b", {L"a", L"", L"b"}},
      {L"", L"x", {L"x"}},
  };
  for (const Case& c : cases) {
    SmartPtr<IStringCollection> lines = LinesFor(c.first);
    QueryAs<ICreatableString>(lines.get())->Append(Ref(c.appended));
    EXPECT_EQ(LinesOf(lines.get()), c.lines) << testing::PrintToString(c.first + c.appended);
  }
}

TEST(StringCollectionTest, WholeTextResetAndBadIndices) {
  SmartPtr<IStringCollection> lines = LinesFor(L"one\r\ntwo");
  EXPECT_EQ(TextOf(QueryAs<IString>(lines.get()).get()), L"one\r\ntwo");
  SmartPtr<IUnknown> item;
  EXPECT_EQ(lines->get_Item(2, item.Receive()), E_INVALIDARG);
  EXPECT_EQ(lines->get_Item(-1, item.Receive()), E_INVALIDARG);
  EXPECT_FALSE(item);
  EXPECT_EQ(lines->get_Item(0, nullptr), E_POINTER);
  EXPECT_EQ(lines->Reserved3(), E_NOTIMPL);

  EXPECT_EQ(lines->Reset(0), S_OK);
  int32_t count = -1;
  lines->get_Count(&count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(TextOf(QueryAs<IString>(lines.get()).get()), L"");
  EXPECT_EQ(QueryAs<ICreatableString>(lines.get())->SetText({-1, L"x"}), E_INVALIDARG);
}

}  // namespace
