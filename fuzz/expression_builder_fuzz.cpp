// Fuzz target: "ExpressionBuilder" texts, built and evaluated against an empty set.
#include "fuzz_support.h"

using namespace fuzz_support;

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  SmartPtr<IExpression> builder = CreateObjectAs<IExpression>(L"ExpressionBuilder");
  builder->put_Expression(Ref(WideOf(data, size)));
  builder->Evaluate(set.get());
  SmartPtr<IString> text;
  builder->get_Expression(text.Receive());
  SmartPtr<IVariant> value;
  builder->get_Value(value.Receive());
  return 0;
}
