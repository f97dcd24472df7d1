// CREFString scanning operations and the wide-text helpers _wcsnicmp and _swprintf.
#include "strings/ref_string.h"

#include <cstdarg>
#include <cwctype>

#include "runtime/smart_ptr.h"
#include "strings/c_locale.h"

namespace {

constexpr wchar_t kQuote = L'"';
constexpr wchar_t kByteOrderMarkLow = 239;   // stray bytes of a byte-order mark
constexpr wchar_t kByteOrderMarkHigh = 254;

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
// Printable ASCII, by far the most common, is decided without the C library.
bool IsPrintableAscii(wchar_t c) { return c > 0x20 && c < 0x7F; }
bool IsAsciiAlphanumeric(wchar_t c) { return IsDigit(c) || (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z'); }
bool IsSpace(wchar_t c) { return !IsPrintableAscii(c) && std::iswspace(static_cast<wint_t>(c)) != 0; }
bool IsControl(wchar_t c) { return std::iswcntrl(static_cast<wint_t>(c)) != 0; }
bool IsPunctuation(wchar_t c) {
  if (IsPrintableAscii(c)) return !IsAsciiAlphanumeric(c);
  return std::iswpunct(static_cast<wint_t>(c)) != 0;
}
bool IsLineEnd(wchar_t c) { return c == L'\n' || c == L'\r'; }

bool IsOneOf(wchar_t c, tagREFString set) {
  for (int32_t i = 0; i < set.length; ++i)
    if (set.text[i] == c) return true;
  return false;
}

// The character at `index`, or 0 past the view: a view of terminated text is
// followed by its terminating zero, and this stands in for reading it.
wchar_t CharAtOrZero(tagREFString view, int32_t index) { return index < view.length ? view.text[index] : L'\0'; }

void SetPiece(CREFString* piece, const wchar_t* text, int32_t length) {
  if (!piece) return;
  piece->text = text;
  piece->length = length;
}

int32_t IndexOfFirst(tagREFString view, wchar_t c) {
  for (int32_t i = 0; i < view.length; ++i)
    if (view.text[i] == c) return i;
  return -1;
}

int32_t IndexOfLast(tagREFString view, wchar_t c) {
  for (int32_t i = view.length - 1; i >= 0; --i)
    if (view.text[i] == c) return i;
  return -1;
}

// Moves the view's start past `count` characters: 0 while text remains, else 1.
HRESULT Consume(CREFString& view, int32_t count) {
  view.text += count;
  view.length -= count;
  if (view.length > 0) return S_OK;
  view.length = 0;
  return S_FALSE;
}

// Cuts the view at the separator at index `s`: the piece is the tail from the
// separator on (after it if `dropSeparator`), and with advance the view keeps the head.
HRESULT CutAfter(CREFString& view, int32_t s, CREFString* piece, bool advance, bool dropSeparator) {
  const int32_t start = dropSeparator ? s + 1 : s;
  SetPiece(piece, view.text + start, view.length - start);
  // Without dropSeparator the separator stays at the end of the view and also
  // begins the piece: intended, callers rely on seeing it on both sides.
  if (advance) view.length = dropSeparator ? s : s + 1;
  return S_OK;
}

// Length of a number token at the front: [-]digits[.digits[(E|e)(+|-)digits]].
// An exponent counts only after a fraction and only with its sign.
int32_t NumberTokenLength(tagREFString view) {
  int32_t n = 0;
  if (CharAtOrZero(view, 0) == L'-') ++n;
  while (IsDigit(CharAtOrZero(view, n))) ++n;
  if (CharAtOrZero(view, n) != L'.' || !IsDigit(CharAtOrZero(view, n + 1))) return n;
  n += 1;
  while (IsDigit(CharAtOrZero(view, n))) ++n;
  const wchar_t e = CharAtOrZero(view, n), sign = CharAtOrZero(view, n + 1);
  if ((e == L'E' || e == L'e') && (sign == L'+' || sign == L'-') && IsDigit(CharAtOrZero(view, n + 2))) {
    n += 2;
    while (IsDigit(CharAtOrZero(view, n))) ++n;
  }
  return n;
}

// Length of the front token before the quote rule; 0 when there is none.
int32_t FirstTokenLength(tagREFString view) {
  const wchar_t c = view.text[0];
  if (c == kQuote) {
    if (view.length == 1 || view.text[1] == kQuote) return 1;
    for (int32_t i = 1; i < view.length; ++i)
      if (view.text[i] == kQuote) return i;
    return view.length;
  }
  if (IsDigit(c) || (c == L'-' && IsDigit(CharAtOrZero(view, 1)))) return NumberTokenLength(view);
  if (c != L'-' && IsPunctuation(c)) return 1;
  int32_t n = 0;
  while (n < view.length) {
    const wchar_t d = view.text[n];
    if (IsSpace(d) || (IsPunctuation(d) && d != L'_')) break;
    ++n;
  }
  return n;
}

}  // namespace

CREFString::CREFString(IDataStream* stream) : CREFString() {
  if (SmartPtr<IString> string = QueryAs<IString>(stream)) {
    if (FAILED(string->GetBuffer(&text, &length)) || !text || length < 0) *this = CREFString();
  }
}

HRESULT CREFString::GetLine(CREFString* piece, bool advance, wchar_t separator, bool dropSeparator) {
  if (IsEmpty()) {
    SetPiece(piece, text, 0);
    return E_FAIL;
  }
  const int32_t found = IndexOfFirst(*this, separator);
  const int32_t k = found < 0 ? length : found + 1;
  const bool endsWithSeparator = k > 0 && text[k - 1] == separator;
  SetPiece(piece, text, dropSeparator && endsWithSeparator ? k - 1 : k);
  if (!advance) return k < length ? S_OK : E_FAIL;
  return Consume(*this, k);
}

HRESULT CREFString::GetLineCRLF(CREFString* piece, bool dropLineEnd, bool advance) {
  if (IsEmpty()) {
    SetPiece(piece, text, 0);
    return E_FAIL;
  }
  int32_t e = 0;
  while (e < length && !IsLineEnd(text[e])) ++e;
  int32_t consumed = e;
  if (e < length) {
    consumed = e + 1;
    // A different line-end character right after joins the same line end (CR LF, LF CR).
    if (e + 1 < length && text[e + 1] != text[e] && IsLineEnd(text[e + 1])) consumed = e + 2;
  }
  SetPiece(piece, text, dropLineEnd ? e : consumed);
  if (!advance) return S_OK;
  return Consume(*this, consumed);
}

HRESULT CREFString::GetReverseLine(CREFString* piece, wchar_t separator, bool advance, bool skipSeparator) {
  const int32_t s = IndexOfLast(*this, separator);
  if (s < 0) {
    SetPiece(piece, text, 0);
    return E_FAIL;
  }
  SetPiece(piece, text, s);
  if (s == 0) return E_FAIL;
  if (advance) {
    const int32_t moved = skipSeparator ? s + 1 : s;
    text += moved;
    length -= moved;
  }
  return S_OK;
}

HRESULT CREFString::GetLineRight(CREFString* piece, wchar_t separator, bool advance, bool dropSeparator,
                                 bool wholeIfNone) {
  if (IsEmpty()) return E_FAIL;
  const int32_t s = IndexOfLast(*this, separator);
  if (s >= 0) return CutAfter(*this, s, piece, advance, dropSeparator);
  if (!wholeIfNone) {
    SetPiece(piece, text, 0);
    return E_FAIL;
  }
  SetPiece(piece, text, length);
  if (advance) length = 0;
  return S_OK;
}

HRESULT CREFString::Crop(CREFString* piece, wchar_t separator, bool advance, bool dropSeparator) {
  const int32_t s = IndexOfLast(*this, separator);
  if (s < 0) {
    SetPiece(piece, text, 0);
    return E_FAIL;
  }
  return CutAfter(*this, s, piece, advance, dropSeparator);
}

HRESULT CREFString::Split(CREFString* first, CREFString* rest, CREFString separators,
                          int32_t controlIsSeparator) const {
  if (IsEmpty()) {
    SetPiece(first, text, 0);
    SetPiece(rest, text, 0);
    return E_FAIL;
  }
  if (!separators.IsEmpty()) {
    for (int32_t i = 0; i < length; ++i) {
      const wchar_t c = text[i];
      if (IsOneOf(c, separators) || (controlIsSeparator && static_cast<uint32_t>(c) < 32)) {
        SetPiece(first, text, i);
        SetPiece(rest, text + i, length - i);
        return S_OK;
      }
    }
  }
  SetPiece(first, text, length);
  SetPiece(rest, text + length, 0);
  return E_FAIL;
}

HRESULT CREFString::GetFirstWord(CREFString* token, bool advance) {
  if (IsEmpty()) {
    SetPiece(token, text, 0);
    return E_FAIL;
  }
  int32_t n = FirstTokenLength(*this);
  if (n == 0) {
    SetPiece(token, text, 0);
    return E_FAIL;
  }
  if (CharAtOrZero(*this, n) == kQuote) {
    // The closing quote is consumed and the token's first character (the opening
    // quote of a quoted string) dropped. This applies after any token: a word
    // directly followed by a quote loses its first character, intentionally.
    SetPiece(token, text + 1, n - 1);
    ++n;
  } else {
    SetPiece(token, text, n);
  }
  if (advance) {
    text += n;
    length -= n;
  }
  return S_OK;
}

int32_t CREFString::GetWord(CREFString* word, bool advance, tagREFString separators) {
  if (IsEmpty()) {
    SetPiece(word, text, 0);
    return E_FAIL;
  }
  int32_t i = 0;
  while (i < length && !IsOneOf(text[i], separators)) ++i;
  // The character past the view (the terminating zero) is looked at too.
  const bool found = i < length || IsOneOf(CharAtOrZero(*this, i), separators);
  SetPiece(word, text, i);
  if (advance) {
    text += i;
    length -= i;
  }
  return found ? i + 1 : 0;
}

int32_t CREFString::Contains(tagREFString pattern) const {
  if (pattern.length <= 0 || IsEmpty()) return E_FAIL;
  int32_t matched = 0, position = 0;
  for (int32_t i = 0; i < length; ++i) {
    if (text[i] == pattern.text[matched]) {
      // 0 doubles as "no position yet", so a match of two or more characters at
      // index 0 is reported at 1. Intended: kept as callers know it.
      if (position == 0) position = i;
      if (++matched == pattern.length) return position;
    } else {
      // The mismatching character is not tried as a new start (intended).
      matched = 0;
      position = 0;
    }
  }
  return E_FAIL;
}

int32_t CREFString::ContainsChar(tagREFString characters) const {
  if (characters.length <= 0 || IsEmpty()) return E_FAIL;
  for (int32_t i = 0; i < length; ++i)
    if (IsOneOf(text[i], characters)) return i;
  return E_FAIL;
}

int32_t CREFString::TrimLeft(bool alsoPunctuation) {
  int32_t removed = 0;
  while (removed < length) {
    const wchar_t c = text[removed];
    const bool extra = alsoPunctuation ? IsPunctuation(c) : (c == kByteOrderMarkLow || c == kByteOrderMarkHigh);
    if (!IsSpace(c) && !IsControl(c) && !extra) break;
    ++removed;
  }
  if (removed == 0) return 0;
  text += removed;
  length -= removed;
  return 1;
}

HRESULT CREFString::CompareI(tagREFString other, int16_t otherMustFit) const {
  if (otherMustFit && other.length > length) return E_FAIL;
  const int32_t count = otherMustFit ? other.length : (other.length < length ? other.length : length);
  if (count <= 0 || IsEmpty()) return E_FAIL;
  for (int32_t i = 0; i < count; ++i) {
    if (std::towlower(static_cast<wint_t>(text[i])) != std::towlower(static_cast<wint_t>(other.text[i])))
      return E_FAIL;
  }
  return other.length == length ? S_OK : S_FALSE;
}

int _wcsnicmp(const wchar_t* a, const wchar_t* b, unsigned int count) {
  const auto fold = [](wchar_t c) -> uint32_t {
    return (c >= L'A' && c <= L'Z') ? static_cast<uint32_t>(c - L'A' + L'a') : static_cast<uint32_t>(c);
  };
  for (unsigned int i = 0; i < count; ++i) {
    const uint32_t x = fold(a[i]), y = fold(b[i]);
    if (x != y) return x < y ? -1 : 1;
  }
  return 0;
}

int _swprintf(wchar_t* buffer, unsigned int size, const wchar_t* format, ...) {
  if (!buffer || size == 0) return 0;
  CLocaleScope numbersAsInC;
  va_list args;
  va_start(args, format);
  const int count = format ? std::vswprintf(buffer, size, format, args) : -1;
  va_end(args);
  // A failed format (also one that does not fit) leaves an empty text rather
  // than a terminator stored before the buffer.
  if (count < 0) {
    buffer[0] = L'\0';
    return 0;
  }
  buffer[count] = L'\0';
  return count;
}
