// Helpers of the persistence tests: sets built from rows, XML text in and out, scratch files.
#pragma once

#include <unistd.h>

#include <fstream>
#include <iterator>
#include <string>

#include "collection_test_support.h"

namespace persistence_test {

using namespace collection_test;

struct Row {
  const wchar_t* name;
  SmartPtr<IVariant> value;
  int32_t flags = 0;
  SmartPtr<IUnknown> descriptor = {};
};

inline SmartPtr<IParametersCreatable> SetOf(std::initializer_list<Row> rows) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  for (const Row& row : rows) set->Add(MakeString(row.name).get(), row.value.get(), row.descriptor.get(), row.flags);
  return set;
}

// "name=value/flags" per parameter, value as DescribeValue shows it; "+d" when it has a descriptor.
inline std::vector<std::wstring> Describe(IParameters* set) {
  std::vector<std::wstring> rows;
  int32_t count = 0;
  set->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IVariant> value;
    SmartPtr<IUnknown> descriptor;
    int32_t flags = 0;
    set->Iterate(i, name.Receive(), value.Receive(), descriptor.Receive(), &flags);
    wchar_t hex[16];
    swprintf(hex, 16, L"/%X", static_cast<unsigned>(flags));
    rows.push_back(TextOf(name) + L"=" + DescribeValue(value.get()) + hex + (descriptor ? L"+d" : L""));
  }
  return rows;
}

// What Params_SaveXML writes with `flags`, on a lean stream (no layout text).
inline std::wstring SavedXML(IParameters* set, int32_t flags) {
  SmartPtr<IXMLStreamEx> xml = CreateObjectAs<IXMLStreamEx>(L"XMLStreamEx");
  xml->SetOptions(-1, kXMLOptionLean);
  set->Params_SaveXML(QueryAs<IDataStream>(xml.get()).get(), flags);
  void* text = nullptr;
  int32_t size = 0;
  xml->GetTextBuffer(&text, &size);
  return std::wstring(static_cast<const wchar_t*>(text), static_cast<size_t>(size) / sizeof(wchar_t));
}

// A stream reading `text`, positioned on its first element when `enter`.
inline SmartPtr<IDataStream> XMLReading(const std::wstring& text, bool enter) {
  SmartPtr<IXMLStream> xml = CreateObjectAs<IXMLStream>(L"XMLStream");
  xml->LoadContent(text.c_str(), static_cast<int32_t>(text.size() * sizeof(wchar_t)), 0);
  SmartPtr<IDataStream> stream;
  if (enter)
    xml->OpenChild({0, nullptr}, nullptr, stream.Receive(), 0);
  else
    stream = QueryAs<IDataStream>(xml.get());
  return stream;
}

// A fresh folder below the build folder for one test's files (named after the
// running test too, so tests that run in parallel never share one).
inline std::string ScratchFolder(const std::string& name) {
  const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
  const std::string folder = "persist-" + name + "-" + (test ? test->name() : "none");
  std::string command = "rm -rf '" + folder + "' && mkdir -p '" + folder + "'";
  if (std::system(command.c_str()) != 0) return ".";
  char cwd[4096];
  return std::string(getcwd(cwd, sizeof(cwd)) ? cwd : ".") + "/" + folder;
}

inline std::wstring Wide(const std::string& text) { return std::wstring(text.begin(), text.end()); }

inline std::string FileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// UTF-16LE units of ASCII text.
inline std::string Utf16(const std::string& text) {
  std::string units;
  for (char c : text) units += {c, '\0'};
  return units;
}

inline SmartPtr<IFileArchive> ArchiveOf(IUnknown* object, const std::string& path) {
  SmartPtr<IFileArchive> archive = QueryAs<IFileArchive>(object);
  if (archive) archive->put_Filename(MakeString(Wide(path)).get());
  return archive;
}

}  // namespace persistence_test
