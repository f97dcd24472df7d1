// Heap held per parameter of a parameter set and per item of a named
// collection (names, values, records and lookup index together), and the
// growth of the process's peak resident size while a set fills.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/resource.h>

#include <string>

#include "bench_support.h"

namespace {

// Blocks in malloc's arenas plus the large ones it maps on their own (slot
// arrays and index tables of big sets are such blocks).
size_t HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// Peak resident size of the process so far, in bytes.
double PeakResidentBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024.0;
}

using bench_support::MakeName;

// Every parameter gets its own name string and its own value variant, as a loaded file would give.
void BM_ParameterSetMemory(benchmark::State& state) {
  const int64_t count = state.range(0);
  double bytesPerParameter = 0;
  double peakPerParameter = 0;
  for (auto _ : state) {
    const double peakBefore = PeakResidentBytes();
    const size_t before = HeapInUse();
    SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
    for (int64_t i = 0; i < count; ++i) {
      SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
      value->SetDouble(static_cast<double>(i));
      set->Add(MakeName(L"param_" + std::to_wstring(i)).get(), value.get(), nullptr, 0);
    }
    int32_t index = -1;
    set->get_Index(MakeName(L"param_1").get(), &index);  // the lookup index exists from here on
    bytesPerParameter = static_cast<double>(HeapInUse() - before) / static_cast<double>(count);
    peakPerParameter = (PeakResidentBytes() - peakBefore) / static_cast<double>(count);
  }
  state.counters["bytes_per_parameter"] = bytesPerParameter;
  state.counters["peak_rss_per_parameter"] = peakPerParameter;
}
BENCHMARK(BM_ParameterSetMemory)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_SuperCollectionMemory(benchmark::State& state) {
  const int64_t count = state.range(0);
  double bytesPerItem = 0;
  for (auto _ : state) {
    const size_t before = HeapInUse();
    SmartPtr<ISuperCollection> collection = CreateObjectAs<ISuperCollection>(L"SuperCollection");
    for (int64_t i = 0; i < count; ++i) {
      SmartPtr<IVariant> item = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
      collection->Add(MakeName(L"item_" + std::to_wstring(i)).get(), item.get(), nullptr, 0);
    }
    int32_t index = -1;
    collection->get_Index(MakeName(L"item_1").get(), &index);
    bytesPerItem = static_cast<double>(HeapInUse() - before) / static_cast<double>(count);
  }
  state.counters["bytes_per_item"] = bytesPerItem;
}
BENCHMARK(BM_SuperCollectionMemory)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
