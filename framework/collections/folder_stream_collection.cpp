// "FolderStream" seen as a collection of its entries (INamedCollection, ISuperCollection).
#include "folder_binary_value.h"
#include "folder_stream.h"
#include "value_objects.h"

namespace {

// Lookup by name answers this index for an unknown name, as every named collection of the framework does.
constexpr int32_t kUnknownNameIndex = 65535;

}  // namespace

HRESULT CFolderStream::ItemOfEntry(const FolderEntry& entry, IUnknown** item) const {
  switch (entry.kind) {
    case kFolderEntryValue: {
      IVariant* value = nullptr;
      const HRESULT result = VariantOfEntry(entry, &value);
      *item = value;
      return result;
    }
    case kFolderEntryBinary: {
      SmartPtr<CFolderBinaryValue> bytes = NewObject<CFolderBinaryValue>();
      if (!bytes) return E_OUTOFMEMORY;
      bytes->Assign(entry.bytes);
      *item = static_cast<IDataStream*>(bytes.Detach());
      return S_OK;
    }
    default: {  // a sub-folder, or the folder an object saved itself into
      IFolderStream* folder = nullptr;
      const HRESULT result = HandOutSubView(entry.folder ? entry.folder : std::make_shared<FolderNode>(), &folder);
      *item = folder;
      return result;
    }
  }
}

HRESULT CFolderStream::get_Count(int32_t* count) {
  if (!count) return E_POINTER;
  TreeLock hold(m_Tree->mutex);
  *count = static_cast<int32_t>(m_Node->Count());
  return S_OK;
}

HRESULT CFolderStream::get_Item(int32_t index, IUnknown** item) {
  if (!item) return E_POINTER;
  *item = nullptr;
  return GuardedCall([&] {
    FolderEntry entry;
    if (HRESULT result = CopyEntryAt(index, &entry); FAILED(result)) return result;
    return ItemOfEntry(entry, item);
  });
}

HRESULT CFolderStream::get_Index(IUnknown* key, int32_t* index) {
  if (!index) return E_POINTER;
  *index = -1;
  SmartPtr<IString> name = QueryAs<IString>(key);
  if (!name) {
    SmartPtr<IVariant> value = QueryAs<IVariant>(key);
    if (!value) return E_FAIL;
    if (value->GetType() != kVariantNotNumber) {
      *index = value->GetLong();  // a number is the index itself, unchecked
      return S_OK;
    }
    if (!value->IsString()) return E_FAIL;
    value->GetString(name.Receive());
  }
  TreeLock hold(m_Tree->mutex);
  const std::wstring_view text = ViewOf(name.get());
  const int32_t found = text.empty() ? -1 : m_Node->IndexOf(text);
  *index = found < 0 ? kUnknownNameIndex : found;
  return found < 0 ? E_FAIL : S_OK;
}

HRESULT CFolderStream::get_ItemName(int32_t index, IString** name) {
  if (!name) return E_POINTER;
  *name = nullptr;
  return GuardedCall([&] {
    TreeLock hold(m_Tree->mutex);
    if (index < 0 || static_cast<size_t>(index) >= m_Node->Count()) return E_INVALIDARG;
    return CopyOutString(m_Node->At(static_cast<size_t>(index)).name, name);
  });
}

HRESULT CFolderStream::Rename(int32_t index, IString* name) {
  const std::wstring_view text = ViewOf(name);
  if (text.empty()) return E_INVALIDARG;
  return GuardedCall([&] {
    TreeLock hold(m_Tree->mutex);
    if (index < 0 || static_cast<size_t>(index) >= m_Node->Count()) return E_INVALIDARG;
    return m_Node->Rename(static_cast<size_t>(index), text) ? S_OK : E_INVALIDARG;
  });
}

HRESULT CFolderStream::CollectionLock() {
  m_Tree->mutex.lock();
  ++m_LockDepth;
  return S_OK;
}

HRESULT CFolderStream::CollectionUnlock() {
  if (m_LockDepth <= 0) return E_FAIL;
  --m_LockDepth;
  m_Tree->mutex.unlock();
  return S_OK;
}

// 0 while locked, 1 otherwise: the named collection's convention.
HRESULT CFolderStream::IsCollectionLocked() { return m_LockDepth > 0 ? 0 : 1; }

HRESULT CFolderStream::get_ItemAttached(int32_t index, IUnknown** attached) {
  if (!attached) return E_POINTER;
  *attached = nullptr;
  return GuardedCall([&] {
    TreeLock hold(m_Tree->mutex);
    if (index < 0 || static_cast<size_t>(index) >= m_Node->Count()) return E_INVALIDARG;
    const FolderEntryView entry = m_Node->At(static_cast<size_t>(index));
    if (entry.kind != kFolderEntryObject) return E_FAIL;
    IString* className = nullptr;
    const HRESULT result = CopyOutString(entry.text, &className);
    *attached = className;
    return result;
  });
}

HRESULT CFolderStream::get_ItemFlags(int32_t index, int32_t* flags) {
  if (!flags) return E_POINTER;
  TreeLock hold(m_Tree->mutex);
  if (index < 0 || static_cast<size_t>(index) >= m_Node->Count()) return E_INVALIDARG;
  *flags = m_Node->At(static_cast<size_t>(index)).kind;
  return S_OK;
}

HRESULT CFolderStream::Remove(int32_t index) {
  return GuardedCall([&] {
    TreeLock hold(m_Tree->mutex);
    if (index < 0 || static_cast<size_t>(index) >= m_Node->Count()) return E_INVALIDARG;
    m_Node->Remove(static_cast<size_t>(index));
    return S_OK;
  });
}

HRESULT CFolderStream::Clear() { return Reset(); }
HRESULT CFolderStream::CollectionClear() { return Reset(); }
HRESULT CFolderStream::cLock() { return CollectionLock(); }
HRESULT CFolderStream::cUnlock() { return CollectionUnlock(); }

// Entries are added and changed through IFolderStream, which knows their kinds.
HRESULT CFolderStream::put_ItemAttached(int32_t, IUnknown*) { return E_NOTIMPL; }
HRESULT CFolderStream::put_ItemFlags(int32_t, int32_t) { return E_NOTIMPL; }
HRESULT CFolderStream::put_Item(int32_t, IUnknown*) { return E_NOTIMPL; }
HRESULT CFolderStream::Add(IString*, IUnknown*, IUnknown*, int32_t) { return E_NOTIMPL; }
HRESULT CFolderStream::Insert(int32_t, IString*, IUnknown*, IUnknown*, int32_t) { return E_NOTIMPL; }
HRESULT CFolderStream::Query(const IID&, int32_t, int16_t, int32_t*) { return E_NOTIMPL; }
HRESULT CFolderStream::Sort(int32_t, void*) { return E_NOTIMPL; }
HRESULT CFolderStream::get_ItemIndex(IUnknown*, int32_t*) { return E_NOTIMPL; }
HRESULT CFolderStream::get_IndexAttached(IUnknown*, int32_t*) { return E_NOTIMPL; }
HRESULT CFolderStream::VerifyInterface(IUnknown*, IUnknown**) { return E_NOTIMPL; }
HRESULT CFolderStream::Save(IDataStream*, int32_t) { return E_NOTIMPL; }
HRESULT CFolderStream::Load(IDataStream*, int32_t) { return E_NOTIMPL; }
