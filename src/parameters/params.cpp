// The module's entry point: CreateFunction answers the creation functions of
// the nine classes by their exact, case-sensitive names.
#include "creator/parameters_creator.h"
#include "parameters/parameters_creatable.h"
#include "runtime/class_table.h"
#include "textparser/text_parser.h"

namespace {

// In the order in which names are compared.
const ClassTableEntry kClasses[] = {
    CLASS_TABLE_ENTRY(L"ConditionalExpression", nullptr),
    CLASS_TABLE_ENTRY(L"Expression", nullptr),
    CLASS_TABLE_ENTRY(L"ExpressionBuilder", nullptr),
    CLASS_TABLE_ENTRY(L"InputParameter", nullptr),
    CLASS_TABLE_ENTRY(L"InputParameters", nullptr),
    CLASS_TABLE_ENTRY(L"ParametersCreatable", CObject<CParametersCreatable>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ParametersCreator", CObject<CParametersCreator>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"TextParser", CObject<CTextParser>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ParamCollection", nullptr),
};

}  // namespace

extern "C" MODULE_EXPORT int32_t CreateFunction(tagREFString className, void** creationFunction) {
  return LookupClass(kClasses, className, creationFunction);
}
