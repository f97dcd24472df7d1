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

}  // namespace storage_test
