// Replacing a file's content without ever leaving it half written.
#pragma once

#include <cstddef>

#include "result_codes.h"

// Writes `size` bytes to a new temporary file beside `path`, flushes it to the
// disk and renames it over `path` only when every byte was written. On any
// failure the temporary file is removed, the old file stays as it was, and the
// result is E_FAIL. A new file gets the permissions the umask allows; a
// replaced file keeps its own.
HRESULT WriteFileReplacing(const char* path, const void* data, size_t size);
