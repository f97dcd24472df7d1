// Copying items between collections: reading one item of any named
// collection the way the parameters creator copies it, and storing it in a
// target set by name (overwrite or append).
#pragma once

#include "runtime/smart_ptr.h"

// A source collection with the richer interfaces it also answers.
struct CopySource {
  explicit CopySource(INamedCollection* source);

  INamedCollection* collection;
  SmartPtr<IParameters> parameters;     // null unless the source is a parameter set
  SmartPtr<ISuperCollection> super;     // null unless the source is a super collection
};

// One item as it is copied. Parts that cannot be read stay null (flags 0).
struct CopiedItem {
  SmartPtr<IString> name;
  SmartPtr<IUnknown> object;
  SmartPtr<IUnknown> descriptor;
  int32_t flags = 0;
};

// A new variant holding a copy of `value` (strings copied too), or null.
SmartPtr<IVariant> CopyOfValue(IVariant* value);

// Item `index` of the source: a parameter set's value is copied into a new
// variant and its descriptor and flags taken; a super collection's object is
// shared, with its attached object as descriptor and its flags; any other
// collection gives the object alone. kParameterNotStored is cleared.
CopiedItem ReadItemForCopy(const CopySource& source, int32_t index);

// Overwrites the target's item of the same name (object, flags, descriptor,
// in this order) or appends the item when the target has none.
void StoreByName(IParametersCreatable* target, const CopiedItem& item);
