// Objects shared between threads: lock brackets with the NOLOCK operations
// inside and bindings reading each other's sets. (A module used from several
// threads after the host initialised it is in the host tests.)
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <thread>
#include <vector>

#include "parameters/persistence_test_support.h"

namespace {

using namespace persistence_test;

constexpr int kThreads = 4;
constexpr int kRounds = 2000;

// Runs body(t) on kThreads threads and fails the whole program if they have
// not finished after a minute: a deadlock must end the run, not hang it.
template <class Body>
void OnThreads(Body body) {
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) threads.emplace_back(body, t);
  std::future<void> joined = std::async(std::launch::async, [&] {
    for (std::thread& thread : threads) thread.join();
  });
  if (joined.wait_for(std::chrono::minutes(1)) != std::future_status::ready) {
    std::fprintf(stderr, "threads did not finish: deadlock\n");
    std::_Exit(1);
  }
}

// Read-modify-write of a counter inside CollectionLock/Unlock with the NOLOCK
// operations, and adds inside the same bracket: no update is lost.
TEST(Concurrency, LockBracketsWithNolockOperations) {
  SmartPtr<IParametersCreatable> set = SetOf({{L"counter", MakeLong(0)}});
  OnThreads([&](int t) {
    for (int i = 0; i < kRounds; ++i) {
      set->CollectionLock();
      SmartPtr<IUnknown> item;
      set->get_ItemNOLOCK(0, item.Receive());
      set->put_ItemNOLOCK(0, MakeLong(QueryAs<IVariant>(item.get())->GetLong() + 1).get());
      if (i % 100 == 0) set->AddNOLOCK(MakeString(L"t" + std::to_wstring(t)).get(), MakeLong(i).get(), nullptr, 0);
      set->CollectionUnlock();
    }
  });
  SmartPtr<IVariant> value;
  ASSERT_EQ(set->get_ItemVariant(0, value.Receive()), S_OK);
  EXPECT_EQ(value->GetLong(), kThreads * kRounds);
  EXPECT_EQ(NamesOf(set.get()).size(), 1u + kThreads * kRounds / 100);
  EXPECT_EQ(set->IsCollectionLocked(), 0);
}

// Two sets whose items are bound to each other, read from several threads at
// once: each read ends (the cycle is cut and the stored value answers) and
// never waits for a lock another reader holds while it reads the other set.
TEST(Concurrency, SetsBoundToEachOtherReadFromSeveralThreads) {
  SmartPtr<IParametersCreatable> a = SetOf({{L"x", MakeLong(1)}}), b = SetOf({{L"y", MakeLong(2)}});
  auto bind = [](IParameters* reader, IParameters* source, const wchar_t* name) {
    SmartPtr<IInputParameter> binding = NewBinding();
    binding->put_Source(source);
    binding->put_Name(MakeString(name).get());
    reader->put_ItemDescriptor(0, binding.get());
  };
  bind(a.get(), b.get(), L"y");
  bind(b.get(), a.get(), L"x");
  std::atomic<int> wrong{0};
  OnThreads([&](int t) {
    IParameters* set = t % 2 ? b.get() : a.get();
    int32_t stored = t % 2 ? 2 : 1;
    for (int i = 0; i < kRounds / 4; ++i) {
      SmartPtr<IVariant> value;
      SmartPtr<IUnknown> item;
      if (set->get_ItemVariant(0, value.Receive()) != S_FALSE || value->GetLong() != stored) ++wrong;
      if (set->get_Item(0, item.Receive()) != S_OK || QueryAs<IVariant>(item.get())->GetLong() != stored) ++wrong;
    }
  });
  EXPECT_EQ(wrong, 0);
  for (IParameters* set : {a.get(), b.get()}) set->put_ItemDescriptor(0, nullptr);  // break the reference cycle
}

}  // namespace
