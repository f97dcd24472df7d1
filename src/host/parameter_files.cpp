// Host library: parameter sets loaded and saved by file name, and whole text files.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "param_host.h"

namespace paramhost {
namespace {

// CSV writer option: name=value pairs, so that a CSV file keeps the names.
constexpr int32_t kCSVNamedValues = 0x10000;

std::string LowerExtension(const std::string& fileName) {
  std::string extension = std::filesystem::path(fileName).extension().string();
  if (!extension.empty()) extension.erase(0, 1);
  for (char& character : extension) character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
  return extension;
}

// Why `path` cannot be read, or "" when it is a readable regular file.
std::string UnreadableReason(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status)) return "no such file";
  if (std::filesystem::is_directory(status)) return "is a folder, not a file";
  if (!std::filesystem::is_regular_file(status)) return "not a regular file";
  if (access(path.c_str(), R_OK) != 0) return std::strerror(errno);
  return "";
}

// Why a file cannot be written at `path`: a missing folder, or the folder's permissions.
std::string UnwritableReason(const std::string& path) {
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  if (!std::filesystem::is_directory(folder, error)) return "no such folder " + folder.string();
  if (std::filesystem::is_directory(path, error)) return "is a folder, not a file";
  if (access(folder.c_str(), W_OK) != 0) return "cannot write into " + folder.string();
  return "cannot write the file";
}

Status FileFailure(const std::string& fileName, const std::string& what) {
  return Status::Failure(fileName + ": " + what);
}

// 1-based line and column of a character offset.
std::string PositionOf(const std::wstring& text, int32_t offset) {
  size_t line = 1, column = 1;
  const size_t end = std::min(text.size(), static_cast<size_t>(std::max(offset, 0)));
  for (size_t i = 0; i < end; ++i) {
    if (text[i] == L'\n') {
      ++line;
      column = 1;
    } else {
      ++column;
    }
  }
  return std::to_string(line) + ":" + std::to_string(column);
}

// The file's root element as a readable XML stream, or a failure naming the position.
Result<Ref<IDataStream>> OpenRootElement(const std::wstring& text, const std::string& fileName) {
  Ref<IXMLStream> xml = Create<IXMLStream>(L"XMLStream", IID_IXMLStream);
  if (!xml) return Status::Failure("the framework cannot make an XMLStream");
  const auto bytes = static_cast<int32_t>(text.size() * sizeof(wchar_t));
  if (FAILED(xml->LoadContent(text.c_str(), bytes, 0))) {
    int32_t offset = -1;
    xml->GetParseError(&offset);
    return Status::Failure(fileName + ":" + PositionOf(text, offset) + ": malformed XML");
  }
  xml->StepOver();
  Ref<IDataStream> root;
  if (FAILED(xml->OpenChild({0, nullptr}, nullptr, root.Receive(), 0)) || !root)
    return FileFailure(fileName, "no root element");
  return root;
}

// Replace mode makes the parameters from the elements' own text; a second,
// merging pass then reads the full shape (Value, Flags, descriptor objects),
// which replace mode leaves out.
Status LoadXML(const ParameterSet& set, const std::string& path, const std::string& fileName) {
  Result<std::wstring> text = ReadTextFile(path);
  if (!text) return FileFailure(fileName, "cannot read");
  for (int32_t flags : {kLoadReplace, 0}) {
    Result<Ref<IDataStream>> root = OpenRootElement(*text, fileName);
    if (!root) return root.status();
    set.get()->Params_LoadXML(root->get(), flags, 0);
  }
  return Status();
}

template <class Stream>
Status LoadTextStream(const ParameterSet& set, const wchar_t* className, const IID& iid, const std::string& path,
                      const std::string& fileName) {
  Ref<Stream> stream = Create<Stream>(className, iid);
  if (!stream) return Status::Failure("the framework cannot make a " + ToUtf8(className));
  stream->put_Parameters(set.get());
  const HRESULT result = stream->Load(MakeString(FromUtf8(path)).get(), kLoadReplace);
  stream->put_Parameters(nullptr);
  return FAILED(result) ? FileFailure(fileName, "cannot read") : Status();
}

Status LoadFolderStream(const ParameterSet& set, const std::string& path, const std::string& fileName) {
  Ref<IFolderStream> folder = Create<IFolderStream>(L"FolderStream", IID_IFolderStream);
  if (!folder) return Status::Failure("the framework cannot make a FolderStream");
  if (FAILED(folder->LoadFromFile(MakeString(FromUtf8(path)).get())))
    return FileFailure(fileName, "not a folder-stream file (bad or truncated image)");
  set.get()->Params_LoadFolderStream(folder.get(), kLoadReplace);
  return Status();
}

template <class Stream>
HRESULT SaveTextStream(const ParameterSet& set, const wchar_t* className, const IID& iid, IString* path,
                       int32_t flags) {
  Ref<Stream> stream = Create<Stream>(className, iid);
  if (!stream) return CO_E_CREATEFAILED;
  stream->put_Parameters(set.get());
  const HRESULT result = stream->Save(path, flags);
  stream->put_Parameters(nullptr);
  return result;
}

}  // namespace

FileForm FormOf(const std::string& fileName) {
  const std::string extension = LowerExtension(fileName);
  if (extension == "xml") return FileForm::kXML;
  if (extension == "ini") return FileForm::kINI;
  if (extension == "csv") return FileForm::kCSV;
  // The module's file archive writes any extension beginning with "t" as a folder stream.
  if (!extension.empty() && extension[0] == 't') return FileForm::kFolderStream;
  return FileForm::kUnknown;
}

const char* FormName(FileForm form) {
  switch (form) {
    case FileForm::kXML: return "XML";
    case FileForm::kINI: return "INI";
    case FileForm::kCSV: return "CSV";
    case FileForm::kFolderStream: return "folder stream";
    case FileForm::kUnknown: break;
  }
  return "unknown";
}

Result<ParameterSet> LoadParameters(const std::string& fileName) {
  const FileForm form = FormOf(fileName);
  if (form == FileForm::kUnknown) return FileFailure(fileName, "unknown file form (use .xml, .ini, .csv or .tree)");
  const std::string path = ResolvePath(fileName);
  if (std::string reason = UnreadableReason(path); !reason.empty()) return FileFailure(fileName, reason);
  ParameterSet set = ParameterSet::New();
  if (!set.valid()) return Status::Failure("the framework cannot make a ParametersCreatable");
  Status loaded;
  switch (form) {
    case FileForm::kXML: loaded = LoadXML(set, path, fileName); break;
    case FileForm::kINI: loaded = LoadTextStream<IINIStream>(set, L"INIStream", IID_IINIStream, path, fileName); break;
    case FileForm::kCSV: loaded = LoadTextStream<ICSVStream>(set, L"CSVStream", IID_ICSVStream, path, fileName); break;
    case FileForm::kFolderStream: loaded = LoadFolderStream(set, path, fileName); break;
    case FileForm::kUnknown: break;
  }
  if (!loaded) return loaded;
  return set;
}

Status SaveParameters(const ParameterSet& set, const std::string& fileName) {
  const FileForm form = FormOf(fileName);
  if (form == FileForm::kUnknown) return FileFailure(fileName, "unknown file form (use .xml, .ini, .csv or .tree)");
  if (!set.valid()) return Status::Failure("no parameter set");
  const std::string path = ResolvePath(fileName);
  Ref<IString> name = MakeString(FromUtf8(path));
  HRESULT result = E_FAIL;
  switch (form) {
    case FileForm::kXML:
    case FileForm::kFolderStream: {
      // The set's own file archive writes both, safely, choosing by the extension.
      Ref<IFileArchive> archive = Ref<IParametersCreatable>(set.get()).As<IFileArchive>(IID_IFileArchive);
      if (archive && SUCCEEDED(archive->put_Filename(name.get()))) result = archive->Save();
      break;
    }
    case FileForm::kINI: result = SaveTextStream<IINIStream>(set, L"INIStream", IID_IINIStream, name.get(), 0); break;
    case FileForm::kCSV:
      result = SaveTextStream<ICSVStream>(set, L"CSVStream", IID_ICSVStream, name.get(), kCSVNamedValues);
      break;
    case FileForm::kUnknown: break;
  }
  if (FAILED(result)) return FileFailure(fileName, UnwritableReason(path));
  return Status();
}

Result<std::wstring> ReadTextFile(const std::string& fileName) {
  const std::string path = ResolvePath(fileName);
  if (std::string reason = UnreadableReason(path); !reason.empty()) return FileFailure(fileName, reason);
  std::ifstream file(path, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (!file && !file.eof()) return FileFailure(fileName, "cannot read");
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
  const bool little = bytes.size() >= 2 && data[0] == 0xFF && data[1] == 0xFE;
  const bool big = bytes.size() >= 2 && data[0] == 0xFE && data[1] == 0xFF;
  if (!little && !big) {
    const size_t mark = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
    return FromUtf8(std::string_view(bytes).substr(mark));
  }
  std::wstring text;
  for (size_t i = 2; i + 1 < bytes.size(); i += 2) {
    uint32_t unit = little ? (data[i] | data[i + 1] << 8) : (data[i] << 8 | data[i + 1]);
    if (unit >= 0xD800 && unit < 0xDC00 && i + 3 < bytes.size()) {
      const uint32_t low = little ? (data[i + 2] | data[i + 3] << 8) : (data[i + 2] << 8 | data[i + 3]);
      if (low >= 0xDC00 && low < 0xE000) {
        unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        i += 2;
      }
    }
    text.push_back(static_cast<wchar_t>(unit));
  }
  return text;
}

Status WriteTextFile(const std::string& fileName, std::string_view bytes) {
  const std::string path = ResolvePath(fileName);
  std::string temporary = path + ".tmpXXXXXX";
  const int descriptor = mkstemp(temporary.data());
  if (descriptor < 0) return FileFailure(fileName, UnwritableReason(path));
  bool written = true;
  for (size_t done = 0; written && done < bytes.size();) {
    const ssize_t count = write(descriptor, bytes.data() + done, bytes.size() - done);
    if (count <= 0) written = false;
    else done += static_cast<size_t>(count);
  }
  fchmod(descriptor, 0644);  // mkstemp makes the file private; text output is for everyone to read
  written = fsync(descriptor) == 0 && written;
  written = close(descriptor) == 0 && written;
  if (!written || std::rename(temporary.c_str(), path.c_str()) != 0) {
    std::remove(temporary.c_str());
    return FileFailure(fileName, UnwritableReason(path));
  }
  return Status();
}

}  // namespace paramhost
