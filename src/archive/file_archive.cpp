// The file archive's state and whole-file operations.
#include "archive/file_archive.h"

#include <climits>
#include <string>

#include "archive/file_archive_io.h"
#include "archive/file_names.h"
#include "parameters/persist_text.h"
#include "runtime/module_loader.h"

namespace {

constexpr wchar_t kDefaultStylesheet[] = L"generic.xsl";
constexpr tagREFString kNoName{0, nullptr};

// Frees a buffer of FileArchiveLoad when the reader leaves.
class LoadedFile {
 public:
  LoadedFile() = default;
  ~LoadedFile() { FileArchiveFree(m_Data); }
  LoadedFile(const LoadedFile&) = delete;
  LoadedFile& operator=(const LoadedFile&) = delete;
  HRESULT Read(tagREFString name, int16_t textMode) { return FileArchiveLoad(name, &m_Data, &m_Length, textMode, 0); }
  void* data() const { return m_Data; }
  unsigned int length() const { return m_Length; }

 private:
  void* m_Data = nullptr;
  unsigned int m_Length = 0;
};

// The extension as the archive tells forms apart: the text after the last
// "." when that is not the first character, else the whole name.
CREFString ArchiveExtension(tagREFString name) {
  CREFString view(name);
  for (int32_t i = view.length - 1; i >= 1; --i)
    if (view.text[i] == L'.') return CREFString(view.text + i + 1, view.length - i - 1);
  return view;
}

bool AgreesWith(const CREFString& extension, const wchar_t* form) {
  return SUCCEEDED(extension.CompareI(tagREFString{static_cast<int32_t>(wcslen(form)), form}, 0));
}

void WriteRaw(IXMLStream* xml, const wchar_t* text, int32_t length) {
  xml->WriteRawText(text, length * static_cast<int32_t>(sizeof(wchar_t)), 0);
}

HRESULT SaveBytes(tagREFString name, const void* data, int32_t size, int16_t asText) {
  if (!data || size <= 0) return E_FAIL;
  return FileArchiveSave(name, static_cast<const unsigned char*>(data), static_cast<unsigned int>(size), asText, 0);
}

}  // namespace

tagREFString FileArchiveState::FilenameText() const { return TextView(m_Filename.get()); }

void FileArchiveState::SetFilter(const wchar_t* filter) { m_Filter = SmartPtr<IString>::Adopt(ISCreate(filter)); }

void FileArchiveState::MarkStored() {
  m_Settings[kArchiveChanged] = 0;
  m_Settings[kArchiveLoaded] = 1;
}

HRESULT FileArchiveState::GetFilename(IString** name) const {
  if (!name) return E_POINTER;
  m_Filename.CopyTo(name);
  return m_Filename ? S_OK : E_FAIL;
}

HRESULT FileArchiveState::GetFilter(IString** filter) const {
  if (!filter) return E_POINTER;
  m_Filter.CopyTo(filter);
  return m_Filter ? S_OK : E_FAIL;
}

HRESULT FileArchiveState::PutFilename(IString* name) {
  SmartPtr<IString> stored(name);
  const CREFString given = TextView(name);
  if (given.length >= 3 && given.text[0] == L'.' && (given.text[1] == L'/' || given.text[1] == L'\\')) {
    // "./data.xml" names a file below the installation folder.
    SmartPtr<IString> folder;
    FILENAMEGetInstallPath(folder.Receive());
    const CREFString folderText = TextView(folder.get());
    std::wstring expanded(folderText.text ? folderText.text : L"", static_cast<size_t>(folderText.length));
    expanded += L'/';
    expanded.append(given.text + 2, static_cast<size_t>(given.length - 2));
    for (wchar_t& c : expanded)
      if (c == L'\\') c = L'/';
    stored = SmartPtr<IString>::Adopt(ISCreate(tagREFString{static_cast<int32_t>(expanded.size()), expanded.c_str()}));
    if (!stored) return E_OUTOFMEMORY;
  }
  if (TextView(stored.get()).CompareI(FilenameText(), 0) != S_OK) {
    m_Settings[kArchiveLoaded] = 0;
    m_Settings[kArchiveChanged] = 1;
  }
  m_Filename = stored;
  return S_OK;
}

HRESULT FileArchiveState::GetName(IString** name) const {
  if (!name) return E_POINTER;
  *name = nullptr;
  CREFString view(FilenameText());
  if (view.IsEmpty()) return E_FAIL;
  CREFString last = view;
  for (int32_t i = view.length - 1; i >= 0; --i) {
    if (view.text[i] != L'/') continue;
    last = CREFString(view.text + i + 1, view.length - i - 1);
    break;
  }
  if (!m_Settings[kArchiveNameForm]) {
    for (int32_t i = last.length - 1; i >= 0; --i) {
      if (last.text[i] != L'.') continue;
      last.length = i;
      break;
    }
  }
  *name = ISCreate(last);
  return *name ? S_OK : E_OUTOFMEMORY;
}

HRESULT FileArchiveState::ControlSetting(int32_t code, int32_t value) {
  if (code < 0 || code >= kArchiveSettingCount) return E_INVALIDARG;
  m_Settings[code] = value;
  return code == kArchiveChanged ? code : S_OK;  // code 0 answers the code itself, which is 0
}

HRESULT FileArchiveState::InquireSetting(int32_t code, int32_t* value) const {
  if (static_cast<uint32_t>(code) >= kArchiveSettingCount) return E_INVALIDARG;
  if (!value) return E_POINTER;
  const int32_t setting = m_Settings[code];
  if (code == kArchiveByteOutput) {
    if (setting < 0) return E_INVALIDARG;
    *value = setting;
    return S_ARCHIVE_SETTING;
  }
  *value = setting;
  return code <= kArchiveLoaded ? S_ARCHIVE_STATE : S_OK;
}

HRESULT FileArchiveState::SaveByExtension(IUnknown* self) {
  const CREFString extension = ArchiveExtension(FilenameText());
  HRESULT result = E_FAIL;
  if (AgreesWith(extension, L"x"))
    result = SaveXMLFile(self, nullptr, 0);
  else if (AgreesWith(extension, L"t"))
    result = SaveFolderStreamFile(self);
  if (SUCCEEDED(result)) MarkStored();
  return result;
}

HRESULT FileArchiveState::LoadByExtension(IUnknown* self) {
  const CREFString extension = ArchiveExtension(FilenameText());
  HRESULT result = E_FAIL;
  if (AgreesWith(extension, L"x"))
    result = LoadXMLFile(self, 0);
  else if (AgreesWith(extension, L"t"))
    result = LoadFolderStreamFile(self);
  if (SUCCEEDED(result)) MarkStored();
  return result;
}

HRESULT FileArchiveState::SaveXMLFile(IUnknown* self, IString* stylesheet, int32_t flags) {
  const tagREFString fileName = FilenameText();
  if (fileName.length <= 0) return E_FAIL;
  SmartPtr<IXMLStreamEx> xml = CreateObjectAs<IXMLStreamEx>(L"XMLStreamEx");
  if (!xml) return E_FAIL;
  if (flags & kSaveLean) xml->SetOptions(-1, flags);
  xml->LoadContent(nullptr, 0, 0);

  static constexpr wchar_t kProlog[] = L"<?xml version=\"1.0\"?>";
  static constexpr wchar_t kLineEnd[] = L"\r\n";
  static constexpr wchar_t kStylesheetOpen[] = L"<?xml-stylesheet href=\"";
  static constexpr wchar_t kStylesheetClose[] = L"\" type=\"text/xsl\"?>";
  CREFString sheet = TextView(stylesheet);
  if (sheet.IsEmpty()) sheet = CREFString(kDefaultStylesheet, static_cast<int32_t>(wcslen(kDefaultStylesheet)));
  WriteRaw(xml.get(), kProlog, static_cast<int32_t>(wcslen(kProlog)));
  WriteRaw(xml.get(), kLineEnd, 2);
  WriteRaw(xml.get(), kStylesheetOpen, static_cast<int32_t>(wcslen(kStylesheetOpen)));
  WriteRaw(xml.get(), sheet.text, sheet.length);
  WriteRaw(xml.get(), kStylesheetClose, static_cast<int32_t>(wcslen(kStylesheetClose)));
  WriteRaw(xml.get(), kLineEnd, 2);

  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(self);
  SmartPtr<IString> name;
  GetName(name.Receive());
  if (persist && !TextView(name.get()).IsEmpty()) {
    SmartPtr<IDataStream> stream = QueryAs<IDataStream>(xml.get());
    xml->BeginElement(TextView(name.get()), 0, 0);
    const HRESULT saved = persist->Save(stream.get(), 0);
    if (FAILED(saved)) return saved;
    xml->EndElement();
  }

  if (m_Settings[kArchiveByteOutput] > 0) {
    SmartPtr<IStreamTransform> ascii = CreateObjectAs<IStreamTransform>(L"ASCIIStream");
    SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
    if (!ascii || !bytes) return E_FAIL;
    const HRESULT transformed = ascii->Transform(xml.get(), bytes.get());
    if (FAILED(transformed)) return transformed;
    void* data = nullptr;
    int32_t size = 0;
    if (FAILED(bytes->GetBuffer(&data, &size))) return E_FAIL;
    return SaveBytes(fileName, data, size, 0);
  }
  void* text = nullptr;
  int32_t size = 0;
  if (FAILED(xml->GetTextBuffer(&text, &size))) return E_FAIL;
  return SaveBytes(fileName, text, size, 1);
}

HRESULT FileArchiveState::LoadXMLFile(IUnknown* self, int32_t extended) {
  const tagREFString fileName = FilenameText();
  if (fileName.length <= 0) return E_FAIL;
  SmartPtr<IXMLStream> xml = CreateObjectAs<IXMLStream>(extended ? L"XMLStreamEx" : L"XMLStream");
  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(self);
  if (!xml || !persist) return E_FAIL;
  LoadedFile file;
  const HRESULT read = file.Read(fileName, kFileLoadText);
  if (FAILED(read)) return read;
  if (file.length() > static_cast<unsigned int>(INT32_MAX) / sizeof(wchar_t)) return E_FAIL;
  const HRESULT parsed =
      xml->LoadContent(file.data(), static_cast<int32_t>(file.length() * sizeof(wchar_t)), 0);
  if (FAILED(parsed)) return parsed;
  xml->StepOver();
  SmartPtr<IDataStream> content;
  if (FAILED(xml->OpenChild(kNoName, nullptr, content.Receive(), 0)) || !content) return E_FAIL;
  return persist->Load(content.get(), kLoadReplace);
}

HRESULT FileArchiveState::SaveFolderStreamFile(IUnknown* self) {
  const tagREFString fileName = FilenameText();
  if (fileName.length <= 0) return E_FAIL;
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(self);
  if (!folder || !persist) return E_FAIL;
  const HRESULT saved = persist->Save(folder.get(), 0);
  if (FAILED(saved)) return saved;
  void* image = nullptr;
  int32_t size = 0;
  if (FAILED(folder->GetBuffer(&image, &size))) return E_FAIL;
  return SaveBytes(fileName, image, size, 0);
}

HRESULT FileArchiveState::LoadFolderStreamFile(IUnknown* self) {
  const tagREFString fileName = FilenameText();
  if (fileName.length <= 0) return E_FAIL;
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(self);
  if (!folder || !persist) return E_FAIL;
  LoadedFile file;
  const HRESULT read = file.Read(fileName, kFileLoadBytes);
  if (FAILED(read)) return read;
  // A corrupt image is refused here, before the object is touched.
  const HRESULT accepted = folder->Write(file.data(), static_cast<int32_t>(file.length()));
  if (FAILED(accepted)) return accepted;
  return persist->Load(folder.get(), kLoadReplace);
}
