// Helpers of the storage tests: scratch files and folders, file bytes, settings files.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "test_support.h"

namespace storage_test {

inline std::string FileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::wstring Wide(const std::string& text) { return std::wstring(text.begin(), text.end()); }

// UTF-16LE units of ASCII text.
inline std::string Utf16(const std::string& text) {
  std::string units;
  for (char c : text) units += {c, '\0'};
  return units;
}

// A fresh folder below the build folder for one test's files (named after the running test too, so tests that
// run in parallel never share one).
inline std::string ScratchFolder(const std::string& name) {
  const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
  const std::string folder = "persist-" + name + "-" + (test ? test->name() : "none");
  std::string command = "rm -rf '" + folder + "' && mkdir -p '" + folder + "'";
  if (std::system(command.c_str()) != 0) return ".";
  char cwd[4096];
  return std::string(getcwd(cwd, sizeof(cwd)) ? cwd : ".") + "/" + folder;
}

// The object's file archive, given the file name `path`.
inline SmartPtr<IFileArchive> ArchiveOf(IUnknown* object, const std::string& path) {
  SmartPtr<IFileArchive> archive = QueryAs<IFileArchive>(object);
  if (archive) archive->put_Filename(test_support::MakeString(Wide(path)).get());
  return archive;
}

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
  std::string Read() const { return FileBytes(m_Path); }

 private:
  std::filesystem::path m_Path;
};

// Points $PARAMS_SETTINGS at a scratch settings file holding `content` while it lives.
class SettingsFile : public ScratchFile {
 public:
  explicit SettingsFile(const std::string& content) : ScratchFile("settings") {
    const char* previous = std::getenv("PARAMS_SETTINGS");
    m_Previous = previous ? previous : "";
    Write(content);
    setenv("PARAMS_SETTINGS", Path().c_str(), 1);
  }
  ~SettingsFile() { setenv("PARAMS_SETTINGS", m_Previous.c_str(), 1); }

 private:
  std::string m_Previous;
};

// The folder's entries through its collection view, one "name=value" line each, sub-folders and objects
// indented.
inline std::wstring FolderDump(IUnknown* stream, const std::wstring& indent = L"") {
  SmartPtr<ISuperCollection> folder = QueryAs<ISuperCollection>(stream);
  if (!folder) return L"<not a collection>";
  int32_t count = 0;
  folder->get_Count(&count);
  std::wstring dump;
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IUnknown> item, attached;
    int32_t kind = 0;
    folder->get_ItemName(i, name.Receive());
    folder->get_ItemFlags(i, &kind);
    EXPECT_EQ(folder->get_Item(i, item.Receive()), S_OK) << i;
    // Only an object entry has an attached item: its class name.
    EXPECT_EQ(folder->get_ItemAttached(i, attached.Receive()), kind == kFolderEntryObject ? S_OK : E_FAIL) << i;
    dump += indent + test_support::TextOf(name) + L"=";
    if (kind == kFolderEntryValue) {
      dump += test_support::DescribeValue(QueryAs<IVariant>(item.get()).get()) + L"\n";
    } else if (kind == kFolderEntryBinary) {
      const std::string bytes = test_support::BytesOf(QueryAs<IDataStream>(item.get()).get());
      const std::string hex = test_support::HexOf(bytes.data(), bytes.size());
      dump += L"bytes" + std::wstring(hex.begin(), hex.end()) + L"\n";
    } else {
      const std::wstring className = test_support::TextOf(QueryAs<IString>(attached.get()));
      dump += (kind == kFolderEntryObject ? L"object " + className : L"folder") + L"\n";
      dump += FolderDump(item.get(), indent + L"  ");
    }
  }
  return dump;
}

}  // namespace storage_test
