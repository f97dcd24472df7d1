// The stand-in "CreatableString": setting and appending texts of every
// length, texts taken from the string itself, rejected views, and the change
// counter of watched strings.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"

namespace {

using namespace test_support;

// The text and length GetBuffer hands out, checking the terminator after it.
std::wstring BufferOf(ICreatableString* string) {
  const wchar_t* buffer = nullptr;
  int32_t length = -1;
  if (string->GetBuffer(&buffer, &length) != S_OK || !buffer || length < 0) return L"<no buffer>";
  if (buffer[length] != L'\0') return L"<unterminated>";
  return std::wstring(buffer, static_cast<size_t>(length));
}

struct Edit {
  bool append;
  std::wstring text;
};

HRESULT Apply(ICreatableString* string, const Edit& edit) {
  return edit.append ? string->Append(Ref(edit.text)) : string->SetText(Ref(edit.text));
}

// Texts up to 13 characters are held in the object, longer ones in a block
// that is kept when the text shrinks again; each edit must show exactly.
TEST(CreatableString, EditsAcrossEveryLength) {
  const std::wstring twenty = L"0123456789abcdefghij";
  struct Case { const char* what; std::vector<Edit> edits; std::wstring expected; } cases[] = {
      {"never set", {}, L""},
      {"13 characters", {{false, L"abcdefghijklm"}}, L"abcdefghijklm"},
      {"14th appended", {{false, L"abcdefghijklm"}, {true, L"n"}}, L"abcdefghijklmn"},
      {"long then short", {{false, twenty}, {false, L"xy"}}, L"xy"},
      {"short, long, empty, short", {{false, L"xy"}, {true, twenty}, {false, L""}, {true, L"q"}}, L"q"},
      {"empty append", {{false, L"keep"}, {true, L""}}, L"keep"},
      {"inner terminator", {{false, std::wstring(L"a\0b", 3)}, {true, twenty}}, std::wstring(L"a\0b", 3) + twenty},
      {"long appended to long", {{false, twenty}, {true, twenty}, {true, twenty}}, twenty + twenty + twenty},
  };
  for (const Case& c : cases) {
    SmartPtr<ICreatableString> string = MakeString(L"");
    for (const Edit& edit : c.edits) ASSERT_EQ(Apply(string.get(), edit), S_OK) << c.what;
    EXPECT_EQ(BufferOf(string.get()), c.expected) << c.what;
  }

  SmartPtr<ICreatableString> grown = MakeString(L"");
  for (int i = 0; i < 1000; ++i) grown->Append(Ref(L"xyz"));
  const std::wstring text = BufferOf(grown.get());
  EXPECT_EQ(text.size(), 3000u);
  EXPECT_EQ(text.find_first_not_of(L"xyz"), std::wstring::npos);
  EXPECT_EQ(text.substr(2997), L"xyz");
}

// A view into the string's own text, before and after it moves to a block of its own.
TEST(CreatableString, TextTakenFromItself) {
  struct Case { std::wstring initial; bool append; int32_t from, count; std::wstring expected; } cases[] = {
      {L"abcdefghij", true, 0, 10, L"abcdefghijabcdefghij"},
      {L"abcdefghijabcdefghij", true, 0, 20, L"abcdefghijabcdefghijabcdefghijabcdefghij"},
      {L"0123456789ABCDEFGHIJ", false, 5, 10, L"56789ABCDE"},
      {L"0123456789", false, 2, 3, L"234"},
      {L"0123456789", true, 8, 2, L"012345678989"},
  };
  for (const Case& c : cases) {
    SmartPtr<ICreatableString> string = MakeString(c.initial);
    const wchar_t* own = nullptr;
    int32_t length = 0;
    string->GetBuffer(&own, &length);
    const tagREFString view{c.count, own + c.from};
    EXPECT_EQ(c.append ? string->Append(view) : string->SetText(view), S_OK) << testing::PrintToString(c.initial);
    EXPECT_EQ(BufferOf(string.get()), c.expected) << testing::PrintToString(c.initial);
  }
}

// Bad views are refused and change nothing; an empty view may have no
// characters. Only changes of a watched string advance the shared counter.
TEST(CreatableString, RejectedViewsAndTheChangeCounter) {
  struct Case {
    const char* what;
    bool append;
    tagREFString view;
    HRESULT result;
    const wchar_t* text;
    uint64_t changes;
  };
  const Case cases[] = {
      {"negative length set", false, {-1, L"x"}, E_INVALIDARG, L"keep", 0},
      {"set without characters", false, {2, nullptr}, E_INVALIDARG, L"keep", 0},
      {"negative length append", true, {-5, L"x"}, E_INVALIDARG, L"keep", 0},
      {"append without characters", true, {1, nullptr}, E_INVALIDARG, L"keep", 0},
      {"empty set", false, {0, nullptr}, S_OK, L"", 1},
      {"empty append", true, {0, nullptr}, S_OK, L"keep", 0},
      {"append", true, {3, L"ers"}, S_OK, L"keepers", 1},
      {"long set", false, {16, L"sixteen letters!"}, S_OK, L"sixteen letters!", 1},
  };
  for (const Case& c : cases) {
    SmartPtr<ICreatableString> watched = MakeString(L"keep"), unwatched = MakeString(L"keep");
    SmartPtr<IStringChangeCounter> counter = QueryAs<IStringChangeCounter>(watched.get());
    ASSERT_TRUE(counter);
    const std::atomic<uint64_t>* changes = counter->WatchChanges();
    const uint64_t before = changes->load();
    EXPECT_EQ(c.append ? watched->Append(c.view) : watched->SetText(c.view), c.result) << c.what;
    EXPECT_EQ(changes->load() - before, c.changes) << c.what;
    EXPECT_EQ(BufferOf(watched.get()), c.text) << c.what;
    const uint64_t beforeUnwatched = changes->load();
    EXPECT_EQ(c.append ? unwatched->Append(c.view) : unwatched->SetText(c.view), c.result) << c.what;
    EXPECT_EQ(changes->load(), beforeUnwatched) << c.what << ": an unwatched string counts nothing";
  }
  const wchar_t* buffer = nullptr;
  int32_t length = 0;
  EXPECT_EQ(MakeString(L"x")->GetBuffer(nullptr, &length), E_POINTER);
  EXPECT_EQ(MakeString(L"x")->GetBuffer(&buffer, nullptr), E_POINTER);
}

}  // namespace
