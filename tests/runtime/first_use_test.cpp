// First use of the framework from several threads at once, in a fresh process: the kept collection and the
// components of strings, variants and parameter sets are made once, and every thread gets working objects.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "runtime/framework_objects.h"
#include "test_support.h"

namespace {

using namespace test_support;

TEST(FirstUse, ThreadsStartingTogetherShareOneOfEach) {
  constexpr int kThreads = 8;
  std::atomic<int> ready{0};
  std::atomic<int> working{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&, t] {
      ++ready;
      while (ready < kThreads) std::this_thread::yield();
      SmartPtr<IComponentCollection> collection = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
      SmartPtr<ICreatableString> text = MakeString(L"thread " + std::to_wstring(t));
      SmartPtr<IVariant> value = MakeDouble(t + 0.5);
      SmartPtr<IParametersCreatable> set = SmartPtr<IParametersCreatable>::Adopt(BASEObject::CreateParameters());
      if (collection && set && set->Add(text.get(), value.get(), nullptr, 0) == S_OK &&
          TextOf(text) == L"thread " + std::to_wstring(t) && value->GetDouble() == t + 0.5)
        ++working;
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(working, kThreads);
  SmartPtr<IComponentCollection> first = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  SmartPtr<IComponentCollection> again = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  EXPECT_EQ(first.get(), again.get());
}

}  // namespace
