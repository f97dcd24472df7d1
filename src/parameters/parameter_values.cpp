// Values of a parameter set: storing, binding and handing out.
#include "parameters/parameter_values.h"

#include "strings/ref_string.h"

namespace {

SmartPtr<IVariant> NewVariantAssignedFrom(IUnknown* value) {
  SmartPtr<IVariant> variant = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  if (variant && variant->Assign(value) < 0) variant.Reset();
  return variant;
}

}  // namespace

SmartPtr<IVariant> StoredValueOf(IUnknown* value) {
  if (!value) return SmartPtr<IVariant>();
  if (SmartPtr<IVariant> variant = QueryAs<IVariant>(value)) return variant;
  return NewVariantAssignedFrom(value);
}

SmartPtr<IVariant> NewEmptyTextVariant() {
  SmartPtr<ICreatableString> empty = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  if (!empty) return SmartPtr<IVariant>();
  return NewVariantAssignedFrom(empty.get());
}

HRESULT EffectiveValueOf(const PARAMETEROBJECT* record, IUnknown** value) {
  if (!record || !value) return E_POINTER;
  *value = nullptr;
  if (SmartPtr<IInputParameter> binding = QueryAs<IInputParameter>(record->Descriptor)) {
    SmartPtr<IUnknown> bound;
    if (SUCCEEDED(binding->get_Object(bound.Receive())) && bound) {
      *value = bound.Detach();
      return S_FALSE;  // the value came from an input binding
    }
  }
  if (!record->Value) return E_FAIL;
  *value = record->Value;
  record->Value->AddRef();
  return S_OK;
}

HRESULT EffectiveVariantOf(const PARAMETEROBJECT* record, IVariant** value) {
  if (!value) return E_POINTER;
  *value = nullptr;
  // Without a descriptor there is no binding: the stored variant is the value (the common case, kept cheap).
  if (record && !record->Descriptor && record->Value) {
    *value = record->Value;
    record->Value->AddRef();
    return S_OK;
  }
  SmartPtr<IUnknown> effective;
  HRESULT result = EffectiveValueOf(record, effective.Receive());
  if (FAILED(result)) return result;
  SmartPtr<IVariant> variant = StoredValueOf(effective.get());
  if (!variant) return CO_E_CREATEFAILED;
  *value = variant.Detach();
  return result;
}

HRESULT ItemFromValue(IUnknown* value, IUnknown** item) {
  if (!item) return E_POINTER;
  *item = nullptr;
  if (!value) return E_FAIL;
  SmartPtr<IVariant> variant = QueryAs<IVariant>(value);
  if (variant && variant->IsObject()) return variant->GetObject(item);
  if (variant && variant->IsString()) {
    SmartPtr<IString> text;
    if (FAILED(variant->GetString(text.Receive())) || !text) return E_FAIL;
    *item = text.Detach();
    return S_OK;
  }
  *item = value;
  value->AddRef();
  return S_OK;
}
