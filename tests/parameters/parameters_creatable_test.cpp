// Tests of "ParametersCreatable" as a component: the interfaces it answers and
// the references it holds.
#include "parameters/parameters_creatable.h"

#include <gtest/gtest.h>

#include "collection_test_support.h"

namespace {

using namespace collection_test;

TEST(ParametersCreatableTest, AnswersOneParameterSetUnderEachIdentity) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  ASSERT_TRUE(set);
  for (const IID* iid : {&IID_IParameters, &IID_INamedCollection}) {
    void* answer = nullptr;
    ASSERT_EQ(set->QueryInterface(*iid, &answer), S_OK);
    EXPECT_EQ(answer, static_cast<void*>(set.get()));
    static_cast<IUnknown*>(answer)->Release();
  }
}

TEST(ParametersCreatableTest, ReleasingTheSetReleasesItsValues) {
  SmartPtr<IVariant> value = MakeLong(1);
  SmartPtr<IParametersCreatable> descriptor = NewParameters();
  const uint32_t valueRefs = RefCountOf(value.get()), descriptorRefs = RefCountOf(descriptor.get());
  {
    SmartPtr<IParametersCreatable> set = NewParameters();
    set->Add(MakeString(L"a").get(), value.get(), descriptor.get(), 0);
    EXPECT_EQ(RefCountOf(value.get()), valueRefs + 1);
  }
  EXPECT_EQ(RefCountOf(value.get()), valueRefs);
  EXPECT_EQ(RefCountOf(descriptor.get()), descriptorRefs);
}

}  // namespace

namespace {

TEST(ParametersCreatableTest, AnswersInterfacesInOrder) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  for (const IID* iid : {&IID_IDataPersist, &IID_IFileArchive, &IID_IPMSearch, &IID_IUIPropertyPageSpecify}) {
    SmartPtr<IUnknown> answer;
    EXPECT_EQ(set->QueryInterface(*iid, answer.ReceiveVoid()), S_OK);
  }
  SmartPtr<IUIPropertyPageSpecify> pages = QueryAs<IUIPropertyPageSpecify>(set.get());
  SmartPtr<INamedCollection> list;
  ASSERT_EQ(pages->GetPages(0, list.Receive(), nullptr), S_OK);
  EXPECT_EQ(NamesOf(list.get()),
            (std::vector<std::wstring>{L"UIPropPages.UIParametersPropPage", L"UIPropPages.UIFileArchivePropPage"}));
  EXPECT_EQ(QueryAs<IFileArchive>(set.get())->Control(5, 1), E_INVALIDARG);
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
      {L"Speed <= 9", MakeLong(10), E_FAIL},
      {L"Speed != 10", MakeLong(10), E_FAIL},
      {L"Speed!9", MakeLong(10), E_FAIL},
      {L"Speed == 10", MakeText(L"10"), S_OK},
      {L"Speed=10+-5%", MakeDouble(10.4), S_OK},
      {L"Speed=10+-5%", MakeDouble(10.6), E_FAIL},
      {L"Speed=0+-5%", MakeDouble(0.04), S_OK},
      {L"Speed=10+-1", MakeDouble(8.9), E_FAIL},
      {L"Speed=10", MakeLong(10), S_OK},
      {L"SPEED=10", MakeLong(10), S_OK},
      {L"Nope=10", MakeLong(10), E_FAIL},
      {L" Speed\t= 10 ", MakeLong(10), S_OK},
      {L"Speed=", MakeLong(10), E_FAIL},
      {L"Mode='auto'", MakeText(L"auto mode"), S_OK},
      {L"Mode='auto'", MakeText(L"automatic"), E_FAIL},
      {L"Mode=\"auto\"", MakeText(L"x auto,y"), S_OK},
      {L"Mode!='auto'", MakeText(L"automatic"), S_OK},
      {L"Mode=uto", MakeText(L"automatic"), S_OK},
      {L"Mode!=uto", MakeText(L"automatic"), E_FAIL},
      {L"Mode=1234567890", MakeText(L"1234567890"), S_OK},
      {L"atic", MakeText(L"automatic"), S_OK},
      {L"=atic", MakeText(L"automatic"), E_FAIL},
      {L"xyz", MakeText(L"automatic"), E_FAIL},
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

// Stream persistence by stream kind; the lean setting comes from the settings store.
TEST(ParametersCreatableTest, StreamSaveAndLoadByKind) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  set->Add(MakeString(L"c").get(), MakeLong(0x00332211).get(), nullptr, 0x23);
  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(set.get());
  SmartPtr<IXMLStreamEx> xml = CreateObjectAs<IXMLStreamEx>(L"XMLStreamEx");
  xml->SetOptions(-1, kXMLOptionLean);
  ASSERT_EQ(persist->Save(QueryAs<IDataStream>(xml.get()).get(), 0), S_OK);
  void* text = nullptr;
  int32_t size = 0;
  xml->GetTextBuffer(&text, &size);
  EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(text), size / sizeof(wchar_t)), L"<c>#112233</c>")
      << "no settings: lean output";

  SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
  EXPECT_EQ(persist->Save(bytes.get(), 0), S_OK);
  EXPECT_EQ(BytesOf(bytes.get()), "");
  EXPECT_EQ(persist->Load(bytes.get(), 0), E_NOTIMPL);

  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  ASSERT_EQ(persist->Save(folder.get(), 0), S_OK);
  SmartPtr<IParametersCreatable> loaded = NewParameters();
  loaded->Add(MakeString(L"stale").get(), MakeLong(1).get(), nullptr, 0);
  EXPECT_EQ(QueryAs<IDataPersist>(loaded.get())->Load(folder.get(), 0), S_OK);
  EXPECT_EQ(NamesOf(static_cast<IParameters*>(loaded.get())), (std::vector<std::wstring>{L"c"})) << "replace mode";
  int32_t loadedMarker = 0;
  QueryAs<IFileArchive>(loaded.get())->Inquire(1, &loadedMarker);
  EXPECT_EQ(loadedMarker, 1);
}

}  // namespace
