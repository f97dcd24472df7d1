// Tests of the parameter set through "ParametersCreatable", as a host uses it:
// values, Set modes, Copy, Sort, range checks, the interfaces it answers and
// Find's conditions. Key lookups are tested in name_index_test.
#include <gtest/gtest.h>

#include "persistence_test_support.h"

namespace {

using namespace persistence_test;

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

TEST_F(ParameterSetTest, RangeChecksAndRemoval) {
  AddLongs(set.get(), {{L"a", 1}, {L"b", 2}, {L"c", 3}});
  for (int32_t index : {-1, 3}) {
    EXPECT_EQ(set->Rename(index, MakeString(L"x").get()), E_INVALIDARG) << index;
    EXPECT_EQ(set->Remove(index), E_INVALIDARG) << index;
    EXPECT_EQ(set->put_Item(index, MakeLong(1).get()), E_INVALIDARG) << index;
    EXPECT_EQ(set->Iterate(index, nullptr, nullptr, nullptr, nullptr), E_INVALIDARG) << index;
  }
  EXPECT_EQ(set->Remove(0), S_OK);
  EXPECT_EQ(set->Rename(1, MakeString(L"d").get()), S_OK);
  EXPECT_EQ(NamesOf(set.get()), (std::vector<std::wstring>{L"b", L"d"}));
  EXPECT_EQ(LongAt(set.get(), 1), 3);
  EXPECT_EQ(set->RemoveAll(), S_OK);
  EXPECT_EQ(NamesOf(set.get()).size(), 0u);
}

// One set under each identity; the property pages it names; its values released with it.
TEST_F(ParameterSetTest, IdentitiesPagesAndReferences) {
  for (const IID* iid : {&IID_IParameters, &IID_INamedCollection}) {
    SmartPtr<IUnknown> answer;
    ASSERT_EQ(set->QueryInterface(*iid, answer.ReceiveVoid()), S_OK);
    EXPECT_EQ(static_cast<void*>(answer.get()), static_cast<void*>(set.get()));
  }
  SmartPtr<INamedCollection> list;
  ASSERT_EQ(QueryAs<IUIPropertyPageSpecify>(set.get())->GetPages(0, list.Receive(), nullptr), S_OK);
  EXPECT_EQ(NamesOf(list.get()),
            (std::vector<std::wstring>{L"UIPropPages.UIParametersPropPage", L"UIPropPages.UIFileArchivePropPage"}));

  SmartPtr<IVariant> value = MakeLong(1);
  SmartPtr<IParametersCreatable> descriptor = NewParameters();
  const uint32_t valueRefs = RefCountOf(value.get()), descriptorRefs = RefCountOf(descriptor.get());
  set->Add(MakeString(L"a").get(), value.get(), descriptor.get(), 0);
  EXPECT_EQ(RefCountOf(value.get()), valueRefs + 1);
  set.Reset();
  EXPECT_EQ(RefCountOf(value.get()), valueRefs);
  EXPECT_EQ(RefCountOf(descriptor.get()), descriptorRefs);
}

// Saving through IDataPersist picks the layout by the stream's kind; without
// settings the XML is lean. A byte stream gets nothing and loads nothing.
TEST_F(ParameterSetTest, PersistByStreamKind) {
  set->Add(MakeString(L"c").get(), MakeLong(0x00332211).get(), nullptr, 0x23);
  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(set.get());
  EXPECT_EQ(LeanXMLOf([&](IDataStream* xml) { persist->Save(xml, 0); }), L"<c>#112233</c>");
  SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
  EXPECT_EQ(persist->Save(bytes.get(), 0), S_OK);
  EXPECT_EQ(BytesOf(bytes.get()), "");
  EXPECT_EQ(persist->Load(bytes.get(), 0), E_NOTIMPL);
  EXPECT_EQ(set->Params_LoadXML(bytes.get(), kLoadReplace, 0), S_OK) << "ignored";
  EXPECT_EQ(set->Params_LoadXML(nullptr, kLoadReplace, 0), S_OK);

  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  ASSERT_EQ(persist->Save(folder.get(), 0), S_OK);
  SmartPtr<IParametersCreatable> loaded = NewParameters();
  loaded->Add(MakeString(L"stale").get(), MakeLong(1).get(), nullptr, 0);
  EXPECT_EQ(QueryAs<IDataPersist>(loaded.get())->Load(folder.get(), 0), S_OK);
  EXPECT_EQ(NamesOf(static_cast<IParameters*>(loaded.get())), (std::vector<std::wstring>{L"c"})) << "replace mode";
  EXPECT_EQ(NamesOf(static_cast<IParameters*>(set.get())), (std::vector<std::wstring>{L"c"}));
  int32_t loadedMarker = 0;
  QueryAs<IFileArchive>(loaded.get())->Inquire(1, &loadedMarker);
  EXPECT_EQ(loadedMarker, 1);
}

TEST(ParametersCreatableTest, FindConditions) {
  struct Case {
    const wchar_t* condition;
    SmartPtr<IVariant> value;  // of the parameter "Speed", or "Mode" when the condition names it
    HRESULT expected;
  };
  const Case cases[] = {
      {L"Speed >= 10", MakeLong(10), S_OK},
      {L"Speed > 10", MakeLong(10), E_FAIL},
      {L"Speed<10.5", MakeDouble(10.4), S_OK},
      {L"Speed != 10", MakeLong(10), E_FAIL},
      {L"Speed!9", MakeLong(10), E_FAIL},
      {L"Speed == 10", MakeText(L"10"), S_OK},
      {L"Speed=10+-5%", MakeDouble(10.4), S_OK},
      {L"Speed=10+-5%", MakeDouble(10.6), E_FAIL},
      {L"Speed=0+-5%", MakeDouble(0.04), S_OK},
      {L"Speed=10+-1", MakeDouble(8.9), E_FAIL},
      {L"SPEED=10", MakeLong(10), S_OK},
      {L"Nope=10", MakeLong(10), E_FAIL},
      {L" Speed\t= 10 ", MakeLong(10), S_OK},
      {L"Speed=", MakeLong(10), E_FAIL},
      {L"Mode='auto'", MakeText(L"auto mode"), S_OK},
      {L"Mode='auto'", MakeText(L"automatic"), E_FAIL},
      {L"Mode=\"auto\"", MakeText(L"x auto,y"), S_OK},
      {L"Mode!='auto'", MakeText(L"automatic"), S_OK},
      {L"Mode=uto", MakeText(L"automatic"), S_OK},
      {L"Mode=1234567890", MakeText(L"1234567890"), S_OK},
      {L"atic", MakeText(L"automatic"), S_OK},
      {L"=atic", MakeText(L"automatic"), E_FAIL},
  };
  for (const Case& c : cases) {
    const bool text = std::wstring(c.condition).find(L"ode") != std::wstring::npos;
    SmartPtr<IParametersCreatable> set = NewParameters();
    set->Add(MakeString(L"Other").get(), MakeLong(0).get(), nullptr, 0);
    set->Add(MakeString(text ? L"Mode" : L"Speed").get(), c.value.get(), nullptr, 0);
    EXPECT_EQ(QueryAs<IPMSearch>(set.get())->Find(MakeString(c.condition).get(), 0, nullptr), c.expected)
        << c.condition;
  }
  EXPECT_EQ(QueryAs<IPMSearch>(NewParameters().get())->Find(MakeString(L"a").get(), 0, nullptr), E_FAIL);
}

}  // namespace
