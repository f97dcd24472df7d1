// "InputParameters": declaring, adding, assigning and reading inputs.
#include "inputs/input_parameters.h"

#include "inputs/input_parameter.h"

void CInputParameters::FinalRelease() { CollectionClear(); }

void CInputParameters::Lock() { m_Lock.Lock(); }

void CInputParameters::Unlock() { m_Lock.Unlock(); }

// The name becomes the item name only; the parameter's own Name stays unset
// until SetSource chooses an item of a source.
HRESULT CInputParameters::Create(IString* name, IID iid, int32_t flags) {
  SmartPtr<IInputParameter> parameter = CreateInstanceOf<CInputParameter, IInputParameter>();
  if (!parameter) return CO_E_CREATEFAILED;
  parameter->put_IID(iid);
  parameter->put_AssignmentFlags(flags);
  return Add(name, parameter.get());
}

HRESULT CInputParameters::SetInput(int32_t index, IUnknown* input) {
  SmartPtr<IUnknown> item;
  if (HRESULT result = get_Item(index, item.Receive()); FAILED(result)) return result;
  SmartPtr<IInputParameter> slot = QueryAs<IInputParameter>(item.get());
  if (!slot) return E_FAIL;
  SmartPtr<IInputParameter> other = QueryAs<IInputParameter>(input);
  IID declared = IID_NULL;
  slot->get_IID(&declared);
  if (!other || declared != IID_IInputParameter) return slot->put_Source(input);
  // A slot declared to take a binding copies the other's binding as it is now
  // (an alias that does not follow later changes); AssignmentFlags stay.
  IID iid = IID_NULL;
  SmartPtr<IString> name;
  SmartPtr<IUnknown> source;
  int32_t sourceIndex = 0;
  other->get_IID(&iid);
  other->get_Name(name.Receive());
  other->get_Source(source.Receive());
  other->get_SourceIndex(&sourceIndex);
  slot->put_IID(iid);
  slot->put_Name(name.get());
  slot->put_Source(source.get());
  slot->put_SourceIndex(sourceIndex);
  return S_OK;
}

HRESULT CInputParameters::GetInput(int32_t index, IUnknown** object) {
  SmartPtr<IUnknown> item;
  if (HRESULT result = get_Item(index, item.Receive()); FAILED(result)) return result;
  SmartPtr<IInputParameter> slot = QueryAs<IInputParameter>(item.get());
  if (!slot) return E_ITEMNOTFOUND;
  return slot->get_Object(object);
}

HRESULT CInputParameters::Add(IString* name, IInputParameter* parameter) {
  return INamedCollectionImpl::Add(name, parameter, nullptr, 0);
}

HRESULT CInputParameters::VerifyInterface(IUnknown* object, IInputParameter** verified) {
  if (!verified) return E_POINTER;
  *verified = QueryAs<IInputParameter>(object).Detach();
  return *verified ? S_OK : E_FAIL;
}
