// Wide text to UTF-8, for the XML parser and the byte streams.
#pragma once

#include <cstddef>
#include <string>

// True for a Unicode scalar value (not a surrogate, not above U+10FFFF).
bool IsScalarValue(wchar_t c);

// Appends the UTF-8 form of `length` characters; characters that are not
// scalar values become U+FFFD.
void AppendUtf8(std::string& out, const wchar_t* text, size_t length);
