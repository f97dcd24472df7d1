// "ParametersCreatable": the parameter set joined with its file, stream
// persistence, condition search and property pages.
#include "parameters/parameters_creatable.h"

#include "parameters/parameter_find.h"
#include "parameters/persist_text.h"
#include "runtime/module_loader.h"

namespace {

constexpr wchar_t kFilter[] = L"Parameters (*.xml)|*.xml|All Files (*.*)|*.*||";
constexpr const wchar_t* kPropertyPages[] = {L"UIPropPages.UIParametersPropPage", L"UIPropPages.UIFileArchivePropPage"};

// The text after the file name's last "." (empty without one).
CREFString DottedExtension(tagREFString name) {
  for (int32_t i = name.length - 1; i >= 0; --i)
    if (name.text[i] == L'.') return CREFString(name.text + i + 1, name.length - i - 1);
  return CREFString();
}

// Agreement over the shorter of the two lengths: "x", "XM" and "xmlz" all agree with "xml" (intended).
bool AgreesWith(const CREFString& extension, const wchar_t* form) {
  return SUCCEEDED(extension.CompareI(tagREFString{static_cast<int32_t>(wcslen(form)), form}, 0));
}

// Lean XML unless the settings hold "UIFileArchive_Lean" as a decimal 0.
bool LeanOutputWanted() {
  SmartPtr<IRegistry> store = CreateObjectAs<IRegistry>(L"Registry");
  SmartPtr<IString> text;
  if (!store || FAILED(store->GetString(tagREFString{2, L"UI"}, tagREFString{18, L"UIFileArchive_Lean"},
                                        text.Receive())))
    return true;
  return _IS2Integer(TextView(text.get()), 10) != 0;
}

}  // namespace

HRESULT CParametersCreatable::FinalConstruct() {
  m_Archive.SetFilter(kFilter);
  return S_OK;
}

void CParametersCreatable::FinalRelease() { ReleaseStorage(); }

void CParametersCreatable::Lock() { m_Lock.Lock(); }

void CParametersCreatable::Unlock() { m_Lock.Unlock(); }

HRESULT CParametersCreatable::Sort(int32_t flags) { return IParametersImpl::Sort(flags); }

HRESULT CParametersCreatable::Find(IString* condition, int32_t /*reserved*/, IUnknown** /*found*/) {
  return ParamsFind(this, TextView(condition));
}

HRESULT CParametersCreatable::GetPages(int32_t /*reserved*/, INamedCollection** pages, IUnknown** /*reserved2*/) {
  if (!pages) return E_POINTER;
  *pages = nullptr;
  SmartPtr<ISuperCollection> list = SmartPtr<ISuperCollection>::Adopt(CREFString::CreateCollection());
  if (!list) return CO_E_CREATEFAILED;
  for (const wchar_t* page : kPropertyPages) {
    SmartPtr<IString> name = SmartPtr<IString>::Adopt(ISCreate(page));
    const HRESULT added = list->Add(name.get(), name.get(), nullptr, 0);
    if (FAILED(added)) return added;
  }
  *pages = list.Detach();
  return S_OK;
}

HRESULT CParametersCreatable::Control(int32_t code, int32_t value) {
  if (code == kOwnSettingCode) {
    m_OwnSetting = value;
    return S_OK;
  }
  return IFileArchiveImpl::Control(code, value);
}

HRESULT CParametersCreatable::Load() {
  const tagREFString fileName = m_Archive.FilenameText();
  if (fileName.length <= 0) {
    m_Archive.SetSetting(kArchiveChanged, 0);
    return E_FAIL;
  }
  const CREFString extension = DottedExtension(fileName);
  if (extension.IsEmpty() || !AgreesWith(extension, L"xml")) return E_FAIL;
  SmartPtr<IXMLFile> file = CreateObjectAs<IXMLFile>(L"XMLFile");
  SmartPtr<IFileArchive> fileArchive = QueryAs<IFileArchive>(file.get());
  if (!file || !fileArchive) return CO_E_CREATEFAILED;
  file->SetObject(GetUnknown());
  file->SetOptions(-1, kXMLFileReplace);
  SmartPtr<IString> name;
  m_Archive.GetFilename(name.Receive());
  fileArchive->put_Filename(name.get());
  // Marked loaded while the file loads; a failed load puts the marker back as it was.
  int32_t wasLoaded = 0;
  m_Archive.InquireSetting(kArchiveLoaded, &wasLoaded);
  m_Archive.SetSetting(kArchiveLoaded, 1);
  const HRESULT result = fileArchive->Load();
  if (SUCCEEDED(result))
    m_Archive.MarkStored();
  else
    m_Archive.SetSetting(kArchiveLoaded, wasLoaded);
  return result;
}

template <class Stream>
HRESULT CParametersCreatable::SaveTextStream(const wchar_t* className) {
  SmartPtr<Stream> stream = CreateObjectAs<Stream>(className);
  if (!stream) return CO_E_CREATEFAILED;
  stream->put_Parameters(this);
  SmartPtr<IString> name;
  m_Archive.GetFilename(name.Receive());
  return stream->Save(name.get(), 0);
}

HRESULT CParametersCreatable::Save() {
  const CREFString extension = DottedExtension(m_Archive.FilenameText());
  HRESULT result = E_FAIL;
  // Tested in this order, so xls is written as XML and txt as a folder stream (intended).
  if (AgreesWith(extension, L"x"))
    result = SaveXML(nullptr, 0);
  else if (AgreesWith(extension, L"t"))
    result = SaveFolderStream();
  else if (AgreesWith(extension, L"ini"))
    result = SaveTextStream<IINIStream>(L"INIStream");
  else if (AgreesWith(extension, L"mcsv"))
    result = SaveTextStream<ICSVStream>(L"CSVStream");
  else
    return IFileArchiveImpl::Save();
  if (SUCCEEDED(result)) m_Archive.MarkStored();
  return result;
}

HRESULT CParametersCreatable::Save(IDataStream* stream, int32_t flags) {
  if (QueryAs<IXMLStream>(stream)) {
    if (LeanOutputWanted()) flags |= kSaveLean;
    Params_SaveXML(stream, flags);
  } else if (QueryAs<IFolderStream>(stream)) {
    Params_SaveFolderStream(stream, flags);
  }
  return S_OK;
}

// Reports success whatever the reader did (intended: callers rely on it).
HRESULT CParametersCreatable::Load(IDataStream* stream, int32_t flags) {
  if (QueryAs<IXMLStream>(stream))
    Params_LoadXML(stream, flags | kLoadReplace, 0);
  else if (QueryAs<IFolderStream>(stream))
    Params_LoadFolderStream(stream, flags | kLoadReplace);
  else
    return E_NOTIMPL;
  m_Archive.SetSetting(kArchiveLoaded, 1);
  return S_OK;
}

HRESULT CParametersCreatable::FindFirstByName(tagREFString name, NameLookupHint* hint, int32_t* index,
                                              IVariant** value) {
  if (!index) return E_POINTER;
  if (value) *value = nullptr;
  const HRESULT found = FindName(name, index, hint);
  if (FAILED(found) || !value) return found;
  return EffectiveVariantOf(m_Items[*index], value);
}

HRESULT CParametersCreatable::FindNumberByName(tagREFString name, NameLookupHint* hint, double* number) {
  if (!number) return E_POINTER;
  int32_t index = -1;
  if (FAILED(FindName(name, &index, hint))) return E_FAIL;
  const PARAMETEROBJECT* record = m_Items[index];
  // A descriptor may bind the value to another object: that takes the general path.
  if (record->Descriptor || !record->Value || record->Value->IsObject()) return S_FALSE;
  *number = record->Value->GetDouble();
  return S_OK;
}
