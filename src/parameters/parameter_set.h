// Parameter set: ordered named values with descriptors and flags.
//
// ParameterStore holds the records (PARAMETEROBJECT) and does the work of the
// NOLOCK operations; IParametersImpl<T, Interface> serves IParameters on top
// of it and takes the owner's recursive lock (T::Lock/Unlock) where an
// operation locks.
//
// Names are looked up whole, folding only A-Z; duplicates are allowed and a
// lookup answers the first. The slots grow by 10. IsCollectionLocked answers
// 1 for "locked" here, the reverse of the named collection (intended).
#pragma once

#include <atomic>
#include <memory>

#include "parameters/name_index.h"
#include "parameters/parameter_persistence.h"
#include "parameters/parameter_values.h"
#include "runtime/boundary.h"
#include "strings/conversions.h"

class ParameterStore {
 public:
  // Orders two record slots by name, case-sensitively by code point, unnamed
  // parameters first; usable with qsort.
  static int PARAMETERSCompareByName(const void* a, const void* b);

 protected:
  ParameterStore() = default;
  ~ParameterStore();
  ParameterStore(const ParameterStore&) = delete;
  ParameterStore& operator=(const ParameterStore&) = delete;

  bool InRange(int32_t index) const { return index >= 0 && index < m_Count; }

  HRESULT AppendParameter(IString* name, IUnknown* value, IUnknown* descriptor, int32_t flags);
  HRESULT ReplaceValue(int32_t index, IUnknown* value);
  HRESULT ItemAt(int32_t index, IUnknown** item);
  HRESULT NameAt(int32_t index, IString** name);
  HRESULT FindIndex(IUnknown* key, int32_t* index);
  HRESULT FindName(tagREFString key, int32_t* index, NameLookupHint* hint = nullptr);
  void RenameParameter(int32_t index, IString* name);
  void ReplaceDescriptor(int32_t index, IUnknown* descriptor);
  void RemoveParameter(int32_t index);
  void RemoveAllParameters();
  void SortParameters(int32_t flags);
  // Releases every record and the slot array.
  void ReleaseStorage();

  std::unique_ptr<PARAMETEROBJECT*[]> m_Items;  // slots at and beyond m_Count are null
  // Atomic because get_Count, the flag accessors and the range checks made
  // before locking read it without the lock.
  std::atomic<int32_t> m_Count{0};
  int32_t m_Capacity = 0;  // grows in steps of 10
  std::atomic<int32_t> m_Locked{0};  // read by IsCollectionLocked without the lock

 private:
  // A record with the bookkeeping of the name index, which looks names up
  // whole only: 40 bytes on 64-bit hosts, malloc's 48-byte chunk.
  struct Record : PARAMETEROBJECT {
    int32_t Position = 0;
    uint32_t IndexMark = 0;
  };
  static_assert(sizeof(void*) != 8 || sizeof(Record) == 40);

  Record* RecordAt(int32_t index) const { return static_cast<Record*>(m_Items[index]); }
  void GrowSlots();
  HRESULT FindObject(IUnknown* key, int32_t* index) const;

  int32_t m_Allocated = 0;  // slots actually allocated, at least m_Capacity
  NameIndex<Record> m_NameIndex;
};

template <class T, class Interface>
class IParametersImpl : public Interface, protected ParameterStore {
 public:
  HRESULT get_Count(int32_t* count) override {
    if (!count) return E_POINTER;
    *count = m_Count;
    return S_OK;
  }

  // The locked reads copy the record under the lock and resolve its binding
  // after releasing it (see HeldRecordValue).
  HRESULT get_Item(int32_t index, IUnknown** item) override {
    if (!item) return E_POINTER;
    HeldRecordValue held;
    {
      ScopedCollectionLock lock(*this);
      if (!InRange(index)) return E_INVALIDARG;
      held = HoldValueOf(m_Items[index]);
    }
    return EffectiveItemOf(held, item);
  }

  HRESULT get_Index(IUnknown* key, int32_t* index) override {
    ScopedCollectionLock lock(*this);
    return FindIndex(key, index);
  }

  HRESULT get_ItemName(int32_t index, IString** name) override {
    ScopedCollectionLock lock(*this);
    return get_ItemNameNOLOCK(index, name);
  }

  HRESULT Rename(int32_t index, IString* name) override {
    if (!InRange(index)) return E_INVALIDARG;
    ScopedCollectionLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    RenameParameter(index, name);
    return S_OK;
  }

  HRESULT CollectionLock() override {
    Owner().Lock();
    m_Locked = 1;
    return S_OK;
  }

  // A plain flag, not a depth: the first unlock already reports "unlocked".
  // The flag is cleared while the lock is still held: once it is given up,
  // another thread may take it and set the flag.
  HRESULT CollectionUnlock() override {
    m_Locked = 0;
    Owner().Unlock();
    return S_OK;
  }

  // 1 means locked, 0 unlocked (the reverse of the named collection: intended).
  HRESULT IsCollectionLocked() override { return m_Locked ? 1 : 0; }

  HRESULT Iterate(int32_t index, IString** name, IVariant** value, IUnknown** descriptor, int32_t* flags) override {
    if (!InRange(index)) return E_INVALIDARG;
    HeldRecordValue held;
    {
      ScopedCollectionLock lock(*this);
      if (!InRange(index)) return E_INVALIDARG;
      PARAMETEROBJECT* record = m_Items[index];
      held = HoldValueOf(record);
      if (descriptor && record->Descriptor) {
        *descriptor = record->Descriptor;
        record->Descriptor->AddRef();
      }
      if (flags) *flags = record->Flags;
      if (name) get_ItemNameNOLOCK(index, name);
    }
    if (value) EffectiveVariantOf(held, value);
    return S_OK;
  }

  HRESULT get_ItemVariant(int32_t index, IVariant** value) override {
    if (!InRange(index)) return E_INVALIDARG;
    HeldRecordValue held;
    {
      ScopedCollectionLock lock(*this);
      if (!InRange(index)) return E_INVALIDARG;
      held = HoldValueOf(m_Items[index]);
    }
    return EffectiveVariantOf(held, value);
  }

  HRESULT put_Item(int32_t index, IUnknown* value) override {
    if (!InRange(index)) return E_INVALIDARG;
    ScopedCollectionLock lock(*this);
    return put_ItemNOLOCK(index, value);
  }

  HRESULT get_ItemDescriptor(int32_t index, IUnknown** descriptor) override {
    if (!InRange(index)) return E_INVALIDARG;
    if (!descriptor) return E_POINTER;
    ScopedCollectionLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    return HandOutHeld(m_Items[index]->Descriptor, descriptor);
  }

  HRESULT put_ItemDescriptor(int32_t index, IUnknown* descriptor) override {
    if (!InRange(index)) return E_INVALIDARG;
    ScopedCollectionLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    ReplaceDescriptor(index, descriptor);
    return S_OK;
  }

  HRESULT get_ItemFlags(int32_t index, int32_t* flags) override {
    if (!flags) return E_POINTER;
    if (!InRange(index)) return E_INVALIDARG;
    *flags = m_Items[index]->Flags;
    return S_OK;
  }

  HRESULT put_ItemFlags(int32_t index, int32_t flags) override {
    if (!InRange(index)) return E_INVALIDARG;
    m_Items[index]->Flags = flags;
    return S_OK;
  }

  HRESULT Add(IString* name, IUnknown* value, IUnknown* descriptor, int32_t flags) override {
    ScopedCollectionLock lock(*this);
    return AddNOLOCK(name, value, descriptor, flags);
  }

  HRESULT Remove(int32_t index) override {
    if (!InRange(index)) return E_INVALIDARG;
    ScopedCollectionLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    RemoveParameter(index);
    return S_OK;
  }

  HRESULT RemoveAll() override {
    ScopedCollectionLock lock(*this);
    RemoveAllParameters();
    return S_OK;
  }

  // Merges `source` in: parameters of both are overwritten (value copied,
  // descriptor, flags), parameters only in the source are appended in order.
  HRESULT Copy(IParameters* source) override {
    if (!source) return S_OK;
    return GuardedCall([&] {
      for (int32_t i = 0;; ++i) {
        SmartPtr<IString> name;
        SmartPtr<IVariant> value;
        SmartPtr<IUnknown> descriptor;
        int32_t flags = 0;
        if (FAILED(source->Iterate(i, name.Receive(), value.Receive(), descriptor.Receive(), &flags))) break;
        SmartPtr<IVariant> copy = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
        if (!copy) return CO_E_CREATEFAILED;
        copy->Assign(value.get());
        Set(name.get(), copy.get(), descriptor.get(), flags, kSetClearDescriptor | kSetWriteZeroFlags);
      }
      return S_OK;
    });
  }

  HRESULT Sort(int32_t flags) override {
    ScopedCollectionLock lock(*this);
    SortParameters(flags);
    return S_OK;
  }

  HRESULT Set(IUnknown* key, IUnknown* value, IUnknown* descriptor, int32_t flags, int16_t mode) override {
    ScopedCollectionLock lock(*this);
    int32_t index = -1;
    if (FAILED(FindIndex(key, &index))) return AddUnderKey(key, value, descriptor, flags);
    HRESULT result = put_ItemNOLOCK(index, value);
    if (FAILED(result)) return result;
    if (descriptor || (mode & kSetClearDescriptor)) ReplaceDescriptor(index, descriptor);
    // A zero never overwrites flags unless the mode asks for it.
    if (flags || (mode & kSetWriteZeroFlags)) m_Items[index]->Flags = flags;
    return S_OK;
  }

  HRESULT AddNOLOCK(IString* name, IUnknown* value, IUnknown* descriptor, int32_t flags) override {
    return GuardedCall([&] { return AppendParameter(name, value, descriptor, flags); });
  }

  HRESULT get_ItemNOLOCK(int32_t index, IUnknown** item) override { return ItemAt(index, item); }

  HRESULT put_ItemNOLOCK(int32_t index, IUnknown* value) override {
    return GuardedCall([&] { return ReplaceValue(index, value); });
  }

  HRESULT get_ItemNameNOLOCK(int32_t index, IString** name) override { return NameAt(index, name); }

  // Stream persistence: the readers and writers of parameter_persistence.h.
  HRESULT Params_SaveCSV(IDataStream* stream, int32_t flags) override { return ParamsSaveCSV(this, stream, flags); }
  HRESULT Params_SaveXML(IDataStream* stream, int32_t flags) override { return ParamsSaveXML(this, stream, flags); }
  HRESULT Params_LoadXML(IDataStream* stream, int32_t flags, int32_t /*reserved*/) override {
    return ParamsLoadXML(this, stream, flags);
  }
  HRESULT Params_SaveFolderStream(IDataStream* stream, int32_t flags) override {
    return ParamsSaveFolderStream(this, stream, flags);
  }
  HRESULT Params_LoadFolderStream(IDataStream* stream, int32_t flags) override {
    return ParamsLoadFolderStream(this, stream, flags);
  }
  HRESULT Params_SaveXMLUnk(IDataStream* stream, int32_t flags) override { return ParamsSaveXMLUnk(this, stream, flags); }
  HRESULT Params_LoadXMLUnk(IDataStream* stream, int32_t flags) override { return ParamsLoadXMLUnk(this, stream, flags); }

  HRESULT getParameter(PARAMETEROBJECT* record, IUnknown** value) override {
    return EffectiveValueOf(record, value);
  }

 protected:
  IParametersImpl() = default;
  ~IParametersImpl() = default;

 private:
  class ScopedCollectionLock {
   public:
    explicit ScopedCollectionLock(IParametersImpl& owner) : m_Owner(owner) { m_Owner.CollectionLock(); }
    ~ScopedCollectionLock() { m_Owner.CollectionUnlock(); }
    ScopedCollectionLock(const ScopedCollectionLock&) = delete;
    ScopedCollectionLock& operator=(const ScopedCollectionLock&) = delete;

   private:
    IParametersImpl& m_Owner;
  };

  T& Owner() { return static_cast<T&>(*this); }

  // A key that was not found becomes the name of a new parameter: a string
  // itself, a variant through its text.
  HRESULT AddUnderKey(IUnknown* key, IUnknown* value, IUnknown* descriptor, int32_t flags) {
    if (SmartPtr<IString> name = QueryAs<IString>(key)) return AddNOLOCK(name.get(), value, descriptor, flags);
    if (SmartPtr<IVariant> variant = QueryAs<IVariant>(key)) {
      SmartPtr<IString> name = SmartPtr<IString>::Adopt(ISCreate(variant.get()));
      return AddNOLOCK(name.get(), value, descriptor, flags);
    }
    return E_FAIL;
  }
};
