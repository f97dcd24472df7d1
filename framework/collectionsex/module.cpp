// CollectionsEx module entry: the component registry and component objects.
#include "component_string.h"
#include "global_component_collection.h"
#include "runtime/class_table.h"

namespace {

const ClassTableEntry kClasses[] = {
    CLASS_TABLE_ENTRY(L"GlobalComponentCollection", CObject<CGlobalComponentCollection>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ComponentString", CObject<CComponentString>::_CreateInstance),
};

}  // namespace

extern "C" MODULE_EXPORT int32_t CreateFunction(tagREFString className, void** creationFunction) {
  return LookupClass(kClasses, className, creationFunction);
}
