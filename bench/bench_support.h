// Helpers of the benchmarks: names, and timing of name lookups in any collection.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "runtime/module_loader.h"
#include "strings/ref_string.h"

namespace bench_support {

inline SmartPtr<ICreatableString> MakeName(const std::wstring& text) {
  SmartPtr<ICreatableString> name = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  name->SetText({static_cast<int32_t>(text.size()), text.c_str()});
  return name;
}

// Names spread over the key space, so neighbours in the set are not neighbours in order.
inline std::wstring NameOf(int64_t i) { return L"param_" + std::to_wstring(i * 7919 % 1000003); }

// Times get_Index over 64 names spread through a collection of `count` items named NameOf(i):
// a linear scan would show as growth with `count`. The first lookup, which builds the index, is not timed.
template <class Collection>
void TimeLookups(benchmark::State& state, Collection* collection, int64_t count) {
  std::vector<SmartPtr<ICreatableString>> keys;
  for (int64_t i = 0; i < 64; ++i) keys.push_back(MakeName(NameOf(count - 1 - i * count / 64)));
  int32_t warm = -1;
  collection->get_Index(keys[0].get(), &warm);
  size_t next = 0;
  for (auto _ : state) {
    int32_t index = -1;
    collection->get_Index(keys[next].get(), &index);
    benchmark::DoNotOptimize(index);
    next = (next + 1) % keys.size();
  }
  state.SetItemsProcessed(state.iterations());
}

}  // namespace bench_support
