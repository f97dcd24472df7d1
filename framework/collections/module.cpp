// Collections module entry: the framework's value, collection, stream and settings classes.
#include "active_workspace.h"
#include "ascii_stream.h"
#include "creatable_string.h"
#include "data_stream.h"
#include "dbl_buffer.h"
#include "file_info.h"
#include "folder_stream.h"
#include "ini_file_ex.h"
#include "parameter_text_streams.h"
#include "registry.h"
#include "runtime/class_table.h"
#include "string_collection.h"
#include "super_collection.h"
#include "variant.h"
#include "xml_file.h"
#include "xml_stream.h"

namespace {

const ClassTableEntry kClasses[] = {
    CLASS_TABLE_ENTRY(L"CreatableString", CObject<CCreatableString>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"Variant", CObject<CVariant>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"SuperCollection", CObject<CSuperCollection>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"StringCollection", CObject<CStringCollection>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"DblBuffer", CObject<CDblBuffer>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"DataStream", CObject<CDataStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ASCIIStream", CObject<CASCIIStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"XMLStream", CObject<CXMLStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"XMLStreamEx", CObject<CXMLStreamEx>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"XMLFile", CObject<CXMLFile>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"FolderStream", CObject<CFolderStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"FileInfo", CObject<CFileInfo>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"CSVStream", CObject<CCSVStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"INIStream", CObject<CINIStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"INIFileEx", CObject<CINIFileEx>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"Registry", CObject<CRegistry>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ActiveWorkspace", CActiveWorkspace::CreateShared),
};

}  // namespace

extern "C" MODULE_EXPORT int32_t CreateFunction(tagREFString className, void** creationFunction) {
  return LookupClass(kClasses, className, creationFunction);
}
