// "InputParameter": the binding's fields and their accessors.
#include "inputs/input_parameter.h"

IUnknown* CInputParameter::PrimaryPointer(CInputParameter* self) { return self->GetUnknown(); }

HRESULT CInputParameter::get_Name(IString** name) {
  if (!name) return E_POINTER;
  *name = nullptr;
  return HandOutHeld(m_Name.get(), name);
}

// The string is held, not copied: a caller that changes it later changes the name.
HRESULT CInputParameter::put_Name(IString* name) {
  m_Name = SmartPtr<IString>(name);
  return S_OK;
}

HRESULT CInputParameter::get_Source(IUnknown** source) {
  if (!source) return E_POINTER;
  *source = nullptr;
  return HandOutHeld(m_Source.get(), source);
}

HRESULT CInputParameter::put_Source(IUnknown* source) {
  if (source && SameObject(source, GetUnknown())) return E_INVALIDARG;
  m_Source = SmartPtr<IUnknown>(source);
  return S_OK;
}

HRESULT CInputParameter::get_SourceIndex(int32_t* index) { return HandOutValue(m_SourceIndex, index); }

HRESULT CInputParameter::put_SourceIndex(int32_t index) {
  m_SourceIndex = index;
  return S_OK;
}

HRESULT CInputParameter::get_IID(IID* iid) { return HandOutValue(m_IID, iid); }

HRESULT CInputParameter::put_IID(IID iid) {
  m_IID = iid;
  return S_OK;
}

HRESULT CInputParameter::get_AssignmentFlags(int32_t* flags) { return HandOutValue(m_AssignmentFlags, flags); }

HRESULT CInputParameter::put_AssignmentFlags(int32_t flags) {
  m_AssignmentFlags = flags;
  return S_OK;
}

HRESULT CInputParameter::Bind(IUnknown* source, IString* name) {
  if (HRESULT result = put_Source(source); FAILED(result)) return result;
  put_Name(name);
  put_SourceIndex(0);
  return S_OK;
}
