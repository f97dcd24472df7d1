// Character rules of the formula language.
#include "expression/formula_text.h"

#include <cwctype>

namespace {

constexpr wchar_t kByteOrderMarkLow = 0xEF;
constexpr wchar_t kByteOrderMarkHigh = 0xFE;
constexpr wchar_t kCommentStart = L';';
constexpr wchar_t kHexPrefix = L'#';

bool IsWordCharacter(wchar_t c) {
  return !IsFormulaBlank(c) && (c == L'_' || !std::iswpunct(static_cast<wint_t>(c)));
}

}  // namespace

bool IsFormulaBlank(wchar_t c) {
  // Plain ASCII letters, digits and operators are by far the most common: decide them without the C library.
  if (c > 0x20 && c < 0x7F) return false;
  return std::iswspace(static_cast<wint_t>(c)) || std::iswcntrl(static_cast<wint_t>(c)) ||
         c == kByteOrderMarkLow || c == kByteOrderMarkHigh;
}

void SkipBlanks(CREFString& text) {
  while (text.length > 0 && IsFormulaBlank(text.text[0])) {
    ++text.text;
    --text.length;
  }
}

bool ConsumeChar(CREFString& text, wchar_t c) {
  if (!NextIs(text, c)) return false;
  ++text.text;
  --text.length;
  return true;
}

bool NextIs(CREFString& text, wchar_t c) {
  SkipBlanks(text);
  return text.length > 0 && text.text[0] == c;
}

CREFString TakeWord(CREFString& text) {
  CREFString word(text.text, 0);
  if (text.IsEmpty()) return word;
  if (text.text[0] == kHexPrefix) {
    int32_t n = 1;
    while (n < text.length && IsWordCharacter(text.text[n])) ++n;
    word.length = n;
  } else if (FAILED(text.GetFirstWord(&word, true))) {
    // A "-" before no digit makes no word: it is taken alone so that scanning moves on.
    word = CREFString(text.text, 1);
  } else {
    return word;
  }
  text.text += word.length;
  text.length -= word.length;
  return word;
}

CREFString PrepareFormulaText(tagREFString text) {
  CREFString view(text.text, text.text ? text.length : 0);
  if (view.length < 0) view.length = 0;
  SkipBlanks(view);
  for (int32_t i = 0; i < view.length; ++i) {
    if (view.text[i] == kCommentStart) {
      view.length = i;
      break;
    }
  }
  while (view.length > 0) {
    const wchar_t last = view.text[view.length - 1];
    if (static_cast<uint32_t>(last) > 0x20 && last != 0x7F) break;
    --view.length;
  }
  return view;
}

CREFString ViewOfString(IString* text) {
  CREFString view;
  if (!text || FAILED(text->GetBuffer(&view.text, &view.length)) || !view.text || view.length < 0) return CREFString();
  return view;
}
