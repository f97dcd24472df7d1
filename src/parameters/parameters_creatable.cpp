// "ParametersCreatable": the parameter set joined with the object model.
#include "parameters/parameters_creatable.h"

HRESULT CParametersCreatable::FinalConstruct() { return S_OK; }

void CParametersCreatable::FinalRelease() { ReleaseStorage(); }

void CParametersCreatable::Lock() { m_Lock.Lock(); }

void CParametersCreatable::Unlock() { m_Lock.Unlock(); }

HRESULT CParametersCreatable::Sort(int32_t flags) { return IParametersImpl::Sort(flags); }
