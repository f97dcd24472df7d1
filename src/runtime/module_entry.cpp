// InitializeModule: the loader hands this module the process-wide collection.
#include "module_loader.h"

#include "class_table.h"

MODULE_EXPORT int32_t InitializeModule(void* /*reserved*/, IComponentCollection* collection) {
  ReplaceGlobalComponents(collection);
  return 0;
}
