// The table behind a module's CreateFunction: class names and their creation
// functions, matched exactly (same length, every character equal).
#pragma once

#include <cstddef>

#include "base_types.h"
#include "result_codes.h"

struct ClassTableEntry {
  const wchar_t* name;
  int32_t length;
  CreationFunction create;  // null while a class is not available
};

#define CLASS_TABLE_ENTRY(literal, function) \
  ClassTableEntry { literal, static_cast<int32_t>(sizeof(literal) / sizeof(wchar_t) - 1), function }

// Stores the creation function of the first entry named `className` in *out and
// answers 0; 0x80004005 (and *out untouched) when no entry matches or the class
// is not available. The name need not be terminated.
template <size_t N>
HRESULT LookupClass(const ClassTableEntry (&table)[N], tagREFString className, void** out) {
  if (!out || !className.text || className.length <= 0) return E_FAIL;
  for (const ClassTableEntry& entry : table) {
    if (entry.length != className.length) continue;
    if (wmemcmp(entry.name, className.text, static_cast<size_t>(className.length)) != 0) continue;
    if (!entry.create) return E_FAIL;
    *out = reinterpret_cast<void*>(entry.create);
    return S_OK;
  }
  return E_FAIL;
}

#define MODULE_EXPORT __attribute__((visibility("default")))
