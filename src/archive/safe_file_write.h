// Replacing a file's content without ever leaving it half written.
#pragma once

#include <cstddef>
#include <string>

#include "result_codes.h"

// A file's new content, written piece by piece to a new temporary file beside
// it. Commit flushes that file to the disk and renames it over the file only
// when every piece was written; on any failure, or without Commit, the
// temporary file is removed and the old file stays as it was. A new file gets
// the permissions the umask allows; a replaced file keeps its own.
class ReplacingFileWriter {
 public:
  explicit ReplacingFileWriter(const char* path);
  ~ReplacingFileWriter();
  ReplacingFileWriter(const ReplacingFileWriter&) = delete;
  ReplacingFileWriter& operator=(const ReplacingFileWriter&) = delete;

  // Appends bytes; false once anything failed (later pieces are not written).
  bool Write(const void* data, size_t size);
  // S_OK when the file now holds exactly the pieces written, else E_FAIL.
  HRESULT Commit();

 private:
  void Discard();

  std::string m_Path;
  std::string m_Temporary;
  int m_Descriptor = -1;
  bool m_Failed = false;
};

// The whole content at once, as ReplacingFileWriter writes it.
HRESULT WriteFileReplacing(const char* path, const void* data, size_t size);
