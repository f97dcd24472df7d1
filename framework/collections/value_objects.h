// Making and reading the module's own strings and variants from the storage classes.
#pragma once

#include <string_view>

#include "runtime/smart_ptr.h"

// The text of a framework string (empty for null).
std::wstring_view ViewOf(IString* text);

// The text of a counted view (empty for a null or negative one).
std::wstring_view ViewOf(tagREFString text);

// A view of a string's characters for an interface call.
inline tagREFString RefOfView(std::wstring_view text) {
  return {static_cast<int32_t>(text.size()), text.data()};
}

// A new framework string holding a copy of `text`, or null when out of memory.
SmartPtr<IString> NewString(std::wstring_view text);

// A new, empty framework variant.
SmartPtr<IVariant> NewVariant();

// A new variant holding a copy of `text` as text.
SmartPtr<IVariant> NewTextVariant(std::wstring_view text);

// Hands out a new string with `text` in *out; E_POINTER for a null out.
HRESULT CopyOutString(std::wstring_view text, IString** out);
