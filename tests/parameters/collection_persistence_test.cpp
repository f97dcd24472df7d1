// Tests of a named collection's persistence: the XML and folder-stream frame around each item (unnamed items,
// flags, attached objects, replace and merge), and the collection file of "ParamCollection", whose member files
// are stored relative or mapped so that a moved folder still loads.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "persistence_test_support.h"

namespace {

using namespace persistence_test;
namespace fs = std::filesystem;

// A collection: "first" (flags 5, attached set), an unnamed set, "plain" (a variant: does not persist).
SmartPtr<ISuperCollection> SampleCollection() {
  SmartPtr<ISuperCollection> collection = NewSuperCollection();
  collection->Add(MakeString(L"first").get(), SetOf({{L"a", MakeLong(1)}}).get(),
                  SetOf({{L"note", MakeText(L"x")}}).get(), 5);
  collection->Add(nullptr, SetOf({{L"b", MakeLong(2)}}).get(), nullptr, 0);
  collection->Add(MakeString(L"plain").get(), MakeLong(7).get(), nullptr, 0);
  return collection;
}

TEST(CollectionPersistenceTest, XMLFrame) {
  EXPECT_EQ(LeanXMLOf([](IDataStream* stream) { ASSERT_EQ(SampleCollection()->Save(stream, 0), S_OK); }),
            L"<first><Flags>5</Flags><ParametersCreatable><a>1</a></ParametersCreatable>"
            L"<AttachedItem><ParametersCreatable><note>x</note></ParametersCreatable></AttachedItem></first>"
            L"<Item2><ParametersCreatable><b>2</b></ParametersCreatable></Item2>");
}

TEST(CollectionPersistenceTest, XMLReplaceAndMerge) {
  const std::wstring document =
      L"<r><first><Flags>#10</Flags><ParametersCreatable><a>3</a></ParametersCreatable></first>"
      L"<Item2><ParametersCreatable><b>4</b></ParametersCreatable>"
      L"<AttachedItem><ParametersCreatable><c>5</c></ParametersCreatable></AttachedItem></Item2>"
      L"<unknown><ParametersCreatable><z>0</z></ParametersCreatable></unknown></r>";
  SmartPtr<ISuperCollection> replaced = SampleCollection();
  replaced->Load(XMLReading(document, true).get(), kLoadReplace);
  EXPECT_EQ(DescribeItems(replaced.get()),
            (std::vector<std::wstring>{L"first:16:a=i3/0;::", L"Item2:0:b=i4/0;:c=i5/0;:", L"unknown:0:z=i0/0;::"}));

  SmartPtr<ISuperCollection> merged = SampleCollection();
  SmartPtr<IUnknown> firstBefore;
  merged->get_Item(0, firstBefore.Receive());
  merged->Load(XMLReading(document, true).get(), 0);
  EXPECT_EQ(DescribeItems(merged.get()),
            (std::vector<std::wstring>{L"first:16:a=i3/0;::", L"<null>:0:b=i2/0;::", L"plain:0:::"}))
      << "unknown names are ignored, items the document does not name are untouched";
  SmartPtr<IUnknown> firstAfter;
  merged->get_Item(0, firstAfter.Receive());
  EXPECT_TRUE(firstAfter == firstBefore.get()) << "the held object reloads itself";
}

TEST(CollectionPersistenceTest, FolderLayoutRoundTrips) {
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  ASSERT_EQ(SampleCollection()->Save(folder.get(), 0), S_OK);
  EXPECT_EQ(FolderDump(folder.get()),
            L"first=folder\n  Flags=bytes 05 00 00 00\n  Item=object ParametersCreatable\n    a=i1\n"
            L"  ItemAttached=object ParametersCreatable\n    note=t'x'\n"
            L"Item2=folder\n  Item=object ParametersCreatable\n    b=i2\n"
            L"plain=folder\n  Item=object Variant\n");
  SmartPtr<ISuperCollection> loaded = NewSuperCollection();
  loaded->Add(MakeString(L"stale").get(), MakeLong(1).get(), nullptr, 0);
  loaded->Load(folder.get(), 0);
  EXPECT_EQ(DescribeItems(loaded.get()),
            (std::vector<std::wstring>{L"first:5:a=i1/0;:note=t'x'/0;:", L"Item2:0:b=i2/0;::", L"plain:0:::"}));
}

SmartPtr<ISuperCollection> NewCollection() { return CreateObjectAs<ISuperCollection>(L"ParamCollection"); }

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

  const std::vector<std::wstring> kExpected{L"one:3:x=i1/0;::", L"two:0:y=t'two'/0;::", L"inner:0:z=r0.5/0;::"};
  std::string m_Root;
};

TEST_F(ParamCollectionFileTest, MovedFolderStillLoadsAndAMissingMemberIsRefused) {
  for (const std::string extension : {"tab", "xml"}) {
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
  // A missing member leaves the collection unchanged.
  fs::remove(m_Root + "/moved/shared/two.xml");
  SmartPtr<ISuperCollection> loaded = NewCollection();
  loaded->Add(MakeString(L"keep").get(), SetOf({{L"k", MakeLong(1)}}).get(), nullptr, 0);
  EXPECT_EQ(ArchiveOf(loaded.get(), m_Root + "/moved/coll/list.xml")->Load(), E_FAIL);
  EXPECT_EQ(DescribeItems(loaded.get()), (std::vector<std::wstring>{L"keep:0:k=i1/0;::"}));
}

TEST_F(ParamCollectionFileTest, MemberOutsideTheTreeIsStoredMapped) {
  const std::string data = fs::temp_directory_path() / ("param-collection-data-" + std::to_string(getpid()));
  fs::create_directories(data);
  SettingsFile settings("[Mappings]\nData=" + data + "\n");
  SmartPtr<ISuperCollection> collection = NewCollection();
  SmartPtr<IParametersCreatable> member = SetOf({{L"m", MakeLong(8)}});
  ArchiveOf(member.get(), data + "/m.xml");
  collection->Add(MakeString(L"m").get(), member.get(), nullptr, 0);
  ASSERT_EQ(ArchiveOf(collection.get(), m_Root + "/a/coll/list.xml")->Save(), S_OK);
  const std::string text = AsciiOfUtf16(FileBytes(m_Root + "/a/coll/list.xml"));
  EXPECT_NE(text.find("<File>[Data]/m.xml</File>"), std::string::npos) << text;

  fs::rename(data, data + "-moved");
  settings.Write("[Mappings]\nData=" + data + "-moved\n");
  SmartPtr<ISuperCollection> loaded = NewCollection();
  EXPECT_EQ(ArchiveOf(loaded.get(), m_Root + "/a/coll/list.xml")->Load(), S_OK);
  EXPECT_EQ(DescribeItems(loaded.get()), (std::vector<std::wstring>{L"m:0:m=i8/0;::"}));
  fs::remove_all(data + "-moved");
}

}  // namespace
