// CREFString: a counted view of wide text with scanning operations, and the
// factories of the framework's basic value objects.
//
// A view is two words, a length and a pointer, and owns nothing: every piece
// it hands out points into the text it was made from, which must outlive the
// views. Parsers consume text by taking a piece off the front (or back) of a
// view and advancing the view; no operation allocates or copies.
//
// Advancing operations return 0 while text remains, 1 (S_FALSE) when the view
// has just become empty, and E_FAIL when there was nothing to take. Every
// output piece may be null; then only the view itself changes.
//
// The scanning operations are plain (non-virtual) members: the class never
// crosses an interface, and without a table pointer a view stays exactly the
// two words of tagREFString, so it is passed by value as cheaply as one.
#pragma once

#include "params.h"

struct CREFString : tagREFString {
  CREFString() : tagREFString{0, nullptr} {}
  CREFString(const wchar_t* text, int32_t length) : tagREFString{length, text} {}
  explicit CREFString(tagREFString view) : tagREFString(view) {}
  // A view of the stream's own text (through its IString), or an empty view.
  explicit CREFString(IDataStream* stream);

  bool IsEmpty() const { return length <= 0; }

  // The front line up to and including the first `separator` (dropped from the
  // piece if `dropSeparator`). Without advance: 0 if more text follows, else E_FAIL.
  HRESULT GetLine(CREFString* piece, bool advance, wchar_t separator, bool dropSeparator);
  // The front line up to a line end; CR LF and LF CR are one line end, CR CR two.
  HRESULT GetLineCRLF(CREFString* piece, bool dropLineEnd, bool advance);
  // Everything before the last `separator`; with advance the view keeps the tail
  // from the separator on (or after it if `skipSeparator`).
  HRESULT GetReverseLine(CREFString* piece, wchar_t separator, bool advance, bool skipSeparator);
  // The tail from the last `separator` on; with advance the view keeps the head.
  // Without `dropSeparator` the separator ends the view and begins the piece.
  HRESULT GetLineRight(CREFString* piece, wchar_t separator, bool advance, bool dropSeparator,
                       bool wholeIfNone);
  // As GetLineRight, but the separator must exist.
  HRESULT Crop(CREFString* piece, wchar_t separator, bool advance, bool dropSeparator);
  // Splits before the first character out of `separators` (or, if
  // `controlIsSeparator`, below 32); `rest` starts with that separator. The view is unchanged.
  HRESULT Split(CREFString* first, CREFString* rest, CREFString separators, int32_t controlIsSeparator) const;
  // The front token: a quoted string, a number, one punctuation character or a word.
  HRESULT GetFirstWord(CREFString* token, bool advance);
  // The front word up to the first character out of `separators`; returns the
  // one-based position of that separator, or 0 if there is none.
  int32_t GetWord(CREFString* word, bool advance, tagREFString separators);
  // Position of `pattern` (see the definition for how positions are counted), or E_FAIL.
  int32_t Contains(tagREFString pattern) const;
  // Index of the first character that is in `characters`, or E_FAIL.
  int32_t ContainsChar(tagREFString characters) const;
  // Removes leading blanks (and punctuation if asked); 1 if anything was removed.
  int32_t TrimLeft(bool alsoPunctuation);
  // Case-insensitive comparison over the shorter length (or all of `other` if it
  // must fit): 0 equal, 1 one is a prefix of the other, E_FAIL otherwise.
  HRESULT CompareI(tagREFString other, int16_t otherMustFit) const;

  // A new, empty framework string ("CreatableString"), one reference for the caller.
  static ICreatableString* CreateString();
  // A new, empty framework variant ("Variant").
  static IVariant* CreateVariant();
  // A new framework collection ("SuperCollection").
  static ISuperCollection* CreateCollection();
};

// Compares exactly `count` characters, folding only A to Z: -1, 0 or 1.
// It does not stop at a terminating zero.
int _wcsnicmp(const wchar_t* a, const wchar_t* b, unsigned int count);

// vswprintf into `buffer` (capacity `size`), terminated, in the "C" locale
// whatever the process locale; returns the count.
// When formatting fails the buffer holds an empty text and the count is 0.
int _swprintf(wchar_t* buffer, unsigned int size, const wchar_t* format, ...);

// Space, control characters (code 32 or less) and DEL: what is trimmed from the end of lines and values.
inline bool IsTrailingBlank(wchar_t c) {
  const auto code = static_cast<uint32_t>(c);
  return code <= 32 || code == 127;
}
