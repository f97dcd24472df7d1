// Character rules of the formula language: blanks, words, comments and the
// preparation of a formula text before it is scanned.
#pragma once

#include "strings/ref_string.h"

// A blank: white space, a control character, or a stray byte-order-mark byte (0xEF, 0xFE).
bool IsFormulaBlank(wchar_t c);

// Drops blanks from the front of the view.
void SkipBlanks(CREFString& text);

// Consumes `c` (after blanks) when it comes next; true if it did.
bool ConsumeChar(CREFString& text, wchar_t c);

// True when the next character (after blanks) is `c`; nothing is consumed but the blanks.
bool NextIs(CREFString& text, wchar_t c);

// Takes the next word off the view (CREFString::GetFirstWord). A "#" joins the
// letters, digits and "_" right after it into one word, so "#FF" is one word
// (a hexadecimal number) while a lone "#" stays a word of its own. Every call
// on a non-empty view consumes at least one character.
CREFString TakeWord(CREFString& text);

// The part of a formula text that is evaluated: leading blanks skipped, cut
// before the first ";" (a comment), trailing characters up to 0x20 and 0x7F removed.
CREFString PrepareFormulaText(tagREFString text);

// The text of a string object as a view (empty for null or no text).
CREFString ViewOfString(IString* text);
