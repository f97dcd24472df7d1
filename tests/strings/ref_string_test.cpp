// Tests of the CREFString scanning operations and the wide-text helpers.
#include "strings/ref_string.h"

#include <gtest/gtest.h>

#include "test_support.h"

namespace {

using namespace test_support;

// Options of a cutting operation: advance, drop (or skip) the separator, and
// options of one operation each, which share their bits.
enum Option : int {
  kAdvance = 1,
  kDrop = 2,
  kWholeIfNone = 4, kControls = 4, kPunctuation = 4, kZeroSeparator = 4,
  kCrop = 8, kEmptySet = 8,
};

// One cut: the piece taken, the result, and what the view shows afterwards.
struct Cut { std::wstring text; int options; std::wstring piece; int32_t result; std::wstring rest; };

template <size_t N, class Operation>
void ExpectCuts(const Cut (&cases)[N], Operation cut) {
  for (const Cut& c : cases) {
    SCOPED_TRACE(testing::Message() << "text '" << c.text << "' options " << c.options);
    CREFString view = ViewOf(c.text), piece;
    EXPECT_EQ(c.result, cut(view, &piece, c.options));
    EXPECT_EQ(c.piece, TextOf(piece));
    EXPECT_EQ(c.rest, TextOf(view));
  }
}

TEST(GetLine, CutsAtSeparatorAndReportsWhatRemains) {
  const Cut cases[] = {
      {L"a,b", kAdvance | kDrop, L"a", S_OK, L"b"},
      {L"b", kAdvance | kDrop, L"b", S_FALSE, L""},
      {L"a,", kAdvance, L"a,", S_FALSE, L""},
      {L",x", kAdvance | kDrop, L"", S_OK, L"x"},
      {L"a,b", kDrop, L"a", S_OK, L"a,b"},
      {L"a,", kDrop, L"a", E_FAIL, L"a,"},  // the last line, nothing after it
      {L"", kAdvance | kDrop, L"", E_FAIL, L""},
  };
  ExpectCuts(cases, [](CREFString& v, auto p, int o) { return v.GetLine(p, o & kAdvance, L',', o & kDrop); });
}

TEST(GetLineCRLF, JoinsOnlyDifferentLineEndCharacters) {
  const Cut cases[] = {
      {L"x\r\n\r\ny", kAdvance | kDrop, L"x", S_OK, L"\r\ny"},
      {L"\r\ny", kAdvance | kDrop, L"", S_OK, L"y"},
      {L"x\n\ry", kAdvance | kDrop, L"x", S_OK, L"y"},    // LF CR is one line end
      {L"x\r\ry", kAdvance | kDrop, L"x", S_OK, L"\ry"},  // CR CR is two
      {L"x\n\ny", kAdvance, L"x\n", S_OK, L"\ny"},        // LF LF is two
      {L"x\r\n", kAdvance, L"x\r\n", S_FALSE, L""},
      {L"xy", kDrop, L"xy", S_OK, L"xy"},  // without advance even the last line gives 0
      {L"", kAdvance | kDrop, L"", E_FAIL, L""},
  };
  ExpectCuts(cases, [](CREFString& v, auto p, int o) { return v.GetLineCRLF(p, o & kDrop, o & kAdvance); });
}

TEST(GetReverseLine, SplitsAtLastSeparator) {
  const Cut cases[] = {
      {L"a/b/c", kAdvance | kDrop, L"a/b", S_OK, L"c"},  // kDrop: skip the separator
      {L"a/b/c", kAdvance, L"a/b", S_OK, L"/c"},
      {L"a/b/c", kDrop, L"a/b", S_OK, L"a/b/c"},
      {L"/c", kAdvance | kDrop, L"", E_FAIL, L"/c"},  // nothing before the separator
      {L"abc", kAdvance | kDrop, L"", E_FAIL, L"abc"},
  };
  ExpectCuts(cases, [](CREFString& v, auto p, int o) { return v.GetReverseLine(p, L'/', o & kAdvance, o & kDrop); });
}

// Crop is GetLineRight's cut without the fallback to the whole view.
TEST(GetLineRightAndCrop, TakeTailAndKeepSeparatorOnBothSides) {
  const Cut cases[] = {
      {L"a/b/c", kAdvance, L"/c", S_OK, L"a/b/"},  // the separator ends the view and begins the piece
      {L"a/b/c", kAdvance | kDrop, L"c", S_OK, L"a/b"},
      {L"a/b/c", 0, L"/c", S_OK, L"a/b/c"},
      {L"abc", kAdvance, L"", E_FAIL, L"abc"},
      {L"abc", kAdvance | kWholeIfNone, L"abc", S_OK, L""},
      {L"abc", kWholeIfNone, L"abc", S_OK, L"abc"},
      {L"/abc", kCrop | kAdvance | kDrop, L"abc", S_OK, L""},  // index 0 counts
      {L"a/b/c", kCrop | kAdvance, L"/c", S_OK, L"a/b/"},
      {L"a/b/c", kCrop | kDrop, L"c", S_OK, L"a/b/c"},
      {L"abc", kCrop | kAdvance | kWholeIfNone, L"", E_FAIL, L"abc"},
  };
  ExpectCuts(cases, [](CREFString& v, auto p, int o) {
    if (o & kCrop) return v.Crop(p, L'/', o & kAdvance, o & kDrop);
    return v.GetLineRight(p, L'/', o & kAdvance, o & kDrop, o & kWholeIfNone);
  });
  const std::wstring kept = L"kept";
  CREFString empty, piece = ViewOf(kept);
  EXPECT_EQ(E_FAIL, empty.GetLineRight(&piece, L'/', true, false, true));
  EXPECT_EQ(L"kept", TextOf(piece));  // an empty view leaves the piece untouched
}

// The piece is the part before the separator, the rest is Split's second piece.
TEST(Split, RestStartsWithTheSeparator) {
  const Cut cases[] = {
      {L"ab;c", 0, L"ab", S_OK, L";c"},
      {L"ab;c,d", 0, L"ab", S_OK, L";c,d"},  // the first in the text, not in the set
      {L";x", 0, L"", S_OK, L";x"},
      {L"abc", 0, L"abc", E_FAIL, L""},
      {L"ab\tc", kControls, L"ab", S_OK, L"\tc"},
      {L"ab\tc", 0, L"ab\tc", E_FAIL, L""},
      {L"ab\tc", kControls | kEmptySet, L"ab\tc", E_FAIL, L""},  // nothing matches, not even controls
  };
  ExpectCuts(cases, [](CREFString& v, auto p, int o) {
    CREFString rest;
    const HRESULT result = v.Split(p, &rest, ViewOf(o & kEmptySet ? L"" : L",;"), o & kControls);
    v = rest;
    return result;
  });
}

TEST(GetFirstWord, TokenRules) {
  const Cut cases[] = {
      {L"-3.25e-2*x", kAdvance, L"-3.25e-2", S_OK, L"*x"},
      {L"1.5e10", kAdvance, L"1.5", S_OK, L"e10"},  // an exponent needs its sign
      {L"1e+5", kAdvance, L"1", S_OK, L"e+5"},      // and a fraction before it
      {L"12.x", kAdvance, L"12", S_OK, L".x"},
      {L"-x", kAdvance, L"", E_FAIL, L"-x"},
      {L" x", kAdvance, L"", E_FAIL, L" x"},
      {L"\"ab\"+1", kAdvance, L"ab", S_OK, L"+1"},
      {L"\"ab\"+1", 0, L"ab", S_OK, L"\"ab\"+1"},
      {L"\"\"", kAdvance, L"", S_OK, L""},
      {L"\"ab", kAdvance, L"\"ab", S_OK, L""},  // no closing quote
      {L"ab\"c", kAdvance, L"b", S_OK, L"c"},   // a word followed by a quote loses its first character
      {L"x_1+y", kAdvance, L"x_1", S_OK, L"+y"},
      {L"+1", kAdvance, L"+", S_OK, L"1"},
      {L"_x", kAdvance, L"_", S_OK, L"x"},  // "_" continues a word but is punctuation at its start
  };
  ExpectCuts(cases, [](CREFString& v, auto p, int o) { return v.GetFirstWord(p, o & kAdvance); });
}

TEST(GetWord, StopsBeforeSeparatorAndReportsItsPosition) {
  const Cut cases[] = {
      {L"key=value", kAdvance, L"key", 4, L"=value"},
      {L"a:b=c", kAdvance, L"a", 2, L":b=c"},
      {L"=x", kAdvance, L"", 1, L"=x"},
      {L"abc", kAdvance, L"abc", 0, L""},
      {L"ab", kZeroSeparator, L"ab", 3, L"ab"},  // the terminating zero past the view is looked at
      {L"", kAdvance, L"", E_FAIL, L""},
  };
  ExpectCuts(cases, [](CREFString& v, auto p, int o) {
    return v.GetWord(p, o & kAdvance, o & kZeroSeparator ? tagREFString{1, L""} : tagREFString{2, L"=:"});
  });
}

TEST(TrimLeft, RemovesBlanksAndByteOrderMarkBytes) {
  const Cut cases[] = {
      {L" \t\r\nab", 0, L"", 1, L"ab"},
      {L"\x01\x1F x", 0, L"", 1, L"x"},
      {L"\u00EF\u00FE\u00EFab", 0, L"", 1, L"ab"},
      {L"\u00EFab", kPunctuation, L"", 0, L"\u00EFab"},  // byte-order-mark bytes only without punctuation
      {L",; ab", kPunctuation, L"", 1, L"ab"},
      {L",; ab", 0, L"", 0, L",; ab"},
      {L"   ", 0, L"", 1, L""},
  };
  ExpectCuts(cases, [](CREFString& v, CREFString*, int o) { return v.TrimLeft(o & kPunctuation); });
}

// A search or comparison of two texts, with an optional third argument.
struct Probe { std::wstring a, b; int32_t expected; int argument = 0; };

template <size_t N, class Operation>
void ExpectProbes(const Probe (&cases)[N], Operation probe) {
  for (const Probe& c : cases)
    EXPECT_EQ(c.expected, probe(c.a, c.b, c.argument)) << "'" << c.a << "' and '" << c.b << "' with " << c.argument;
}

TEST(Contains, PositionQuirks) {
  const Probe cases[] = {
      {L"abc", L"ab", 1},  // a match of two or more at index 0 is reported at 1
      {L"abc", L"bc", 1}, {L"abc", L"c", 2}, {L"abc", L"a", 0}, {L"abxabc", L"abc", 3},
      {L"aab", L"ab", E_FAIL}, {L"aaab", L"aab", E_FAIL},  // a mismatching character does not start a match
      {L"abc", L"abcd", E_FAIL}, {L"abc", L"", E_FAIL}};
  ExpectProbes(cases, [](auto& text, auto& pattern, int) { return ViewOf(text).Contains(ViewOf(pattern)); });
}

TEST(ContainsChar, IndexOfFirstMember) {
  const Probe cases[] = {{L"abc", L"xc", 2}, {L"abc", L"ca", 0}, {L"abc", L"xy", E_FAIL}, {L"abc", L"", E_FAIL}};
  ExpectProbes(cases, [](auto& text, auto& characters, int) { return ViewOf(text).ContainsChar(ViewOf(characters)); });
}

TEST(CompareI, CaseInsensitivePrefixes) {
  const Probe cases[] = {
      {L"Name", L"NAME", S_OK}, {L"Name", L"Na", S_FALSE}, {L"Na", L"Name", S_FALSE},
      {L"Na", L"Name", E_FAIL, 1}, {L"Name", L"na", S_FALSE, 1},  // 1: the other must fit
      {L"Name", L"Nb", E_FAIL}, {L"x", L"", E_FAIL}};
  ExpectProbes(cases, [](auto& view, auto& other, int16_t fit) { return ViewOf(view).CompareI(ViewOf(other), fit); });
}

TEST(Wcsnicmp, FoldsOnlyAsciiLettersAndIgnoresTerminators) {
  const Probe cases[] = {
      {L"ABC", L"abc", 0, 3}, {L"abc", L"abd", -1, 3}, {L"abd", L"abc", 1, 3}, {L"abX", L"abc", 0, 2},
      {L"A", L"_", 1, 1},             // 'A' compares as 'a', above '_'
      {L"\u00C9", L"\u00E9", -1, 1},  // only A to Z fold
      {std::wstring(L"a\0b", 3), std::wstring(L"a\0c", 3), -1, 3},
  };
  ExpectProbes(cases, [](auto& a, auto& b, unsigned n) { return _wcsnicmp(a.c_str(), b.c_str(), n); });
}

TEST(Swprintf, FormatsAndTerminatesInsideTheBuffer) {
  wchar_t cells[32];
  EXPECT_EQ(6, _swprintf(cells, 32, L"%d-%ls", 42, L"abc"));
  EXPECT_EQ(std::wstring(L"42-abc"), cells);
  cells[0] = L'#';
  EXPECT_EQ(0, _swprintf(cells + 1, 4, L"%ls", L"too long"));  // a failure leaves an empty text
  EXPECT_EQ(L'#', cells[0]);
  EXPECT_EQ(L'\0', cells[1]);
}

// A stream whose text is reached through IString, as framework streams offer it.
class CTextStream : public CObjectImpl<CTextStream, IDataStream, IString> {
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
  EXPECT_EQ(L"streamed text", TextOf(view));
  EXPECT_EQ(before, test_support::RefCountOf(stream->GetUnknown()));
  const CREFString none(static_cast<IDataStream*>(nullptr));
  EXPECT_EQ(0, none.length);
  EXPECT_EQ(nullptr, none.text);
}

}  // namespace
