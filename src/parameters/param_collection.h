// "ParamCollection": an ordered collection of parameter sets kept as one file.
//
// Items are parameter sets (IParameters), found by name prefix. A set added
// without a name is named from the collection's name template (option
// "NameTemplate", default "Parameters%d": "%d" takes the smallest number not
// in use); a set added without an object is a new "ParametersCreatable".
// A member that has a file of its own is stored as a reference to that file,
// relative to the collection's folder (or in mapped form, or absolute), and
// saved and loaded with the collection; any other member is stored inside the
// collection's file. So a collection folder can be moved or installed
// elsewhere and still loads. The options are a parameter set of their own
// (IParametricObject). docs/formats.md describes the file.
#pragma once

#include "archive/file_archive.h"
#include "parameters/named_collection.h"
#include "runtime/object.h"
#include "runtime/resource_lock.h"

class CParamCollection : public CObjectImpl<CParamCollection, IDataPersist, IParametricObject>,
                         public INamedCollectionImpl<CParamCollection, ISuperCollection, IParameters>,
                         public IFileArchiveImpl<CParamCollection, IFileArchive> {
 public:
  static constexpr wchar_t kObjectName[] = L"ParamCollection";
  static constexpr InterfaceEntry<CParamCollection> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CParamCollection, IObjectInfo>},
      {&IID_IDataPersist, InterfaceOf<CParamCollection, IDataPersist>},
      {&IID_IFileArchive, InterfaceOf<CParamCollection, IFileArchive>},
      {&IID_ISimpleCollection, InterfaceOf<CParamCollection, ISuperCollection>},
      {&IID_INamedCollection, InterfaceOf<CParamCollection, ISuperCollection>},
      {&IID_ISuperCollection, InterfaceOf<CParamCollection, ISuperCollection>},
      {&IID_IParametricObject, InterfaceOf<CParamCollection, IParametricObject>},
  };

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }

  HRESULT FinalConstruct() override;
  void FinalRelease() override;
  void Lock() override;
  void Unlock() override;
  // A null or empty name takes the next name of the template; a null object a new set.
  HRESULT Add(IString* name, IUnknown* object, IUnknown* attached, int32_t flags) override;
  HRESULT Clear() override;
  // Accepts parameter sets only.
  HRESULT VerifyInterface(IUnknown* object, IUnknown** verified) override;
  // The collection's own persistence (the frame of docs/formats.md, not the
  // generic named-collection frame).
  HRESULT Save(IDataStream* stream, int32_t flags) override;
  HRESULT Load(IDataStream* stream, int32_t flags) override;
  using IFileArchiveImpl::Load;
  using IFileArchiveImpl::Save;
  // The options: a parameter set holding "NameTemplate".
  HRESULT get_Parameters(IParameters** parameters) override;
  HRESULT put_Parameters(IParameters* parameters) override;

 private:
  SmartPtr<IString> NextName();

  CResourceLock m_Lock;
  SmartPtr<IParametersCreatable> m_Options;
};
