// Wide text (UTF-32) to and from UTF-8, for the tool's arguments and output.
#pragma once

#include <string>
#include <string_view>

// UTF-8 bytes of `text`; a character that is no Unicode scalar value becomes U+FFFD.
std::string Utf8Of(std::wstring_view text);

// The characters of UTF-8 `bytes`; a byte that starts no valid sequence is taken as one 8-bit character.
std::wstring WideOf(std::string_view bytes);
