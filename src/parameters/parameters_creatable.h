// "ParametersCreatable": one parameter set as a creatable component.
#pragma once

#include "parameters/parameter_lookup.h"
#include "parameters/parameter_set.h"
#include "runtime/object.h"
#include "runtime/resource_lock.h"

class CParametersCreatable final : public CObjectImpl<CParametersCreatable>,
                                   public IParametersImpl<CParametersCreatable, IParametersCreatable>,
                                   public IParameterLookup {
 public:
  static constexpr wchar_t kObjectName[] = L"ParametersCreatable";
  static constexpr InterfaceEntry<CParametersCreatable> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CParametersCreatable, IObjectInfo>},
      {&IID_IParameters, InterfaceOf<CParametersCreatable, IParametersCreatable>},
      {&IID_IParametersCreatable, InterfaceOf<CParametersCreatable, IParametersCreatable>},
      {&IID_INamedCollection, InterfaceOf<CParametersCreatable, IParametersCreatable>},
      {&IID_IParameterLookup, InterfaceOf<CParametersCreatable, IParameterLookup>},
  };

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }

  // The class's own operations, in its slot order.
  HRESULT FinalConstruct() override;
  void FinalRelease() override;
  void Lock() override;
  void Unlock() override;
  HRESULT Sort(int32_t flags) override;

  // The module's own lookup by view (IParameterLookup).
  HRESULT FindFirstByName(tagREFString name, int32_t* index, IVariant** value) override;

 private:
  CResourceLock m_Lock;
};
