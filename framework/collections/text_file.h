// Text files of the storage classes: UTF-8 conversion of wide text and whole-file reading and writing.
#pragma once

#include <string>
#include <string_view>

#include "params.h"

// UTF-8 form of wide text; characters that are no Unicode scalar value become U+FFFD.
std::string EncodeUtf8(std::wstring_view text);

// Wide text of UTF-8 bytes. A leading byte-order mark is dropped; a byte that
// does not begin a valid sequence is taken as one 8-bit character, so any
// file reads as text.
std::wstring DecodeUtf8(std::string_view bytes);

// The file's bytes into *bytes. E_FAIL when it cannot be opened or read or
// is not a regular file (a directory, FIFO or device is refused before any
// byte is read, and a FIFO without writer does not block), E_OUTOFMEMORY when
// it is longer than `maxBytes`.
HRESULT ReadWholeFile(const std::string& path, size_t maxBytes, std::string* bytes);

// Replaces the file's content by `bytes` through a temporary file renamed over
// it, so a failed write leaves the old file whole; E_FAIL when it cannot be written.
HRESULT WriteWholeFile(const std::string& path, std::string_view bytes);

// The file's text, decoded as the file archive reads text: UTF-16 (signature
// or zero odd bytes; the first unit is taken as the mark), strict UTF-8, else
// 8-bit characters; a UTF-8 byte-order mark is dropped. An empty file is an
// empty text. E_FAIL when the file is missing or unreadable, E_OUTOFMEMORY
// when it is longer than `maxBytes`.
HRESULT ReadTextFile(const std::string& path, size_t maxBytes, std::wstring* text);

// The file name held by a framework string, as a UTF-8 path ("" for null or empty).
std::string PathOf(IString* fileName);
