// The named collection through "SuperCollection" (prefix lookup) and "InputParameters" (whole names), and
// both collection templates' locks, alone and shared between threads. Key lookups: name_index_test.
#include "parameters/named_collection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "collection_test_support.h"

namespace {

using namespace collection_test;

class NamedCollectionTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(collection && object); }
  SmartPtr<ISuperCollection> collection = NewSuperCollection();
  SmartPtr<IParametersCreatable> object = NewParameters();
};

TEST_F(NamedCollectionTest, ObjectAndAttachedLookups) {
  SmartPtr<ISuperCollection> other = NewSuperCollection();
  collection->Add(MakeString(L"a").get(), other.get(), nullptr, 0);
  collection->Add(MakeString(L"b").get(), object.get(), other.get(), 0);
  int32_t index = 42;
  EXPECT_EQ(collection->get_ItemIndex(collection.get(), &index), E_FAIL);
  EXPECT_EQ(collection->get_IndexAttached(object.get(), &index), E_FAIL);
  EXPECT_EQ(index, 42);  // untouched
  EXPECT_EQ(collection->get_ItemIndex(object.get(), &index), S_OK);
  EXPECT_EQ(index, 1);
  EXPECT_EQ(collection->get_IndexAttached(other.get(), &index), S_OK);
  EXPECT_EQ(index, 1);
}

TEST_F(NamedCollectionTest, QueryCountsAnsweringItems) {
  SmartPtr<ISuperCollection> plain = NewSuperCollection();
  // Items 0 and 2 are parameter sets, 1 and 3 are not; item 3 carries one attached.
  collection->Add(nullptr, object.get(), nullptr, 0);
  collection->Add(nullptr, plain.get(), nullptr, 0);
  collection->Add(nullptr, object.get(), nullptr, 0);
  collection->Add(nullptr, plain.get(), object.get(), 0);
  struct Case { int32_t nth; int16_t useAttached; HRESULT result; int32_t index; } cases[] = {
      {0, 0, S_OK, 0}, {1, 0, S_OK, 2}, {-1, 0, S_OK, 2}, {2, 0, E_FAIL, 2}, {0, 1, S_OK, 3}, {-1, 1, S_OK, 3}};
  for (const Case& c : cases) {
    int32_t index = -7;
    EXPECT_EQ(collection->Query(IID_IParameters, c.nth, c.useAttached, &index), c.result) << c.nth;
    EXPECT_EQ(index, c.index) << c.nth << " attached " << c.useAttached;
  }
  int32_t index = -7;
  EXPECT_EQ(NewSuperCollection()->Query(IID_IParameters, -1, 0, &index), E_FAIL);
}

TEST_F(NamedCollectionTest, InsertPlacesOrAppends) {
  struct Case { int32_t index; std::vector<std::wstring> expected; } cases[] = {
      {0, {L"x", L"a", L"b"}}, {1, {L"a", L"x", L"b"}},
      {2, {L"a", L"b", L"x"}},  // equal to the new count - 1: already there
      {3, {L"a", L"b", L"x"}},  // at or past the new count: stays appended
      {-1, {L"a", L"b", L"x"}},
  };
  for (const Case& c : cases) {
    SmartPtr<ISuperCollection> fresh = NewSuperCollection();
    AddNamed(fresh.get(), {L"a", L"b"}, object.get());
    EXPECT_EQ(fresh->Insert(c.index, MakeString(L"x").get(), object.get(), nullptr, 9), S_OK);
    EXPECT_EQ(NamesOf(fresh.get()), c.expected) << c.index;
  }
}

TEST_F(NamedCollectionTest, RemoveAndClearRelease) {
  for (int32_t flags : {10, 11, 12})
    collection->Add(MakeString(std::to_wstring(flags)).get(), object.get(), nullptr, flags);
  EXPECT_EQ(collection->Remove(0), S_OK);
  EXPECT_EQ(NamesOf(collection.get()), (std::vector<std::wstring>{L"11", L"12"}));
  int32_t flags = 0;
  collection->get_ItemFlags(1, &flags);
  EXPECT_EQ(flags, 12) << "flags move with their item";
  const uint32_t before = RefCountOf(object.get());
  EXPECT_EQ(collection->CollectionClear(), S_OK);
  EXPECT_EQ(RefCountOf(object.get()), before - 2);
  EXPECT_EQ(NamesOf(collection.get()).size(), 0u);
}

TEST_F(NamedCollectionTest, SortOrders) {
  struct Case { int32_t flags; std::vector<std::wstring> expected; } cases[] = {
      {0, {L"a", L"AA", L"b", L"ccc"}}, {kSortDescending, {L"ccc", L"b", L"AA", L"a"}},
      {kSortByNameLength, {L"a", L"b", L"AA", L"ccc"}},
      {kSortByNameLength | kSortDescending, {L"ccc", L"AA", L"b", L"a"}},
  };
  for (const Case& c : cases) {
    SmartPtr<ISuperCollection> fresh = NewSuperCollection();
    AddNamed(fresh.get(), {L"ccc", L"b", L"AA", L"a"}, object.get());
    EXPECT_EQ(fresh->Sort(c.flags, nullptr), S_OK);
    EXPECT_EQ(NamesOf(fresh.get()), c.expected) << c.flags;
  }
}

// "afz" is not a prefix of any name, so a scan does not find it; the sorted binary search stops at "af" because
// it compares only over the shorter length. That answer shows whether the binary search is on.
TEST_F(NamedCollectionTest, SortedModeFollowsAddRenameAndOrder) {
  const std::vector<std::wstring> names = {L"ak", L"aj", L"ai", L"ah", L"ag", L"af", L"ae", L"ad", L"ac", L"ab", L"aa"};
  AddNamed(collection.get(), names, object.get());
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 65535);
  collection->Sort(0, nullptr);
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 5);  // binary search on
  EXPECT_EQ(IndexOfName(collection.get(), L"ahz"), 7);  // a lower bound moves to mid itself, not past it
  collection->Rename(0, MakeString(L"a").get());
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 5);  // Rename keeps it on
  collection->Add(MakeString(L"zz").get(), object.get(), nullptr, 0);
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 65535);  // Add turns it off
  collection->Sort(0, nullptr);
  collection->Insert(0, MakeString(L"zz").get(), object.get(), nullptr, 0);
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 65535);  // so does Insert
  collection->Sort(kSortDescending, nullptr);
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 65535);  // a reversed order never enables it
  collection->Sort(0, reinterpret_cast<void*>(&ByLengthDescending));
  EXPECT_EQ(NamesOf(collection.get()).front(), L"zz");
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 65535);  // nor does a caller's comparison

  SmartPtr<IInputParameters> exact = NewExactCollection();
  AddNamed(exact.get(), names, NewBinding().get());
  exact->Sort(0, nullptr);
  exact->Remove(0);  // a removal keeps the binary search on
  // With whole names, a stretch match of other length moves the bounds past mid; the tail scan's first prefix
  // match of other length sets the index but fails.
  int32_t index = -2;
  EXPECT_EQ(exact->get_Index(MakeString(L"a").get(), &index), E_FAIL);
  EXPECT_EQ(index, 0);
  EXPECT_EQ(IndexOfName(exact.get(), L"AG"), 5);
}

// Range checks and null out-pointers of every operation are in the bad-input test.
TEST_F(NamedCollectionTest, ItemPartsAndRefusedItems) {
  EXPECT_EQ(collection->Add(MakeString(L"x").get(), nullptr, nullptr, 0), E_POINTER);
  SmartPtr<IInputParameters> exact = NewExactCollection();  // takes bindings only
  SmartPtr<IInputParameter> binding = NewBinding();
  EXPECT_EQ(exact->Add(MakeString(L"x").get(), collection.get(), nullptr, 0), E_INVALIDARG);
  EXPECT_EQ(exact->Add(MakeString(L"y").get(), binding.get(), nullptr, 0), S_OK);
  EXPECT_EQ(exact->put_Item(0, collection.get()), E_INVALIDARG);  // refused: the item stays
  EXPECT_EQ(NamesOf(exact.get()), std::vector<std::wstring>{L"y"});
  SmartPtr<IUnknown> item;
  ASSERT_EQ(exact->get_Item(0, item.Receive()), S_OK);
  EXPECT_TRUE(SameObject(item.get(), binding.get()));

  AddNamed(collection.get(), {L"a"}, object.get());
  collection->Add(nullptr, object.get(), nullptr, 0);
  SmartPtr<IString> name;
  EXPECT_EQ(collection->get_ItemName(1, name.Receive()), E_FAIL) << "unnamed";
  SmartPtr<IUnknown> attached;
  EXPECT_EQ(collection->get_ItemAttached(0, attached.Receive()), E_FAIL);
  EXPECT_EQ(collection->put_ItemAttached(0, object.get()), S_OK);
  EXPECT_EQ(collection->get_ItemAttached(0, attached.Receive()), S_OK);
  EXPECT_TRUE(SameObject(attached.get(), object.get()));
  EXPECT_EQ(collection->cLock(), S_OK);  // with auto-locking off, cLock does nothing
  EXPECT_EQ(collection->IsCollectionLocked(), 1);
  EXPECT_EQ(collection->cUnlock(), S_OK);
}

// Collections shared between threads: callers bracket their changes with CollectionLock/CollectionUnlock, and
// while a caller holds the lock both templates must report it as locked, whatever the others do.
constexpr int kThreads = 4;
constexpr int kRounds = 3000;

// Each thread adds kRounds items inside the lock, checking the lock report each time; `locked` is the
// template's answer for "locked" (the two answer with opposite senses). The owner's lock is recursive, but the
// report is a flag, not a depth: after two locks and one unlock it says unlocked.
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

// Run once no other thread uses `collection`.
template <class Collection>
void ExpectLockReportIsAFlag(Collection* collection, HRESULT locked) {
  const HRESULT unlocked = locked ? 0 : 1;
  EXPECT_EQ(collection->IsCollectionLocked(), unlocked) << "unlocked at the end";
  collection->CollectionLock();
  collection->CollectionLock();
  collection->CollectionUnlock();
  EXPECT_EQ(collection->IsCollectionLocked(), unlocked) << "a flag, not a depth";
  collection->CollectionUnlock();
}

// Beside the writers, a reader that does not take the lock: the range check made before locking reads the count
// while writers change it (well defined, and the answer is either a value or 0x80070057).
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
  ExpectLockReportIsAFlag(set.get(), 1);
}

TEST(CollectionThreads, NamedCollectionReportsItsLockWhileHeld) {
  SmartPtr<IInputParameter> item = NewBinding();
  SmartPtr<IInputParameters> collection = NewExactCollection();
  BracketAddsFromThreads(collection.get(), item.get(), 0);
  ExpectLockReportIsAFlag(collection.get(), 0);
}

}  // namespace
