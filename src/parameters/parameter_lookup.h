// IParameterLookup: the module's private fast path into its own parameter
// sets. The formula evaluator resolves every name it reads; going through the
// public get_Index would make a key object per name, so sets of this module
// also answer this interface, which looks a name up by view.
//
// The identity is derived from a name no framework interface uses; the
// interface never leaves the module (it is not declared in include/).
#pragma once

#include "params.h"
#include "parameters/name_lookup_hint.h"

struct IParameterLookup : IUnknown {
  // The first parameter whose whole name equals `name` (folding only A-Z):
  // its index and, when `value` is not null, its effective value as a variant
  // (get_ItemVariant's answer and result code: 1 for a value taken from an
  // input binding). Not found: index -1 and E_FAIL. `hint` (may be null) is
  // the caller's memory of its last lookup of this name, in any set of this
  // module. Takes no collection lock, as the NOLOCK operations do.
  virtual HRESULT FindFirstByName(tagREFString name, NameLookupHint* hint, int32_t* index, IVariant** value) = 0;
  // The same lookup for a number, without handing a variant out: S_OK and
  // *number (the variant's GetDouble) when the first parameter named `name`
  // holds a plain value (no object, no descriptor); S_FALSE when its value
  // must be read through FindFirstByName; E_FAIL when there is none.
  virtual HRESULT FindNumberByName(tagREFString name, NameLookupHint* hint, double* number) = 0;
};

inline constexpr IID IID_IParameterLookup = __IIDOfc("ParametersModuleLookupByView");

#include "runtime/interface_traits.h"
DECLARE_INTERFACE_ID(IParameterLookup)
