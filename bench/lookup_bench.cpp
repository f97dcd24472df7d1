// Name lookups and filling of parameter sets and named collections: the cost
// of one lookup must not grow with the size of the set, and filling a set of n
// items must stay linear.
#include <vector>

#include "bench_support.h"

namespace {

using bench_support::MakeName;
using bench_support::NameOf;

// A parameter set of `count` parameters named NameOf(0..count-1), each holding a number.
SmartPtr<IParametersCreatable> FilledSet(int64_t count) {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  value->SetDouble(1.5);
  for (int64_t i = 0; i < count; ++i) set->Add(MakeName(NameOf(i)).get(), value.get(), nullptr, 0);
  return set;
}

void BM_ParameterSetLookup(benchmark::State& state) {
  SmartPtr<IParametersCreatable> set = FilledSet(state.range(0));
  bench_support::TimeLookups(state, set.get(), state.range(0));
}
BENCHMARK(BM_ParameterSetLookup)->Arg(10)->Arg(1000)->Arg(100000);

// Fills a set through Set (a lookup, then an add): quadratic behaviour would show as growth per item.
void BM_ParameterSetFill(benchmark::State& state) {
  const int64_t count = state.range(0);
  std::vector<SmartPtr<ICreatableString>> names;
  for (int64_t i = 0; i < count; ++i) names.push_back(MakeName(NameOf(i)));
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  value->SetLong(3);
  for (auto _ : state) {
    SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
    for (const SmartPtr<ICreatableString>& name : names) set->Set(name.get(), value.get(), nullptr, 0, 0);
    benchmark::DoNotOptimize(set.get());
  }
  state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_ParameterSetFill)->Arg(10)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);

// Prefix lookup in the framework's general collection (items named NameOf(i)).
void BM_SuperCollectionPrefixLookup(benchmark::State& state) {
  const int64_t count = state.range(0);
  SmartPtr<ISuperCollection> collection = CreateObjectAs<ISuperCollection>(L"SuperCollection");
  SmartPtr<IVariant> item = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  for (int64_t i = 0; i < count; ++i) collection->Add(MakeName(NameOf(i)).get(), item.get(), nullptr, 0);
  bench_support::TimeLookups(state, collection.get(), count);
}
BENCHMARK(BM_SuperCollectionPrefixLookup)->Arg(10)->Arg(1000)->Arg(100000);

}  // namespace

BENCHMARK_MAIN();
