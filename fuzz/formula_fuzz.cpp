// Fuzz target: a formula text evaluated twice by "Expression" and "ConditionalExpression" against a
// small set; the replayed second evaluation must give what reading the text gave.
#include <cmath>
#include <cstring>
#include <cwctype>

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

namespace {

// The number an expression holds after evaluating its text again.
double EvaluatedValue(IExpression* expression, IParameters* set) {
  expression->Evaluate(set);
  SmartPtr<IVariant> value;
  return expression->get_Value(value.Receive()) >= 0 && value ? value->GetDouble() : 0;
}

bool SameDouble(double a, double b) { return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0; }

bool DrawsRandomNumbers(std::wstring text) {
  for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
  return text.find(L"random") != std::wstring::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static SmartPtr<IParametersCreatable> set = SmallSet();
  std::wstring formula = WideOf(data, size);
  for (const wchar_t* className : {L"Expression", L"ConditionalExpression"}) {
    SmartPtr<IExpression> expression = CreateObjectAs<IExpression>(className);
    expression->put_Expression(Ref(formula));
    // The first evaluation reads the text, the second replays what the first recorded: they must agree.
    const double read = EvaluatedValue(expression.get(), set.get());
    const double replayed = EvaluatedValue(expression.get(), set.get());
    if (!SameDouble(read, replayed) && !DrawsRandomNumbers(formula)) __builtin_trap();
  }
  return 0;
}
