// LookupKey: classifying the key of a collection lookup.
#include "parameters/lookup_key.h"

#include "parameters/folded_name.h"

namespace {

void TakeName(LookupKey& result, SmartPtr<IString> name) {
  result.kind = LookupKey::Kind::kName;
  result.text = NameTextOf(name.get());
  result.name = std::move(name);
}

}  // namespace

LookupKey LookupKey::Of(IUnknown* key) {
  LookupKey result;
  if (SmartPtr<IString> name = QueryAs<IString>(key)) {
    TakeName(result, std::move(name));
    return result;
  }
  SmartPtr<IVariant> variant = QueryAs<IVariant>(key);
  if (!variant) return result;
  if (variant->GetType() != kVariantNotNumber) {
    result.kind = Kind::kIndex;
    result.index = variant->GetLong();
  } else if (variant->IsString()) {
    SmartPtr<IString> text;
    if (variant->GetString(text.Receive()) >= 0 && text) TakeName(result, std::move(text));
  } else if (variant->IsObject()) {
    if (variant->GetObject(result.object.Receive()) >= 0 && result.object) result.kind = Kind::kObject;
  }
  return result;
}
