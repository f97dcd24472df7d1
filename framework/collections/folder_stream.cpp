// "FolderStream": entries written and read by name, object persistence, and the whole tree to and from a file.
#include "folder_stream.h"

#include <algorithm>
#include <cstring>

#include "folder_format.h"
#include "runtime/module_loader.h"
#include "text_file.h"
#include "value_objects.h"

namespace {

// An entry named `name` of the given kind; E_INVALIDARG for an empty name.
HRESULT NewEntry(tagREFString name, int32_t kind, FolderEntry* entry) {
  std::wstring_view text = ViewOf(name);
  if (text.empty()) return E_INVALIDARG;
  entry->name.assign(text);
  entry->kind = kind;
  return S_OK;
}

}  // namespace

CFolderStream::CFolderStream()
    : m_Tree(std::make_shared<FolderTree>()), m_Node(std::make_shared<FolderNode>()) {}

SmartPtr<CFolderStream> CFolderStream::SubView(std::shared_ptr<FolderNode> folder) const {
  SmartPtr<CFolderStream> view = NewObject<CFolderStream>();
  if (!view) return view;
  view->m_Tree = m_Tree;
  view->m_Node = std::move(folder);
  view->m_Depth = m_Depth + 1;
  return view;
}

HRESULT CFolderStream::HandOutSubView(std::shared_ptr<FolderNode> folder, IFolderStream** out) const {
  SmartPtr<CFolderStream> view = SubView(std::move(folder));
  if (!view) return E_OUTOFMEMORY;
  *out = static_cast<IFolderStream*>(view.Detach());
  return S_OK;
}

HRESULT CFolderStream::CopyEntry(tagREFString name, FolderEntry* entry) const {
  std::wstring_view text = ViewOf(name);
  if (text.empty()) return E_INVALIDARG;
  TreeLock hold(m_Tree->mutex);
  const int32_t index = m_Node->IndexOf(text);
  if (index < 0) return E_ITEMNOTFOUND;
  *entry = m_Node->CopyAt(static_cast<size_t>(index));
  return S_OK;
}

HRESULT CFolderStream::CopyEntryAt(int32_t index, FolderEntry* entry) const {
  TreeLock hold(m_Tree->mutex);
  if (index < 0 || static_cast<size_t>(index) >= m_Node->Count()) return E_INVALIDARG;
  *entry = m_Node->CopyAt(static_cast<size_t>(index));
  return S_OK;
}

HRESULT CFolderStream::Store(FolderEntry entry) {
  TreeLock hold(m_Tree->mutex);
  m_Node->Put(std::move(entry));
  return S_OK;
}

// --- IDataStream: the folder's image ---

HRESULT CFolderStream::Write(const void* data, int32_t byteCount) {
  if (byteCount < 0 || (!data && byteCount > 0)) return E_INVALIDARG;
  return GuardedCall([&] {
    FolderNode decoded;
    std::string_view image(static_cast<const char*>(data), static_cast<size_t>(byteCount));
    if (HRESULT result = DecodeFolderImage(image, &decoded); FAILED(result)) return result;
    TreeLock hold(m_Tree->mutex);
    *m_Node = std::move(decoded);
    return S_OK;
  });
}

HRESULT CFolderStream::Read(void* /*data*/, int32_t /*byteCount*/, int32_t* bytesRead) {
  if (bytesRead) *bytesRead = 0;
  return E_NOTIMPL;
}

HRESULT CFolderStream::GetBuffer(void** data, int32_t* byteCount) {
  if (!data || !byteCount) return E_POINTER;
  *data = nullptr;
  *byteCount = 0;
  return GuardedCall([&] {
    TreeLock hold(m_Tree->mutex);
    if (HRESULT result = EncodeFolderImage(*m_Node, &m_Image); FAILED(result)) return result;
    if (m_Image.size() > kMaxFolderImageBytes) return E_OUTOFMEMORY;
    *data = m_Image.data();
    *byteCount = static_cast<int32_t>(m_Image.size());
    return S_OK;
  });
}

HRESULT CFolderStream::Reset() {
  TreeLock hold(m_Tree->mutex);
  m_Node->Clear();
  return S_OK;
}

// --- IFolderStream ---

HRESULT CFolderStream::CreateFolder(tagREFString name, IFolderStream** folder) {
  if (!folder) return E_POINTER;
  *folder = nullptr;
  if (m_Depth + 1 > kMaxFolderDepth) return E_FAIL;
  return GuardedCall([&] {
    FolderEntry entry;
    if (HRESULT result = NewEntry(name, kFolderEntryFolder, &entry); FAILED(result)) return result;
    std::shared_ptr<FolderNode> node;
    {
      TreeLock hold(m_Tree->mutex);
      const int32_t index = m_Node->IndexOf(entry.name);
      if (index >= 0 && m_Node->At(static_cast<size_t>(index)).kind == kFolderEntryFolder) {
        node = m_Node->SubFolderAt(static_cast<size_t>(index));
      } else {
        node = entry.folder = std::make_shared<FolderNode>();
        m_Node->Put(std::move(entry));
      }
    }
    return HandOutSubView(std::move(node), folder);
  });
}

HRESULT CFolderStream::OpenFolder(tagREFString name, IFolderStream** folder) {
  if (!folder) return E_POINTER;
  *folder = nullptr;
  return GuardedCall([&] {
    FolderEntry entry;
    if (HRESULT result = CopyEntry(name, &entry); FAILED(result)) return result;
    if (entry.kind != kFolderEntryFolder) return E_FAIL;
    return HandOutSubView(std::move(entry.folder), folder);
  });
}

HRESULT CFolderStream::WriteBinary(tagREFString name, const void* data, int32_t byteCount) {
  if (byteCount < 0 || (!data && byteCount > 0)) return E_INVALIDARG;
  return GuardedCall([&] {
    FolderEntry entry;
    if (HRESULT result = NewEntry(name, kFolderEntryBinary, &entry); FAILED(result)) return result;
    entry.bytes.assign(static_cast<const char*>(data), static_cast<size_t>(byteCount));
    return Store(std::move(entry));
  });
}

HRESULT CFolderStream::ReadBinary(tagREFString name, void* data, int32_t byteCount, int32_t* storedCount) {
  if (storedCount) *storedCount = 0;
  if (byteCount < 0 || (!data && byteCount > 0)) return E_INVALIDARG;
  std::wstring_view text = ViewOf(name);
  if (text.empty()) return E_INVALIDARG;
  TreeLock hold(m_Tree->mutex);
  const int32_t index = m_Node->IndexOf(text);
  if (index < 0) return E_ITEMNOTFOUND;
  const FolderEntryView entry = m_Node->At(static_cast<size_t>(index));
  if (entry.kind != kFolderEntryBinary) return E_FAIL;
  const size_t count = std::min(entry.bytes.size(), static_cast<size_t>(byteCount));
  if (count > 0) std::memcpy(data, entry.bytes.data(), count);
  if (storedCount) *storedCount = static_cast<int32_t>(entry.bytes.size());
  return entry.bytes.size() == static_cast<size_t>(byteCount) ? S_OK : S_FALSE;
}

HRESULT CFolderStream::WriteValue(tagREFString name, IVariant* value) {
  if (!value) return E_POINTER;
  return GuardedCall([&] {
    FolderEntry entry;
    if (HRESULT result = NewEntry(name, kFolderEntryValue, &entry); FAILED(result)) return result;
    if (HRESULT result = EntryOfVariant(value, &entry); FAILED(result)) return result;
    return Store(std::move(entry));
  });
}

HRESULT CFolderStream::ReadValue(tagREFString name, IVariant** value) {
  if (!value) return E_POINTER;
  *value = nullptr;
  return GuardedCall([&] {
    FolderEntry entry;
    if (HRESULT result = CopyEntry(name, &entry); FAILED(result)) return result;
    if (entry.kind != kFolderEntryValue) return E_FAIL;
    return VariantOfEntry(entry, value);
  });
}

HRESULT CFolderStream::WriteString(tagREFString name, IString* text) {
  return GuardedCall([&] {
    FolderEntry entry;
    if (HRESULT result = NewEntry(name, kFolderEntryValue, &entry); FAILED(result)) return result;
    entry.valueKind = FolderValueKind::kText;
    entry.text.assign(ViewOf(text));
    return Store(std::move(entry));
  });
}

HRESULT CFolderStream::ReadString(tagREFString name, IString** text) {
  if (!text) return E_POINTER;
  *text = nullptr;
  return GuardedCall([&] {
    FolderEntry entry;
    if (HRESULT result = CopyEntry(name, &entry); FAILED(result)) return result;
    if (entry.kind != kFolderEntryValue || entry.valueKind != FolderValueKind::kText) return E_FAIL;
    return CopyOutString(entry.text, text);
  });
}

HRESULT CFolderStream::WriteObject(tagREFString name, IUnknown* object, int32_t flags) {
  if (!object) return E_POINTER;
  return GuardedCall([&] {
    FolderEntry entry;
    if (HRESULT result = NewEntry(name, kFolderEntryObject, &entry); FAILED(result)) return result;
    if (HRESULT result = SaveObjectInto(object, flags, &entry); FAILED(result)) return result;
    return Store(std::move(entry));
  });
}

HRESULT CFolderStream::ReadObject(tagREFString name, int32_t flags, IID* iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  return GuardedCall([&] {
    FolderEntry entry;
    if (HRESULT result = CopyEntry(name, &entry); FAILED(result)) return result;
    if (entry.kind != kFolderEntryObject) return E_FAIL;
    return RecreateObject(entry, flags, iid, object);
  });
}

HRESULT CFolderStream::Find(tagREFString name, int32_t* index, int32_t* kind) {
  if (index) *index = -1;
  if (kind) *kind = 0;
  std::wstring_view text = ViewOf(name);
  if (text.empty()) return E_INVALIDARG;
  TreeLock hold(m_Tree->mutex);
  const int32_t found = m_Node->IndexOf(text);
  if (found < 0) return E_ITEMNOTFOUND;
  if (index) *index = found;
  if (kind) *kind = m_Node->At(static_cast<size_t>(found)).kind;
  return S_OK;
}

HRESULT CFolderStream::RemoveEntry(tagREFString name) {
  std::wstring_view text = ViewOf(name);
  if (text.empty()) return E_INVALIDARG;
  return GuardedCall([&] {
    TreeLock hold(m_Tree->mutex);
    const int32_t index = m_Node->IndexOf(text);
    if (index < 0) return E_ITEMNOTFOUND;
    m_Node->Remove(static_cast<size_t>(index));
    return S_OK;
  });
}

HRESULT CFolderStream::SaveToFile(IString* fileName) {
  return GuardedCall([&] {
    std::string image;
    {
      TreeLock hold(m_Tree->mutex);
      if (HRESULT result = EncodeFolderImage(*m_Node, &image); FAILED(result)) return result;
    }
    return WriteWholeFile(PathOf(fileName), image);
  });
}

HRESULT CFolderStream::LoadFromFile(IString* fileName) {
  return GuardedCall([&] {
    std::string image;
    if (HRESULT result = ReadWholeFile(PathOf(fileName), kMaxFolderImageBytes, &image); FAILED(result))
      return result == E_OUTOFMEMORY ? E_FAIL : result;
    FolderNode decoded;
    if (HRESULT result = DecodeFolderImage(image, &decoded); FAILED(result)) return result;
    TreeLock hold(m_Tree->mutex);
    *m_Node = std::move(decoded);
    return S_OK;
  });
}

// --- objects and variants ---

HRESULT CFolderStream::SaveObjectInto(IUnknown* object, int32_t flags, FolderEntry* entry) const {
  SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(object);
  tagREFString className{0, nullptr};
  if (!info || FAILED(info->GetName(0, &className)) || ViewOf(className).empty()) return E_INVALIDARG;
  if (m_Depth + 1 > kMaxFolderDepth) return E_FAIL;
  entry->text.assign(ViewOf(className));
  entry->folder = std::make_shared<FolderNode>();
  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(object);
  if (!persist) return S_OK;  // recorded by class name only
  SmartPtr<CFolderStream> content = SubView(entry->folder);
  if (!content) return E_OUTOFMEMORY;
  const HRESULT result = persist->Save(static_cast<IFolderStream*>(content.get()), flags);
  return FAILED(result) ? result : S_OK;
}

HRESULT CFolderStream::RecreateObject(const FolderEntry& entry, int32_t flags, IID* iid, void** object) const {
  SmartPtr<IUnknown> created = CreateObjectAs<IUnknown>(entry.text.c_str());
  if (!created) return CO_E_CREATEFAILED;
  if (SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(created.get())) {
    SmartPtr<CFolderStream> content = SubView(entry.folder ? entry.folder : std::make_shared<FolderNode>());
    if (!content) return E_OUTOFMEMORY;
    if (HRESULT result = persist->Load(static_cast<IFolderStream*>(content.get()), flags); FAILED(result)) return result;
  }
  return created->QueryInterface(iid ? *iid : IID_IUnknown, object);
}

HRESULT CFolderStream::EntryOfVariant(IVariant* value, FolderEntry* entry) const {
  if (value->IsObject()) {
    SmartPtr<IUnknown> object;
    if (HRESULT result = value->GetObject(object.Receive()); FAILED(result)) return result;
    entry->valueKind = FolderValueKind::kObject;
    return SaveObjectInto(object.get(), 0, entry);
  }
  if (value->IsString()) {
    SmartPtr<IString> text;
    value->GetString(text.Receive());
    entry->valueKind = FolderValueKind::kText;
    entry->text.assign(ViewOf(text.get()));
    return S_OK;
  }
  switch (value->GetType()) {
    case kVariantNotNumber: entry->valueKind = FolderValueKind::kEmpty; break;
    case kVariantInteger:
      entry->valueKind = FolderValueKind::kInteger;
      entry->integer = value->GetLong();
      break;
    default:
      entry->valueKind = FolderValueKind::kReal;
      entry->real = value->GetDouble();
      break;
  }
  return S_OK;
}

HRESULT CFolderStream::VariantOfEntry(const FolderEntry& entry, IVariant** value) const {
  SmartPtr<IVariant> result = NewVariant();
  if (!result) return E_OUTOFMEMORY;
  switch (entry.valueKind) {
    case FolderValueKind::kEmpty: break;
    case FolderValueKind::kInteger: result->SetLong(entry.integer); break;
    case FolderValueKind::kReal: result->SetDouble(entry.real); break;
    case FolderValueKind::kText: {
      SmartPtr<IString> text = NewString(entry.text);
      if (!text) return E_OUTOFMEMORY;
      result->SetString(text.get());
      break;
    }
    case FolderValueKind::kObject: {
      SmartPtr<IUnknown> object;
      if (HRESULT code = RecreateObject(entry, 0, nullptr, object.ReceiveVoid()); FAILED(code)) return code;
      result->Assign(object.get());
      break;
    }
  }
  *value = result.Detach();
  return S_OK;
}
