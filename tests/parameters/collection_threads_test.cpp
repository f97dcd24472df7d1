// Collections shared between threads: callers bracket their changes with
// CollectionLock/CollectionUnlock, and while a caller holds the lock both
// templates must report it as locked, whatever the other threads do.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "collection_test_support.h"

namespace {

using namespace collection_test;

constexpr int kThreads = 4;
constexpr int kRounds = 3000;

// Each thread adds kRounds items inside the lock, checking the lock report
// each time; `locked` is the template's answer for "locked".
template <class Collection>
void BracketAddsFromThreads(Collection* collection, IUnknown* object, HRESULT locked) {
  std::vector<std::thread> threads;
  std::atomic<int> misreported{0};
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([&] {
      for (int i = 0; i < kRounds; ++i) {
        collection->CollectionLock();
        if (collection->IsCollectionLocked() != locked) ++misreported;
        collection->Add(nullptr, object, nullptr, 0);
        collection->CollectionUnlock();
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(misreported, 0);
  int32_t count = 0;
  collection->get_Count(&count);
  EXPECT_EQ(count, kThreads * kRounds) << "no add was lost";
}

// Beside the writers, a reader that does not take the lock: the range check made
// before locking reads the count while writers change it (well defined, and the
// answer is either a value or 0x80070057).
TEST(CollectionThreads, ParameterSetReportsItsLockWhileHeld) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  std::atomic<bool> writing{true};
  std::atomic<int> wrongAnswers{0};
  std::thread reader([&] {
    while (writing) {
      int32_t count = 0;
      set->get_Count(&count);
      SmartPtr<IVariant> value;
      HRESULT result = set->get_ItemVariant(count, value.Receive());  // one past the end, unless an add came first
      if (result != E_INVALIDARG && result != S_OK) ++wrongAnswers;
      if (count > 0 && set->get_ItemVariant(count - 1, value.Receive()) != S_OK) ++wrongAnswers;
    }
  });
  BracketAddsFromThreads(set.get(), MakeLong(1).get(), 1);
  writing = false;
  reader.join();
  EXPECT_EQ(wrongAnswers, 0);
  EXPECT_EQ(set->IsCollectionLocked(), 0) << "unlocked at the end";
}

TEST(CollectionThreads, NamedCollectionReportsItsLockWhileHeld) {
  SmartPtr<IInputParameter> item = NewBinding();
  SmartPtr<IInputParameters> collection = NewExactCollection();
  BracketAddsFromThreads(collection.get(), item.get(), 0);
  EXPECT_EQ(collection->IsCollectionLocked(), 1) << "unlocked at the end";
}

}  // namespace
