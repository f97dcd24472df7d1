// Name text helpers shared by the collections: reading a name's text, ASCII
// case folding, folded hashing and the whole-name and prefix match tests.
//
// Every name comparison of the collections folds only the ASCII capitals A-Z
// (as _wcsnicmp does); other characters compare by code point.
#pragma once

#include <cstddef>
#include <string>

#include "params.h"

// The current text of a name string; an empty view for a null name or a
// string without text.
tagREFString NameTextOf(IString* name);

inline wchar_t FoldAsciiLower(wchar_t c) { return (c >= L'A' && c <= L'Z') ? static_cast<wchar_t>(c + 32) : c; }

// A copy of `text` with A-Z folded to lower case.
std::wstring FoldedCopyOf(tagREFString text);

// Hash of the folded text: equal for texts that differ only in A-Z case.
size_t HashFoldedText(tagREFString text);

// True when `name` equals `key` over its whole length after A-Z folding.
bool MatchesWholeName(tagREFString name, tagREFString key);

// True when `name` is at least as long as `key` and begins with it after A-Z folding.
bool MatchesNamePrefix(tagREFString name, tagREFString key);

// Three-way comparison of the folded `key` against the first key-length
// characters of the already folded `folded`: 0 when `folded` begins with the
// key, else the sign of folded text versus key in code-point order (a folded
// text that is a proper prefix of the key orders before it).
int ComparePrefixToKey(const std::wstring& folded, tagREFString key);

// Three-way code-point order of two texts after A-Z folding, shorter first on
// a common prefix.
int CompareFoldedTexts(tagREFString a, tagREFString b);
