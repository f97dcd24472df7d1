// "ParametersCreatable": the parameter set joined with the object model.
#include "parameters/parameters_creatable.h"

HRESULT CParametersCreatable::FinalConstruct() { return S_OK; }

void CParametersCreatable::FinalRelease() { ReleaseStorage(); }

void CParametersCreatable::Lock() { m_Lock.Lock(); }

void CParametersCreatable::Unlock() { m_Lock.Unlock(); }

HRESULT CParametersCreatable::Sort(int32_t flags) { return IParametersImpl::Sort(flags); }

HRESULT CParametersCreatable::FindFirstByName(tagREFString name, int32_t* index, IVariant** value) {
  if (!index) return E_POINTER;
  if (value) *value = nullptr;
  const HRESULT found = FindName(name, index);
  if (FAILED(found) || !value) return found;
  return EffectiveVariantOf(m_Items[*index], value);
}
