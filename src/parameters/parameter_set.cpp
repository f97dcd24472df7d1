// Parameter set storage: the records, their growth, lookup and order.
#include "parameters/parameter_set.h"

#include <algorithm>

#include "parameters/lookup_key.h"

namespace {

// Slots grow by this many pointers whenever they are full.
constexpr int32_t kGrowth = 10;

template <class P>
void ReplaceReference(P*& slot, P* value) {
  if (value) value->AddRef();
  P* old = slot;
  slot = value;
  if (old) old->Release();
}

}  // namespace

int ParameterStore::PARAMETERSCompareByName(const void* a, const void* b) {
  const PARAMETEROBJECT* first = *static_cast<PARAMETEROBJECT* const*>(a);
  const PARAMETEROBJECT* second = *static_cast<PARAMETEROBJECT* const*>(b);
  tagREFString x = NameTextOf(first ? first->Name : nullptr);
  tagREFString y = NameTextOf(second ? second->Name : nullptr);
  // Unnamed parameters order first (a name without text counts as unnamed).
  if (!x.text || !y.text) return (x.text ? 1 : 0) - (y.text ? 1 : 0);
  int32_t common = std::min(x.length, y.length);
  for (int32_t i = 0; i < common; ++i) {
    auto cx = static_cast<uint32_t>(x.text[i]);
    auto cy = static_cast<uint32_t>(y.text[i]);
    if (cx != cy) return cx < cy ? -1 : 1;
  }
  return x.length < y.length ? -1 : (x.length > y.length ? 1 : 0);
}

ParameterStore::~ParameterStore() { ReleaseStorage(); }

// m_Capacity grows by exactly 10, as the set's capacity always has. The slot
// array underneath grows by half when it must grow, so that filling a large
// set copies each pointer a bounded number of times instead of once per 10
// adds, while leaving fewer unused slots than doubling would.
void ParameterStore::GrowSlots() {
  int32_t capacity = m_Capacity + kGrowth;
  if (capacity > m_Allocated) {
    const auto allocated = static_cast<int32_t>(
        std::min<int64_t>(INT32_MAX, std::max<int64_t>(capacity, m_Allocated + int64_t{m_Allocated} / 2)));
    std::unique_ptr<PARAMETEROBJECT*[]> grown(new PARAMETEROBJECT*[allocated]());
    std::copy(m_Items.get(), m_Items.get() + m_Count, grown.get());
    m_Items = std::move(grown);
    m_Allocated = allocated;
  }
  m_Capacity = capacity;
}

HRESULT ParameterStore::AppendParameter(IString* name, IUnknown* value, IUnknown* descriptor, int32_t flags) {
  SmartPtr<IVariant> stored = value ? StoredValueOf(value) : NewEmptyTextVariant();
  if (!stored) return CO_E_CREATEFAILED;
  if (m_Count >= m_Capacity) GrowSlots();
  auto* record = new Record();
  ReplaceReference(record->Name, name);
  record->Value = stored.Detach();
  ReplaceReference(record->Descriptor, descriptor);
  record->Flags = flags;
  record->Position = m_Count;
  m_Items[m_Count++] = record;
  m_NameIndex.Added(record);
  return S_OK;
}

HRESULT ParameterStore::ReplaceValue(int32_t index, IUnknown* value) {
  if (!InRange(index)) return E_INVALIDARG;
  if (!value) return E_INVALIDARG;
  SmartPtr<IVariant> stored = StoredValueOf(value);
  if (!stored) return CO_E_CREATEFAILED;
  ReplaceReference(m_Items[index]->Value, stored.get());
  return S_OK;
}

HRESULT ParameterStore::ItemAt(int32_t index, IUnknown** item) {
  if (!item) return E_POINTER;
  if (!InRange(index)) return E_INVALIDARG;
  SmartPtr<IUnknown> value;
  HRESULT result = EffectiveValueOf(m_Items[index], value.Receive());
  if (FAILED(result)) return result;
  return ItemFromValue(value.get(), item);
}

HRESULT ParameterStore::NameAt(int32_t index, IString** name) {
  if (!name) return E_POINTER;
  if (!InRange(index)) return E_INVALIDARG;
  return HandOutHeld(m_Items[index]->Name, name);
}

HRESULT ParameterStore::FindIndex(IUnknown* key, int32_t* index) {
  if (!index) return E_POINTER;
  LookupKey lookup = LookupKey::Of(key);
  switch (lookup.kind) {
    case LookupKey::Kind::kIndex:
      *index = lookup.index;  // a number is the index itself, unchecked
      return S_OK;
    case LookupKey::Kind::kName:
      return FindName(lookup.text, index);
    case LookupKey::Kind::kObject:
      return FindObject(lookup.object.get(), index);
    case LookupKey::Kind::kNone:
      break;
  }
  *index = -1;
  return E_FAIL;
}

HRESULT ParameterStore::FindName(tagREFString key, int32_t* index, NameLookupHint* hint) {
  *index = -1;
  if (key.length <= 0 || !key.text || m_Count == 0) return E_FAIL;
  *index = m_NameIndex.FindFirst(key, NameMatch::kWhole, m_Items.get(), m_Count, hint);
  return *index < 0 ? E_FAIL : S_OK;
}

// First a parameter whose value holds the object, then one whose descriptor is
// it; *index is left untouched when neither exists.
HRESULT ParameterStore::FindObject(IUnknown* key, int32_t* index) const {
  for (int32_t i = 0; i < m_Count; ++i) {
    IVariant* value = m_Items[i]->Value;
    if (!value || !value->IsObject()) continue;
    SmartPtr<IUnknown> held;
    if (SUCCEEDED(value->GetObject(held.Receive())) && held && SameObject(held.get(), key)) {
      *index = i;
      return S_OK;
    }
  }
  for (int32_t i = 0; i < m_Count; ++i) {
    if (m_Items[i]->Descriptor && SameObject(m_Items[i]->Descriptor, key)) {
      *index = i;
      return S_OK;
    }
  }
  return E_FAIL;
}

void ParameterStore::RenameParameter(int32_t index, IString* name) {
  Record* record = RecordAt(index);
  m_NameIndex.Removed(record);
  ReplaceReference(record->Name, name);
  m_NameIndex.Added(record);
}

void ParameterStore::ReplaceDescriptor(int32_t index, IUnknown* descriptor) {
  ReplaceReference(m_Items[index]->Descriptor, descriptor);
}

namespace {

void FreeRecord(PARAMETEROBJECT* record) {
  ReplaceReference(record->Name, static_cast<IString*>(nullptr));
  ReplaceReference(record->Value, static_cast<IVariant*>(nullptr));
  ReplaceReference(record->Descriptor, static_cast<IUnknown*>(nullptr));
}

}  // namespace

void ParameterStore::RemoveParameter(int32_t index) {
  Record* record = RecordAt(index);
  m_NameIndex.Removed(record);
  PARAMETEROBJECT** slots = m_Items.get();
  std::move(slots + index + 1, slots + m_Count, slots + index);
  --m_Count;
  slots[m_Count] = nullptr;
  SetPositionsFrom<Record>(slots, m_Count, index);
  FreeRecord(record);
  delete record;
}

void ParameterStore::RemoveAllParameters() {
  m_NameIndex.Invalidate();
  for (int32_t i = 0; i < m_Count; ++i) {
    Record* record = RecordAt(i);
    m_Items[i] = nullptr;
    FreeRecord(record);
    delete record;
  }
  m_Count = 0;
}

// A merge sort with the qsort-style comparison: equal names keep no promised
// order, and the sort is safe whatever the names hold.
void ParameterStore::SortParameters(int32_t flags) {
  PARAMETEROBJECT** slots = m_Items.get();
  std::stable_sort(slots, slots + m_Count, [](PARAMETEROBJECT* const& a, PARAMETEROBJECT* const& b) {
    return PARAMETERSCompareByName(&a, &b) < 0;
  });
  if (flags & kSortDescending) std::reverse(slots, slots + m_Count);
  SetPositionsFrom<Record>(slots, m_Count, 0);
  m_NameIndex.Invalidate();
}

void ParameterStore::ReleaseStorage() {
  RemoveAllParameters();
  m_Items.reset();
  m_Capacity = 0;
  m_Allocated = 0;
}
