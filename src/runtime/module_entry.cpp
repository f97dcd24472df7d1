// InitializeModule: the loader hands this module the process-wide collection.
#include "module_loader.h"

#include "class_table.h"

MODULE_EXPORT int32_t InitializeModule(void* /*reserved*/, IComponentCollection* collection) {
  if (collection) collection->AddRef();
  gGlobalComponentCollection.Reset();
  gGlobalComponentCollection = SmartPtr<IComponentCollection>::Adopt(collection);
  return 0;
}
