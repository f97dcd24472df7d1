// Lookups of both collection templates: each key form's rules side by side, indexed and sorted name lookups
// against a first-match scan after random changes, and a name string changed in place.
#include "parameters/name_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <random>
#include <set>
#include <type_traits>

#include "collection_test_support.h"

namespace {

using namespace collection_test;

constexpr int32_t kUntouched = -7;

// A string that answers IString only, as a foreign module's might: it cannot report changes of its text. Lives
// on the stack of its test.
struct FixedString : IString {
  explicit FixedString(std::wstring initial) : text(std::move(initial)) {}
  HRESULT QueryInterface(const IID& iid, void** out) override {
    *out = (iid == IID_IUnknown || iid == IID_IString) ? this : nullptr;
    return *out ? S_OK : E_NOINTERFACE;
  }
  uint32_t AddRef() override { return 2; }
  uint32_t Release() override { return 1; }
  HRESULT GetBuffer(const wchar_t** buffer, int32_t* length) override {
    *buffer = text.c_str();
    *length = static_cast<int32_t>(text.size());
    return S_OK;
  }
  std::wstring text;
};

// A lookup key and how a failure names it.
struct Key { std::wstring label; SmartPtr<IUnknown> key; };
Key Name(const std::wstring& text) { return {L"name '" + text + L"'", SmartPtr<IUnknown>(MakeString(text).get())}; }
Key Holding(const std::wstring& label, IUnknown* object) {
  return {L"variant holding " + label, SmartPtr<IUnknown>(MakeHolding(object).get())};
}

// The same items in a prefix collection, a whole-name collection and a parameter set: five names (two equal but
// for case), then an unnamed item whose object (the set: value) is `held`. The set's first and third parameters
// carry `held` and `filler` as descriptors.
TEST(LookupTest, KeyFormsInEachCollection) {
  SmartPtr<IInputParameter> filler = NewBinding(), held = NewBinding();
  SmartPtr<IParametersCreatable> set = NewParameters();
  SmartPtr<ISuperCollection> prefix = NewSuperCollection();
  SmartPtr<IInputParameters> whole = NewExactCollection();
  const std::vector<std::wstring> names = {L"abc", L"Ab", L"x", L"ab", L"\u00c9t\u00e9"};
  AddNamed(prefix.get(), names, filler.get());
  AddNamed(whole.get(), names, filler.get());
  AddNamed(set.get(), names, MakeLong(1).get());
  prefix->Add(nullptr, held.get(), nullptr, 0);
  whole->Add(nullptr, held.get(), nullptr, 0);
  set->Add(nullptr, held.get(), nullptr, 0);
  set->put_ItemDescriptor(0, held.get());
  set->put_ItemDescriptor(2, filler.get());
  INamedCollection* const collections[] = {prefix.get(), whole.get(), set.get()};

  struct Case { Key key; int32_t prefix, whole, set; } cases[] = {
      {Name(L"AB"), 0, 1, 1},  // a prefix finds the longer first name; duplicates give the first
      {Name(L"abc"), 0, 0, 0},
      {Name(L"a"), 0, 65535, -1},         // only the prefix collection takes part of a name
      {Name(L"abcd"), 65535, 65535, -1},  // an unknown name is 65535 in the collections
      {Name(L""), 65535, 65535, -1}, {Name(L"\u00c9T\u00e9"), 4, 4, 4},
      {Name(L"\u00e9t\u00e9"), 65535, 65535, -1},  // only A-Z fold
      {{L"number 7", SmartPtr<IUnknown>(MakeLong(7).get())}, 7, 7, 7},  // the index itself, unchecked
      {{L"text variant X", SmartPtr<IUnknown>(MakeText(L"X").get())}, 2, 2, 2},
      {Holding(L"held", held.get()), 5, 5, 5},  // the set searches values before descriptors
      {Holding(L"filler", filler.get()), 0, 0, 2},
      {Holding(L"a stranger", NewParameters().get()), -1, -1, kUntouched},  // -1 in the collections
      {{L"null", SmartPtr<IUnknown>()}, -1, -1, -1},
  };
  for (const Case& c : cases) {
    const int32_t expected[] = {c.prefix, c.whole, c.set};
    for (int k = 0; k < 3; ++k) {
      int32_t index = kUntouched;
      const HRESULT result = collections[k]->get_Index(c.key.key.get(), &index);
      EXPECT_EQ(index, expected[k]) << "collection " << k << ", " << c.key.label;
      EXPECT_EQ(SUCCEEDED(result), expected[k] != -1 && expected[k] != 65535 && expected[k] != kUntouched)
          << "collection " << k << ", " << c.key.label;
    }
  }
}

// Random keys and names, by default short ones over a few letters, so that duplicates, case variants and
// prefixes of one another are frequent.
struct RandomNames {
  std::mt19937 random;
  std::wstring letters = L"aAbB_";
  int32_t minLength = 1, maxLength = 3;

  int32_t Below(int32_t bound) { return static_cast<int32_t>(random() % static_cast<uint32_t>(bound)); }
  std::wstring Key() {
    std::wstring text;
    for (int32_t i = 0, n = minLength + Below(maxLength - minLength + 1); i < n; ++i)
      text += letters[static_cast<size_t>(Below(static_cast<int32_t>(letters.size())))];
    return text;
  }
  // One name in ten is missing.
  SmartPtr<ICreatableString> Name() { return Below(10) == 0 ? SmartPtr<ICreatableString>() : MakeString(Key()); }
};

constexpr int kSteps = 1500;

// Random changes, in-place edits of name texts among them, each followed by lookups of random keys that must
// agree with a first-match scan of the current names. A collection is sorted only in orders that leave its
// binary search off (by length, descending, or by the caller's comparison).
template <class Collection>
void RunRandomChanges(Collection* collection, bool whole, int32_t notFound, IUnknown* object, uint32_t seed) {
  constexpr bool kIsSet = std::is_base_of_v<IParameters, Collection>;
  RandomNames names{std::mt19937(seed)};
  for (int step = 0; step < kSteps; ++step) {
    int32_t count = 0;
    collection->get_Count(&count);
    const int32_t index = names.Below(count + 2) - 1;  // sometimes out of range
    switch (names.Below(count > 60 ? 8 : 6)) {
      case 0:
      case 1: collection->Add(names.Name().get(), object, nullptr, 0); break;
      case 2:
        if constexpr (kIsSet)
          collection->Set(MakeString(names.Key()).get(), object, nullptr, 0, 0);
        else
          collection->Insert(index, names.Name().get(), object, nullptr, 0);
        break;
      case 3: collection->Rename(index, names.Name().get()); break;
      case 4:
        if constexpr (kIsSet)
          collection->Sort(names.Below(2) ? kSortDescending : 0);
        else if (names.Below(3) == 0)
          collection->Sort(0, reinterpret_cast<void*>(&ByLengthDescending));
        else
          collection->Sort(kSortByNameLength | (names.Below(2) ? kSortDescending : 0), nullptr);
        break;
      case 5: {  // a holder changes a name's text in place, which is not a rename
        SmartPtr<IString> name;
        collection->get_ItemName(index, name.Receive());
        if (SmartPtr<ICreatableString> text = QueryAs<ICreatableString>(name.get()))
          text->SetText(Ref(names.Key()));
        break;
      }
      case 6: collection->Remove(index); break;
      case 7:
        if (names.Below(10) != 0)
          collection->Remove(index);
        else if constexpr (kIsSet)
          collection->RemoveAll();
        else
          collection->CollectionClear();
        break;
    }
    const std::vector<std::wstring> current = NamesOf(collection);
    for (int probe = 0; probe < 4; ++probe) {
      const std::wstring key = names.Key();
      ASSERT_EQ(IndexOfName(collection, key), ScanFirst(current, key, whole, notFound))
          << "key " << key << " at step " << step << " of " << current.size() << " items";
    }
  }
}

TEST(NameIndexTest, LookupsMatchScanAfterRandomChanges) {
  SmartPtr<IParametersCreatable> object = NewParameters();
  for (uint32_t seed : {1u, 2u, 3u}) RunRandomChanges(NewSuperCollection().get(), false, 65535, object.get(), seed);
  SmartPtr<IInputParameter> binding = NewBinding();
  for (uint32_t seed : {4u, 5u}) RunRandomChanges(NewExactCollection().get(), true, 65535, binding.get(), seed);
  for (uint32_t seed : {6u, 7u, 8u}) RunRandomChanges(NewParameters().get(), true, -1, MakeLong(1).get(), seed);
}

// With unique names of one length, the binary search after a name sort must find exactly what a scan finds.
TEST(NameIndexTest, SortedBinarySearchMatchesScan) {
  SmartPtr<IInputParameter> object = NewBinding();
  RandomNames names{std::mt19937(20240611), L"abcdefghABCDEFGH_0", 4, 4};
  for (int round = 0; round < 40; ++round) {
    SmartPtr<IInputParameters> whole = NewExactCollection();
    SmartPtr<ISuperCollection> prefix = NewSuperCollection();
    std::set<std::wstring> folded;
    for (size_t size = 1 + static_cast<size_t>(names.Below(300)); folded.size() < size;) {
      const std::wstring name = names.Key();
      std::wstring key = name;
      std::transform(key.begin(), key.end(), key.begin(), FoldForTest);
      if (!folded.insert(key).second) continue;
      whole->Add(MakeString(name).get(), object.get(), nullptr, 0);
      prefix->Add(MakeString(name).get(), object.get(), nullptr, 0);
    }
    whole->Sort(0, nullptr);
    prefix->Sort(0, nullptr);
    const std::vector<std::wstring> wholeNames = NamesOf(whole.get()), prefixNames = NamesOf(prefix.get());
    for (int probe = 0; probe < 60; ++probe) {
      std::wstring key = probe % 2 ? wholeNames[static_cast<size_t>(names.Below(int32_t(folded.size())))] : names.Key();
      if (probe % 3 == 0) std::transform(key.begin(), key.end(), key.begin(), ::towupper);
      EXPECT_EQ(IndexOfName(whole.get(), key), ScanFirst(wholeNames, key, true, 65535)) << key;
      EXPECT_EQ(IndexOfName(prefix.get(), key), ScanFirst(prefixNames, key, false, 65535)) << key;
    }
  }
}

// A name string changed in place is not a rename, but every lookup answers from the current texts (the
// randomized test edits framework strings in place); a name that cannot report its changes is scanned for.
TEST(NameIndexTest, NameThatCannotReportChangesIsNeverAnsweredWrongly) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  SmartPtr<ISuperCollection> collection = NewSuperCollection();
  FixedString silent(L"omega");
  set->Add(&silent, MakeLong(3).get(), nullptr, 0);
  AddNamed(set.get(), {L"alpha", L"gamma"}, MakeLong(1).get());
  collection->Add(&silent, set.get(), nullptr, 0);
  AddNamed(collection.get(), {L"gamma"}, set.get());
  EXPECT_EQ(IndexOfName(set.get(), L"omega"), 0);
  EXPECT_EQ(IndexOfName(set.get(), L"gamma"), 2);
  EXPECT_EQ(IndexOfName(collection.get(), L"gam"), 1);
  silent.text = L"gamma";  // now equal to a later item's name: the earlier one wins
  EXPECT_EQ(IndexOfName(set.get(), L"omega"), -1);
  EXPECT_EQ(IndexOfName(set.get(), L"gamma"), 0);
  EXPECT_EQ(IndexOfName(collection.get(), L"gam"), 0);
  silent.text = L"alpha";
  EXPECT_EQ(IndexOfName(set.get(), L"gamma"), 2);
  EXPECT_EQ(IndexOfName(set.get(), L"alpha"), 0);
  EXPECT_EQ(IndexOfName(collection.get(), L"gam"), 1);
  set->RemoveAll();
  collection->CollectionClear();
}

}  // namespace
