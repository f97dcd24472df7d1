// "InputParameters": the named collection of the inputs a component declares.
//
// Each item is a named IInputParameter (the item name is the input's name;
// the parameter's own Name is the name of the item it binds to inside its
// source). On top of the named collection the class declares inputs
// (Create), adds existing ones (Add), assigns to input n (SetInput: a copy of
// another binding for a slot declared as IID_IInputParameter, else a new
// source) and fetches the value of input n (GetInput). Names are matched
// whole; duplicates are allowed and a lookup finds the first.
//
// It persists to folder streams only: one object entry per item, keyed by
// the item name (input_parameters_persistence.cpp).
#pragma once

#include "parameters/named_collection.h"
#include "runtime/object.h"
#include "runtime/resource_lock.h"

class CInputParameters : public CObjectImpl<CInputParameters, IDataPersist>,
                         public INamedCollectionImpl<CInputParameters, IInputParameters, IInputParameter> {
 public:
  static constexpr wchar_t kObjectName[] = L"InputParameters";
  static constexpr InterfaceEntry<CInputParameters> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CInputParameters, IObjectInfo>},
      {&IID_IDataPersist, InterfaceOf<CInputParameters, IDataPersist>},
      {&IID_IInputParameters, InterfaceOf<CInputParameters, IInputParameters>},
      {&IID_INamedCollection, InterfaceOf<CInputParameters, IInputParameters>},
  };

  CInputParameters() { m_ExactNames = 1; }

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }
  using INamedCollectionImpl::Add;

  // The class's own operations, in its slot order.
  void FinalRelease() override;
  void Lock() override;
  void Unlock() override;
  HRESULT Create(IString* name, IID iid, int32_t flags) override;
  HRESULT SetInput(int32_t index, IUnknown* input) override;
  HRESULT GetInput(int32_t index, IUnknown** object) override;
  HRESULT Add(IString* name, IInputParameter* parameter) override;
  HRESULT VerifyInterface(IUnknown* object, IInputParameter** verified) override;
  HRESULT Save(IDataStream* stream, int32_t flags) override;
  HRESULT Load(IDataStream* stream, int32_t flags) override;
  // After the documented slots: the object may be destroyed through a derived class.

 private:
  CResourceLock m_Lock;
};
