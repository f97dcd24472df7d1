// Objects shared between threads: lock brackets with the NOLOCK operations
// inside, separate formulas over one set, bindings reading each other's sets,
// and a module initialised once and then used from several threads.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <thread>
#include <vector>

#include "host/host_support.h"
#include "test_support.h"

namespace {

using namespace test_support;

constexpr int kThreads = 4;
constexpr int kRounds = 2000;

SmartPtr<IParametersCreatable> NewSet() { return CreateObjectAs<IParametersCreatable>(L"ParametersCreatable"); }

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

// Read-modify-write of counters inside CollectionLock/Unlock with the NOLOCK
// operations, and adds inside the same bracket: no update is lost.
TEST(Concurrency, LockBracketsWithNolockOperations) {
  constexpr int kCounters = 3;
  SmartPtr<IParametersCreatable> set = NewSet();
  for (int c = 0; c < kCounters; ++c) set->Add(MakeString(L"c" + std::to_wstring(c)).get(), MakeLong(0).get(), nullptr, 0);
  OnThreads([&](int t) {
    for (int i = 0; i < kRounds; ++i) {
      set->CollectionLock();
      SmartPtr<IUnknown> item;
      set->get_ItemNOLOCK(i % kCounters, item.Receive());
      int32_t count = QueryAs<IVariant>(item.get())->GetLong();
      set->put_ItemNOLOCK(i % kCounters, MakeLong(count + 1).get());
      if (i % 100 == 0) set->AddNOLOCK(MakeString(L"t" + std::to_wstring(t)).get(), MakeLong(i).get(), nullptr, 0);
      set->CollectionUnlock();
    }
  });
  int32_t total = 0;
  for (int c = 0; c < kCounters; ++c) {
    SmartPtr<IVariant> value;
    ASSERT_EQ(set->get_ItemVariant(c, value.Receive()), S_OK);
    total += value->GetLong();
  }
  EXPECT_EQ(total, kThreads * kRounds);
  int32_t count = 0;
  set->get_Count(&count);
  EXPECT_EQ(count, kCounters + kThreads * kRounds / 100);
  EXPECT_EQ(set->IsCollectionLocked(), 0);
}

// Each thread evaluates its own Expression against one shared set.
TEST(Concurrency, SeparateExpressionsOverOneSet) {
  SmartPtr<IParametersCreatable> set = NewSet();
  set->Add(MakeString(L"width").get(), MakeDouble(2.5).get(), nullptr, 0);
  set->Add(MakeString(L"height").get(), MakeLong(4).get(), nullptr, 0);
  std::atomic<int> wrong{0};
  OnThreads([&](int t) {
    SmartPtr<IExpression> expression = CreateObjectAs<IExpression>(L"Expression");
    std::wstring formula = L"width*height+" + std::to_wstring(t);
    for (int i = 0; i < kRounds / 4; ++i) {
      expression->put_Expression(Ref(formula));
      SmartPtr<IVariant> value;
      if (expression->Evaluate(set.get()) != S_OK || expression->get_Value(value.Receive()) != S_OK ||
          value->GetDouble() != 10.0 + t)
        ++wrong;
    }
  });
  EXPECT_EQ(wrong, 0);
}

// Two sets whose items are bound to each other, read from several threads at
// once: each read ends (the cycle is cut and the stored value answers) and
// never waits for a lock another reader holds while it reads the other set.
TEST(Concurrency, SetsBoundToEachOtherReadFromSeveralThreads) {
  SmartPtr<IParametersCreatable> a = NewSet(), b = NewSet();
  a->Add(MakeString(L"x").get(), MakeLong(1).get(), nullptr, 0);
  b->Add(MakeString(L"y").get(), MakeLong(2).get(), nullptr, 0);
  auto bind = [](IParameters* reader, IParameters* source, const wchar_t* name) {
    SmartPtr<IInputParameter> binding = CreateObjectAs<IInputParameter>(L"InputParameter");
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

// The module loaded and initialised once by the host, then used from several
// threads through its creation function.
TEST(Concurrency, ModuleInitialisedThenUsedFromThreads) {
  LoadedModule parameters = Load("Parameters.so");
  ASSERT_TRUE(parameters.createFunction && parameters.initialize);
  SmartPtr<IComponentCollection> collection =
      CreateFromModule<IComponentCollection>(Load("CollectionsEx.so"), L"GlobalComponentCollection");
  ASSERT_TRUE(collection);
  ASSERT_EQ(parameters.initialize(nullptr, collection.get()), 0);
  std::atomic<int> wrong{0};
  OnThreads([&](int t) {
    for (int i = 0; i < kRounds / 20; ++i) {
      SmartPtr<IExpression> expression = CreateFromModule<IExpression>(parameters, L"Expression");
      std::wstring formula = std::to_wstring(t) + L"+" + std::to_wstring(i);
      SmartPtr<IVariant> value;
      if (!expression || expression->put_Expression(View(formula.c_str())) < 0 || expression->Evaluate(nullptr) != S_OK ||
          expression->get_Value(value.Receive()) != S_OK || value->GetDouble() != t + i)
        ++wrong;
    }
  });
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(parameters.initialize(nullptr, nullptr), 0);
}

}  // namespace
