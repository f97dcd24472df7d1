// Whole-file reading and writing with the framework's text encodings:
// FileArchiveLoad, FileArchiveSave and FileArchiveFree.
//
// FileArchiveLoad reads a file into a buffer it allocates: raw bytes, or wide
// text decoded from UTF-16 (little-endian units), UTF-8 or 8-bit text.
// FileArchiveSave writes raw bytes, or wide text as UTF-16 with a byte-order
// mark. Both take the file name as wide text and pass it to the C library as
// UTF-8 of at most 254 bytes. Buffers handed out by FileArchiveLoad are freed
// with FileArchiveFree.
#pragma once

#include "base_types.h"
#include "result_codes.h"

// textMode of FileArchiveLoad.
constexpr int16_t kFileLoadBytes = 0;       // the bytes as they are
constexpr int16_t kFileLoadText = 1;        // UTF-16 or UTF-8 text
constexpr int16_t kFileLoadStrictText = 2;  // UTF-16, strict UTF-8, else 8-bit text

// Reads the file `name`. With textMode 0, *data receives the bytes (followed by
// a zero byte) and *length their count; result 0. Otherwise *data receives
// wide text and *length its length in characters: result 0 for UTF-16 or
// 8-bit text, 1 for UTF-8. maxBytes > 0 limits the bytes read. Fails with
// 0x80004005 (after "file open err:\n<name>\n" on stderr when the file cannot
// be opened, which includes anything but a regular file: a directory, FIFO or
// device is refused before any byte is read) and for a file of no bytes.
HRESULT FileArchiveLoad(tagREFString name, void** data, unsigned int* length, int16_t textMode, int32_t maxBytes);

// Writes `length` bytes of `data` to the file `name` (appending when `append`
// is non-zero). With asText non-zero, `data` is wide text of `length` bytes,
// written as 16-bit little-endian units (each character cut to its low 16
// bits) after a byte-order mark unless appending. Result 0 when anything was
// written, else 0x80004005.
HRESULT FileArchiveSave(tagREFString name, const unsigned char* data, unsigned int length, int16_t asText,
                        int16_t append);

// Frees a buffer handed out by FileArchiveLoad (null is ignored).
void FileArchiveFree(void* data);

// The file name as the file functions pass it to the C library: UTF-8 cut so
// that it and its terminating zero fit in 256 bytes (at most 254 bytes of
// name). Characters are taken as unsigned; 0x7FF takes three bytes and 0xFFFF
// four, as the framework has always encoded them.
constexpr int kFileArchivePathSize = 256;
void FileArchivePath(tagREFString name, char (&path)[kFileArchivePathSize]);
