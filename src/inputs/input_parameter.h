// "InputParameter": a named, typed binding that fetches a value from an item of a source object.
//
// A binding says: the value called Name, found in Source, wanted as interface
// IID (IID_NULL: as it is), optionally element SourceIndex of it. SetSource
// inspects a candidate source and chooses the item to bind to; get_Object
// follows the binding at the moment of use (input_binding.cpp). Save and Load
// keep a binding in XML and folder streams (input_parameter_persistence.cpp).
//
// Deliberate behaviours kept for callers that depend on them: the object
// answers INamedCollection with its primary pointer (the IUnknown one, which is
// not a collection); get_Object returns the item's position (0 or more) as its
// success code on the parameter-set path; a typed SetSource stops at the first
// object-valued item even when it does not qualify.
//
// Only get_Object takes the object's lock, and only to copy the source and to
// store the last value, never while it reads the source; SetSource and the
// setters take none, so callers that rebind while another thread fetches
// serialise themselves.
#pragma once

#include "runtime/object.h"
#include "runtime/resource_lock.h"

class CInputParameter : public CObjectImpl<CInputParameter, IInputParameter, IDataPersist> {
 public:
  static constexpr wchar_t kObjectName[] = L"InputParameter";
  static IUnknown* PrimaryPointer(CInputParameter* self);
  static constexpr InterfaceEntry<CInputParameter> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CInputParameter, IObjectInfo>},
      {&IID_IDataPersist, InterfaceOf<CInputParameter, IDataPersist>},
      {&IID_IInputParameter, InterfaceOf<CInputParameter, IInputParameter>},
      // The primary pointer, not a collection (intended).
      {&IID_INamedCollection, &PrimaryPointer},
  };

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }

  // The class's own operations, in its slot order (after FinalConstruct,
  // FinalRelease, Lock and Unlock, which keep the template's empty bodies).
  HRESULT get_Name(IString** name) override;
  HRESULT put_Name(IString* name) override;
  HRESULT get_Source(IUnknown** source) override;
  // Refuses the binding itself (E_INVALIDARG): that reference could never be released.
  HRESULT put_Source(IUnknown* source) override;
  HRESULT get_SourceIndex(int32_t* index) override;
  HRESULT put_SourceIndex(int32_t index) override;
  HRESULT get_IID(IID* iid) override;
  HRESULT put_IID(IID iid) override;
  HRESULT get_AssignmentFlags(int32_t* flags) override;
  HRESULT put_AssignmentFlags(int32_t flags) override;
  HRESULT SetSource(IUnknown* source, int32_t checkType) override;
  HRESULT get_Object(IUnknown** object) override;
  HRESULT Save(IDataStream* stream, int32_t flags) override;
  HRESULT Load(IDataStream* stream, int32_t flags) override;
  // After the documented slots: the object may be destroyed through a derived class.

 private:
  // put_Source, put_Name, put_SourceIndex(0): the result of put_Source.
  HRESULT Bind(IUnknown* source, IString* name);
  HRESULT SetSourceUntyped(IUnknown* source);
  HRESULT SetSourceTyped(IUnknown* source, bool checkType);
  // Binds to the first suitable item of a named collection; E_FAIL when none is.
  HRESULT BindCollectionItem(IUnknown* source, bool checkType);

  // Another reference to the source, read under the lock.
  SmartPtr<IUnknown> HeldSource();
  // The steps of get_Object; each returns false when the next step should run.
  bool FetchFromParameterSet(IUnknown* source, IUnknown** object, HRESULT* result);
  bool FetchFromCollection(IUnknown* source, IUnknown** object, HRESULT* result);
  HRESULT FetchFromSource(IUnknown* source, IUnknown** object);
  // The object held by a parameter's value, converted to the wanted interface
  // where it, its UI node's object or the source answers it; else as it is.
  void ConvertHeldObject(SmartPtr<IUnknown> held, IUnknown* source, IUnknown** object);

  HRESULT SaveXML(IDataStream* stream, IXMLStream* xml, int32_t flags);
  HRESULT SaveFolder(IFolderStream* folder, int32_t flags);
  HRESULT LoadXML(IXMLStream* stream, bool readSource);
  HRESULT LoadFolder(IFolderStream* folder, int32_t flags, bool readSource);

  SmartPtr<IString> m_Name;
  int32_t m_SourceIndex = 0;
  int32_t m_AssignmentFlags = 0;
  SmartPtr<IUnknown> m_Source;
  IID m_IID = IID_NULL;
  CResourceLock m_Lock;            // guards get_Object's copy of the source and m_LastValue
  SmartPtr<IVariant> m_LastValue;  // the value fetched by the last get_Object from a parameter set
};
