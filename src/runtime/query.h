// Query: interface lookup that also searches an object's container (through
// its collection moniker) and its host window.
#pragma once

#include "smart_ptr.h"

HRESULT Query(IUnknown* object, IID iid, void** out);

// Typed form of Query; null when nothing answers.
template <class I>
SmartPtr<I> QueryResolved(IUnknown* object) {
  SmartPtr<I> result;
  Query(object, IIDOf<I>(), result.ReceiveVoid());
  return result;
}
