// Tests of the named collection through "SuperCollection" (prefix lookup) and
// a whole-name owner of the same template.
#include "parameters/named_collection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "collection_test_support.h"

namespace {

using collection_test::CExactCollection;
using collection_test::IndexOfName;
using collection_test::NamesOf;
using collection_test::ScanFirst;
using test_support::MakeLong;
using test_support::MakeString;

SmartPtr<ISuperCollection> NewSuperCollection() { return CreateObjectAs<ISuperCollection>(L"SuperCollection"); }
SmartPtr<IParametersCreatable> NewParameters() { return CreateObjectAs<IParametersCreatable>(L"ParametersCreatable"); }

void AddNamed(ISuperCollection* collection, const std::vector<std::wstring>& names, IUnknown* object,
              int32_t firstFlags = 0) {
  int32_t flags = firstFlags;
  for (const std::wstring& name : names) ASSERT_EQ(collection->Add(MakeString(name).get(), object, nullptr, flags++), S_OK);
}

class NamedCollectionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    collection = NewSuperCollection();
    object = NewParameters();
    ASSERT_TRUE(collection);
    ASSERT_TRUE(object);
  }
  SmartPtr<ISuperCollection> collection;
  SmartPtr<IParametersCreatable> object;
};

TEST_F(NamedCollectionTest, AddRefusesNullAndUnverifiedObjects) {
  EXPECT_EQ(collection->Add(MakeString(L"x").get(), nullptr, nullptr, 0), E_POINTER);
  SmartPtr<CExactCollection> exact = NewObject<CExactCollection>();
  EXPECT_EQ(exact->Add(MakeString(L"x").get(), collection.get(), nullptr, 0), E_INVALIDARG);
  int32_t count = -1;
  exact->get_Count(&count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(exact->Add(MakeString(L"x").get(), object.get(), nullptr, 0), S_OK);
  EXPECT_EQ(exact->put_Item(0, collection.get()), E_INVALIDARG);  // refused: the item stays
  SmartPtr<IUnknown> item;
  ASSERT_EQ(exact->get_Item(0, item.Receive()), S_OK);
  EXPECT_TRUE(SameObject(item.get(), object.get()));
}

TEST_F(NamedCollectionTest, SlotsGrowBy1024AndKeepEveryItem) {
  SmartPtr<CExactCollection> exact = NewObject<CExactCollection>();
  for (int32_t i = 0; i < 1025; ++i) {
    ASSERT_EQ(exact->Add(MakeString(L"n" + std::to_wstring(i)).get(), object.get(), nullptr, i), S_OK);
    if (i == 1023) {
      EXPECT_EQ(exact->Capacity(), 1024);
    }
  }
  EXPECT_EQ(exact->Capacity(), 2048);
  int32_t flags = 0;
  ASSERT_EQ(exact->get_ItemFlags(1024, &flags), S_OK);
  EXPECT_EQ(flags, 1024);
  EXPECT_EQ(IndexOfName(exact.get(), L"N1024"), 1024);
  EXPECT_EQ(IndexOfName(exact.get(), L"n0"), 0);
}

TEST_F(NamedCollectionTest, NameLookupRules) {
  AddNamed(collection.get(), {L"abc", L"Ab", L"x", L"ab"}, object.get());
  SmartPtr<CExactCollection> exact = NewObject<CExactCollection>();
  for (const wchar_t* name : {L"abc", L"Ab", L"x", L"ab"}) exact->Add(MakeString(name).get(), object.get(), nullptr, 0);

  struct Case {
    const wchar_t* key;
    int32_t prefixIndex;  // SuperCollection
    int32_t exactIndex;   // whole names
  };
  const Case cases[] = {
      {L"Ab", 0, 1},       // a prefix finds the longer first name; whole names need the length
      {L"AB", 0, 1},       // duplicates: the first in collection order
      {L"abc", 0, 0},
      {L"abcd", 65535, 65535},  // unknown names report 65535, not -1
      {L"y", 65535, 65535},
      {L"", 65535, 65535},
      {L"X", 2, 2},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IndexOfName(collection.get(), c.key), c.prefixIndex) << "prefix key " << c.key;
    EXPECT_EQ(IndexOfName(exact.get(), c.key), c.exactIndex) << "whole key " << c.key;
  }
}

TEST_F(NamedCollectionTest, LookupByVariantAndObject) {
  SmartPtr<ISuperCollection> other = NewSuperCollection();
  ASSERT_EQ(collection->Add(MakeString(L"a").get(), other.get(), nullptr, 0), S_OK);
  ASSERT_EQ(collection->Add(MakeString(L"b").get(), object.get(), other.get(), 0), S_OK);
  int32_t index = -2;
  EXPECT_EQ(collection->get_Index(MakeLong(7).get(), &index), S_OK);  // a number is the index, unchecked
  EXPECT_EQ(index, 7);
  SmartPtr<IVariant> holder = test_support::MakeVariant();
  holder->Assign(object.get());
  EXPECT_EQ(collection->get_Index(holder.get(), &index), S_OK);
  EXPECT_EQ(index, 1);
  SmartPtr<IVariant> unknown = test_support::MakeVariant();
  unknown->Assign(NewParameters().get());
  EXPECT_EQ(collection->get_Index(unknown.get(), &index), E_FAIL);
  EXPECT_EQ(index, -1);  // an unknown object reports -1
  EXPECT_EQ(collection->get_Index(test_support::MakeText(L"B").get(), &index), S_OK);
  EXPECT_EQ(index, 1);
  EXPECT_EQ(collection->get_Index(nullptr, &index), E_FAIL);
  EXPECT_EQ(index, -1);

  EXPECT_EQ(collection->get_ItemIndex(object.get(), &index), S_OK);
  EXPECT_EQ(index, 1);
  EXPECT_EQ(collection->get_IndexAttached(other.get(), &index), S_OK);
  EXPECT_EQ(index, 1);
  index = 42;
  EXPECT_EQ(collection->get_ItemIndex(unknown.get(), &index), E_FAIL);
  EXPECT_EQ(index, 42);  // untouched
}

TEST_F(NamedCollectionTest, QueryCountsAnsweringItems) {
  SmartPtr<ISuperCollection> plain = NewSuperCollection();
  // Items 0 and 2 are parameter sets, 1 and 3 are not; item 3 carries one attached.
  collection->Add(nullptr, object.get(), nullptr, 0);
  collection->Add(nullptr, plain.get(), nullptr, 0);
  collection->Add(nullptr, object.get(), nullptr, 0);
  collection->Add(nullptr, plain.get(), object.get(), 0);

  struct Case {
    int32_t nth;
    int16_t useAttached;
    HRESULT result;
    int32_t index;
  };
  const Case cases[] = {
      {0, 0, S_OK, 0}, {1, 0, S_OK, 2}, {-1, 0, S_OK, 2}, {2, 0, E_FAIL, 2}, {0, 1, S_OK, 3}, {-1, 1, S_OK, 3},
  };
  for (const Case& c : cases) {
    int32_t index = -7;
    EXPECT_EQ(collection->Query(IID_IParameters, c.nth, c.useAttached, &index), c.result) << c.nth;
    EXPECT_EQ(index, c.index) << c.nth << " attached " << c.useAttached;
  }
  int32_t index = -7;
  EXPECT_EQ(NewSuperCollection()->Query(IID_IParameters, -1, 0, &index), E_FAIL);
}

TEST_F(NamedCollectionTest, InsertPlacesOrAppends) {
  AddNamed(collection.get(), {L"a", L"b"}, object.get());
  struct Case {
    int32_t index;
    std::vector<std::wstring> expected;
  };
  const Case cases[] = {
      {0, {L"x", L"a", L"b"}},
      {1, {L"a", L"x", L"b"}},
      {2, {L"a", L"b", L"x"}},  // equal to the new count - 1: already there
      {3, {L"a", L"b", L"x"}},  // at or past the new count: stays appended
      {-1, {L"a", L"b", L"x"}},
  };
  for (const Case& c : cases) {
    SmartPtr<ISuperCollection> fresh = NewSuperCollection();
    AddNamed(fresh.get(), {L"a", L"b"}, object.get());
    EXPECT_EQ(fresh->Insert(c.index, MakeString(L"x").get(), object.get(), nullptr, 9), S_OK);
    EXPECT_EQ(NamesOf(fresh.get()), c.expected) << c.index;
    EXPECT_EQ(IndexOfName(fresh.get(), L"x"),
              std::find(c.expected.begin(), c.expected.end(), L"x") - c.expected.begin());
  }
}

TEST_F(NamedCollectionTest, RemoveAndClear) {
  AddNamed(collection.get(), {L"a", L"b", L"c"}, object.get(), 10);
  EXPECT_EQ(collection->Remove(3), E_INVALIDARG);
  EXPECT_EQ(collection->Remove(0), S_OK);
  EXPECT_EQ(NamesOf(collection.get()), (std::vector<std::wstring>{L"b", L"c"}));
  EXPECT_EQ(IndexOfName(collection.get(), L"c"), 1);
  EXPECT_EQ(IndexOfName(collection.get(), L"a"), 65535);
  int32_t flags = 0;
  collection->get_ItemFlags(1, &flags);
  EXPECT_EQ(flags, 12);
  uint32_t before = test_support::RefCountOf(object.get());
  EXPECT_EQ(collection->CollectionClear(), S_OK);
  EXPECT_EQ(test_support::RefCountOf(object.get()), before - 2);
  EXPECT_EQ(IndexOfName(collection.get(), L"b"), 65535);
  AddNamed(collection.get(), {L"b"}, object.get());
  EXPECT_EQ(IndexOfName(collection.get(), L"b"), 0);
}

TEST_F(NamedCollectionTest, SortOrders) {
  struct Case {
    int32_t flags;
    std::vector<std::wstring> expected;
  };
  const Case cases[] = {
      {0, {L"a", L"AA", L"b", L"ccc"}},
      {kSortDescending, {L"ccc", L"b", L"AA", L"a"}},
      {kSortByNameLength, {L"a", L"b", L"AA", L"ccc"}},
      {kSortByNameLength | kSortDescending, {L"ccc", L"AA", L"b", L"a"}},
  };
  for (const Case& c : cases) {
    SmartPtr<ISuperCollection> fresh = NewSuperCollection();
    AddNamed(fresh.get(), {L"ccc", L"b", L"AA", L"a"}, object.get());
    EXPECT_EQ(fresh->Sort(c.flags, nullptr), S_OK);
    EXPECT_EQ(NamesOf(fresh.get()), c.expected) << c.flags;
    for (const wchar_t* key : {L"a", L"AA", L"b", L"ccc"})
      EXPECT_EQ(IndexOfName(fresh.get(), key), ScanFirst(c.expected, key, false, 65535)) << c.flags << key;
  }
}

int ByNameDescending(const void* a, const void* b) {
  return -INamedCollectionImpl<CExactCollection, ISuperCollection, IParameters>::COLLECTIONCompareByName(a, b);
}

// "afz" is not a prefix of any name, so a scan does not find it; the sorted
// binary search stops at "af" because it compares only over the shorter
// length. That answer shows whether the binary search is on.
TEST_F(NamedCollectionTest, SortedModeFollowsAddRenameAndOrder) {
  const std::vector<std::wstring> names = {L"ak", L"aj", L"ai", L"ah", L"ag", L"af", L"ae", L"ad", L"ac", L"ab", L"aa"};
  SmartPtr<CExactCollection> exact = NewObject<CExactCollection>();
  AddNamed(collection.get(), names, object.get());
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 65535);
  collection->Sort(0, nullptr);
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 5);  // binary search on
  collection->Rename(0, MakeString(L"a").get());
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 5);  // Rename keeps it on
  collection->Add(MakeString(L"zz").get(), object.get(), nullptr, 0);
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 65535);  // Add turns it off
  collection->Sort(0, nullptr);
  collection->Insert(0, MakeString(L"zz").get(), object.get(), nullptr, 0);
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 65535);  // so does Insert
  collection->Sort(kSortDescending, nullptr);
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 65535);  // a reversed order never enables it
  collection->Sort(0, reinterpret_cast<void*>(&ByNameDescending));
  EXPECT_EQ(NamesOf(collection.get()).front(), L"zz");
  EXPECT_EQ(IndexOfName(collection.get(), L"afz"), 65535);  // nor does a caller's comparison

  AddNamed(exact.get(), names, object.get());
  exact->Sort(0, nullptr);
  EXPECT_EQ(exact->Sorted(), 1);
  exact->Remove(0);
  EXPECT_EQ(exact->Sorted(), 1);  // a removal keeps the order
  // With whole names, a stretch match of other length moves the bounds past mid;
  // the tail scan's first prefix match of other length sets the index but fails.
  int32_t index = -2;
  EXPECT_EQ(exact->get_Index(MakeString(L"a").get(), &index), E_FAIL);
  EXPECT_EQ(index, 0);
  EXPECT_EQ(IndexOfName(exact.get(), L"AG"), 5);
}

// With unique names of one length, the binary search must find exactly what a scan finds.
TEST_F(NamedCollectionTest, SortedBinarySearchAgreesWithScanOnRandomSets) {
  std::mt19937 random(20240611);
  const std::wstring letters = L"abcdefghABCDEFGH_0";
  auto randomName = [&] {
    std::wstring name;
    for (int i = 0; i < 4; ++i) name += letters[random() % letters.size()];
    return name;
  };
  for (int round = 0; round < 40; ++round) {
    SmartPtr<CExactCollection> exact = NewObject<CExactCollection>();
    SmartPtr<ISuperCollection> prefix = NewSuperCollection();
    std::vector<std::wstring> folded;
    int32_t size = 1 + static_cast<int32_t>(random() % 300);
    while (static_cast<int32_t>(folded.size()) < size) {
      std::wstring name = randomName();
      std::wstring key = name;
      for (wchar_t& c : key) c = collection_test::FoldForTest(c);
      if (std::find(folded.begin(), folded.end(), key) != folded.end()) continue;
      folded.push_back(key);
      exact->Add(MakeString(name).get(), object.get(), nullptr, 0);
      prefix->Add(MakeString(name).get(), object.get(), nullptr, 0);
    }
    exact->Sort(round % 2 ? kSortByNameLength : 0, nullptr);
    prefix->Sort(0, nullptr);
    ASSERT_EQ(exact->Sorted(), 1);
    std::vector<std::wstring> exactNames = NamesOf(exact.get());
    std::vector<std::wstring> prefixNames = NamesOf(prefix.get());
    for (int probe = 0; probe < 60; ++probe) {
      std::wstring key = probe % 2 ? exactNames[random() % exactNames.size()] : randomName();
      if (probe % 3 == 0) std::transform(key.begin(), key.end(), key.begin(), ::towupper);
      EXPECT_EQ(IndexOfName(exact.get(), key), ScanFirst(exactNames, key, true, 65535)) << key;
      EXPECT_EQ(IndexOfName(prefix.get(), key), ScanFirst(prefixNames, key, false, 65535)) << key;
    }
  }
}

TEST_F(NamedCollectionTest, LockSenseAndLocklessFlags) {
  EXPECT_EQ(collection->IsCollectionLocked(), 1);  // 1 means unlocked here
  EXPECT_EQ(collection->CollectionLock(), S_OK);
  EXPECT_EQ(collection->IsCollectionLocked(), 0);
  EXPECT_EQ(collection->CollectionUnlock(), S_OK);
  EXPECT_EQ(collection->IsCollectionLocked(), 1);
  // With auto-locking off, cLock does nothing.
  EXPECT_EQ(collection->cLock(), S_OK);
  EXPECT_EQ(collection->IsCollectionLocked(), 1);
  EXPECT_EQ(collection->cUnlock(), S_OK);
  EXPECT_EQ(collection->put_ItemFlags(0, 1), E_INVALIDARG);
}

TEST_F(NamedCollectionTest, ItemPartsAndNullOutputs) {
  AddNamed(collection.get(), {L"a"}, object.get());
  collection->Add(nullptr, object.get(), nullptr, 0);
  SmartPtr<IString> name;
  EXPECT_EQ(collection->get_ItemName(1, name.Receive()), E_FAIL);
  EXPECT_EQ(collection->get_ItemName(0, nullptr), E_POINTER);
  EXPECT_EQ(collection->get_ItemName(2, name.Receive()), E_INVALIDARG);
  SmartPtr<IUnknown> attached;
  EXPECT_EQ(collection->get_ItemAttached(0, attached.Receive()), E_FAIL);
  EXPECT_EQ(collection->put_ItemAttached(0, object.get()), S_OK);
  EXPECT_EQ(collection->get_ItemAttached(0, attached.Receive()), S_OK);
  EXPECT_TRUE(SameObject(attached.get(), object.get()));
  EXPECT_EQ(collection->get_Item(-1, attached.Receive()), E_INVALIDARG);
  EXPECT_EQ(collection->get_Count(nullptr), E_POINTER);
  EXPECT_EQ(collection->Save(nullptr, 0), E_NOTIMPL);
  EXPECT_EQ(collection->Rename(1, MakeString(L"late").get()), S_OK);
  EXPECT_EQ(IndexOfName(collection.get(), L"LATE"), 1);
}

}  // namespace
