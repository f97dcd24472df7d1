// Opening regular files only: the open does not block and special files are refused before reading.
#include "archive/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

FILE* OpenRegularFile(const char* path, uint64_t* size) {
  // O_NONBLOCK keeps the open of a FIFO without writer from waiting; it is
  // cleared again for the regular file that is then read.
  const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  struct stat status {};
  const int flags = fcntl(descriptor, F_GETFL);
  if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || flags < 0 ||
      fcntl(descriptor, F_SETFL, flags & ~O_NONBLOCK) != 0) {
    close(descriptor);
    return nullptr;
  }
  FILE* file = fdopen(descriptor, "rb");
  if (!file) {
    close(descriptor);
    return nullptr;
  }
  if (size) *size = static_cast<uint64_t>(status.st_size);
  return file;
}
