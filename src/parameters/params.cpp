// The module's entry point: CreateFunction answers the creation functions of
// the nine classes by their exact, case-sensitive names.
#include "expression/conditional_expression.h"
#include "expression/expression.h"
#include "expression/expression_builder.h"
#include "inputs/input_parameter.h"
#include "inputs/input_parameters.h"
#include "parameters/param_collection.h"
#include "creator/parameters_creator.h"
#include "parameters/parameters_creatable.h"
#include "runtime/class_table.h"
#include "textparser/text_parser.h"

namespace {

// In the order in which names are compared.
const ClassTableEntry kClasses[] = {
    CLASS_TABLE_ENTRY(L"ConditionalExpression", CObject<CConditionalExpression>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"Expression", CObject<CExpression>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ExpressionBuilder", CObject<CExpressionBuilder>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"InputParameter", CObject<CInputParameter>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"InputParameters", CObject<CInputParameters>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ParametersCreatable", CObject<CParametersCreatable>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ParametersCreator", CObject<CParametersCreator>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"TextParser", CObject<CTextParser>::_CreateInstance),
    CLASS_TABLE_ENTRY(L"ParamCollection", CObject<CParamCollection>::_CreateInstance),
};

}  // namespace

extern "C" MODULE_EXPORT int32_t CreateFunction(tagREFString className, void** creationFunction) {
  return LookupClass(kClasses, className, creationFunction);
}
