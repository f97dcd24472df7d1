// "InputParameter": choosing the item to bind to (SetSource) and following the binding (get_Object).
#include "inputs/element_selection.h"
#include "inputs/input_parameter.h"
#include "inputs/resolution_guard.h"
#include "runtime/query.h"

namespace {

// True when `from` answers `iid` through its own QueryInterface.
bool AnswersPlainly(IUnknown* from, const IID& iid) {
  SmartPtr<IUnknown> answer;
  return from && from->QueryInterface(iid, answer.ReceiveVoid()) >= 0 && answer;
}

// Resolves `from` as `iid` through Query (container and host window too);
// on success *out receives the answer.
bool ResolveAs(IUnknown* from, const IID& iid, IUnknown** out) {
  SmartPtr<IUnknown> answer;
  if (Query(from, iid, answer.ReceiveVoid()) < 0 || !answer) return false;
  *out = answer.Detach();
  return true;
}

bool ResolvePlainly(IUnknown* from, const IID& iid, IUnknown** out) {
  SmartPtr<IUnknown> answer;
  if (!from || from->QueryInterface(iid, answer.ReceiveVoid()) < 0 || !answer) return false;
  *out = answer.Detach();
  return true;
}

// The source as a named collection, or null. An input parameter never counts
// as one: it answers INamedCollection with its primary table, which has none
// of a collection's operations.
SmartPtr<INamedCollection> CollectionOf(IUnknown* source) {
  SmartPtr<INamedCollection> collection = QueryResolved<INamedCollection>(source);
  if (collection && QueryAs<IInputParameter>(collection.get())) return SmartPtr<INamedCollection>();
  return collection;
}

}  // namespace

HRESULT CInputParameter::SetSource(IUnknown* source, int32_t checkType) {
  if (m_IID == IID_NULL) return SetSourceUntyped(source);
  return SetSourceTyped(source, checkType != 0);
}

// Binds to the first item holding a number, else to item 0, else keeps only the source.
HRESULT CInputParameter::SetSourceUntyped(IUnknown* source) {
  if (!source) return put_Source(nullptr);
  SmartPtr<IParameters> set = QueryResolved<IParameters>(source);
  if (!set) return put_Source(source);
  SmartPtr<IString> firstName;
  for (int32_t i = 0;; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IVariant> value;
    if (FAILED(set->Iterate(i, name.Receive(), value.Receive(), nullptr, nullptr))) {
      if (i == 0) return put_Source(source);
      return Bind(source, firstName.get());
    }
    if (value && value->GetType() != kVariantNotNumber) return Bind(source, name.get());
    if (i == 0) firstName = name;
  }
}

HRESULT CInputParameter::SetSourceTyped(IUnknown* source, bool checkType) {
  if (!source) return E_FAIL;
  {
    SmartPtr<IUnknown> itself;
    if (ResolveAs(source, m_IID, itself.Receive())) return Bind(source, nullptr);  // the name is cleared on purpose
  }
  if (SmartPtr<IParameters> set = QueryResolved<IParameters>(source)) {
    for (int32_t i = 0;; ++i) {
      SmartPtr<IString> name;
      SmartPtr<IVariant> value;
      if (FAILED(set->Iterate(i, name.Receive(), value.Receive(), nullptr, nullptr))) break;
      if (value && value->IsObject()) {
        // The first object-valued item decides, even when it does not qualify
        // (intended): a typed search never skips an object of the wrong type.
        SmartPtr<IUnknown> held;
        value->GetObject(held.Receive());
        if (checkType && !AnswersPlainly(held.get(), m_IID)) return S_OK;
        return Bind(source, name.get());
      }
      if (m_IID == IID_IVariant) return Bind(source, name.get());
    }
  }
  return BindCollectionItem(source, checkType);
}

HRESULT CInputParameter::BindCollectionItem(IUnknown* source, bool checkType) {
  SmartPtr<INamedCollection> collection = CollectionOf(source);
  if (!collection) return E_FAIL;
  for (int32_t i = 0;; ++i) {
    SmartPtr<IUnknown> item;
    if (FAILED(collection->get_Item(i, item.Receive()))) return E_FAIL;
    if (checkType && !AnswersPlainly(item.get(), m_IID)) continue;
    SmartPtr<IString> name;
    collection->get_ItemName(i, name.Receive());
    return Bind(source, name.get());
  }
}

SmartPtr<IUnknown> CInputParameter::HeldSource() {
  ScopedLock<CResourceLock> lock(m_Lock);
  return m_Source;
}

HRESULT CInputParameter::get_Object(IUnknown** object) {
  if (!object) return E_INVALIDARG;
  *object = nullptr;
  // The lock is never held while the source is read: two bindings reading each
  // other's sets from two threads would otherwise wait for each other for ever.
  SmartPtr<IUnknown> source = HeldSource();  // kept alive even if a nested call rebinds
  if (!source) return E_INVALIDARG;
  ResolutionGuard guard(this);
  if (!guard.Entered()) return E_FAIL;  // a cycle of bindings, or nested too deep
  HRESULT result = S_OK;
  if (FetchFromParameterSet(source.get(), object, &result)) return result;
  if (FetchFromCollection(source.get(), object, &result)) return result;
  return FetchFromSource(source.get(), object);
}

// Success is the item's position, not 0 (intended: callers treat any
// non-negative result as success and some read the position from it).
bool CInputParameter::FetchFromParameterSet(IUnknown* source, IUnknown** object, HRESULT* result) {
  SmartPtr<IParameters> set = QueryResolved<IParameters>(source);
  int32_t position = -1;
  if (!set || !m_Name || FAILED(set->get_Index(m_Name.get(), &position))) return false;
  SmartPtr<IVariant> value;
  set->get_ItemVariant(position, value.Receive());
  {
    ScopedLock<CResourceLock> lock(m_Lock);
    m_LastValue = value;
  }
  *result = position;
  if (!value || !value->IsObject()) {
    *object = SmartPtr<IUnknown>(value.get()).Detach();
    return true;
  }
  SmartPtr<IUnknown> held;
  value->GetObject(held.Receive());
  if (m_SourceIndex != 0 && SelectElement(held.get(), m_SourceIndex, object, result)) return true;
  if (m_IID == IID_NULL) {
    *object = held.Detach();
    return true;
  }
  ConvertHeldObject(std::move(held), source, object);
  *result = S_OK;
  return true;
}

void CInputParameter::ConvertHeldObject(SmartPtr<IUnknown> held, IUnknown* source, IUnknown** object) {
  if (ResolveAs(held.get(), m_IID, object)) return;
  if (SmartPtr<IUINode> node = QueryAs<IUINode>(held.get())) {
    SmartPtr<IUnknown> nodeObject;
    if (SUCCEEDED(node->GetObject(nodeObject.Receive())) && nodeObject) {
      held = nodeObject;
      if (ResolveAs(held.get(), m_IID, object)) return;
    }
  }
  if (ResolveAs(source, m_IID, object)) return;
  if (m_SourceIndex != 0) {
    if (SmartPtr<IDblVector> vector = QueryAs<IDblVector>(held.get())) {
      SmartPtr<IUnknown> number;
      if (SUCCEEDED(SelectNumberElement(vector.get(), m_SourceIndex, number.Receive()))) {
        *object = number.Detach();
        return;
      }
    }
  }
  *object = held.Detach();
}

bool CInputParameter::FetchFromCollection(IUnknown* source, IUnknown** object, HRESULT* result) {
  SmartPtr<INamedCollection> collection = CollectionOf(source);
  if (!collection) return false;
  int32_t position = -1;  // without a name, the collection refuses position -1
  if (m_Name && FAILED(collection->get_Index(m_Name.get(), &position))) return false;
  SmartPtr<IUnknown> item;
  collection->get_Item(position, item.Receive());
  if (!item) {
    *result = E_ITEMNOTFOUND;
    return true;
  }
  *result = S_OK;
  if (m_SourceIndex != 0) {
    if (SmartPtr<ISimpleCollection> elements = QueryAs<ISimpleCollection>(item.get())) {
      *result = SelectCollectionElement(elements.get(), m_SourceIndex, object);
      return true;
    }
  }
  if (m_IID == IID_NULL || !(ResolvePlainly(item.get(), m_IID, object) || ResolveAs(source, m_IID, object)))
    *object = item.Detach();
  return true;
}

HRESULT CInputParameter::FetchFromSource(IUnknown* source, IUnknown** object) {
  if (m_IID != IID_NULL) return ResolveAs(source, m_IID, object) ? S_OK : E_ITEMNOTFOUND;
  if (SmartPtr<ICollectionMoniker> moniker = QueryAs<ICollectionMoniker>(source)) {
    IID unknown = IID_IUnknown;
    SmartPtr<IUnknown> named;
    moniker->FindObject(&unknown, named.ReceiveVoid());
    *object = named.Detach();
    return S_OK;
  }
  *object = SmartPtr<IUnknown>(source).Detach();
  return S_OK;
}
