// Safe whole-file replacement: temporary file, flush, rename.
#include "archive/safe_file_write.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

// The permissions of a new file: 0666 less the process's umask (read once).
mode_t NewFileMode() {
  static const mode_t mode = [] {
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<mode_t>(0666 & ~mask);
  }();
  return mode;
}

bool WriteAll(int fd, const unsigned char* data, size_t size) {
  while (size > 0) {
    const ssize_t written = write(fd, data, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    data += written;
    size -= static_cast<size_t>(written);
  }
  return true;
}

}  // namespace

ReplacingFileWriter::ReplacingFileWriter(const char* path) {
  if (!path || !*path) {
    m_Failed = true;
    return;
  }
  m_Path = path;
  m_Temporary = m_Path + ".tmpXXXXXX";
  m_Descriptor = mkstemp(m_Temporary.data());
  if (m_Descriptor < 0) {
    m_Temporary.clear();  // nothing was created
    m_Failed = true;
    return;
  }
  struct stat existing {};
  const mode_t mode = stat(path, &existing) == 0 ? (existing.st_mode & 07777) : NewFileMode();
  if (fchmod(m_Descriptor, mode) != 0) Discard();
}

ReplacingFileWriter::~ReplacingFileWriter() { Discard(); }

bool ReplacingFileWriter::Write(const void* data, size_t size) {
  if (m_Failed) return false;
  if (!WriteAll(m_Descriptor, static_cast<const unsigned char*>(data), size)) Discard();
  return !m_Failed;
}

HRESULT ReplacingFileWriter::Commit() {
  if (m_Failed) return E_FAIL;
  const bool flushed = fsync(m_Descriptor) == 0;
  const bool closed = close(m_Descriptor) == 0;
  m_Descriptor = -1;
  if (flushed && closed && std::rename(m_Temporary.c_str(), m_Path.c_str()) == 0) {
    m_Temporary.clear();  // it is the file now
    return S_OK;
  }
  Discard();
  return E_FAIL;
}

void ReplacingFileWriter::Discard() {
  m_Failed = true;
  if (m_Descriptor >= 0) close(m_Descriptor);
  m_Descriptor = -1;
  if (!m_Temporary.empty()) unlink(m_Temporary.c_str());
  m_Temporary.clear();
}

HRESULT WriteFileReplacing(const char* path, const void* data, size_t size) {
  ReplacingFileWriter file(path);
  file.Write(data, size);
  return file.Commit();
}
