// INamedCollectionImpl<T, Interface, ItemInterface>: the ordered, index-
// addressed collection of named items behind every collection of the module
// (and the framework's "SuperCollection").
//
// Each item (COLLECTIONITEM) couples a name, an object of the item interface,
// an optional attached object and a flag word. The owner T supplies
// VerifyInterface (through Interface), Lock/Unlock (its recursive lock) and
// chooses m_ExactNames in its constructor; the template supplies storage,
// lookups, sorting and the lock coupling.
//
// Deliberate asymmetries kept for callers that depend on them: an unknown
// name reports index 65535 (an unknown object -1); IsCollectionLocked answers
// 0 for "locked"; Insert moves the new item without the lock; put_ItemFlags
// takes no lock; Rename keeps m_Sorted.
//
// Name lookups in unsorted order are served by a NameIndex (name_index.h)
// with exactly the answers of a first-match scan; after a name sort they use
// the binary search of sorted_name_search.h.
#pragma once

#include <algorithm>
#include <atomic>
#include <memory>
#include <type_traits>

#include "parameters/collection_persistence.h"
#include "parameters/lookup_key.h"
#include "parameters/name_index.h"
#include "parameters/sorted_name_search.h"

template <class ItemInterface>
struct COLLECTIONITEM {
  IString* Name = nullptr;            // owning; may be null
  ItemInterface* Object = nullptr;    // owning; never null once added
  IUnknown* Attached = nullptr;       // owning; may be null
  int32_t Flags = 0;
};

// Index reported for a name that is not in a named collection (not -1: intended).
constexpr int32_t kNameNotFoundIndex = 65535;

// Case-insensitive (towlower) whole-name order; 0 when either text is missing.
int CompareNamesIgnoringCase(IString* a, IString* b);
// Shorter names first, then A-Z-folded code-point order; 0 when either text is missing.
int CompareNamesByLengthThenText(IString* a, IString* b);

// The pointee type of VerifyInterface's output argument in Interface.
template <class C, class P>
P VerifiedTypeOf(HRESULT (C::*)(IUnknown*, P**));

template <class T, class Interface, class ItemInterface>
class INamedCollectionImpl : public Interface {
 public:
  using Item = COLLECTIONITEM<ItemInterface>;

  // Comparison functions over slots of item pointers, usable with qsort.
  static int COLLECTIONCompareByName(const void* a, const void* b) {
    return CompareNamesIgnoringCase(NameOfSlot(a), NameOfSlot(b));
  }
  static int COLLECTIONCompareByNameAndLength(const void* a, const void* b) {
    return CompareNamesByLengthThenText(NameOfSlot(a), NameOfSlot(b));
  }

  HRESULT get_Count(int32_t* count) override {
    if (!count) return E_POINTER;
    *count = m_Count;
    return S_OK;
  }

  HRESULT get_Item(int32_t index, IUnknown** object) override {
    if (!object) return E_POINTER;
    ScopedCLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    Item* item = m_Items[index];
    if (!item || !item->Object) return E_FAIL;
    *object = item->Object;
    item->Object->AddRef();
    return S_OK;
  }

  HRESULT get_Index(IUnknown* key, int32_t* index) override {
    if (!index) return E_POINTER;
    LookupKey lookup = LookupKey::Of(key);
    switch (lookup.kind) {
      case LookupKey::Kind::kIndex:
        *index = lookup.index;  // a number is the index itself, unchecked
        return S_OK;
      case LookupKey::Kind::kObject:
        return FindObject(lookup.object.get(), index);
      case LookupKey::Kind::kName:
        return FindName(lookup.text, index);
      case LookupKey::Kind::kNone:
        break;
    }
    *index = -1;
    return E_FAIL;
  }

  // The output pointer is checked here, so a null one gives a code instead of a crash.
  HRESULT get_ItemName(int32_t index, IString** name) override {
    if (!name) return E_POINTER;
    ScopedCLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    return HandOutHeld(m_Items[index]->Name, name);
  }

  // Keeps m_Sorted (intended): renaming after a sort leaves the binary search on.
  HRESULT Rename(int32_t index, IString* name) override {
    ScopedCLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    Record* record = RecordAt(index);
    m_NameIndex.Removed(record);
    ReplaceReference(record->Name, name);
    m_NameIndex.Added(record);
    return S_OK;
  }

  HRESULT CollectionLock() override {
    if (m_AutoLock) return S_OK;
    Owner().Lock();
    m_Locked = 1;
    return S_OK;
  }

  // The flag is cleared while the lock is still held: once it is given up,
  // another thread may take it and set the flag.
  HRESULT CollectionUnlock() override {
    if (m_AutoLock) return S_OK;
    m_Locked = 0;
    Owner().Unlock();
    return S_OK;
  }

  // 0 means locked, 1 unlocked (the reverse of the parameter set: intended).
  HRESULT IsCollectionLocked() override { return m_Locked ? 0 : 1; }

  HRESULT get_ItemAttached(int32_t index, IUnknown** attached) override {
    if (!attached) return E_POINTER;
    ScopedCLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    return HandOutHeld(m_Items[index]->Attached, attached);
  }

  HRESULT put_ItemAttached(int32_t index, IUnknown* attached) override {
    ScopedCLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    ReplaceReference(m_Items[index]->Attached, attached);
    return S_OK;
  }

  HRESULT get_ItemFlags(int32_t index, int32_t* flags) override {
    if (!flags) return E_POINTER;
    ScopedCLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    *flags = m_Items[index]->Flags;
    return S_OK;
  }

  // Takes no lock at all (intended).
  HRESULT put_ItemFlags(int32_t index, int32_t flags) override {
    if (!InRange(index)) return E_INVALIDARG;
    m_Items[index]->Flags = flags;
    return S_OK;
  }

  HRESULT put_Item(int32_t index, IUnknown* object) override {
    SmartPtr<ItemInterface> verified = Verify(object);
    if (!verified) return E_INVALIDARG;
    ScopedCLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    ReplaceReference(m_Items[index]->Object, verified.get());
    return S_OK;
  }

  HRESULT Add(IString* name, IUnknown* object, IUnknown* attached, int32_t flags) override {
    if (!object) return E_POINTER;
    SmartPtr<ItemInterface> verified = Verify(object);
    if (!verified) return E_INVALIDARG;
    return GuardedCall([&] {
      {
        ScopedCLock lock(*this);
        Append(name, verified.get(), attached, flags);
      }
      m_Sorted = 0;
      return S_OK;
    });
  }

  // Only the Add locks; moving the new item into place runs without the lock (intended).
  HRESULT Insert(int32_t index, IString* name, IUnknown* object, IUnknown* attached, int32_t flags) override {
    HRESULT result = Add(name, object, attached, flags);
    if (FAILED(result)) return result;
    if (index < 0 || index >= m_Count) return S_OK;
    Record* moved = RecordAt(m_Count - 1);
    m_NameIndex.Removed(moved);
    Item** slots = m_Items.get();
    std::move_backward(slots + index, slots + m_Count - 1, slots + m_Count);
    m_Items[index] = moved;
    SetPositionsFrom<Record>(m_Items.get(), m_Count, index);
    m_NameIndex.Added(moved);
    m_Sorted = 0;
    return S_OK;
  }

  // Keeps m_Sorted: a removal keeps the order.
  HRESULT Remove(int32_t index) override {
    ScopedCLock lock(*this);
    if (!InRange(index)) return E_INVALIDARG;
    Record* record = RecordAt(index);
    m_NameIndex.Removed(record);
    Item** slots = m_Items.get();
    std::move(slots + index + 1, slots + m_Count, slots + index);
    --m_Count;
    m_Items[m_Count] = nullptr;
    SetPositionsFrom<Record>(m_Items.get(), m_Count, index);
    FreeRecord(record);
    return S_OK;
  }

  HRESULT Query(const IID& iid, int32_t nth, int16_t useAttached, int32_t* index) override {
    if (!index) return E_POINTER;
    if (m_Count == 0) return E_FAIL;
    int32_t answered = 0;
    for (int32_t i = 0; i < m_Count; ++i) {
      IUnknown* candidate = useAttached ? m_Items[i]->Attached : static_cast<IUnknown*>(m_Items[i]->Object);
      if (!candidate || !Answers(candidate, iid)) continue;
      *index = i;
      if (answered++ == nth) return S_OK;
    }
    return (nth == -1 && answered > 0) ? S_OK : E_FAIL;
  }

  HRESULT Sort(int32_t flags, void* compare) override {
    CollectionLock();
    if (compare) {
      SortSlots(reinterpret_cast<CollectionCompare>(compare));
    } else {
      SortSlots((flags & kSortByNameLength) ? &COLLECTIONCompareByNameAndLength : &COLLECTIONCompareByName);
    }
    if (flags & kSortDescending) std::reverse(m_Items.get(), m_Items.get() + m_Count);
    // Only a plain ascending sort by name enables the binary search. Any other
    // order (descending, by length, or the caller's own) turns it off, so that
    // the search never runs over an order it cannot read and lookups keep the
    // answers of a first-match scan.
    m_Sorted = (!compare && !(flags & (kSortDescending | kSortByNameLength))) ? 1 : 0;
    SetPositionsFrom<Record>(m_Items.get(), m_Count, 0);
    m_NameIndex.Invalidate();
    CollectionUnlock();
    return S_OK;
  }

  // A nested cLock does not deepen the lock (intended): it unlocks first.
  HRESULT cLock() override {
    if (!m_AutoLock) return S_OK;
    if (m_Locked) cUnlock();
    Owner().Lock();
    m_Locked = 1;
    return S_OK;
  }

  HRESULT cUnlock() override {
    if (!m_AutoLock) return S_OK;
    m_Locked = 0;
    Owner().Unlock();
    return S_OK;
  }

  // Not found leaves *index untouched.
  HRESULT get_ItemIndex(IUnknown* object, int32_t* index) override {
    if (!index) return E_POINTER;
    ScopedCLock lock(*this);
    for (int32_t i = 0; i < m_Count; ++i) {
      if (SameObject(m_Items[i]->Object, object)) {
        *index = i;
        return S_OK;
      }
    }
    return E_FAIL;
  }

  HRESULT get_IndexAttached(IUnknown* attached, int32_t* index) override {
    if (!index) return E_POINTER;
    if (m_Count == 0) return E_FAIL;
    for (int32_t i = 0; i < m_Count; ++i) {
      if (SameObject(m_Items[i]->Attached, attached)) {
        *index = i;
        return S_OK;
      }
    }
    return E_FAIL;
  }

  HRESULT CollectionClear() override {
    ScopedCLock lock(*this);
    ReleaseAllItems();
    return S_OK;
  }

  // Stream persistence: collection_persistence.h.
  HRESULT Save(IDataStream* stream, int32_t flags) override { return NamedCollectionSave(this, stream, flags); }
  HRESULT Load(IDataStream* stream, int32_t flags) override { return NamedCollectionLoad(this, stream, flags); }

 protected:
  INamedCollectionImpl() = default;
  ~INamedCollectionImpl() { ReleaseAllItems(); }
  INamedCollectionImpl(const INamedCollectionImpl&) = delete;
  INamedCollectionImpl& operator=(const INamedCollectionImpl&) = delete;

  // Atomic because get_Count, put_ItemFlags, Query and get_IndexAttached read
  // it without the lock.
  std::atomic<int32_t> m_Count{0};
  int32_t m_Capacity = 0;
  std::unique_ptr<Item*[]> m_Items;  // slots at and beyond m_Count are null
  int32_t m_Sorted = 0;              // set only by an ascending sort by name
  int32_t m_ExactNames = 0;          // 0: a key finds names that begin with it; 1: whole names
  int32_t m_AutoLock = 0;
  int32_t m_Reserved = 1;
  std::atomic<int16_t> m_Locked{0};  // read by IsCollectionLocked without the lock

 private:
  using Verified = decltype(VerifiedTypeOf(&Interface::VerifyInterface));

  // An item with the bookkeeping of the name index.
  struct Record : Item {
    int32_t Position = 0;
    uint32_t IndexMark = 0;
    void* IndexNode = nullptr;
  };

  class ScopedCLock {
   public:
    explicit ScopedCLock(INamedCollectionImpl& owner) : m_Owner(owner) { m_Owner.cLock(); }
    ~ScopedCLock() { m_Owner.cUnlock(); }
    ScopedCLock(const ScopedCLock&) = delete;
    ScopedCLock& operator=(const ScopedCLock&) = delete;

   private:
    INamedCollectionImpl& m_Owner;
  };

  // Slots grow by this many pointers whenever they are full.
  static constexpr int32_t kGrowth = 1024;

  static IString* NameOfSlot(const void* slot) {
    const Item* item = *static_cast<Item* const*>(slot);
    return item ? item->Name : nullptr;
  }

  template <class P>
  static void ReplaceReference(P*& slot, P* value) {
    if (value) value->AddRef();
    P* old = slot;
    slot = value;
    if (old) old->Release();
  }

  static bool Answers(IUnknown* object, const IID& iid) {
    void* answer = nullptr;
    if (object->QueryInterface(iid, &answer) < 0 || !answer) return false;
    static_cast<IUnknown*>(answer)->Release();
    return true;
  }

  T& Owner() { return static_cast<T&>(*this); }
  bool InRange(int32_t index) const { return index >= 0 && index < m_Count; }
  Record* RecordAt(int32_t index) const { return static_cast<Record*>(m_Items[index]); }

  // The owner's answer for `object` as the item interface, or null if refused.
  SmartPtr<ItemInterface> Verify(IUnknown* object) {
    Verified* verified = nullptr;
    if (FAILED(this->VerifyInterface(object, &verified)) || !verified) {
      if (verified) verified->Release();
      return SmartPtr<ItemInterface>();
    }
    return SmartPtr<ItemInterface>::Adopt(static_cast<ItemInterface*>(verified));
  }

  void Append(IString* name, ItemInterface* object, IUnknown* attached, int32_t flags) {
    if (m_Count >= m_Capacity) {
      int32_t capacity = m_Capacity + kGrowth;
      std::unique_ptr<Item*[]> grown(new Item*[capacity]());
      std::copy(m_Items.get(), m_Items.get() + m_Count, grown.get());
      m_Items = std::move(grown);
      m_Capacity = capacity;
    }
    auto* record = new Record();
    ReplaceReference(record->Name, name);
    ReplaceReference(record->Object, object);
    ReplaceReference(record->Attached, attached);
    record->Flags = flags;
    record->Position = m_Count;
    m_Items[m_Count++] = record;
    m_NameIndex.Added(record);
  }

  // Releases the record's object, attached object and name, in that order, and frees it.
  static void FreeRecord(Record* record) {
    ReplaceReference(record->Object, static_cast<ItemInterface*>(nullptr));
    ReplaceReference(record->Attached, static_cast<IUnknown*>(nullptr));
    ReplaceReference(record->Name, static_cast<IString*>(nullptr));
    delete record;
  }

  void ReleaseAllItems() {
    m_NameIndex.Invalidate();
    for (int32_t i = 0; i < m_Count; ++i) {
      Record* record = RecordAt(i);
      m_Items[i] = nullptr;
      FreeRecord(record);
    }
    m_Count = 0;
  }

  // A qsort-style comparison applied with a merge sort: any comparison
  // function, even an inconsistent one, leaves a permutation of the slots.
  void SortSlots(CollectionCompare compare) {
    std::stable_sort(m_Items.get(), m_Items.get() + m_Count,
                     [compare](Item* const& a, Item* const& b) { return compare(&a, &b) < 0; });
  }

  HRESULT FindObject(IUnknown* key, int32_t* index) {
    ScopedCLock lock(*this);
    for (int32_t i = 0; i < m_Count; ++i) {
      if (m_Items[i]->Object && SameObject(m_Items[i]->Object, key)) {
        *index = i;
        return S_OK;
      }
    }
    *index = -1;
    return E_FAIL;
  }

  HRESULT FindName(tagREFString key, int32_t* index) {
    ScopedCLock lock(*this);
    *index = kNameNotFoundIndex;
    if (key.length <= 0 || !key.text || m_Count == 0) return E_FAIL;
    if (m_Sorted) {
      SortedNameSearch found = FindInSortedItems(m_Items.get(), m_Count, key, m_ExactNames != 0);
      if (found.index < 0) return E_FAIL;
      *index = found.index;
      return found.matched ? S_OK : E_FAIL;
    }
    NameMatch match = m_ExactNames ? NameMatch::kWhole : NameMatch::kPrefix;
    int32_t found = m_NameIndex.FindFirst(key, match, m_Items.get(), m_Count);
    if (found < 0) return E_FAIL;
    *index = found;
    return S_OK;
  }

  NameIndex<Record> m_NameIndex;
};
