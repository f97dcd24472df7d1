// Safe whole-file replacement: temporary file, flush, rename.
#include "archive/safe_file_write.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

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

HRESULT WriteFileReplacing(const char* path, const void* data, size_t size) {
  if (!path || !*path) return E_FAIL;
  std::string temporary = std::string(path) + ".tmpXXXXXX";
  const int fd = mkstemp(temporary.data());
  if (fd < 0) return E_FAIL;
  struct stat existing {};
  const mode_t mode = stat(path, &existing) == 0 ? (existing.st_mode & 07777) : NewFileMode();
  bool complete = fchmod(fd, mode) == 0 && WriteAll(fd, static_cast<const unsigned char*>(data), size) &&
                  fsync(fd) == 0;
  complete = close(fd) == 0 && complete;
  if (complete && std::rename(temporary.c_str(), path) == 0) return S_OK;
  unlink(temporary.c_str());
  return E_FAIL;
}
