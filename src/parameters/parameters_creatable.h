// "ParametersCreatable": one parameter set as a creatable component, with its
// own file (IFileArchive), stream persistence (IDataPersist), condition
// search (IPMSearch) and property-page list (IUIPropertyPageSpecify).
#pragma once

#include "archive/file_archive.h"
#include "parameters/parameter_lookup.h"
#include "parameters/parameter_set.h"
#include "runtime/object.h"
#include "runtime/resource_lock.h"

class CParametersCreatable : public CObjectImpl<CParametersCreatable, IDataPersist, IPMSearch, IUIPropertyPageSpecify>,
                             public IParametersImpl<CParametersCreatable, IParametersCreatable>,
                             public IFileArchiveImpl<CParametersCreatable, IFileArchive>,
                             public IParameterLookup {
 public:
  static constexpr wchar_t kObjectName[] = L"ParametersCreatable";
  // In the order in which QueryInterface tests them (after IUnknown). The
  // module's private lookup comes first because every formula evaluation asks
  // for it; no other entry answers its identity, so the order changes no answer.
  static constexpr InterfaceEntry<CParametersCreatable> kInterfaces[] = {
      {&IID_IParameterLookup, InterfaceOf<CParametersCreatable, IParameterLookup>},
      {&IID_IObjectInfo, InterfaceOf<CParametersCreatable, IObjectInfo>},
      {&IID_IDataPersist, InterfaceOf<CParametersCreatable, IDataPersist>},
      {&IID_IFileArchive, InterfaceOf<CParametersCreatable, IFileArchive>},
      {&IID_IParameters, InterfaceOf<CParametersCreatable, IParametersCreatable>},
      {&IID_IParametersCreatable, InterfaceOf<CParametersCreatable, IParametersCreatable>},
      {&IID_INamedCollection, InterfaceOf<CParametersCreatable, IParametersCreatable>},
      {&IID_IPMSearch, InterfaceOf<CParametersCreatable, IPMSearch>},
      {&IID_IUIPropertyPageSpecify, InterfaceOf<CParametersCreatable, IUIPropertyPageSpecify>},
  };
  // Control code of the object's own setting (stored; nothing depends on it yet).
  static constexpr int32_t kOwnSettingCode = 6;

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }

  // The class's own operations, in its slot order.
  HRESULT FinalConstruct() override;
  void FinalRelease() override;
  void Lock() override;
  void Unlock() override;
  HRESULT Sort(int32_t flags) override;
  HRESULT Find(IString* condition, int32_t reserved, IUnknown** found) override;
  HRESULT GetPages(int32_t reserved, INamedCollection** pages, IUnknown** reserved2) override;
  HRESULT Control(int32_t code, int32_t value) override;
  HRESULT Load() override;
  HRESULT Save() override;
  HRESULT Save(IDataStream* stream, int32_t flags) override;
  HRESULT Load(IDataStream* stream, int32_t flags) override;
  // After the slot-ordered operations: the object may be a base of the boundary wrapper.

  // The module's own lookup by view (IParameterLookup).
  HRESULT FindFirstByName(tagREFString name, NameLookupHint* hint, int32_t* index, IVariant** value) override;
  HRESULT FindNumberByName(tagREFString name, NameLookupHint* hint, double* number) override;

 private:
  // Writes the set to the file through a framework "INIStream" or "CSVStream".
  template <class Stream>
  HRESULT SaveTextStream(const wchar_t* className);

  CResourceLock m_Lock;
  int32_t m_OwnSetting = 0;
};
