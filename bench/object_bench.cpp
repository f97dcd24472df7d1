// Object model: a reference pair, an interface query and the creation of an
// object by class name through the global component collection.
#include "bench_support.h"

namespace {

void BM_AddRefRelease(benchmark::State& state) {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  IUnknown* object = set.get();
  for (auto _ : state) {
    object->AddRef();
    benchmark::DoNotOptimize(object->Release());
  }
}
BENCHMARK(BM_AddRefRelease);

// The query answers an interface late in the class's table, and the answer is released again.
void BM_QueryInterface(benchmark::State& state) {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  for (auto _ : state) {
    void* answer = nullptr;
    set->QueryInterface(IID_IParameters, &answer);
    benchmark::DoNotOptimize(answer);
    static_cast<IUnknown*>(answer)->Release();
  }
}
BENCHMARK(BM_QueryInterface);

void BM_CreateByClassName(benchmark::State& state) {
  for (auto _ : state) {
    SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
    benchmark::DoNotOptimize(set.get());
  }
}
BENCHMARK(BM_CreateByClassName);

}  // namespace

BENCHMARK_MAIN();
