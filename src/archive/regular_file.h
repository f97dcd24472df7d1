// Opening a file for whole-file reading, refusing anything that is not a regular file.
#pragma once

#include <cstdint>
#include <cstdio>

// Opens `path` for reading in binary mode when it names a regular file, and
// gives its size in *size (when size is not null). Null when the file cannot
// be opened or is a directory, FIFO, socket or device: such a file is refused
// before a byte is read from it, and opening a FIFO does not wait for a writer.
FILE* OpenRegularFile(const char* path, uint64_t* size = nullptr);
