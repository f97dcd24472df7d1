// The module's entry point: CreateFunction answers the creation functions of
// the nine classes by their exact, case-sensitive names.
#include "expression/conditional_expression.h"
#include "expression/expression.h"
#include "expression/expression_builder.h"
#include "parameters/parameters_creatable.h"
#include "runtime/class_table.h"

namespace {

// In the order in which names are compared.
const ClassTableEntry kClasses[] = {
    CLASS_TABLE_ENTRY(L"ConditionalExpression", CObject<CConditionalExpression>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"Expression", CObject<CExpression>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ExpressionBuilder", CObject<CExpressionBuilder>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"InputParameter", nullptr),
    CLASS_TABLE_ENTRY(L"InputParameters", nullptr),
    CLASS_TABLE_ENTRY(L"ParametersCreatable", CObject<CParametersCreatable>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ParametersCreator", nullptr),
    CLASS_TABLE_ENTRY(L"TextParser", nullptr),
    CLASS_TABLE_ENTRY(L"ParamCollection", nullptr),
};

}  // namespace

extern "C" MODULE_EXPORT int32_t CreateFunction(tagREFString className, void** creationFunction) {
  return LookupClass(kClasses, className, creationFunction);
}
