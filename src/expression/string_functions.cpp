// String functions of the formula language: StrLen, Chr, Find and StrToNum.
// They name a parameter by a plain word (not an operand) and read its value as text.
#include <algorithm>
#include <cwchar>
#include <cwctype>

#include "expression/formula_scanner.h"
#include "expression/formula_text.h"
#include "strings/conversions.h"

namespace {

using namespace function_code;

// A word naming a parameter; empty when the argument list ends or moves on first.
CREFString TakeNameWord(CREFString& rest) {
  SkipBlanks(rest);
  if (rest.IsEmpty() || rest.text[0] == L')' || rest.text[0] == L',') return CREFString(rest.text, 0);
  return TakeWord(rest);
}

// The text up to (not including) the first of `stops`, blanks trimmed at both
// ends; the view moves to that character.
CREFString TakeTextUpTo(CREFString& rest, const wchar_t* stops) {
  SkipBlanks(rest);
  CREFString piece(rest.text, 0);
  while (rest.length > 0 && !wcschr(stops, rest.text[0])) {
    ++rest.text;
    --rest.length;
    ++piece.length;
  }
  while (piece.length > 0 && IsFormulaBlank(piece.text[piece.length - 1])) --piece.length;
  return piece;
}

wchar_t FoldLower(wchar_t c) { return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c))); }

// One-based position of the first occurrence of `needle` in `haystack`, case
// folded; 0 when it does not occur or either text is empty.
double FindFolded(CREFString haystack, CREFString needle) {
  if (haystack.IsEmpty() || needle.IsEmpty()) return 0;
  for (int32_t start = 0; start + needle.length <= haystack.length; ++start) {
    int32_t k = 0;
    while (k < needle.length && FoldLower(haystack.text[start + k]) == FoldLower(needle.text[k])) ++k;
    if (k == needle.length) return start + 1;
  }
  return 0;
}

}  // namespace

double FormulaScanner::StringFunction(int32_t code, CREFString& rest) {
  if (code == kFind) return FindFunction(rest);
  if (code == kStrToNum) return StrToNumFunction(rest);
  OpenArguments(rest);
  const CREFString name = TakeNameWord(rest);
  double position = 0;
  if (code == kChr) NextArgument(rest, &position);
  CloseArguments(rest);
  const CREFString text = ViewOfString(m_Parameters.FindText(name).get());
  if (code == kStrLen) return text.length;
  const int32_t index = static_cast<int32_t>(std::max(-1.0, std::min(position, 2147483647.0)));
  if (index < 0 || index >= text.length) return 0;
  return static_cast<double>(static_cast<uint32_t>(text.text[index]));
}

double FormulaScanner::FindFunction(CREFString& rest) {
  OpenArguments(rest);
  const CREFString name = TakeTextUpTo(rest, L",)");
  CREFString what;
  if (ConsumeChar(rest, L',')) what = TakeTextUpTo(rest, L")");
  CloseArguments(rest);
  SmartPtr<IString> haystack = m_Parameters.FindText(name);
  SmartPtr<IString> needle = m_Parameters.FindText(what);
  return FindFolded(ViewOfString(haystack.get()), needle ? ViewOfString(needle.get()) : what);
}

double FormulaScanner::StrToNumFunction(CREFString& rest) {
  OpenArguments(rest);
  const CREFString name = TakeNameWord(rest);
  int32_t numbers[3] = {0, 0, 10};  // start, count, base
  for (int32_t& number : numbers) {
    if (!ConsumeChar(rest, L',')) break;
    number = _IS2Integer(TakeNameWord(rest), 10);
  }
  CloseArguments(rest);
  SmartPtr<IString> value = m_Parameters.FindText(name);
  CREFString piece = ViewOfString(value.get());
  const int32_t skip = std::max(0, std::min(numbers[0], piece.length));
  piece.text += skip;
  piece.length -= skip;
  if (numbers[1] > 0 && numbers[1] < piece.length) piece.length = numbers[1];
  return _IS2Integer(piece, numbers[2]);
}
