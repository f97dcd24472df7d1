// Tests of the CREFString scanning operations and the wide-text helpers.
#include "strings/ref_string.h"

#include <gtest/gtest.h>

#include <string>

#include "runtime/object.h"
#include "test_support.h"

namespace {

constexpr HRESULT kFail = E_FAIL;

CREFString View(const std::wstring& text) { return CREFString(text.c_str(), static_cast<int32_t>(text.size())); }
std::wstring Text(const tagREFString& view) { return std::wstring(view.text, static_cast<size_t>(view.length)); }

// The view after taking a piece, told by what is left of the source text.
struct Outcome {
  std::wstring piece;
  HRESULT result;
  std::wstring rest;
};

void ExpectOutcome(const Outcome& expected, const CREFString& piece, HRESULT result, const CREFString& view) {
  EXPECT_EQ(expected.piece, Text(piece));
  EXPECT_EQ(expected.result, result);
  EXPECT_EQ(expected.rest, Text(view));
}

TEST(GetLine, CutsAtSeparatorAndReportsWhatRemains) {
  struct Case {
    std::wstring text;
    bool advance;
    bool dropSeparator;
    Outcome expected;
  } cases[] = {
      {L"a,b", true, true, {L"a", S_OK, L"b"}},
      {L"b", true, true, {L"b", S_FALSE, L""}},
      {L"a,", true, false, {L"a,", S_FALSE, L""}},
      {L",x", true, true, {L"", S_OK, L"x"}},
      {L"a,b", false, true, {L"a", S_OK, L"a,b"}},
      {L"a,b", false, false, {L"a,", S_OK, L"a,b"}},
      {L"a,", false, true, {L"a", kFail, L"a,"}},  // the last line, nothing after it
      {L"abc", false, true, {L"abc", kFail, L"abc"}},
      {L"", true, true, {L"", kFail, L""}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "' advance " << c.advance);
    CREFString view = View(c.text), piece;
    const HRESULT result = view.GetLine(&piece, c.advance, L',', c.dropSeparator);
    ExpectOutcome(c.expected, piece, result, view);
  }
}

TEST(GetLineCRLF, JoinsOnlyDifferentLineEndCharacters) {
  struct Case {
    std::wstring text;
    bool dropLineEnd;
    bool advance;
    Outcome expected;
  } cases[] = {
      {L"x\r\n\r\ny", true, true, {L"x", S_OK, L"\r\ny"}},
      {L"\r\ny", true, true, {L"", S_OK, L"y"}},
      {L"x\n\ry", true, true, {L"x", S_OK, L"y"}},      // LF CR is one line end
      {L"x\r\ry", true, true, {L"x", S_OK, L"\ry"}},    // CR CR is two
      {L"x\n\ny", false, true, {L"x\n", S_OK, L"\ny"}},  // LF LF is two
      {L"x\r\n", false, true, {L"x\r\n", S_FALSE, L""}},
      {L"xy", true, true, {L"xy", S_FALSE, L""}},
      {L"x\r\ny", false, false, {L"x\r\n", S_OK, L"x\r\ny"}},
      {L"xy", true, false, {L"xy", S_OK, L"xy"}},
      {L"", true, true, {L"", kFail, L""}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "'");
    CREFString view = View(c.text), piece;
    const HRESULT result = view.GetLineCRLF(&piece, c.dropLineEnd, c.advance);
    ExpectOutcome(c.expected, piece, result, view);
  }
}

TEST(GetReverseLine, SplitsAtLastSeparator) {
  struct Case {
    std::wstring text;
    bool advance;
    bool skipSeparator;
    Outcome expected;
  } cases[] = {
      {L"a/b/c", true, true, {L"a/b", S_OK, L"c"}},
      {L"a/b/c", true, false, {L"a/b", S_OK, L"/c"}},
      {L"a/b/c", false, true, {L"a/b", S_OK, L"a/b/c"}},
      {L"/c", true, true, {L"", kFail, L"/c"}},  // nothing before the separator
      {L"abc", true, true, {L"", kFail, L"abc"}},
      {L"", true, true, {L"", kFail, L""}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "'");
    CREFString view = View(c.text), piece;
    const HRESULT result = view.GetReverseLine(&piece, L'/', c.advance, c.skipSeparator);
    ExpectOutcome(c.expected, piece, result, view);
  }
}

TEST(GetLineRight, TakesTailAndKeepsSeparatorOnBothSides) {
  struct Case {
    std::wstring text;
    bool advance;
    bool dropSeparator;
    bool wholeIfNone;
    Outcome expected;
  } cases[] = {
      {L"a/b/c", true, false, false, {L"/c", S_OK, L"a/b/"}},  // the separator ends the view and begins the piece
      {L"a/b/c", true, true, false, {L"c", S_OK, L"a/b"}},
      {L"a/b/c", false, false, false, {L"/c", S_OK, L"a/b/c"}},
      {L"abc", true, false, false, {L"", kFail, L"abc"}},
      {L"abc", true, false, true, {L"abc", S_OK, L""}},
      {L"abc", false, false, true, {L"abc", S_OK, L"abc"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "'");
    CREFString view = View(c.text), piece;
    const HRESULT result = view.GetLineRight(&piece, L'/', c.advance, c.dropSeparator, c.wholeIfNone);
    ExpectOutcome(c.expected, piece, result, view);
  }
}

TEST(GetLineRight, EmptyViewLeavesPieceUntouched) {
  const std::wstring kept = L"kept";
  CREFString view, piece = View(kept);
  EXPECT_EQ(kFail, view.GetLineRight(&piece, L'/', true, false, true));
  EXPECT_EQ(L"kept", Text(piece));
}

TEST(Crop, NeedsTheSeparatorAndCountsIndexZero) {
  struct Case {
    std::wstring text;
    wchar_t separator;
    bool advance;
    bool dropSeparator;
    Outcome expected;
  } cases[] = {
      {L"/abc", L'/', true, true, {L"abc", S_OK, L""}},
      {L"a.b.c", L'.', true, false, {L".c", S_OK, L"a.b."}},
      {L"a.b.c", L'.', false, true, {L"c", S_OK, L"a.b.c"}},
      {L"abc", L'.', true, true, {L"", kFail, L"abc"}},
      {L"", L'.', true, true, {L"", kFail, L""}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "'");
    CREFString view = View(c.text), piece;
    const HRESULT result = view.Crop(&piece, c.separator, c.advance, c.dropSeparator);
    ExpectOutcome(c.expected, piece, result, view);
  }
}

TEST(Split, RestStartsWithTheSeparatorAndViewIsUnchanged) {
  struct Case {
    std::wstring text;
    std::wstring separators;
    int32_t controlIsSeparator;
    std::wstring first;
    std::wstring rest;
    HRESULT result;
  } cases[] = {
      {L"ab;c", L",;", 0, L"ab", L";c", S_OK},
      {L"ab,c;d", L",;", 0, L"ab", L",c;d", S_OK},
      {L";x", L";", 0, L"", L";x", S_OK},
      {L"abc", L",", 0, L"abc", L"", kFail},
      {L"ab\tc", L",", 1, L"ab", L"\tc", S_OK},
      {L"ab\tc", L",", 0, L"ab\tc", L"", kFail},
      {L"ab\tc", L"", 1, L"ab\tc", L"", kFail},  // an empty set matches nothing, not even controls
      {L"", L",", 0, L"", L"", kFail},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "' separators '" << c.separators << "'");
    const CREFString view = View(c.text);
    CREFString first, rest;
    EXPECT_EQ(c.result, view.Split(&first, &rest, View(c.separators), c.controlIsSeparator));
    EXPECT_EQ(c.first, Text(first));
    EXPECT_EQ(c.rest, Text(rest));
    EXPECT_EQ(c.text, Text(view));
  }
}

TEST(GetFirstWord, TokenRules) {
  struct Case {
    std::wstring text;
    HRESULT result;
    std::wstring token;
    int32_t consumed;
  } cases[] = {
      {L"-3.25e-2*x", S_OK, L"-3.25e-2", 8},
      {L"1.5e10", S_OK, L"1.5", 3},  // an exponent needs its sign
      {L"1e+5", S_OK, L"1", 1},      // and a fraction before it
      {L"2.x", S_OK, L"2", 1},
      {L"12+3", S_OK, L"12", 2},
      {L"-x", kFail, L"", 0},
      {L" x", kFail, L"", 0},
      {L"\"ab\"+1", S_OK, L"ab", 4},
      {L"\"\"", S_OK, L"", 2},
      {L"\"", S_OK, L"\"", 1},
      {L"\"ab", S_OK, L"\"ab", 3},  // no closing quote
      {L"ab\"c", S_OK, L"b", 3},    // a word followed by a quote loses its first character
      {L"7\"", S_OK, L"", 2},
      {L"x_1+y", S_OK, L"x_1", 3},
      {L"name(1)", S_OK, L"name", 4},
      {L"abc def", S_OK, L"abc", 3},
      {L"+1", S_OK, L"+", 1},
      {L"#FF", S_OK, L"#", 1},
      {L"_x", S_OK, L"_", 1},  // "_" continues a word but is punctuation at its start
      {L"", kFail, L"", 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "'");
    CREFString view = View(c.text), token;
    EXPECT_EQ(c.result, view.GetFirstWord(&token, true));
    EXPECT_EQ(c.token, Text(token));
    EXPECT_EQ(c.text.substr(static_cast<size_t>(c.consumed)), Text(view));
  }
}

TEST(GetFirstWord, WithoutAdvanceKeepsView) {
  const std::wstring text = L"\"ab\"+1";
  CREFString view = View(text), token;
  EXPECT_EQ(S_OK, view.GetFirstWord(&token, false));
  EXPECT_EQ(L"ab", Text(token));
  EXPECT_EQ(text, Text(view));
}

TEST(GetWord, StopsBeforeSeparatorAndReportsItsPosition) {
  struct Case {
    std::wstring text;
    std::wstring separators;
    int32_t result;
    std::wstring word;
    std::wstring rest;
  } cases[] = {
      {L"key=value", L"=:", 4, L"key", L"=value"},
      {L"a:b=c", L"=:", 2, L"a", L":b=c"},
      {L"=x", L"=", 1, L"", L"=x"},
      {L"abc", L"=", 0, L"abc", L""},
      {L"", L"=", kFail, L"", L""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "'");
    CREFString view = View(c.text), word;
    EXPECT_EQ(c.result, view.GetWord(&word, true, View(c.separators)));
    EXPECT_EQ(c.word, Text(word));
    EXPECT_EQ(c.rest, Text(view));
  }
}

TEST(GetWord, TerminatingZeroCountsAsSeparatorWhenInSet) {
  const tagREFString zeroSeparator{1, L""};
  const std::wstring text = L"ab";
  CREFString view = View(text), word;
  EXPECT_EQ(3, view.GetWord(&word, false, zeroSeparator));
  EXPECT_EQ(L"ab", Text(word));
}

TEST(Contains, PositionQuirks) {
  struct Case {
    std::wstring text;
    std::wstring pattern;
    int32_t expected;
  } cases[] = {
      {L"abc", L"ab", 1},  // a match of two or more at index 0 is reported at 1
      {L"abc", L"bc", 1},
      {L"abc", L"c", 2},
      {L"abc", L"a", 0},
      {L"abxabc", L"abc", 3},
      {L"xaab", L"aab", 1},
      {L"aaab", L"aab", kFail},  // a mismatching character does not restart the match
      {L"abc", L"abcd", kFail},
      {L"abc", L"", kFail},
      {L"", L"a", kFail},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "'" << c.pattern << "' in '" << c.text << "'");
    EXPECT_EQ(c.expected, View(c.text).Contains(View(c.pattern)));
  }
}

TEST(ContainsChar, IndexOfFirstMember) {
  struct Case {
    std::wstring text;
    std::wstring characters;
    int32_t expected;
  } cases[] = {
      {L"abc", L"xc", 2}, {L"abc", L"ca", 0}, {L"abc", L"xy", kFail}, {L"abc", L"", kFail}, {L"", L"a", kFail},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "'" << c.characters << "' in '" << c.text << "'");
    EXPECT_EQ(c.expected, View(c.text).ContainsChar(View(c.characters)));
  }
}

TEST(TrimLeft, RemovesBlanksAndByteOrderMarkBytes) {
  struct Case {
    std::wstring text;
    bool alsoPunctuation;
    int32_t result;
    std::wstring rest;
  } cases[] = {
      {L" \t\r\nab", false, 1, L"ab"},
      {L"\x01\x1F x", false, 1, L"x"},
      {L"\u00EF\u00FE\u00EFab", false, 1, L"ab"},
      {L"\u00EFab", true, 0, L"\u00EFab"},  // byte-order-mark bytes only without punctuation
      {L",; ab", true, 1, L"ab"},
      {L",; ab", false, 0, L",; ab"},
      {L"ab", false, 0, L"ab"},
      {L"   ", false, 1, L""},
      {L"", false, 0, L""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "' punctuation " << c.alsoPunctuation);
    CREFString view = View(c.text);
    EXPECT_EQ(c.result, view.TrimLeft(c.alsoPunctuation));
    EXPECT_EQ(c.rest, Text(view));
  }
}

TEST(CompareI, CaseInsensitivePrefixes) {
  struct Case {
    std::wstring view;
    std::wstring other;
    int16_t otherMustFit;
    HRESULT expected;
  } cases[] = {
      {L"Name", L"NAME", 0, S_OK},
      {L"Name", L"Na", 0, S_FALSE},
      {L"Na", L"Name", 0, S_FALSE},
      {L"Na", L"Name", 1, kFail},
      {L"Name", L"na", 1, S_FALSE},
      {L"Name", L"Nb", 0, kFail},
      {L"", L"x", 0, kFail},
      {L"x", L"", 0, kFail},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "'" << c.view << "' with '" << c.other << "' must fit " << c.otherMustFit);
    EXPECT_EQ(c.expected, View(c.view).CompareI(View(c.other), c.otherMustFit));
  }
}

TEST(WcsnicmpTest, FoldsOnlyAsciiLettersAndIgnoresTerminators) {
  struct Case {
    std::wstring a;
    std::wstring b;
    unsigned int count;
    int expected;
  } cases[] = {
      {L"ABC", L"abc", 3, 0},
      {L"abc", L"abd", 3, -1},
      {L"abd", L"abc", 3, 1},
      {L"abX", L"abc", 2, 0},
      {L"A", L"_", 1, 1},  // 'A' compares as 'a', above '_'
      {L"\u00C9", L"\u00E9", 1, -1},  // only A to Z fold
      {std::wstring(L"a\0b", 3), std::wstring(L"a\0c", 3), 3, -1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "'" << c.a << "' vs '" << c.b << "'");
    EXPECT_EQ(c.expected, _wcsnicmp(c.a.c_str(), c.b.c_str(), c.count));
  }
}

TEST(SwprintfTest, FormatsAndTerminates) {
  wchar_t buffer[32];
  EXPECT_EQ(6, _swprintf(buffer, 32, L"%d-%ls", 42, L"abc"));
  EXPECT_EQ(std::wstring(L"42-abc"), buffer);
}

TEST(SwprintfTest, FailureLeavesEmptyTextInsideBuffer) {
  wchar_t cells[8];
  for (wchar_t& cell : cells) cell = L'#';
  EXPECT_EQ(0, _swprintf(cells + 1, 4, L"%ls", L"too long"));
  EXPECT_EQ(L'#', cells[0]);
  EXPECT_EQ(L'\0', cells[1]);
}

// A stream whose text is reached through IString, as framework streams offer it.
class CTextStream final : public CObjectImpl<CTextStream, IDataStream, IString> {
 public:
  static constexpr wchar_t kObjectName[] = L"TextStream";
  static constexpr InterfaceEntry<CTextStream> kInterfaces[] = {
      {&IID_IDataStream, InterfaceOf<CTextStream, IDataStream>},
      {&IID_IString, InterfaceOf<CTextStream, IString>},
  };

  HRESULT Write(const void*, int32_t) override { return E_NOTIMPL; }
  HRESULT Read(void*, int32_t, int32_t*) override { return E_NOTIMPL; }
  HRESULT GetBuffer(void**, int32_t*) override { return E_NOTIMPL; }
  HRESULT Reset() override { return E_NOTIMPL; }
  HRESULT GetBuffer(const wchar_t** text, int32_t* length) override {
    *text = m_Text.c_str();
    *length = static_cast<int32_t>(m_Text.size());
    return S_OK;
  }

  std::wstring m_Text = L"streamed text";
};

TEST(StreamView, ViewsTheStreamsOwnTextAndReleasesTheString) {
  SmartPtr<CTextStream> stream = NewObject<CTextStream>();
  const uint32_t before = test_support::RefCountOf(stream->GetUnknown());
  const CREFString view(static_cast<IDataStream*>(stream.get()));
  EXPECT_EQ(stream->m_Text.c_str(), view.text);
  EXPECT_EQ(L"streamed text", Text(view));
  EXPECT_EQ(before, test_support::RefCountOf(stream->GetUnknown()));

  const CREFString none(static_cast<IDataStream*>(nullptr));
  EXPECT_EQ(0, none.length);
  EXPECT_EQ(nullptr, none.text);
}

}  // namespace
