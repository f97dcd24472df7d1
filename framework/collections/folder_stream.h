// "FolderStream": a tree of named entries (sub-folders, bytes, values, objects) kept as one binary file.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "folder_tree.h"
#include "runtime/object.h"

// One object views one folder of a tree; sub-folders are views of the same
// tree, which one recursive mutex guards. The ISuperCollection view lists the
// folder's entries (get_ItemFlags gives an entry's kind, get_ItemAttached an
// object entry's class name); operations that would add or change entries
// through it answer E_NOTIMPL: use the IFolderStream operations instead.
class CFolderStream : public CObjectImpl<CFolderStream, IFolderStream, ISuperCollection> {
 public:
  static constexpr wchar_t kObjectName[] = L"FolderStream";
  static constexpr InterfaceEntry<CFolderStream> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CFolderStream, IObjectInfo>},
      {&IID_IDataStream, InterfaceOf<CFolderStream, IFolderStream>},
      {&IID_IFolderStream, InterfaceOf<CFolderStream, IFolderStream>},
      {&IID_ISimpleCollection, InterfaceOf<CFolderStream, ISuperCollection>},
      {&IID_INamedCollection, InterfaceOf<CFolderStream, ISuperCollection>},
      {&IID_ISuperCollection, InterfaceOf<CFolderStream, ISuperCollection>},
  };

  CFolderStream();

  // IDataStream
  HRESULT Write(const void* data, int32_t byteCount) override;
  HRESULT Read(void* data, int32_t byteCount, int32_t* bytesRead) override;
  HRESULT GetBuffer(void** data, int32_t* byteCount) override;
  HRESULT Reset() override;

  // IFolderStream
  HRESULT CreateFolder(tagREFString name, IFolderStream** folder) override;
  HRESULT OpenFolder(tagREFString name, IFolderStream** folder) override;
  HRESULT WriteBinary(tagREFString name, const void* data, int32_t byteCount) override;
  HRESULT ReadBinary(tagREFString name, void* data, int32_t byteCount, int32_t* storedCount) override;
  HRESULT WriteValue(tagREFString name, IVariant* value) override;
  HRESULT ReadValue(tagREFString name, IVariant** value) override;
  HRESULT WriteString(tagREFString name, IString* text) override;
  HRESULT ReadString(tagREFString name, IString** text) override;
  HRESULT WriteObject(tagREFString name, IUnknown* object, int32_t flags) override;
  HRESULT ReadObject(tagREFString name, int32_t flags, IID* iid, void** object) override;
  HRESULT Find(tagREFString name, int32_t* index, int32_t* kind) override;
  HRESULT RemoveEntry(tagREFString name) override;
  HRESULT SaveToFile(IString* fileName) override;
  HRESULT LoadFromFile(IString* fileName) override;

  // INamedCollection (folder_stream_collection.cpp)
  HRESULT get_Count(int32_t* count) override;
  HRESULT get_Item(int32_t index, IUnknown** item) override;
  HRESULT get_Index(IUnknown* key, int32_t* index) override;
  HRESULT get_ItemName(int32_t index, IString** name) override;
  HRESULT Rename(int32_t index, IString* name) override;
  HRESULT CollectionLock() override;
  HRESULT CollectionUnlock() override;
  HRESULT IsCollectionLocked() override;

  // ISuperCollection
  HRESULT get_ItemAttached(int32_t index, IUnknown** attached) override;
  HRESULT put_ItemAttached(int32_t index, IUnknown* attached) override;
  HRESULT get_ItemFlags(int32_t index, int32_t* flags) override;
  HRESULT put_ItemFlags(int32_t index, int32_t flags) override;
  HRESULT put_Item(int32_t index, IUnknown* object) override;
  HRESULT Add(IString* name, IUnknown* object, IUnknown* attached, int32_t flags) override;
  HRESULT Insert(int32_t index, IString* name, IUnknown* object, IUnknown* attached, int32_t flags) override;
  HRESULT Remove(int32_t index) override;
  HRESULT Query(const IID& iid, int32_t nth, int16_t useAttached, int32_t* index) override;
  HRESULT Clear() override;
  HRESULT Sort(int32_t flags, void* compare) override;
  HRESULT cLock() override;
  HRESULT cUnlock() override;
  HRESULT get_ItemIndex(IUnknown* object, int32_t* index) override;
  HRESULT get_IndexAttached(IUnknown* attached, int32_t* index) override;
  HRESULT VerifyInterface(IUnknown* object, IUnknown** verified) override;
  HRESULT CollectionClear() override;
  HRESULT Save(IDataStream* stream, int32_t flags) override;
  HRESULT Load(IDataStream* stream, int32_t flags) override;

 private:
  using TreeLock = std::lock_guard<std::recursive_mutex>;

  // A view of `folder`, one level below this one.
  SmartPtr<CFolderStream> SubView(std::shared_ptr<FolderNode> folder) const;
  HRESULT HandOutSubView(std::shared_ptr<FolderNode> folder, IFolderStream** out) const;

  // A copy of the entry named `name` (its sub-folder shared); E_ITEMNOTFOUND when absent.
  HRESULT CopyEntry(tagREFString name, FolderEntry* entry) const;
  HRESULT CopyEntryAt(int32_t index, FolderEntry* entry) const;
  HRESULT Store(FolderEntry entry);

  // The object's class name and saved content into `entry` (text and folder).
  HRESULT SaveObjectInto(IUnknown* object, int32_t flags, FolderEntry* entry) const;
  // A new object of the entry's class, loaded from the entry's folder.
  HRESULT RecreateObject(const FolderEntry& entry, int32_t flags, IID* iid, void** object) const;
  HRESULT EntryOfVariant(IVariant* value, FolderEntry* entry) const;
  HRESULT VariantOfEntry(const FolderEntry& entry, IVariant** value) const;
  // What get_Item hands out for an entry.
  HRESULT ItemOfEntry(const FolderEntry& entry, IUnknown** item) const;

  std::shared_ptr<FolderTree> m_Tree;
  std::shared_ptr<FolderNode> m_Node;
  int32_t m_Depth = 0;
  std::string m_Image;  // the last image handed out by GetBuffer
  std::atomic<int32_t> m_LockDepth{0};
};
