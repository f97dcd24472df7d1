// Collections module entry: the framework's value, collection and stream classes.
#include "active_workspace.h"
#include "creatable_string.h"
#include "file_info.h"
#include "folder_stream.h"
#include "ini_file_ex.h"
#include "parameter_text_streams.h"
#include "registry.h"
#include "runtime/class_table.h"
#include "super_collection.h"
#include "variant.h"

namespace {

const ClassTableEntry kClasses[] = {
    CLASS_TABLE_ENTRY(L"CreatableString", CObject<CCreatableString>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"Variant", CObject<CVariant>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"FolderStream", CObject<CFolderStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"FileInfo", CObject<CFileInfo>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"INIFileEx", CObject<CINIFileEx>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"Registry", CObject<CRegistry>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ActiveWorkspace", CActiveWorkspace::CreateShared),
    CLASS_TABLE_ENTRY(L"CSVStream", CObject<CCSVStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"INIStream", CObject<CINIStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"SuperCollection", CObject<CSuperCollection>::_CreateInstance),
};

}  // namespace

extern "C" MODULE_EXPORT int32_t CreateFunction(tagREFString className, void** creationFunction) {
  return LookupClass(kClasses, className, creationFunction);
}
