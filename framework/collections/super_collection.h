// "SuperCollection": the framework's general collection of named objects of
// any kind, with attached objects and flags; names are found by prefix.
#pragma once

#include "parameters/named_collection.h"
#include "runtime/object.h"
#include "runtime/resource_lock.h"

class CSuperCollection : public CObjectImpl<CSuperCollection>,
                               public INamedCollectionImpl<CSuperCollection, ISuperCollection, IUnknown> {
 public:
  static constexpr wchar_t kObjectName[] = L"SuperCollection";
  static constexpr InterfaceEntry<CSuperCollection> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CSuperCollection, IObjectInfo>},
      {&IID_ISimpleCollection, InterfaceOf<CSuperCollection, ISuperCollection>},
      {&IID_INamedCollection, InterfaceOf<CSuperCollection, ISuperCollection>},
      {&IID_ISuperCollection, InterfaceOf<CSuperCollection, ISuperCollection>},
  };

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }

  void FinalRelease() override;
  void Lock() override;
  void Unlock() override;
  HRESULT Clear() override;
  // Accepts any non-null object as it is.
  HRESULT VerifyInterface(IUnknown* object, IUnknown** verified) override;

 private:
  CResourceLock m_Lock;
};
