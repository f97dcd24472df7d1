// New framework strings for out-parameters.
#include "string_result.h"

#include <cstdint>

#include "creatable_string.h"

HRESULT HandOutString(const wchar_t* text, size_t length, IString** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (length > static_cast<size_t>(INT32_MAX)) return E_INVALIDARG;
  SmartPtr<CCreatableString> string = NewObject<CCreatableString>();
  if (!string) return E_OUTOFMEMORY;
  const HRESULT result = string->SetText({static_cast<int32_t>(length), text});
  if (FAILED(result)) return result;
  *out = static_cast<ICreatableString*>(string.Detach());
  return S_OK;
}
