// Tests of the parameter set through "ParametersCreatable", as a host uses it.
// Key lookups and their index are tested in name_index_test, the lock sense in
// named_collection_test.
#include "parameters/parameter_set.h"

#include <gtest/gtest.h>

#include "collection_test_support.h"

namespace {

using namespace collection_test;

// An input binding whose get_Object hands out a fixed object (or fails without one).
class CFixedInput : public CObjectImpl<CFixedInput, IInputParameter> {
 public:
  static constexpr wchar_t kObjectName[] = L"FixedInput";
  static constexpr InterfaceEntry<CFixedInput> kInterfaces[] = {
      {&IID_IInputParameter, InterfaceOf<CFixedInput, IInputParameter>},
  };
  SmartPtr<IUnknown> bound;

  HRESULT get_Object(IUnknown** object) override {
    *object = nullptr;
    if (!bound) return E_ITEMNOTFOUND;
    bound.CopyTo(object);
    return 2;  // a binding reports the item's position on success
  }
  HRESULT get_IID(IID*) override { return E_NOTIMPL; }
  HRESULT put_IID(IID) override { return E_NOTIMPL; }
  HRESULT SetSource(IUnknown*, int32_t) override { return E_NOTIMPL; }
  HRESULT get_Name(IString**) override { return E_NOTIMPL; }
  HRESULT put_Name(IString*) override { return E_NOTIMPL; }
  HRESULT get_Source(IUnknown**) override { return E_NOTIMPL; }
  HRESULT put_Source(IUnknown*) override { return E_NOTIMPL; }
  HRESULT get_SourceIndex(int32_t*) override { return E_NOTIMPL; }
  HRESULT put_SourceIndex(int32_t) override { return E_NOTIMPL; }
  HRESULT get_AssignmentFlags(int32_t*) override { return E_NOTIMPL; }
  HRESULT put_AssignmentFlags(int32_t) override { return E_NOTIMPL; }
};

int32_t LongAt(IParameters* set, int32_t index) {
  SmartPtr<IVariant> value;
  if (set->get_ItemVariant(index, value.Receive()) < 0 || !value) return -999;
  return value->GetLong();
}

int32_t FlagsAt(IParameters* set, int32_t index) {
  int32_t flags = -1;
  set->get_ItemFlags(index, &flags);
  return flags;
}

void AddLongs(IParameters* set, const std::vector<std::pair<std::wstring, int32_t>>& items) {
  for (const auto& [name, value] : items) set->Add(MakeString(name).get(), MakeLong(value).get(), nullptr, 0);
}

class ParameterSetTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(set); }
  SmartPtr<IParametersCreatable> set = NewParameters();
};

TEST_F(ParameterSetTest, ValuesEnterAsVariants) {
  SmartPtr<IVariant> shared = MakeLong(5);
  SmartPtr<IParametersCreatable> plain = NewParameters();
  set->Add(MakeString(L"none").get(), nullptr, nullptr, 0);
  set->Add(MakeString(L"shared").get(), shared.get(), nullptr, 0);
  set->Add(MakeString(L"plain").get(), plain.get(), nullptr, 0);

  SmartPtr<IUnknown> item;
  ASSERT_EQ(set->get_Item(0, item.Receive()), S_OK);
  EXPECT_EQ(TextOf(QueryAs<IString>(item.get())), L"");  // a missing value is empty text
  SmartPtr<IVariant> value;
  ASSERT_EQ(set->get_ItemVariant(1, value.Receive()), S_OK);
  EXPECT_TRUE(SameObject(value.get(), shared.get()));  // variants are shared, not copied
  ASSERT_EQ(set->get_Item(1, item.Receive()), S_OK);
  EXPECT_TRUE(SameObject(item.get(), shared.get()));  // a number variant is handed out itself
  ASSERT_EQ(set->get_Item(2, item.Receive()), S_OK);
  EXPECT_TRUE(SameObject(item.get(), plain.get()));  // the wrapped object itself
  ASSERT_EQ(set->get_ItemVariant(2, value.Receive()), S_OK);
  EXPECT_FALSE(SameObject(value.get(), plain.get()));
  EXPECT_TRUE(value->IsObject());

  EXPECT_EQ(set->put_Item(0, nullptr), E_INVALIDARG);
  EXPECT_EQ(set->put_Item(0, MakeText(L"t").get()), S_OK);
  ASSERT_EQ(set->get_Item(0, item.Receive()), S_OK);
  EXPECT_EQ(TextOf(QueryAs<IString>(item.get())), L"t");
}

TEST_F(ParameterSetTest, InputBindingSuppliesTheValue) {
  SmartPtr<CFixedInput> input = NewObject<CFixedInput>();
  SmartPtr<IParametersCreatable> bound = NewParameters();
  set->Add(MakeString(L"x").get(), MakeLong(3).get(), static_cast<IInputParameter*>(input.get()), 0);
  SmartPtr<IVariant> value;
  EXPECT_EQ(set->get_ItemVariant(0, value.Receive()), S_OK);  // no bound object: the stored value
  EXPECT_EQ(value->GetLong(), 3);
  input->bound = SmartPtr<IUnknown>(static_cast<IParametersCreatable*>(bound.get()));
  EXPECT_EQ(set->get_ItemVariant(0, value.Receive()), S_FALSE);  // 1: taken from the binding
  EXPECT_TRUE(value->IsObject());
  SmartPtr<IUnknown> item;
  ASSERT_EQ(set->get_Item(0, item.Receive()), S_OK);
  EXPECT_TRUE(SameObject(item.get(), bound.get()));
}

TEST_F(ParameterSetTest, SetModesForAnExistingParameter) {
  struct Case { int16_t mode; bool descriptorKept; int32_t flags; } cases[] = {
      {0, true, 5}, {kSetClearDescriptor, false, 5}, {kSetWriteZeroFlags, true, 0}, {3, false, 0}};
  for (const Case& c : cases) {
    SmartPtr<IParametersCreatable> fresh = NewParameters();
    SmartPtr<IParametersCreatable> descriptor = NewParameters(), replacement = NewParameters();
    fresh->Add(MakeString(L"speed").get(), MakeLong(1).get(), descriptor.get(), 5);
    EXPECT_EQ(fresh->Set(MakeString(L"SPEED").get(), MakeLong(2).get(), nullptr, 0, c.mode), S_OK);
    SmartPtr<IUnknown> held;
    EXPECT_EQ(SUCCEEDED(fresh->get_ItemDescriptor(0, held.Receive())), c.descriptorKept) << c.mode;
    EXPECT_EQ(FlagsAt(fresh.get(), 0), c.flags) << c.mode;
    EXPECT_EQ(LongAt(fresh.get(), 0), 2) << c.mode;
    EXPECT_EQ(NamesOf(fresh.get()), std::vector<std::wstring>{L"speed"});
    // A given descriptor and non-zero flags replace the old ones in every mode.
    fresh->Set(MakeString(L"speed").get(), MakeLong(3).get(), replacement.get(), 9, c.mode);
    EXPECT_EQ(FlagsAt(fresh.get(), 0), 9);
    ASSERT_EQ(fresh->get_ItemDescriptor(0, held.Receive()), S_OK);
    EXPECT_TRUE(SameObject(held.get(), replacement.get()));
  }
}

TEST_F(ParameterSetTest, SetAddsUnderAnUnknownKey) {
  SmartPtr<ICreatableString> name = MakeString(L"new");
  EXPECT_EQ(set->Set(name.get(), MakeLong(1).get(), nullptr, 4, 0), S_OK);
  SmartPtr<IString> stored;
  ASSERT_EQ(set->get_ItemName(0, stored.Receive()), S_OK);
  EXPECT_TRUE(SameObject(stored.get(), name.get()));  // the key string itself is the name
  EXPECT_EQ(set->Set(MakeText(L"fromVariant").get(), MakeLong(2).get(), nullptr, 0, 0), S_OK);
  EXPECT_EQ(IndexOfName(set.get(), L"fromvariant"), 1);
  EXPECT_EQ(set->Set(MakeLong(7).get(), MakeLong(3).get(), nullptr, 0, 0), E_INVALIDARG);  // index 7 does not exist
  EXPECT_EQ(set->Set(NewParameters().get(), MakeLong(3).get(), nullptr, 0, 0), E_FAIL);
  EXPECT_EQ(set->Set(nullptr, MakeLong(3).get(), nullptr, 0, 0), E_FAIL);
  EXPECT_EQ(NamesOf(set.get()), (std::vector<std::wstring>{L"new", L"fromVariant"}));
}

TEST_F(ParameterSetTest, CopyMergesInSourceOrder) {
  SmartPtr<IParametersCreatable> source = NewParameters();
  SmartPtr<IParametersCreatable> descriptor = NewParameters();
  AddLongs(source.get(), {{L"a", 1}, {L"b", 2}});
  set->Add(MakeString(L"B").get(), MakeLong(20).get(), descriptor.get(), 7);
  AddLongs(set.get(), {{L"c", 30}});
  EXPECT_EQ(set->Copy(source.get()), S_OK);
  EXPECT_EQ(NamesOf(set.get()), (std::vector<std::wstring>{L"B", L"c", L"a"}));
  EXPECT_EQ(LongAt(set.get(), 0), 2);  // b takes the source's value, descriptor and flags
  SmartPtr<IUnknown> held;
  EXPECT_EQ(set->get_ItemDescriptor(0, held.Receive()), E_FAIL);
  EXPECT_EQ(FlagsAt(set.get(), 0), 0);
  EXPECT_EQ(LongAt(set.get(), 1), 30);
  // Values are copies: changing the source leaves the target alone.
  SmartPtr<IVariant> sourceValue;
  source->get_ItemVariant(0, sourceValue.Receive());
  sourceValue->SetLong(100);
  EXPECT_EQ(LongAt(set.get(), 2), 1);
  EXPECT_EQ(set->Copy(nullptr), S_OK);
  EXPECT_EQ(NamesOf(set.get()).size(), 3u);
}

TEST_F(ParameterSetTest, SortIsCaseSensitiveWithUnnamedFirst) {
  struct Case { int32_t flags; std::vector<std::wstring> expected; } cases[] = {
      {0, {L"<null>", L"A", L"B", L"a", L"ab", L"b"}},
      {kSortDescending, {L"b", L"ab", L"a", L"B", L"A", L"<null>"}},
  };
  for (const Case& c : cases) {
    SmartPtr<IParametersCreatable> fresh = NewParameters();
    AddLongs(fresh.get(), {{L"b", 1}, {L"a", 2}, {L"B", 3}, {L"ab", 4}, {L"A", 5}});
    fresh->Add(nullptr, MakeLong(6).get(), nullptr, 0);
    EXPECT_EQ(fresh->Sort(c.flags), S_OK);
    EXPECT_EQ(NamesOf(fresh.get()), c.expected) << c.flags;
  }
}

TEST_F(ParameterSetTest, IterateHandsOutEveryPart) {
  SmartPtr<IParametersCreatable> descriptor = NewParameters();
  set->Add(MakeString(L"p").get(), MakeLong(4).get(), descriptor.get(), 0x23);
  SmartPtr<IString> name;
  SmartPtr<IVariant> value;
  SmartPtr<IUnknown> held;
  int32_t flags = 0;
  ASSERT_EQ(set->Iterate(0, name.Receive(), value.Receive(), held.Receive(), &flags), S_OK);
  EXPECT_EQ(TextOf(name), L"p");
  EXPECT_EQ(value->GetLong(), 4);
  EXPECT_TRUE(SameObject(held.get(), descriptor.get()));
  EXPECT_EQ(flags, 0x23);
  EXPECT_EQ(set->Iterate(0, nullptr, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(set->Iterate(1, name.Receive(), nullptr, nullptr, nullptr), E_INVALIDARG);
}

TEST_F(ParameterSetTest, RangeChecksAndRemoval) {
  AddLongs(set.get(), {{L"a", 1}, {L"b", 2}, {L"c", 3}});
  for (int32_t index : {-1, 3}) {
    EXPECT_EQ(set->Rename(index, MakeString(L"x").get()), E_INVALIDARG) << index;
    EXPECT_EQ(set->Remove(index), E_INVALIDARG) << index;
    EXPECT_EQ(set->put_Item(index, MakeLong(1).get()), E_INVALIDARG) << index;
    EXPECT_EQ(set->put_ItemFlags(index, 1), E_INVALIDARG) << index;
    EXPECT_EQ(set->put_ItemDescriptor(index, nullptr), E_INVALIDARG) << index;
  }
  EXPECT_EQ(set->Remove(0), S_OK);
  EXPECT_EQ(set->Rename(1, MakeString(L"d").get()), S_OK);
  EXPECT_EQ(NamesOf(set.get()), (std::vector<std::wstring>{L"b", L"d"}));
  EXPECT_EQ(LongAt(set.get(), 1), 3);
  EXPECT_EQ(set->RemoveAll(), S_OK);
  EXPECT_EQ(NamesOf(set.get()).size(), 0u);
}

}  // namespace
