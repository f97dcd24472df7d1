// Formula evaluation: Evaluate + get_Value + read of a double through an
// "Expression" made by class name, against muparser evaluating the same
// formula (setting the expression and evaluating it, and evaluating an
// already parsed one).
#include <muParser.h>

#include <string>

#include "bench_support.h"

namespace {

using bench_support::MakeName;
using bench_support::NameOf;

constexpr wchar_t kShortFormula[] = L"Max(a, b) * 2";
constexpr char kShortPeerFormula[] = "max(a, b) * 2";
constexpr wchar_t kLongFormula[] = L"2*a + Sin(b)/3 - Max(a, b, 1)";
constexpr char kLongPeerFormula[] = "2*a + sin(b)/3 - max(a, b, 1)";

void AddNumber(IParametersCreatable* set, const std::wstring& name, double number) {
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  value->SetDouble(number);
  set->Add(MakeName(name).get(), value.get(), nullptr, 0);
}

// a, b and c, plus `extra` further parameters before them (a set of 10,000 names a late parameter).
SmartPtr<IParametersCreatable> FormulaSet(int64_t extra) {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  for (int64_t i = 0; i < extra; ++i) AddNumber(set.get(), NameOf(i), 1);
  AddNumber(set.get(), L"a", 3);
  AddNumber(set.get(), L"b", 4.5);
  AddNumber(set.get(), L"c", -1);
  return set;
}

void TimeFormula(benchmark::State& state, const wchar_t* formula, int64_t extra) {
  SmartPtr<IParametersCreatable> set = FormulaSet(extra);
  SmartPtr<IExpression> expression = CreateObjectAs<IExpression>(L"Expression");
  expression->put_Expression(RefOf(formula));
  for (auto _ : state) {
    expression->Evaluate(set.get());
    SmartPtr<IVariant> value;
    expression->get_Value(value.Receive());
    benchmark::DoNotOptimize(value->GetDouble());
  }
}

void BM_Formula(benchmark::State& state) { TimeFormula(state, kShortFormula, 0); }
BENCHMARK(BM_Formula);

void BM_FormulaLong(benchmark::State& state) { TimeFormula(state, kLongFormula, 0); }
BENCHMARK(BM_FormulaLong);

void BM_FormulaInLargeSet(benchmark::State& state) { TimeFormula(state, kShortFormula, 10000); }
BENCHMARK(BM_FormulaInLargeSet);

struct PeerParser {
  double a = 3, b = 4.5;
  mu::Parser parser;
  PeerParser() {
    parser.DefineVar("a", &a);
    parser.DefineVar("b", &b);
  }
};

void TimePeerSetAndEvaluate(benchmark::State& state, const char* formula) {
  PeerParser peer;
  for (auto _ : state) {
    peer.parser.SetExpr(formula);
    benchmark::DoNotOptimize(peer.parser.Eval());
  }
}

void TimePeerEvaluate(benchmark::State& state, const char* formula) {
  PeerParser peer;
  peer.parser.SetExpr(formula);
  peer.parser.Eval();
  for (auto _ : state) benchmark::DoNotOptimize(peer.parser.Eval());
}

void BM_PeerSetAndEvaluate(benchmark::State& state) { TimePeerSetAndEvaluate(state, kShortPeerFormula); }
BENCHMARK(BM_PeerSetAndEvaluate);

void BM_PeerEvaluate(benchmark::State& state) { TimePeerEvaluate(state, kShortPeerFormula); }
BENCHMARK(BM_PeerEvaluate);

void BM_PeerSetAndEvaluateLong(benchmark::State& state) { TimePeerSetAndEvaluate(state, kLongPeerFormula); }
BENCHMARK(BM_PeerSetAndEvaluateLong);

void BM_PeerEvaluateLong(benchmark::State& state) { TimePeerEvaluate(state, kLongPeerFormula); }
BENCHMARK(BM_PeerEvaluateLong);

}  // namespace

BENCHMARK_MAIN();
