// How values enter and leave a parameter set: variants are stored as they
// are (shared), any other object is wrapped in a new variant, and a value
// bound through an input-parameter descriptor is fetched when it is read.
#pragma once

#include "runtime/smart_ptr.h"

// The variant to store for `value`: `value` itself if it is a variant, else a
// new variant assigned from it. Null for a null value or when no variant can be made.
SmartPtr<IVariant> StoredValueOf(IUnknown* value);

// A new variant holding empty text (the value of a parameter added without one), or null.
SmartPtr<IVariant> NewEmptyTextVariant();

// A record's value and descriptor, each with a reference of its own. A set
// copies them under its lock and resolves them after releasing it, so that an
// input binding, which may read another set, never runs under this set's lock
// (two sets bound to each other and read from two threads would deadlock).
struct HeldRecordValue {
  SmartPtr<IVariant> Value;
  SmartPtr<IUnknown> Descriptor;
};
HeldRecordValue HoldValueOf(const PARAMETEROBJECT* record);

// The effective value of a record: what its input-binding descriptor yields
// (result 1), else its own variant (result 0); E_FAIL when it has none.
HRESULT EffectiveValueOf(const PARAMETEROBJECT* record, IUnknown** value);
HRESULT EffectiveValueOf(const HeldRecordValue& held, IUnknown** value);

// The effective value as a variant (wrapping a bound object that is not one);
// the result is EffectiveValueOf's.
HRESULT EffectiveVariantOf(const PARAMETEROBJECT* record, IVariant** value);
HRESULT EffectiveVariantOf(const HeldRecordValue& held, IVariant** value);

// What get_Item hands out for a value: the object a variant holds, the string
// a text variant holds, any other variant itself, or a non-variant as it is.
HRESULT ItemFromValue(IUnknown* value, IUnknown** item);

// ItemFromValue of the effective value.
HRESULT EffectiveItemOf(const HeldRecordValue& held, IUnknown** item);
