// Collections module entry: the framework's value, collection and stream classes.
#include "ascii_stream.h"
#include "creatable_string.h"
#include "data_stream.h"
#include "dbl_buffer.h"
#include "runtime/class_table.h"
#include "string_collection.h"
#include "variant.h"
#include "xml_file.h"
#include "xml_stream.h"

namespace {

const ClassTableEntry kClasses[] = {
    CLASS_TABLE_ENTRY(L"CreatableString", CObject<CCreatableString>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"Variant", CObject<CVariant>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"XMLStream", CObject<CXMLStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"XMLStreamEx", CObject<CXMLStreamEx>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"XMLFile", CObject<CXMLFile>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"DataStream", CObject<CDataStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ASCIIStream", CObject<CASCIIStream>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"StringCollection", CObject<CStringCollection>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"DblBuffer", CObject<CDblBuffer>::_CreateInstance),
};

}  // namespace

extern "C" MODULE_EXPORT int32_t CreateFunction(tagREFString className, void** creationFunction) {
  return LookupClass(kClasses, className, creationFunction);
}
