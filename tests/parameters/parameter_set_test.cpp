// Tests of the parameter set through "ParametersCreatable", as a host uses it: values, Set modes, Copy, Sort,
// the interfaces it answers and Find's conditions. Key lookups are tested in name_index_test.
#include <gtest/gtest.h>

#include "persistence_test_support.h"

namespace {

using namespace persistence_test;

using Rows = std::vector<std::wstring>;

TEST(ParameterSetTest, ValuesEnterAsVariants) {
  SmartPtr<IVariant> shared = MakeLong(5);
  SmartPtr<IParametersCreatable> plain = NewParameters();
  SmartPtr<IParametersCreatable> set = SetOf({{L"none", SmartPtr<IVariant>()}, {L"shared", shared}});
  set->Add(MakeString(L"plain").get(), plain.get(), nullptr, 0);
  SmartPtr<IUnknown> item;
  SmartPtr<IVariant> value;
  ASSERT_EQ(set->get_Item(0, item.Receive()), S_OK);
  EXPECT_EQ(TextOf(QueryAs<IString>(item.get())), L"") << "a missing value is empty text";
  set->get_ItemVariant(1, value.Receive());
  set->get_Item(1, item.Receive());
  EXPECT_TRUE(SameObject(value.get(), shared.get()) && SameObject(item.get(), shared.get())) << "shared, not copied";
  set->get_Item(2, item.Receive());
  set->get_ItemVariant(2, value.Receive());
  EXPECT_TRUE(SameObject(item.get(), plain.get())) << "the wrapped object itself";
  EXPECT_TRUE(value->IsObject() && !SameObject(value.get(), plain.get()));
  EXPECT_EQ(set->put_Item(0, nullptr), E_INVALIDARG);
  EXPECT_EQ(set->put_Item(0, MakeText(L"t").get()), S_OK);
  EXPECT_EQ(Describe(set.get())[0], L"none=t't'/0");
}

TEST(ParameterSetTest, SetModesForAnExistingParameter) {
  struct Case { int16_t mode; const wchar_t* expected; } cases[] = {
      {0, L"speed=i2/5+d"}, {kSetClearDescriptor, L"speed=i2/5"}, {kSetWriteZeroFlags, L"speed=i2/0+d"},
      {3, L"speed=i2/0"}};
  for (const Case& c : cases) {
    SmartPtr<IParametersCreatable> set = SetOf({{L"speed", MakeLong(1), 5, AsUnknown(NewParameters())}});
    EXPECT_EQ(set->Set(MakeString(L"SPEED").get(), MakeLong(2).get(), nullptr, 0, c.mode), S_OK);
    EXPECT_EQ(Describe(set.get()), Rows{c.expected}) << c.mode;
    // A given descriptor and non-zero flags replace the old ones in every mode.
    SmartPtr<IParametersCreatable> replacement = NewParameters();
    set->Set(MakeString(L"speed").get(), MakeLong(3).get(), replacement.get(), 9, c.mode);
    SmartPtr<IUnknown> held;
    set->get_ItemDescriptor(0, held.Receive());
    EXPECT_EQ(Describe(set.get()), Rows{L"speed=i3/9+d"}) << c.mode;
    EXPECT_TRUE(SameObject(held.get(), replacement.get())) << c.mode;
  }
}

TEST(ParameterSetTest, SetAddsUnderAnUnknownKey) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  SmartPtr<ICreatableString> name = MakeString(L"new");
  EXPECT_EQ(set->Set(name.get(), MakeLong(1).get(), nullptr, 4, 0), S_OK);
  SmartPtr<IString> stored;
  set->get_ItemName(0, stored.Receive());
  EXPECT_TRUE(SameObject(stored.get(), name.get())) << "the key string itself is the name";
  EXPECT_EQ(set->Set(MakeText(L"fromVariant").get(), MakeLong(2).get(), nullptr, 0, 0), S_OK);
  EXPECT_EQ(IndexOfName(set.get(), L"fromvariant"), 1);
  EXPECT_EQ(set->Set(MakeLong(7).get(), MakeLong(3).get(), nullptr, 0, 0), E_INVALIDARG);  // index 7 does not exist
  EXPECT_EQ(set->Set(NewParameters().get(), MakeLong(3).get(), nullptr, 0, 0), E_FAIL);
  EXPECT_EQ(set->Set(nullptr, MakeLong(3).get(), nullptr, 0, 0), E_FAIL);
  EXPECT_EQ(Describe(set.get()), (Rows{L"new=i1/4", L"fromVariant=i2/0"}));
}

// A known name takes the source's value, descriptor and flags; values are copies.
TEST(ParameterSetTest, CopyMergesInSourceOrder) {
  SmartPtr<IParametersCreatable> source = SetOf({{L"a", MakeLong(1)}, {L"b", MakeLong(2)}});
  SmartPtr<IParametersCreatable> set =
      SetOf({{L"B", MakeLong(20), 7, AsUnknown(NewParameters())}, {L"c", MakeLong(30)}});
  EXPECT_EQ(set->Copy(source.get()), S_OK);
  SmartPtr<IVariant> sourceValue;
  source->get_ItemVariant(0, sourceValue.Receive());
  sourceValue->SetLong(100);
  EXPECT_EQ(set->Copy(nullptr), S_OK);
  EXPECT_EQ(Describe(set.get()), (Rows{L"B=i2/0", L"c=i30/0", L"a=i1/0"}));
}

TEST(ParameterSetTest, SortIsCaseSensitiveWithUnnamedFirst) {
  struct Case { int32_t flags; Rows expected; } cases[] = {
      {0, {L"<null>", L"A", L"B", L"a", L"ab", L"b"}}, {kSortDescending, {L"b", L"ab", L"a", L"B", L"A", L"<null>"}},
  };
  for (const Case& c : cases) {
    SmartPtr<IParametersCreatable> set = SetOf({{L"b", MakeLong(1)}, {L"a", MakeLong(2)}, {L"B", MakeLong(3)},
                                                {L"ab", MakeLong(4)}, {L"A", MakeLong(5)}});
    set->Add(nullptr, MakeLong(6).get(), nullptr, 0);
    EXPECT_EQ(set->Sort(c.flags), S_OK);
    EXPECT_EQ(NamesOf(set.get()), c.expected) << c.flags;
  }
}

// Range checks of every operation are in the bad-input test.
TEST(ParameterSetTest, RemoveRenameAndReferences) {
  SmartPtr<IVariant> value = MakeLong(1);
  SmartPtr<IParametersCreatable> descriptor = NewParameters();
  const uint32_t valueRefs = RefCountOf(value.get()), descriptorRefs = RefCountOf(descriptor.get());
  SmartPtr<IParametersCreatable> set =
      SetOf({{L"a", MakeLong(1)}, {L"b", MakeLong(2)}, {L"c", MakeLong(3)}, {L"e", value, 0, AsUnknown(descriptor)}});
  EXPECT_EQ(set->Remove(0), S_OK);
  EXPECT_EQ(set->Rename(1, MakeString(L"d").get()), S_OK);
  EXPECT_EQ(Describe(set.get()), (Rows{L"b=i2/0", L"d=i3/0", L"e=i1/0+d"}));
  EXPECT_EQ(RefCountOf(value.get()), valueRefs + 1);
  EXPECT_EQ(set->RemoveAll(), S_OK);
  EXPECT_EQ(NamesOf(set.get()).size(), 0u);
  EXPECT_EQ(RefCountOf(value.get()), valueRefs);
  EXPECT_EQ(RefCountOf(descriptor.get()), descriptorRefs);
  // One object under each identity, naming its property pages.
  EXPECT_EQ(static_cast<void*>(QueryAs<INamedCollection>(set.get()).get()), static_cast<void*>(set.get()));
  EXPECT_EQ(static_cast<void*>(QueryAs<IParameters>(set.get()).get()), static_cast<void*>(set.get()));
  SmartPtr<INamedCollection> list;
  ASSERT_EQ(QueryAs<IUIPropertyPageSpecify>(set.get())->GetPages(0, list.Receive(), nullptr), S_OK);
  EXPECT_EQ(NamesOf(list.get()), (Rows{L"UIPropPages.UIParametersPropPage", L"UIPropPages.UIFileArchivePropPage"}));
}

// Saving through IDataPersist picks the layout by the stream's kind; without settings the XML is lean. A byte
// stream gets nothing and loads nothing.
TEST(ParameterSetTest, PersistByStreamKind) {
  SmartPtr<IParametersCreatable> set = SetOf({{L"c", MakeLong(0x00332211), 0x23}});
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
  SmartPtr<IParametersCreatable> loaded = SetOf({{L"stale", MakeLong(1)}});
  EXPECT_EQ(QueryAs<IDataPersist>(loaded.get())->Load(folder.get(), 0), S_OK);
  EXPECT_EQ(Describe(loaded.get()), Rows{L"c=i3351057/23"}) << "replace mode";
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
      {L"Speed >= 10", MakeLong(10), S_OK}, {L"Speed > 10", MakeLong(10), E_FAIL},
      {L"Speed<10.5", MakeDouble(10.4), S_OK}, {L"Speed != 10", MakeLong(10), E_FAIL},
      {L"Speed!9", MakeLong(10), E_FAIL}, {L"Speed == 10", MakeText(L"10"), S_OK},
      {L"Speed=10+-5%", MakeDouble(10.4), S_OK}, {L"Speed=10+-5%", MakeDouble(10.6), E_FAIL},
      {L"Speed=0+-5%", MakeDouble(0.04), S_OK}, {L"Speed=10+-1", MakeDouble(8.9), E_FAIL},
      {L"SPEED=10", MakeLong(10), S_OK}, {L"Nope=10", MakeLong(10), E_FAIL}, {L" Speed\t= 10 ", MakeLong(10), S_OK},
      {L"Speed=", MakeLong(10), E_FAIL}, {L"Mode='auto'", MakeText(L"auto mode"), S_OK},
      {L"Mode='auto'", MakeText(L"automatic"), E_FAIL}, {L"Mode=\"auto\"", MakeText(L"x auto,y"), S_OK},
      {L"Mode!='auto'", MakeText(L"automatic"), S_OK}, {L"Mode=uto", MakeText(L"automatic"), S_OK},
      {L"Mode=1234567890", MakeText(L"1234567890"), S_OK}, {L"atic", MakeText(L"automatic"), S_OK},
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
