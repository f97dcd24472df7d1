// Helpers of the storage tests: scratch files.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "test_support.h"

namespace storage_test {

// A file name in the temporary folder, unique to this process; removed when it goes.
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& stem)
      : m_Path(std::filesystem::temp_directory_path() / (stem + "-" + std::to_string(getpid()))) {}
  ~ScratchFile() { std::remove(m_Path.c_str()); }

  const std::string& Path() const { return m_Path.native(); }
  SmartPtr<ICreatableString> Name() const {
    return test_support::MakeString(std::wstring(Path().begin(), Path().end()));
  }
  void Write(const std::string& bytes) const { std::ofstream(m_Path, std::ios::binary) << bytes; }
  std::string Read() const {
    std::ifstream in(m_Path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
  }

 private:
  std::filesystem::path m_Path;
};

// Little-endian bytes of a 32-bit value.
inline std::string Le32(uint32_t value) {
  std::string bytes(4, '\0');
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<char>(value >> (8 * i));
  return bytes;
}

// The start of a folder-stream image.
inline std::string FolderImageHeader(uint32_t version = 1) { return "PFLD" + Le32(version); }

// A folder-stream image whose root folder holds `count` of the smallest
// entries of `kind` (empty values, or empty sub-folders), each named by one
// character of its own (1, 2, 3...).
inline std::string SmallestEntriesImage(uint32_t count, int32_t kind) {
  const std::string payload = kind == kFolderEntryFolder ? Le32(0) : std::string(1, '\0');
  std::string image = FolderImageHeader() + Le32(count);
  image.reserve(image.size() + size_t{count} * (9 + payload.size()));
  const std::string nameLength = Le32(1);
  for (uint32_t i = 1; i <= count; ++i) {
    image += static_cast<char>(kind);
    image += nameLength;
    for (int shift = 0; shift < 32; shift += 8) image += static_cast<char>(i >> shift);
    image += payload;
  }
  return image;
}

}  // namespace storage_test
