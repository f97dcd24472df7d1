// Tests of a named collection's XML and folder-stream persistence: the frame
// around each item, unnamed items, flags, attached objects, replace and merge.
#include <gtest/gtest.h>

#include "persistence_test_support.h"

namespace {

using namespace persistence_test;

// A collection: "first" (flags 5, attached set), an unnamed set, "plain" (a variant: does not persist).
SmartPtr<ISuperCollection> SampleCollection() {
  SmartPtr<ISuperCollection> collection = NewSuperCollection();
  collection->Add(MakeString(L"first").get(), SetOf({{L"a", MakeLong(1)}}).get(),
                  SetOf({{L"note", MakeText(L"x")}}).get(), 5);
  collection->Add(nullptr, SetOf({{L"b", MakeLong(2)}}).get(), nullptr, 0);
  collection->Add(MakeString(L"plain").get(), MakeLong(7).get(), nullptr, 0);
  return collection;
}

// "name:flags:item parameters:attached parameters" per item.
std::vector<std::wstring> DescribeCollection(ISuperCollection* collection) {
  std::vector<std::wstring> rows;
  int32_t count = 0;
  collection->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IUnknown> object, attached;
    int32_t flags = 0;
    collection->get_ItemName(i, name.Receive());
    collection->get_Item(i, object.Receive());
    collection->get_ItemAttached(i, attached.Receive());
    collection->get_ItemFlags(i, &flags);
    std::wstring row = (name ? TextOf(name) : L"<null>") + L":" + std::to_wstring(flags) + L":";
    for (IUnknown* part : {object.get(), attached.get()}) {
      if (SmartPtr<IParameters> set = QueryAs<IParameters>(part))
        for (const std::wstring& p : Describe(set.get())) row += p + L";";
      row += L":";
    }
    rows.push_back(row);
  }
  return rows;
}

TEST(CollectionPersistenceTest, XMLFrame) {
  SmartPtr<IXMLStreamEx> xml = CreateObjectAs<IXMLStreamEx>(L"XMLStreamEx");
  xml->SetOptions(-1, kXMLOptionLean);
  SmartPtr<IDataStream> stream = QueryAs<IDataStream>(xml.get());
  ASSERT_EQ(SampleCollection()->Save(stream.get(), 0), S_OK);
  void* text = nullptr;
  int32_t size = 0;
  xml->GetTextBuffer(&text, &size);
  EXPECT_EQ(std::wstring(static_cast<const wchar_t*>(text), size / sizeof(wchar_t)),
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
  EXPECT_EQ(DescribeCollection(replaced.get()),
            (std::vector<std::wstring>{L"first:16:a=i3/0;::", L"Item2:0:b=i4/0;:c=i5/0;:", L"unknown:0:z=i0/0;::"}));

  SmartPtr<ISuperCollection> merged = SampleCollection();
  SmartPtr<IUnknown> firstBefore;
  merged->get_Item(0, firstBefore.Receive());
  merged->Load(XMLReading(document, true).get(), 0);
  EXPECT_EQ(DescribeCollection(merged.get()),
            (std::vector<std::wstring>{L"first:16:a=i3/0;::", L"<null>:0:b=i2/0;::", L"plain:0:::"}))
      << "unknown names are ignored, items the document does not name are untouched";
  SmartPtr<IUnknown> firstAfter;
  merged->get_Item(0, firstAfter.Receive());
  EXPECT_TRUE(firstAfter == firstBefore.get()) << "the held object reloads itself";
}

TEST(CollectionPersistenceTest, FolderLayoutRoundTrips) {
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  ASSERT_EQ(SampleCollection()->Save(folder.get(), 0), S_OK);
  EXPECT_EQ(NamesOf(QueryAs<ISuperCollection>(folder.get()).get()),
            (std::vector<std::wstring>{L"first", L"Item2", L"plain"}));
  SmartPtr<IFolderStream> first;
  folder->OpenFolder(RefOf(L"first"), first.Receive());
  EXPECT_EQ(NamesOf(QueryAs<ISuperCollection>(first.get()).get()),
            (std::vector<std::wstring>{L"Flags", L"Item", L"ItemAttached"}));
  SmartPtr<IFolderStream> second;
  folder->OpenFolder(RefOf(L"Item2"), second.Receive());
  EXPECT_EQ(NamesOf(QueryAs<ISuperCollection>(second.get()).get()), (std::vector<std::wstring>{L"Item"}));

  SmartPtr<ISuperCollection> loaded = NewSuperCollection();
  loaded->Add(MakeString(L"stale").get(), MakeLong(1).get(), nullptr, 0);
  loaded->Load(folder.get(), 0);
  EXPECT_EQ(DescribeCollection(loaded.get()),
            (std::vector<std::wstring>{L"first:5:a=i1/0;:note=t'x'/0;:", L"Item2:0:b=i2/0;::", L"plain:0:::"}));
}

}  // namespace
