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

namespace {

HRESULT EffectiveValueOf(IVariant* stored, IUnknown* descriptor, IUnknown** value) {
  if (!value) return E_POINTER;
  *value = nullptr;
  if (SmartPtr<IInputParameter> binding = QueryAs<IInputParameter>(descriptor)) {
    SmartPtr<IUnknown> bound;
    if (SUCCEEDED(binding->get_Object(bound.Receive())) && bound) {
      *value = bound.Detach();
      return S_FALSE;  // the value came from an input binding
    }
  }
  if (!stored) return E_FAIL;
  *value = stored;
  stored->AddRef();
  return S_OK;
}

HRESULT EffectiveVariantOf(IVariant* stored, IUnknown* descriptor, IVariant** value) {
  if (!value) return E_POINTER;
  *value = nullptr;
  // Without a descriptor there is no binding: the stored variant is the value (the common case, kept cheap).
  if (!descriptor && stored) {
    *value = stored;
    stored->AddRef();
    return S_OK;
  }
  SmartPtr<IUnknown> effective;
  HRESULT result = EffectiveValueOf(stored, descriptor, effective.Receive());
  if (FAILED(result)) return result;
  SmartPtr<IVariant> variant = StoredValueOf(effective.get());
  if (!variant) return CO_E_CREATEFAILED;
  *value = variant.Detach();
  return result;
}

}  // namespace

HeldRecordValue HoldValueOf(const PARAMETEROBJECT* record) {
  return {SmartPtr<IVariant>(record->Value), SmartPtr<IUnknown>(record->Descriptor)};
}

HRESULT EffectiveValueOf(const PARAMETEROBJECT* record, IUnknown** value) {
  if (!record) return E_POINTER;
  return EffectiveValueOf(record->Value, record->Descriptor, value);
}

HRESULT EffectiveValueOf(const HeldRecordValue& held, IUnknown** value) {
  return EffectiveValueOf(held.Value.get(), held.Descriptor.get(), value);
}

HRESULT EffectiveVariantOf(const PARAMETEROBJECT* record, IVariant** value) {
  if (!record) return E_POINTER;
  return EffectiveVariantOf(record->Value, record->Descriptor, value);
}

HRESULT EffectiveVariantOf(const HeldRecordValue& held, IVariant** value) {
  return EffectiveVariantOf(held.Value.get(), held.Descriptor.get(), value);
}

HRESULT EffectiveItemOf(const HeldRecordValue& held, IUnknown** item) {
  SmartPtr<IUnknown> value;
  HRESULT result = EffectiveValueOf(held, value.Receive());
  if (FAILED(result)) return result;
  return ItemFromValue(value.get(), item);
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
