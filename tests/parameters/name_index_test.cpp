// Indexed name lookups against a plain first-match scan, after random
// sequences of changes, for both collection templates; and what a lookup does
// when a name string is changed in place.
#include "parameters/name_index.h"

#include <gtest/gtest.h>

#include <random>

#include "collection_test_support.h"

namespace {

using collection_test::CExactCollection;
using collection_test::IndexOfName;
using collection_test::NamesOf;
using collection_test::ScanFirst;
using test_support::MakeLong;
using test_support::MakeString;

constexpr int kSteps = 1500;

// Short names over a small alphabet, so that duplicates, case variants and
// prefixes of one another are frequent; some items are unnamed.
class RandomNames {
 public:
  explicit RandomNames(uint32_t seed) : m_Random(seed) {}
  int32_t Below(int32_t bound) { return static_cast<int32_t>(m_Random() % static_cast<uint32_t>(bound)); }
  std::wstring Key() {
    static const wchar_t kLetters[] = L"aAbB_";
    std::wstring text;
    for (int32_t i = 0, length = 1 + Below(3); i < length; ++i) text += kLetters[Below(5)];
    return text;
  }
  SmartPtr<ICreatableString> Name() { return Below(10) == 0 ? SmartPtr<ICreatableString>() : MakeString(Key()); }

 private:
  std::mt19937 m_Random;
};

int ByLengthDescending(const void* a, const void* b) {
  return -INamedCollectionImpl<CExactCollection, ISuperCollection, IParameters>::COLLECTIONCompareByNameAndLength(a, b);
}

template <class Collection>
void ExpectLookupsMatchScan(Collection* collection, RandomNames& names, bool whole, int32_t notFound, int step) {
  std::vector<std::wstring> current = NamesOf(collection);
  for (int probe = 0; probe < 4; ++probe) {
    std::wstring key = names.Key();
    ASSERT_EQ(IndexOfName(collection, key), ScanFirst(current, key, whole, notFound))
        << "key " << key << " at step " << step << " of " << current.size() << " items";
  }
}

void RunNamedCollection(ISuperCollection* collection, bool whole, IUnknown* object, uint32_t seed) {
  RandomNames names(seed);
  for (int step = 0; step < kSteps; ++step) {
    int32_t count = 0;
    collection->get_Count(&count);
    switch (names.Below(count > 60 ? 7 : 5)) {
      case 0:
      case 1: collection->Add(names.Name().get(), object, nullptr, 0); break;
      case 2: collection->Insert(names.Below(count + 2) - 1, names.Name().get(), object, nullptr, 0); break;
      case 3: collection->Rename(names.Below(count + 1), names.Name().get()); break;
      case 4: {
        // Orders that leave the binary search off, so lookups stay first-match scans.
        const int32_t flags[] = {kSortDescending, kSortDescending | kSortByNameLength};
        if (names.Below(3) == 0)
          collection->Sort(0, reinterpret_cast<void*>(&ByLengthDescending));
        else
          collection->Sort(flags[names.Below(2)], nullptr);
        break;
      }
      case 5: collection->Remove(names.Below(count + 1)); break;
      case 6:
        if (names.Below(10) == 0)
          collection->CollectionClear();
        else
          collection->Remove(names.Below(count + 1));
        break;
    }
    ExpectLookupsMatchScan(collection, names, whole, 65535, step);
    if (::testing::Test::HasFatalFailure()) return;
  }
}

TEST(NameIndexTest, PrefixLookupsOfSuperCollectionMatchScan) {
  SmartPtr<IParametersCreatable> object = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  for (uint32_t seed : {1u, 2u, 3u}) {
    SmartPtr<ISuperCollection> collection = CreateObjectAs<ISuperCollection>(L"SuperCollection");
    RunNamedCollection(collection.get(), false, object.get(), seed);
  }
}

TEST(NameIndexTest, WholeNameLookupsOfNamedCollectionMatchScan) {
  SmartPtr<IParametersCreatable> object = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  for (uint32_t seed : {4u, 5u}) {
    SmartPtr<CExactCollection> collection = NewObject<CExactCollection>();
    RunNamedCollection(collection.get(), true, object.get(), seed);
  }
}

TEST(NameIndexTest, ParameterSetLookupsMatchScan) {
  for (uint32_t seed : {6u, 7u, 8u}) {
    SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
    RandomNames names(seed);
    for (int step = 0; step < kSteps; ++step) {
      int32_t count = 0;
      set->get_Count(&count);
      switch (names.Below(count > 60 ? 7 : 5)) {
        case 0: set->Add(names.Name().get(), MakeLong(step).get(), nullptr, 0); break;
        case 1: set->Set(MakeString(names.Key()).get(), MakeLong(step).get(), nullptr, 0, 0); break;
        case 2: set->Rename(names.Below(count + 1), names.Name().get()); break;
        case 3: set->Sort(names.Below(2) ? kSortDescending : 0); break;
        case 4:
        case 5: set->Remove(names.Below(count + 1)); break;
        case 6:
          if (names.Below(10) == 0) set->RemoveAll();
          break;
      }
      ExpectLookupsMatchScan(set.get(), names, true, -1, step);
      if (HasFatalFailure()) return;
    }
  }
}

// A name string changed in place is not a rename; a lookup that lands on the
// record notices, re-reads the names and answers from the current texts.
TEST(NameIndexTest, NameChangedInPlaceIsNeverAnsweredWrongly) {
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  SmartPtr<ISuperCollection> collection = CreateObjectAs<ISuperCollection>(L"SuperCollection");
  SmartPtr<ICreatableString> changing = MakeString(L"alpha");
  set->Add(changing.get(), MakeLong(1).get(), nullptr, 0);
  set->Add(MakeString(L"gamma").get(), MakeLong(2).get(), nullptr, 0);
  collection->Add(changing.get(), set.get(), nullptr, 0);
  EXPECT_EQ(IndexOfName(set.get(), L"alpha"), 0);
  EXPECT_EQ(IndexOfName(collection.get(), L"al"), 0);

  changing->SetText(RefOf(L"beta"));
  EXPECT_EQ(IndexOfName(set.get(), L"alpha"), -1);
  EXPECT_EQ(IndexOfName(set.get(), L"beta"), 0);
  EXPECT_EQ(IndexOfName(collection.get(), L"al"), 65535);
  EXPECT_EQ(IndexOfName(collection.get(), L"be"), 0);

  changing->SetText(RefOf(L"gamma"));
  set->Rename(1, MakeString(L"delta").get());  // an update re-reads nothing else
  EXPECT_EQ(IndexOfName(set.get(), L"beta"), -1);
  EXPECT_EQ(IndexOfName(set.get(), L"gamma"), 0);
}

}  // namespace
