// "SuperCollection": the general named collection of the framework.
#include "super_collection.h"

void CSuperCollection::FinalRelease() { CollectionClear(); }

void CSuperCollection::Lock() { m_Lock.Lock(); }

void CSuperCollection::Unlock() { m_Lock.Unlock(); }

HRESULT CSuperCollection::Clear() { return CollectionClear(); }

HRESULT CSuperCollection::VerifyInterface(IUnknown* object, IUnknown** verified) {
  if (!verified) return E_POINTER;
  *verified = object;
  if (!object) return E_FAIL;
  object->AddRef();
  return S_OK;
}
