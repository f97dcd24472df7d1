// "ParamCollection": parameter sets kept as one file, members with files of
// their own stored by relative or mapped name.
#include "parameters/param_collection.h"

#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "archive/file_names.h"
#include "parameters/parameters_creatable.h"
#include "parameters/persist_text.h"

namespace {

constexpr tagREFString kNoName{0, nullptr};
constexpr tagREFString kOptionsName{7, L"Options"};
constexpr tagREFString kItemsName{5, L"Items"};
constexpr tagREFString kFlagsName{5, L"Flags"};
constexpr tagREFString kFileName{4, L"File"};
constexpr tagREFString kItemEntry{4, L"Item"};
constexpr tagREFString kNameTemplate{12, L"NameTemplate"};
constexpr wchar_t kDefaultNameTemplate[] = L"Parameters%d";

SmartPtr<IParametersCreatable> NewSet() { return CreateInstanceOf<CParametersCreatable, IParametersCreatable>(); }

SmartPtr<IString> NewString(const std::wstring& text) {
  return SmartPtr<IString>::Adopt(ISCreate(tagREFString{static_cast<int32_t>(text.size()), text.c_str()}));
}

// The folder of the collection's file ("" without one).
SmartPtr<IString> FolderOf(tagREFString fileName) {
  CREFString view(fileName), folder;
  if (view.IsEmpty() || FAILED(view.GetReverseLine(&folder, L'/', false, false))) return SmartPtr<IString>();
  return SmartPtr<IString>::Adopt(ISCreate(folder));
}

// A member's file name as stored: relative to the collection's folder, else mapped, else as it is.
SmartPtr<IString> StoredMemberName(IString* folder, IString* fileName) {
  SmartPtr<IString> stored;
  if (folder && FILENAMECreateRelative(folder, fileName, stored.Receive()) == S_OK) return stored;
  if (SUCCEEDED(FILENAMEMap(fileName, stored.Receive(), 0))) return stored;
  return SmartPtr<IString>(fileName);
}

// The inverse of StoredMemberName.
SmartPtr<IString> ResolvedMemberName(IString* folder, IString* stored) {
  const CREFString text = TextView(stored);
  SmartPtr<IString> resolved;
  if (!text.IsEmpty() && text.text[0] == L'[') {
    FILENAMEUnmap(stored, resolved.Receive());
  } else if (!text.IsEmpty() && text.text[0] != L'/' && folder) {
    FILENAMECreateAbsolute(folder, stored, resolved.Receive());
  }
  return resolved ? resolved : SmartPtr<IString>(stored);
}

// The member's own file name, or null when it has none.
SmartPtr<IString> MemberFileName(IUnknown* member) {
  SmartPtr<IFileArchive> archive = QueryAs<IFileArchive>(member);
  SmartPtr<IString> name;
  if (!archive || FAILED(archive->get_Filename(name.Receive())) || TextView(name.get()).IsEmpty())
    return SmartPtr<IString>();
  return name;
}

// A new set loaded from the member file `fileName`; null when it cannot be loaded.
SmartPtr<IUnknown> LoadMember(IString* fileName) {
  SmartPtr<IParametersCreatable> set = NewSet();
  SmartPtr<IFileArchive> archive = QueryAs<IFileArchive>(set.get());
  if (!archive || FAILED(archive->put_Filename(fileName)) || FAILED(archive->Load())) return SmartPtr<IUnknown>();
  return SmartPtr<IUnknown>(set.get());
}

struct LoadedItem {
  SmartPtr<IString> name;
  SmartPtr<IUnknown> object;
  int32_t flags = 0;
};

SmartPtr<IXMLStream> OpenCurrent(IXMLStream* xml, IString** text = nullptr) {
  SmartPtr<IDataStream> child;
  if (FAILED(xml->OpenChild(kNoName, text, child.Receive(), 0))) return SmartPtr<IXMLStream>();
  return QueryAs<IXMLStream>(child.get());
}

// The items of an "Items" element; E_FAIL when a member file cannot be loaded.
HRESULT ReadXMLItems(IXMLStream* items, IString* folder, std::vector<LoadedItem>* loaded) {
  SmartPtr<IString> name;
  while (SUCCEEDED(items->NextChild(name.Receive()))) {
    SmartPtr<IXMLStream> element = OpenCurrent(items);
    if (!element) continue;
    LoadedItem item;
    item.name = name;
    SmartPtr<IString> childName;
    while (SUCCEEDED(element->NextChild(childName.Receive()))) {
      const CREFString child = TextView(childName.get());
      SmartPtr<IString> text;
      if (EqualsIgnoringCase(child, L"Flags")) {
        OpenCurrent(element.get(), text.Receive());
        item.flags = _IS2Integer(TextView(text.get()), 10);
      } else if (EqualsIgnoringCase(child, L"File")) {
        OpenCurrent(element.get(), text.Receive());
        item.object = LoadMember(ResolvedMemberName(folder, text.get()).get());
        if (!item.object) return E_FAIL;
      } else {
        element->ReadObject(kNoName, item.object.Receive());
      }
    }
    if (item.object) loaded->push_back(std::move(item));
  }
  return S_OK;
}

HRESULT ReadFolderItems(IFolderStream* items, IString* folder, std::vector<LoadedItem>* loaded) {
  SmartPtr<ISuperCollection> entries = QueryAs<ISuperCollection>(items);
  int32_t count = 0;
  if (entries) entries->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    LoadedItem item;
    SmartPtr<IFolderStream> sub;
    entries->get_ItemName(i, item.name.Receive());
    if (FAILED(items->OpenFolder(TextView(item.name.get()), sub.Receive())) || !sub) continue;
    sub->ReadBinary(kFlagsName, &item.flags, sizeof(item.flags), nullptr);
    SmartPtr<IString> stored;
    if (SUCCEEDED(sub->ReadString(kFileName, stored.Receive()))) {
      item.object = LoadMember(ResolvedMemberName(folder, stored.get()).get());
      if (!item.object) return E_FAIL;
    } else {
      sub->ReadObject(kItemEntry, kLoadReplace, nullptr, item.object.ReceiveVoid());
    }
    if (item.object) loaded->push_back(std::move(item));
  }
  return S_OK;
}

}  // namespace

HRESULT CParamCollection::FinalConstruct() {
  m_Options = NewSet();
  if (!m_Options) return CO_E_CREATEFAILED;
  SmartPtr<IString> name = NewString(kNameTemplate.text);
  SmartPtr<IString> value = SmartPtr<IString>::Adopt(ISCreate(kDefaultNameTemplate));
  SmartPtr<IVariant> variant = SmartPtr<IVariant>::Adopt(IVCreate(value.get()));
  m_Options->Add(name.get(), variant.get(), nullptr, 0);
  m_Archive.SetFilter(L"Parameter collections (*.xml)|*.xml|All Files (*.*)|*.*||");
  return S_OK;
}

void CParamCollection::FinalRelease() {
  CollectionClear();
  m_Options.Reset();
}

void CParamCollection::Lock() { m_Lock.Lock(); }

void CParamCollection::Unlock() { m_Lock.Unlock(); }

HRESULT CParamCollection::Clear() { return CollectionClear(); }

HRESULT CParamCollection::VerifyInterface(IUnknown* object, IUnknown** verified) {
  if (!verified) return E_POINTER;
  *verified = QueryAs<IParameters>(object).Detach();
  return *verified ? S_OK : E_FAIL;
}

SmartPtr<IString> CParamCollection::NextName() {
  std::wstring pattern = kDefaultNameTemplate;
  int32_t index = -1;
  SmartPtr<IVariant> value;
  if (SUCCEEDED(m_Options->get_Index(NewString(kNameTemplate.text).get(), &index)) &&
      SUCCEEDED(m_Options->get_ItemVariant(index, value.Receive()))) {
    const CREFString text = TextView(ValueText(value.get()).get());
    if (!text.IsEmpty()) pattern.assign(text.text, static_cast<size_t>(text.length));
  }
  const size_t slot = pattern.find(L"%d");
  std::unordered_set<std::wstring> used;
  int32_t count = 0;
  get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    if (SUCCEEDED(get_ItemName(i, name.Receive()))) {
      const CREFString text = TextView(name.get());
      used.emplace(text.text ? text.text : L"", static_cast<size_t>(text.length));
    }
  }
  for (int32_t n = 1;; ++n) {
    std::wstring candidate = pattern;
    if (slot == std::wstring::npos)
      candidate += std::to_wstring(n);
    else
      candidate.replace(slot, 2, std::to_wstring(n));
    if (!used.count(candidate)) return NewString(candidate);
  }
}

HRESULT CParamCollection::Add(IString* name, IUnknown* object, IUnknown* attached, int32_t flags) {
  m_Lock.Lock();
  SmartPtr<IString> chosen = TextView(name).IsEmpty() ? NextName() : SmartPtr<IString>(name);
  SmartPtr<IUnknown> item = object ? SmartPtr<IUnknown>(object) : SmartPtr<IUnknown>(NewSet().get());
  const HRESULT result = INamedCollectionImpl::Add(chosen.get(), item.get(), attached, flags);
  m_Lock.Unlock();
  return result;
}

HRESULT CParamCollection::get_Parameters(IParameters** parameters) {
  if (!parameters) return E_POINTER;
  *parameters = static_cast<IParameters*>(SmartPtr<IParametersCreatable>(m_Options).Detach());
  return S_OK;
}

HRESULT CParamCollection::put_Parameters(IParameters* parameters) { return m_Options->Copy(parameters); }

HRESULT CParamCollection::Save(IDataStream* stream, int32_t flags) {
  SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream);
  SmartPtr<IFolderStream> folderStream = QueryAs<IFolderStream>(stream);
  if (!xml && !folderStream) return S_OK;
  SmartPtr<IString> folder = FolderOf(m_Archive.FilenameText());
  SmartPtr<IFolderStream> items;
  if (xml) {
    xml->BeginElement(kOptionsName, 0, 0);
    m_Options->Params_SaveXML(stream, 0);
    xml->EndElement();
    xml->BeginElement(kItemsName, 0, 0);
  } else {
    SmartPtr<IFolderStream> options;
    if (FAILED(folderStream->CreateFolder(kOptionsName, options.Receive()))) return E_FAIL;
    m_Options->Params_SaveFolderStream(options.get(), 0);
    if (FAILED(folderStream->CreateFolder(kItemsName, items.Receive()))) return E_FAIL;
  }

  m_Lock.Lock();
  HRESULT result = S_OK;
  int32_t count = 0;
  get_Count(&count);
  for (int32_t i = 0; i < count && SUCCEEDED(result); ++i) {
    SmartPtr<IUnknown> object;
    SmartPtr<IString> name;
    int32_t itemFlags = 0;
    get_Item(i, object.Receive());
    get_ItemName(i, name.Receive());
    get_ItemFlags(i, &itemFlags);
    const ItemNameText element(name.get(), i);
    SmartPtr<IString> memberFile = MemberFileName(object.get());
    // A member with a file of its own is saved there, and only its name goes into the collection.
    if (memberFile) result = QueryAs<IFileArchive>(object.get())->Save();
    if (FAILED(result)) break;
    SmartPtr<IString> stored = memberFile ? StoredMemberName(folder.get(), memberFile.get()) : SmartPtr<IString>();
    if (xml) {
      xml->BeginElement(element.view(), 0, 0);
      if (itemFlags) xml->WriteElement(kFlagsName, 0, TextView(SmartPtr<IString>::Adopt(ISCreate(itemFlags)).get()), 0);
      if (stored) {
        xml->WriteElement(kFileName, 0, TextView(stored.get()), 0);
      } else if (SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(object.get())) {
        xml->BeginObject(object.get(), 0, 0);
        persist->Save(stream, flags);
        xml->EndElement();
      }
      xml->EndElement();
      continue;
    }
    SmartPtr<IFolderStream> sub;
    if (FAILED(items->CreateFolder(element.view(), sub.Receive()))) {
      result = E_FAIL;
      break;
    }
    if (itemFlags) sub->WriteBinary(kFlagsName, &itemFlags, sizeof(itemFlags));
    result = stored ? sub->WriteString(kFileName, stored.get()) : sub->WriteObject(kItemEntry, object.get(), flags);
  }
  m_Lock.Unlock();
  if (xml) xml->EndElement();
  return result;
}

HRESULT CParamCollection::Load(IDataStream* stream, int32_t flags) {
  SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream);
  SmartPtr<IFolderStream> folderStream = QueryAs<IFolderStream>(stream);
  if (!xml && !folderStream) return E_NOTIMPL;
  SmartPtr<IString> folder = FolderOf(m_Archive.FilenameText());
  SmartPtr<IParametersCreatable> options = NewSet();
  if (!options) return CO_E_CREATEFAILED;
  std::vector<LoadedItem> loaded;
  HRESULT result = S_OK;
  if (xml) {
    SmartPtr<IString> name;
    while (SUCCEEDED(result) && SUCCEEDED(xml->NextChild(name.Receive()))) {
      const CREFString child = TextView(name.get());
      SmartPtr<IXMLStream> part = OpenCurrent(xml.get());
      if (!part) continue;
      if (EqualsIgnoringCase(child, L"Options"))
        options->Params_LoadXML(QueryAs<IDataStream>(part.get()).get(), kLoadReplace, 0);
      else if (EqualsIgnoringCase(child, L"Items"))
        result = ReadXMLItems(part.get(), folder.get(), &loaded);
    }
  } else {
    SmartPtr<IFolderStream> part;
    if (SUCCEEDED(folderStream->OpenFolder(kOptionsName, part.Receive())))
      options->Params_LoadFolderStream(part.get(), kLoadReplace);
    if (SUCCEEDED(folderStream->OpenFolder(kItemsName, part.Receive())))
      result = ReadFolderItems(part.get(), folder.get(), &loaded);
  }
  if (FAILED(result)) return result;  // nothing has changed yet

  m_Lock.Lock();
  m_Options->Copy(options.get());
  if (flags & kLoadReplace) CollectionClear();
  for (const LoadedItem& item : loaded) {
    int32_t index = -1;
    if (!(flags & kLoadReplace) && SUCCEEDED(get_Index(item.name.get(), &index))) {
      SmartPtr<IString> found;
      get_ItemName(index, found.Receive());
      if (TextView(found.get()).CompareI(TextView(item.name.get()), 0) == S_OK) {
        put_Item(index, item.object.get());
        put_ItemFlags(index, item.flags);
        continue;
      }
    }
    INamedCollectionImpl::Add(item.name.get(), item.object.get(), nullptr, item.flags);
  }
  m_Lock.Unlock();
  m_Archive.SetSetting(kArchiveLoaded, 1);
  return S_OK;
}
