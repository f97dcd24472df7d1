// LookupKey: what a collection's get_Index was asked for. The key object is
// asked for IString (a name); failing that for IVariant, whose number is an
// index, whose text is a name and whose object is looked up by identity.
#pragma once

#include "runtime/smart_ptr.h"

struct LookupKey {
  enum class Kind { kNone, kIndex, kName, kObject };

  Kind kind = Kind::kNone;
  int32_t index = -1;           // kIndex
  SmartPtr<IString> name;       // kName: keeps `text` alive
  tagREFString text{0, nullptr};  // kName: the name's text (may be empty)
  SmartPtr<IUnknown> object;    // kObject

  static LookupKey Of(IUnknown* key);
};
