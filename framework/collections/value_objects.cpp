// Framework strings and variants made inside the Collections module.
#include "value_objects.h"

#include "creatable_string.h"
#include "variant.h"

std::wstring_view ViewOf(IString* text) {
  const wchar_t* buffer = nullptr;
  int32_t length = 0;
  if (!text || text->GetBuffer(&buffer, &length) < 0 || !buffer || length <= 0) return {};
  return {buffer, static_cast<size_t>(length)};
}

std::wstring_view ViewOf(tagREFString text) {
  if (!text.text || text.length <= 0) return {};
  return {text.text, static_cast<size_t>(text.length)};
}

SmartPtr<IString> NewString(std::wstring_view text) {
  SmartPtr<CCreatableString> created = NewObject<CCreatableString>();
  if (!created || created->SetText(RefOfView(text)) != S_OK) return {};
  return SmartPtr<IString>(static_cast<ICreatableString*>(created.get()));
}

SmartPtr<IVariant> NewVariant() {
  SmartPtr<CVariant> created = NewObject<CVariant>();
  return SmartPtr<IVariant>(static_cast<IVariant*>(created.get()));
}

SmartPtr<IVariant> NewTextVariant(std::wstring_view text) {
  SmartPtr<IString> held = NewString(text);
  SmartPtr<IVariant> value = NewVariant();
  if (!held || !value || value->SetString(held.get()) != S_OK) return {};
  return value;
}

HRESULT CopyOutString(std::wstring_view text, IString** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  SmartPtr<IString> made = NewString(text);
  if (!made) return E_OUTOFMEMORY;
  *out = made.Detach();
  return S_OK;
}
