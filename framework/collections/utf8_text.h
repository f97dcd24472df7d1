// Wide text to UTF-8 and back, for the XML parser and the byte streams.
#pragma once

#include <cstddef>
#include <string>

#include "wide_text_buffer.h"

// True for a Unicode scalar value (not a surrogate, not above U+10FFFF).
bool IsScalarValue(wchar_t c);

// Appends the UTF-8 form of `length` characters; characters that are not
// scalar values become U+FFFD. True when every character was a scalar value,
// so that decoding the bytes gives the text back exactly.
bool AppendUtf8(std::string& out, const wchar_t* text, size_t length);

// Appends the characters of well-formed UTF-8 (as AppendUtf8 writes it).
void AppendWideOfUtf8(WideTextBuffer& out, const std::string& utf8);
