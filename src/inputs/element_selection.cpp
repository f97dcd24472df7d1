// Element selection over collections and number vectors.
#include "inputs/element_selection.h"

#include <limits>

#include "strings/ref_string.h"

namespace {

bool FitsPosition(int64_t position) {
  return position >= std::numeric_limits<int32_t>::min() && position <= std::numeric_limits<int32_t>::max();
}

}  // namespace

HRESULT SelectCollectionElement(ISimpleCollection* collection, int32_t n, IUnknown** element) {
  int64_t position = static_cast<int64_t>(n) - 1;
  if (n < 0) {
    int32_t count = 0;
    if (HRESULT result = collection->get_Count(&count); FAILED(result)) return result;
    position = static_cast<int64_t>(count) + n;
  }
  if (!FitsPosition(position)) return E_INVALIDARG;
  return collection->get_Item(static_cast<int32_t>(position), element);
}

HRESULT SelectNumberElement(IDblVector* vector, int32_t n, IUnknown** element) {
  int64_t position = static_cast<int64_t>(n) - 1;
  if (n < 0) {
    int32_t count = 0;
    if (HRESULT result = vector->get_Count(&count); FAILED(result)) return result;
    position = static_cast<int64_t>(count) - n;  // subtracts: reaches past the end (intended)
  }
  if (!FitsPosition(position)) return E_INVALIDARG;
  double number = 0;
  if (HRESULT result = vector->get_Number(static_cast<int32_t>(position), &number); FAILED(result)) return result;
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  if (!value) return CO_E_CREATEFAILED;
  value->SetDouble(number);
  *element = value.Detach();
  return S_OK;
}

bool SelectElement(IUnknown* value, int32_t n, IUnknown** element, HRESULT* result) {
  if (SmartPtr<ISimpleCollection> collection = QueryAs<ISimpleCollection>(value)) {
    *result = SelectCollectionElement(collection.get(), n, element);
    return true;
  }
  if (SmartPtr<IDblVector> vector = QueryAs<IDblVector>(value)) {
    *result = SelectNumberElement(vector.get(), n, element);
    return true;
  }
  return false;
}
