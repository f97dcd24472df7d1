// Name lookups and filling of parameter sets and named collections: the cost
// of one lookup must not grow with the size of the set, and filling a set of n
// items must stay linear.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "runtime/module_loader.h"
#include "strings/ref_string.h"

namespace {

SmartPtr<ICreatableString> MakeName(const std::wstring& text) {
  SmartPtr<ICreatableString> name = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  name->SetText({static_cast<int32_t>(text.size()), text.c_str()});
  return name;
}

std::wstring NameOf(int64_t i) { return L"param_" + std::to_wstring(i * 7919 % 1000003); }

// A parameter set of `count` parameters named NameOf(0..count-1), each holding a number.
SmartPtr<IParametersCreatable> FilledSet(int64_t count) {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  value->SetDouble(1.5);
  for (int64_t i = 0; i < count; ++i) set->Add(MakeName(NameOf(i)).get(), value.get(), nullptr, 0);
  return set;
}

// Looks up names spread over the whole set, so a linear scan would show as growth with n.
void BM_ParameterSetLookup(benchmark::State& state) {
  const int64_t count = state.range(0);
  SmartPtr<IParametersCreatable> set = FilledSet(count);
  std::vector<SmartPtr<ICreatableString>> keys;
  for (int64_t i = 0; i < 64; ++i) keys.push_back(MakeName(NameOf(count - 1 - i * count / 64)));
  int32_t warm = -1;
  set->get_Index(keys[0].get(), &warm);  // the first lookup builds the index
  size_t next = 0;
  for (auto _ : state) {
    int32_t index = -1;
    set->get_Index(keys[next].get(), &index);
    benchmark::DoNotOptimize(index);
    next = (next + 1) % keys.size();
  }
  state.SetItemsProcessed(state.iterations());
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
  std::vector<SmartPtr<ICreatableString>> keys;
  for (int64_t i = 0; i < 64; ++i) keys.push_back(MakeName(NameOf(count - 1 - i * count / 64)));
  int32_t warm = -1;
  collection->get_Index(keys[0].get(), &warm);  // the first lookup builds the index
  size_t next = 0;
  for (auto _ : state) {
    int32_t index = -1;
    collection->get_Index(keys[next].get(), &index);
    benchmark::DoNotOptimize(index);
    next = (next + 1) % keys.size();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SuperCollectionPrefixLookup)->Arg(10)->Arg(1000)->Arg(100000);

}  // namespace

BENCHMARK_MAIN();
