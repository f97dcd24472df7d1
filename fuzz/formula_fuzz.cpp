// Fuzz target: a formula text evaluated by "Expression" and "ConditionalExpression" against a small set.
#include "fuzz_support.h"

using namespace fuzz_support;

namespace {

SmartPtr<IParametersCreatable> SmallSet() {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  SmartPtr<IVariant> number = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  number->SetDouble(2.5);
  SmartPtr<IVariant> count = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  count->SetLong(-7);
  SmartPtr<IVariant> text = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  text->SetString(MakeString(L"abc 12").get());
  set->Add(MakeString(L"x").get(), number.get(), nullptr, 0);
  set->Add(MakeString(L"n").get(), count.get(), nullptr, 0);
  set->Add(MakeString(L"s").get(), text.get(), nullptr, 0);
  return set;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static SmartPtr<IParametersCreatable> set = SmallSet();
  std::wstring formula = WideOf(data, size);
  for (const wchar_t* className : {L"Expression", L"ConditionalExpression"}) {
    SmartPtr<IExpression> expression = CreateObjectAs<IExpression>(className);
    expression->put_Expression(Ref(formula));
    expression->Evaluate(set.get());
    SmartPtr<IVariant> value;
    if (expression->get_Value(value.Receive()) >= 0 && value) value->GetDouble();
  }
  return 0;
}
