// Collections module entry: the framework's value, collection and stream classes.
#include "creatable_string.h"
#include "runtime/class_table.h"
#include "super_collection.h"
#include "variant.h"

namespace {

const ClassTableEntry kClasses[] = {
    CLASS_TABLE_ENTRY(L"CreatableString", CObject<CCreatableString>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"Variant", CObject<CVariant>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"SuperCollection", CObject<CSuperCollection>::_CreateInstance),
};

}  // namespace

extern "C" MODULE_EXPORT int32_t CreateFunction(tagREFString className, void** creationFunction) {
  return LookupClass(kClasses, className, creationFunction);
}
