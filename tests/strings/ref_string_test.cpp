// Tests of the CREFString scanning operations and the wide-text helpers.
#include "strings/ref_string.h"

#include <gtest/gtest.h>

#include "test_support.h"

namespace {

using namespace test_support;

// Options of a cutting operation: advance, drop (or skip) the separator, and one option of each operation,
// which share their bit.
enum Option : int { kAdvance = 1, kDrop = 2, kWholeIfNone = 4, kControls = 4, kPunctuation = 4, kZeroSeparator = 4,
                    kEmptySet = 8 };
enum Operation { kLine, kCRLF, kReverse, kRight, kCrop, kSplit, kFirstWord, kWord, kTrim };

// One cut: the piece taken, the result, and what the view shows afterwards.
struct Cut { Operation op; std::wstring text; int options; std::wstring piece; int32_t result; std::wstring rest; };

HRESULT Apply(Operation op, CREFString& v, CREFString* p, int o) {
  switch (op) {
    case kLine: return v.GetLine(p, o & kAdvance, L',', o & kDrop);
    case kCRLF: return v.GetLineCRLF(p, o & kDrop, o & kAdvance);
    case kReverse: return v.GetReverseLine(p, L'/', o & kAdvance, o & kDrop);
    case kRight: return v.GetLineRight(p, L'/', o & kAdvance, o & kDrop, o & kWholeIfNone);
    case kCrop: return v.Crop(p, L'/', o & kAdvance, o & kDrop);
    case kSplit: {
      CREFString rest;  // the piece is the part before the separator; the view shows the rest
      const HRESULT result = v.Split(p, &rest, ViewOf(o & kEmptySet ? L"" : L",;"), o & kControls);
      v = rest;
      return result;
    }
    case kFirstWord: return v.GetFirstWord(p, o & kAdvance);
    case kWord: return v.GetWord(p, o & kAdvance, o & kZeroSeparator ? tagREFString{1, L""} : tagREFString{2, L"=:"});
    case kTrim: return v.TrimLeft(o & kPunctuation);
  }
  return E_FAIL;
}

TEST(CREFString, CutsTakeAPieceAndLeaveTheRest) {
  const Cut cases[] = {
      {kLine, L"a,b", kAdvance | kDrop, L"a", S_OK, L"b"}, {kLine, L"b", kAdvance | kDrop, L"b", S_FALSE, L""},
      {kLine, L"a,", kAdvance, L"a,", S_FALSE, L""}, {kLine, L",x", kAdvance | kDrop, L"", S_OK, L"x"},
      {kLine, L"a,b", kDrop, L"a", S_OK, L"a,b"},
      {kLine, L"a,", kDrop, L"a", E_FAIL, L"a,"},  // the last line, nothing after it
      {kLine, L"", kAdvance | kDrop, L"", E_FAIL, L""}, {kCRLF, L"x\r\n\r\ny", kAdvance | kDrop, L"x", S_OK, L"\r\ny"},
      {kCRLF, L"\r\ny", kAdvance | kDrop, L"", S_OK, L"y"},
      {kCRLF, L"x\n\ry", kAdvance | kDrop, L"x", S_OK, L"y"},    // LF CR is one line end
      {kCRLF, L"x\r\ry", kAdvance | kDrop, L"x", S_OK, L"\ry"},  // CR CR is two
      {kCRLF, L"x\n\ny", kAdvance, L"x\n", S_OK, L"\ny"},        // LF LF is two
      {kCRLF, L"x\r\n", kAdvance, L"x\r\n", S_FALSE, L""},
      {kCRLF, L"xy", kDrop, L"xy", S_OK, L"xy"},  // without advance even the last line gives 0
      {kCRLF, L"", kAdvance | kDrop, L"", E_FAIL, L""},
      {kReverse, L"a/b/c", kAdvance | kDrop, L"a/b", S_OK, L"c"},  // kDrop: skip the separator
      {kReverse, L"a/b/c", kAdvance, L"a/b", S_OK, L"/c"}, {kReverse, L"a/b/c", kDrop, L"a/b", S_OK, L"a/b/c"},
      {kReverse, L"/c", kAdvance | kDrop, L"", E_FAIL, L"/c"},  // nothing before the separator
      {kReverse, L"abc", kAdvance | kDrop, L"", E_FAIL, L"abc"},
      {kRight, L"a/b/c", kAdvance, L"/c", S_OK, L"a/b/"},  // the separator ends the view and begins the piece
      {kRight, L"a/b/c", kAdvance | kDrop, L"c", S_OK, L"a/b"}, {kRight, L"a/b/c", 0, L"/c", S_OK, L"a/b/c"},
      {kRight, L"abc", kAdvance, L"", E_FAIL, L"abc"}, {kRight, L"abc", kAdvance | kWholeIfNone, L"abc", S_OK, L""},
      {kRight, L"abc", kWholeIfNone, L"abc", S_OK, L"abc"},
      {kCrop, L"/abc", kAdvance | kDrop, L"abc", S_OK, L""},  // index 0 counts
      {kCrop, L"a/b/c", kAdvance, L"/c", S_OK, L"a/b/"}, {kCrop, L"a/b/c", kDrop, L"c", S_OK, L"a/b/c"},
      {kCrop, L"abc", kAdvance | kWholeIfNone, L"", E_FAIL, L"abc"}, {kSplit, L"ab;c", 0, L"ab", S_OK, L";c"},
      {kSplit, L"ab;c,d", 0, L"ab", S_OK, L";c,d"},  // the first in the text, not in the set
      {kSplit, L";x", 0, L"", S_OK, L";x"}, {kSplit, L"abc", 0, L"abc", E_FAIL, L""},
      {kSplit, L"ab\tc", kControls, L"ab", S_OK, L"\tc"}, {kSplit, L"ab\tc", 0, L"ab\tc", E_FAIL, L""},
      {kSplit, L"ab\tc", kControls | kEmptySet, L"ab\tc", E_FAIL, L""},  // nothing matches, not even controls
      {kFirstWord, L"-3.25e-2*x", kAdvance, L"-3.25e-2", S_OK, L"*x"},
      {kFirstWord, L"1.5e10", kAdvance, L"1.5", S_OK, L"e10"},  // an exponent needs its sign
      {kFirstWord, L"1e+5", kAdvance, L"1", S_OK, L"e+5"},      // and a fraction before it
      {kFirstWord, L"12.x", kAdvance, L"12", S_OK, L".x"}, {kFirstWord, L"-x", kAdvance, L"", E_FAIL, L"-x"},
      {kFirstWord, L" x", kAdvance, L"", E_FAIL, L" x"}, {kFirstWord, L"\"ab\"+1", kAdvance, L"ab", S_OK, L"+1"},
      {kFirstWord, L"\"ab\"+1", 0, L"ab", S_OK, L"\"ab\"+1"}, {kFirstWord, L"\"\"", kAdvance, L"", S_OK, L""},
      {kFirstWord, L"\"ab", kAdvance, L"\"ab", S_OK, L""},  // no closing quote
      {kFirstWord, L"ab\"c", kAdvance, L"b", S_OK, L"c"},   // a word followed by a quote loses its first character
      {kFirstWord, L"x_1+y", kAdvance, L"x_1", S_OK, L"+y"}, {kFirstWord, L"+1", kAdvance, L"+", S_OK, L"1"},
      {kFirstWord, L"_x", kAdvance, L"_", S_OK, L"x"},  // "_" continues a word but is punctuation at its start
      {kWord, L"key=value", kAdvance, L"key", 4, L"=value"}, {kWord, L"a:b=c", kAdvance, L"a", 2, L":b=c"},
      {kWord, L"=x", kAdvance, L"", 1, L"=x"}, {kWord, L"abc", kAdvance, L"abc", 0, L""},
      {kWord, L"ab", kZeroSeparator, L"ab", 3, L"ab"},  // the terminating zero past the view is looked at
      {kWord, L"", kAdvance, L"", E_FAIL, L""}, {kTrim, L" \t\r\nab", 0, L"", 1, L"ab"},
      {kTrim, L"\x01\x1F x", 0, L"", 1, L"x"}, {kTrim, L"\u00EF\u00FE\u00EFab", 0, L"", 1, L"ab"},
      {kTrim, L"\u00EFab", kPunctuation, L"", 0, L"\u00EFab"},  // byte-order-mark bytes only without punctuation
      {kTrim, L",; ab", kPunctuation, L"", 1, L"ab"}, {kTrim, L",; ab", 0, L"", 0, L",; ab"},
      {kTrim, L"   ", 0, L"", 1, L""},
  };
  for (const Cut& c : cases) {
    SCOPED_TRACE(testing::Message() << "operation " << c.op << " text '" << c.text << "' options " << c.options);
    CREFString view = ViewOf(c.text), piece;
    EXPECT_EQ(c.result, Apply(c.op, view, &piece, c.options));
    EXPECT_EQ(c.piece, TextOf(piece));
    EXPECT_EQ(c.rest, TextOf(view));
  }
  const std::wstring kept = L"kept";
  CREFString empty, piece = ViewOf(kept);
  EXPECT_EQ(E_FAIL, empty.GetLineRight(&piece, L'/', true, false, true));
  EXPECT_EQ(L"kept", TextOf(piece));  // an empty view leaves the piece untouched
}

// A search or comparison of two texts, with a third argument where the operation takes one.
enum ProbeOperation { kContains, kContainsChar, kCompareI, kWcsnicmp };
struct Probe { ProbeOperation op; std::wstring a, b; int32_t expected; int argument = 0; };

TEST(CREFString, SearchesAndComparisons) {
  const Probe cases[] = {
      {kContains, L"abc", L"ab", 1},  // a match of two or more at index 0 is reported at 1
      {kContains, L"abc", L"bc", 1}, {kContains, L"abc", L"c", 2}, {kContains, L"abc", L"a", 0},
      {kContains, L"abxabc", L"abc", 3}, {kContains, L"abc", L"abcd", E_FAIL}, {kContains, L"abc", L"", E_FAIL},
      {kContains, L"aab", L"ab", E_FAIL}, {kContains, L"aaab", L"aab", E_FAIL},  // a mismatch does not start a match
      {kContainsChar, L"abc", L"xc", 2}, {kContainsChar, L"abc", L"ca", 0}, {kContainsChar, L"abc", L"xy", E_FAIL},
      {kContainsChar, L"abc", L"", E_FAIL}, {kCompareI, L"Name", L"NAME", S_OK}, {kCompareI, L"Name", L"Na", S_FALSE},
      {kCompareI, L"Na", L"Name", S_FALSE}, {kCompareI, L"Name", L"Nb", E_FAIL}, {kCompareI, L"x", L"", E_FAIL},
      {kCompareI, L"Na", L"Name", E_FAIL, 1}, {kCompareI, L"Name", L"na", S_FALSE, 1},  // 1: the other must fit
      {kWcsnicmp, L"ABC", L"abc", 0, 3}, {kWcsnicmp, L"abc", L"abd", -1, 3}, {kWcsnicmp, L"abd", L"abc", 1, 3},
      {kWcsnicmp, L"abX", L"abc", 0, 2}, {kWcsnicmp, L"A", L"_", 1, 1},  // 'A' compares as 'a', above '_'
      {kWcsnicmp, L"\u00C9", L"\u00E9", -1, 1},  // only A to Z fold
      {kWcsnicmp, std::wstring(L"a\0b", 3), std::wstring(L"a\0c", 3), -1, 3},  // terminators are no end
  };
  for (const Probe& c : cases) {
    const CREFString a = ViewOf(c.a), b = ViewOf(c.b);
    const int32_t actual = c.op == kContains       ? a.Contains(b)
                           : c.op == kContainsChar ? a.ContainsChar(b)
                           : c.op == kCompareI     ? a.CompareI(b, static_cast<int16_t>(c.argument))
                                                   : _wcsnicmp(c.a.c_str(), c.b.c_str(), c.argument);
    EXPECT_EQ(c.expected, actual) << c.op << ": '" << c.a << "' and '" << c.b << "' with " << c.argument;
  }
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
      {&IID_IDataStream, InterfaceOf<CTextStream, IDataStream>}, {&IID_IString, InterfaceOf<CTextStream, IString>},
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
