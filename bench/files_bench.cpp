// Files: a set of 100,000 numeric parameters saved and loaded through Save()
// and Load() of "ParametersCreatable", as XML against pugixml parsing and
// walking / building and writing the same document, and in folder-stream form
// against a plain fread / fwrite of the same file.
#include <pugixml.hpp>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "bench_support.h"

namespace {

using bench_support::MakeName;
using bench_support::NameOf;

constexpr int64_t kParameters = 100000;
constexpr wchar_t kXMLFile[] = L"bench_parameters.xml";
constexpr char kXMLFileBytes[] = "bench_parameters.xml";
constexpr char kPeerXMLFile[] = "bench_parameters_peer.xml";
constexpr wchar_t kFolderFile[] = L"bench_parameters.txt";
constexpr char kFolderFileBytes[] = "bench_parameters.txt";
constexpr char kPeerFolderFile[] = "bench_parameters_peer.txt";

// A set of kParameters numbers, attached to `fileName`.
SmartPtr<IParametersCreatable> FileSet(const wchar_t* fileName) {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  for (int64_t i = 0; i < kParameters; ++i) {
    SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
    value->SetDouble(static_cast<double>(i) * 0.25);
    set->Add(MakeName(NameOf(i)).get(), value.get(), nullptr, 0);
  }
  QueryAs<IFileArchive>(set.get())->put_Filename(MakeName(fileName).get());
  return set;
}

SmartPtr<IFileArchive> EmptySetWithFile(const wchar_t* fileName) {
  SmartPtr<IFileArchive> file = CreateObjectAs<IFileArchive>(L"ParametersCreatable");
  file->put_Filename(MakeName(fileName).get());
  return file;
}

void BM_XMLSave(benchmark::State& state) {
  SmartPtr<IFileArchive> file = QueryAs<IFileArchive>(FileSet(kXMLFile).get());
  for (auto _ : state)
    if (FAILED(file->Save())) state.SkipWithError("Save failed");
}
BENCHMARK(BM_XMLSave)->Unit(benchmark::kMillisecond);

void BM_XMLLoad(benchmark::State& state) {
  QueryAs<IFileArchive>(FileSet(kXMLFile).get())->Save();
  SmartPtr<IFileArchive> file = EmptySetWithFile(kXMLFile);
  for (auto _ : state)
    if (FAILED(file->Load())) state.SkipWithError("Load failed");
  int32_t count = 0;
  QueryAs<IParameters>(file.get())->get_Count(&count);
  if (count != kParameters) state.SkipWithError("Load lost parameters");
}
BENCHMARK(BM_XMLLoad)->Unit(benchmark::kMillisecond);

// Parses the module's file and visits every element, attribute and text.
size_t WalkedCharacters(const pugi::xml_node& node) {
  size_t total = std::char_traits<char>::length(node.name()) + std::char_traits<char>::length(node.value());
  for (const pugi::xml_attribute& attribute : node.attributes())
    total += std::char_traits<char>::length(attribute.value());
  for (const pugi::xml_node& child : node.children()) total += WalkedCharacters(child);
  return total;
}

void BM_PeerXMLParse(benchmark::State& state) {
  QueryAs<IFileArchive>(FileSet(kXMLFile).get())->Save();
  for (auto _ : state) {
    pugi::xml_document document;
    if (!document.load_file(kXMLFileBytes)) state.SkipWithError("pugixml could not parse the file");
    benchmark::DoNotOptimize(WalkedCharacters(document));
  }
}
BENCHMARK(BM_PeerXMLParse)->Unit(benchmark::kMillisecond);

// Builds the same document as the module writes (root, one element per
// parameter holding its text) and writes it.
void BM_PeerXMLBuild(benchmark::State& state) {
  QueryAs<IFileArchive>(FileSet(kXMLFile).get())->Save();
  pugi::xml_document source;
  source.load_file(kXMLFileBytes);
  const pugi::xml_node sourceRoot = source.document_element();
  std::vector<std::pair<std::string, std::string>> elements;
  for (const pugi::xml_node& child : sourceRoot.children()) elements.emplace_back(child.name(), child.text().get());
  for (auto _ : state) {
    pugi::xml_document document;
    pugi::xml_node root = document.append_child(sourceRoot.name());
    for (const auto& [name, text] : elements) root.append_child(name.c_str()).text().set(text.c_str());
    if (!document.save_file(kPeerXMLFile)) state.SkipWithError("pugixml could not write the file");
  }
}
BENCHMARK(BM_PeerXMLBuild)->Unit(benchmark::kMillisecond);

void BM_FolderStreamSave(benchmark::State& state) {
  SmartPtr<IFileArchive> file = QueryAs<IFileArchive>(FileSet(kFolderFile).get());
  for (auto _ : state)
    if (FAILED(file->Save())) state.SkipWithError("Save failed");
}
BENCHMARK(BM_FolderStreamSave)->Unit(benchmark::kMillisecond);

std::vector<char> FileBytes(const char* fileName) {
  std::vector<char> bytes;
  if (FILE* file = std::fopen(fileName, "rb")) {
    std::fseek(file, 0, SEEK_END);
    bytes.resize(static_cast<size_t>(std::ftell(file)));
    std::fseek(file, 0, SEEK_SET);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    std::fclose(file);
  }
  return bytes;
}

// As a host loads a folder-stream file: the bytes into a "FolderStream", then Load of the set from it.
void BM_FolderStreamLoad(benchmark::State& state) {
  QueryAs<IFileArchive>(FileSet(kFolderFile).get())->Save();
  SmartPtr<IDataPersist> set = CreateObjectAs<IDataPersist>(L"ParametersCreatable");
  for (auto _ : state) {
    const std::vector<char> bytes = FileBytes(kFolderFileBytes);
    SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
    if (FAILED(folder->Write(bytes.data(), static_cast<int32_t>(bytes.size())))) state.SkipWithError("bad image");
    set->Load(folder.get(), 0);
  }
  int32_t count = 0;
  QueryAs<IParameters>(set.get())->get_Count(&count);
  if (count != kParameters) state.SkipWithError("Load lost parameters");
}
BENCHMARK(BM_FolderStreamLoad)->Unit(benchmark::kMillisecond);

void BM_PeerFileRead(benchmark::State& state) {
  QueryAs<IFileArchive>(FileSet(kFolderFile).get())->Save();
  for (auto _ : state) benchmark::DoNotOptimize(FileBytes(kFolderFileBytes).size());
}
BENCHMARK(BM_PeerFileRead)->Unit(benchmark::kMillisecond);

void BM_PeerFileWrite(benchmark::State& state) {
  QueryAs<IFileArchive>(FileSet(kFolderFile).get())->Save();
  const std::vector<char> bytes = FileBytes(kFolderFileBytes);
  for (auto _ : state) {
    FILE* file = std::fopen(kPeerFolderFile, "wb");
    if (!file || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) state.SkipWithError("write failed");
    if (file) std::fclose(file);
  }
}
BENCHMARK(BM_PeerFileWrite)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
