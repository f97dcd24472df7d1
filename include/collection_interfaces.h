// Named collections: the common front of every collection of the parameter
// module (INamedCollection), the framework's general collection
// (ISuperCollection) and the tab collection identity.
//
// Lookup by name answers 65535 (not -1) for an unknown name in the named
// collection; IsCollectionLocked answers 0 for "locked" here but 1 for
// "locked" in IParameters. Both asymmetries are part of the contract.
#pragma once

#include "framework_interfaces.h"

struct INamedCollection : ISimpleCollection {
  // key: an IString (name), or an IVariant holding a number (the index itself),
  // text (a name) or an object (looked up by identity).
  virtual HRESULT get_Index(IUnknown* key, int32_t* index) = 0;
  virtual HRESULT get_ItemName(int32_t index, IString** name) = 0;
  virtual HRESULT Rename(int32_t index, IString* name) = 0;
  virtual HRESULT CollectionLock() = 0;
  virtual HRESULT CollectionUnlock() = 0;
  virtual HRESULT IsCollectionLocked() = 0;
};

// Sort flags of the named collection.
constexpr int32_t kSortDescending = 0x2;
constexpr int32_t kSortByNameLength = 0x10;

// qsort comparison over slots of record pointers.
typedef int (*CollectionCompare)(const void* a, const void* b);

struct ISuperCollection : INamedCollection {
  virtual HRESULT get_ItemAttached(int32_t index, IUnknown** attached) = 0;
  virtual HRESULT put_ItemAttached(int32_t index, IUnknown* attached) = 0;
  virtual HRESULT get_ItemFlags(int32_t index, int32_t* flags) = 0;
  virtual HRESULT put_ItemFlags(int32_t index, int32_t flags) = 0;
  virtual HRESULT put_Item(int32_t index, IUnknown* object) = 0;
  virtual HRESULT Add(IString* name, IUnknown* object, IUnknown* attached, int32_t flags) = 0;
  virtual HRESULT Insert(int32_t index, IString* name, IUnknown* object, IUnknown* attached, int32_t flags) = 0;
  virtual HRESULT Remove(int32_t index) = 0;
  virtual HRESULT Query(const IID& iid, int32_t nth, int16_t useAttached, int32_t* index) = 0;
  virtual HRESULT Clear() = 0;
  virtual HRESULT Sort(int32_t flags, void* compare) = 0;
  virtual HRESULT cLock() = 0;
  virtual HRESULT cUnlock() = 0;
  virtual HRESULT get_ItemIndex(IUnknown* object, int32_t* index) = 0;
  virtual HRESULT get_IndexAttached(IUnknown* attached, int32_t* index) = 0;
  virtual HRESULT VerifyInterface(IUnknown* object, IUnknown** verified) = 0;
  virtual HRESULT CollectionClear() = 0;
  virtual HRESULT Save(IDataStream* stream, int32_t flags) = 0;
  virtual HRESULT Load(IDataStream* stream, int32_t flags) = 0;
};

// A collection of tabs; only its identity is used by this product.
struct ITabCollection : INamedCollection {};
