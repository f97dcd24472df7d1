// Element selection: element n of a bound value that is a collection or a number vector.
//
// n > 0 counts from 1 at the front. n < 0 counts from the end of a collection
// (-1 is the last element) but, for a number vector, reads position count - n,
// past the end. That asymmetry is intended: callers rely on both forms. A
// position that does not fit 32 bits (n = INT32_MIN, say) gives E_INVALIDARG.
#pragma once

#include "runtime/smart_ptr.h"

// Element n of a collection: the collection's get_Item result and element.
HRESULT SelectCollectionElement(ISimpleCollection* collection, int32_t n, IUnknown** element);

// Number n of a vector, handed out in a new variant; the vector's failure code
// when it has no such position, CO_E_CREATEFAILED when no variant can be made.
HRESULT SelectNumberElement(IDblVector* vector, int32_t n, IUnknown** element);

// Selects from `value` if it answers ISimpleCollection or IDblVector (tested
// in that order) and stores the selection's result in *result. False when the
// value is neither: then nothing is selected and the caller goes on as for n = 0.
bool SelectElement(IUnknown* value, int32_t n, IUnknown** element, HRESULT* result);
