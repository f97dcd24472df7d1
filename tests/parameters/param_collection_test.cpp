// Tests of "ParamCollection": names from the template, prefix lookup, and the
// collection file with member files stored relative or mapped, so a moved
// folder still loads.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "persistence_test_support.h"

namespace {

using namespace persistence_test;
namespace fs = std::filesystem;

SmartPtr<ISuperCollection> NewCollection() { return CreateObjectAs<ISuperCollection>(L"ParamCollection"); }

// "name:flags:parameters" per item.
std::vector<std::wstring> DescribeItems(ISuperCollection* collection) {
  std::vector<std::wstring> rows;
  int32_t count = 0;
  collection->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IUnknown> object;
    int32_t flags = 0;
    collection->get_ItemName(i, name.Receive());
    collection->get_Item(i, object.Receive());
    collection->get_ItemFlags(i, &flags);
    std::wstring row = TextOf(name) + L":" + std::to_wstring(flags) + L":";
    if (SmartPtr<IParameters> set = QueryAs<IParameters>(object.get()))
      for (const std::wstring& p : Describe(set.get())) row += p + L";";
    rows.push_back(row);
  }
  return rows;
}

// The text of a UTF-16 file with mark, as ASCII.
std::string AsciiOfUtf16(const std::string& bytes) {
  std::string text;
  for (size_t i = 2; i + 1 < bytes.size(); i += 2) text += bytes[i];
  return text;
}

TEST(ParamCollectionTest, NamesFromTemplateAndPrefixLookup) {
  SmartPtr<ISuperCollection> collection = NewCollection();
  ASSERT_TRUE(collection);
  ASSERT_EQ(collection->Add(nullptr, nullptr, nullptr, 0), S_OK);
  ASSERT_EQ(collection->Add(MakeString(L"").get(), SetOf({{L"a", MakeLong(1)}}).get(), nullptr, 0), S_OK);
  EXPECT_EQ(collection->Add(MakeString(L"bad").get(), MakeLong(1).get(), nullptr, 0), E_INVALIDARG) << "sets only";
  SmartPtr<IParameters> options;
  ASSERT_EQ(QueryAs<IParametricObject>(collection.get())->get_Parameters(options.Receive()), S_OK);
  options->Set(MakeString(L"NameTemplate").get(), MakeText(L"Run %d of day").get(), nullptr, 0, 0);
  collection->Add(nullptr, nullptr, nullptr, 0);
  collection->Remove(0);
  collection->Add(nullptr, nullptr, nullptr, 0);
  EXPECT_EQ(NamesOf(collection.get()), (std::vector<std::wstring>{L"Parameters2", L"Run 1 of day", L"Run 2 of day"}));
  EXPECT_EQ(IndexOfName(collection.get(), L"run 2"), 2) << "names are found by prefix";
  EXPECT_EQ(IndexOfName(collection.get(), L"nothing"), 65535);
}

class ParamCollectionFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_Root = ScratchFolder("collection");
    fs::create_directories(m_Root + "/a/coll/sets");
    fs::create_directories(m_Root + "/a/shared");
  }

  // list.<extension> in a/coll: "one" in coll/sets, "two" in shared, "inner" inside the file.
  void SaveSample(const std::string& extension) {
    SmartPtr<ISuperCollection> collection = NewCollection();
    SmartPtr<IParametersCreatable> one = SetOf({{L"x", MakeLong(1)}});
    SmartPtr<IParametersCreatable> two = SetOf({{L"y", MakeText(L"two")}});
    ArchiveOf(one.get(), m_Root + "/a/coll/sets/one.xml");
    ArchiveOf(two.get(), m_Root + "/a/shared/two.xml");
    collection->Add(MakeString(L"one").get(), one.get(), nullptr, 3);
    collection->Add(MakeString(L"two").get(), two.get(), nullptr, 0);
    collection->Add(MakeString(L"inner").get(), SetOf({{L"z", MakeDouble(0.5)}}).get(), nullptr, 0);
    ASSERT_EQ(ArchiveOf(collection.get(), m_Root + "/a/coll/list." + extension)->Save(), S_OK);
  }

  const std::vector<std::wstring> kExpected{L"one:3:x=i1/0;", L"two:0:y=t'two'/0;", L"inner:0:z=r0.5/0;"};
  std::string m_Root;
};

TEST_F(ParamCollectionFileTest, MovedFolderStillLoads) {
  for (const std::string extension : {"xml", "tab"}) {
    SetUp();
    SaveSample(extension);
    if (extension == "xml") {
      const std::string text = AsciiOfUtf16(FileBytes(m_Root + "/a/coll/list.xml"));
      EXPECT_NE(text.find("<File>sets/one.xml</File>"), std::string::npos) << text;
      EXPECT_NE(text.find("<File>..\\shared/two.xml</File>"), std::string::npos) << text;
      EXPECT_NE(text.find("<Flags>3</Flags>"), std::string::npos) << text;
    }
    fs::rename(m_Root + "/a", m_Root + "/moved");
    SmartPtr<ISuperCollection> loaded = NewCollection();
    ASSERT_EQ(ArchiveOf(loaded.get(), m_Root + "/moved/coll/list." + extension)->Load(), S_OK) << extension;
    EXPECT_EQ(DescribeItems(loaded.get()), kExpected) << extension;
    SmartPtr<IUnknown> two;
    loaded->get_Item(1, two.Receive());
    SmartPtr<IString> name;
    QueryAs<IFileArchive>(two.get())->get_Filename(name.Receive());
    EXPECT_EQ(TextOf(name), Wide(m_Root + "/moved/shared/two.xml")) << extension;
  }
}

TEST_F(ParamCollectionFileTest, MissingMemberLeavesTheCollectionUnchanged) {
  SaveSample("xml");
  fs::remove(m_Root + "/a/shared/two.xml");
  SmartPtr<ISuperCollection> loaded = NewCollection();
  loaded->Add(MakeString(L"keep").get(), SetOf({{L"k", MakeLong(1)}}).get(), nullptr, 0);
  EXPECT_EQ(ArchiveOf(loaded.get(), m_Root + "/a/coll/list.xml")->Load(), E_FAIL);
  EXPECT_EQ(DescribeItems(loaded.get()), (std::vector<std::wstring>{L"keep:0:k=i1/0;"}));
}

TEST_F(ParamCollectionFileTest, MemberOutsideTheTreeIsStoredMapped) {
  const std::string settings = m_Root + "/Settings.ini";
  const std::string data = fs::temp_directory_path().string() + "/param-collection-data-" + std::to_string(getpid());
  fs::create_directories(data);
  WriteFile(settings, "[Mappings]\nData=" + data + "\n");
  const char* previous = std::getenv("PARAMS_SETTINGS");
  const std::string restore = previous ? previous : "";
  setenv("PARAMS_SETTINGS", settings.c_str(), 1);

  SmartPtr<ISuperCollection> collection = NewCollection();
  SmartPtr<IParametersCreatable> member = SetOf({{L"m", MakeLong(8)}});
  ArchiveOf(member.get(), data + "/m.xml");
  collection->Add(MakeString(L"m").get(), member.get(), nullptr, 0);
  ASSERT_EQ(ArchiveOf(collection.get(), m_Root + "/a/coll/list.xml")->Save(), S_OK);
  const std::string text = AsciiOfUtf16(FileBytes(m_Root + "/a/coll/list.xml"));
  EXPECT_NE(text.find("<File>[Data]/m.xml</File>"), std::string::npos) << text;

  const std::string movedData = data + "-moved";
  fs::rename(data, movedData);
  WriteFile(settings, "[Mappings]\nData=" + movedData + "\n");
  SmartPtr<ISuperCollection> loaded = NewCollection();
  EXPECT_EQ(ArchiveOf(loaded.get(), m_Root + "/a/coll/list.xml")->Load(), S_OK);
  EXPECT_EQ(DescribeItems(loaded.get()), (std::vector<std::wstring>{L"m:0:m=i8/0;"}));
  fs::remove_all(movedData);
  setenv("PARAMS_SETTINGS", restore.c_str(), 1);
}

}  // namespace
