// Tests of a parameter set's persistence: XML element shapes, lean output and its flag adjustments, replace and
// merge reading, the object layout; one CSV line; the folder-stream layout with file names stored mapped.
#include <gtest/gtest.h>

#include "persistence_test_support.h"

namespace {

using namespace persistence_test;

SmartPtr<IUnknown> DescriptorWithMin() {
  return AsUnknown(SetOf({{L"min", MakeLong(1)}}));
}

TEST(ParameterXMLTest, ShapesFlagsAndLeanAdjustments) {
  struct Case {
    const char* label;
    SmartPtr<IVariant> value;
    int32_t flags;
    bool descriptor;
    int32_t saveFlags;
    std::wstring expected;  // inside <speed>; "@" stands for the descriptor's XML
  };
  const Case cases[] = {
      {"simple", MakeLong(3), 0, false, 0, L"3"},
      {"flags give the full shape", MakeLong(3), 0x10, false, 0, L"<Value>3</Value><Flags>#000010</Flags>"},
      {"colour in lean output", MakeLong(0x00332211), 0x23, false, kSaveLean, L"#112233"},
      {"colour outside lean", MakeLong(0x00332211), 0x23, false, 0, L"<Value>3351057</Value><Flags>#000023</Flags>"},
      {"kind 5 dropped in lean", MakeLong(3), 5, false, kSaveLean, L"3"},
      {"exactly 9 dropped in lean", MakeLong(3), 9, false, kSaveLean, L"3"},
      {"0x19 kept in lean", MakeLong(3), 0x19, false, kSaveLean, L"<Value>3</Value><Flags>#000019</Flags>"},
      {"0x8000000 never written", MakeLong(3), 0x8000001, false, 0, L"<Value>3</Value><Flags>#000001</Flags>"},
      {"wide flags", MakeLong(3), 0x1000010, false, 0, L"<Value>3</Value><Flags>#1000010</Flags>"},
      {"descriptor written by itself", MakeLong(3), 0, true, 0, L"<Value>3</Value>@"},
      {"0x40 drops bit and descriptor in lean", MakeLong(3), 0x40, true, kSaveLean, L"3"},
      {"0x40 kept outside lean", MakeLong(3), 0x40, true, 0, L"<Value>3</Value><Flags>#000040</Flags>@"},
      {"0x40000 drops only the descriptor in lean", MakeLong(3), 0x40000, true, kSaveLean,
       L"<Value>3</Value><Flags>#040000</Flags>"},
      {"colour with a descriptor: kind 3 flags dropped", MakeLong(1), 0x23, true, kSaveLean, L"<Value>1</Value>@"},
      {"text colour is not a colour", MakeText(L"red"), 0x23, false, kSaveLean, L"red"},
  };
  for (const Case& c : cases) {
    SmartPtr<IParametersCreatable> set =
        SetOf({{L"speed", c.value, c.flags, c.descriptor ? DescriptorWithMin() : SmartPtr<IUnknown>()}});
    std::wstring expected = c.expected;
    if (const size_t at = expected.find(L'@'); at != std::wstring::npos)
      expected.replace(at, 1, L"<ParametersCreatable><min>1</min></ParametersCreatable>");
    EXPECT_EQ(SavedXML(set.get(), c.saveFlags), L"<speed>" + expected + L"</speed>") << c.label;
  }
}

TEST(ParameterXMLTest, ReplaceModeReadsElementTextInDocumentOrder) {
  SmartPtr<IParametersCreatable> set = SetOf({{L"old", MakeLong(1)}});
  SmartPtr<IDataStream> stream =
      XMLReading(L"<r><b>2.5</b><a>x y</a><c><Value>7</Value><Flags>#000010</Flags></c></r>", true);
  EXPECT_EQ(set->Params_LoadXML(stream.get(), kLoadReplace, 0), S_OK);
  // Child elements are not interpreted in replace mode: c gets its own (empty) text.
  EXPECT_EQ(Describe(set.get()), (std::vector<std::wstring>{L"b=r2.5/0", L"a=t'x y'/0", L"c=t''/0"}));
}

TEST(ParameterXMLTest, MergeModeUpdatesKnownNamesOnly) {
  SmartPtr<IParametersCreatable> set =
      SetOf({{L"a", MakeLong(1), 4}, {L"b", MakeLong(2)}, {L"c", MakeLong(3), 0x10}});
  SmartPtr<IDataStream> stream = XMLReading(
      L"<r><a><value>5</value><FLAGS>#000023</FLAGS></a><zz>9</zz><b>7</b>"
      L"<c><Flags>12</Flags><ParametersCreatable><min>4</min></ParametersCreatable></c></r>",
      true);
  EXPECT_EQ(set->Params_LoadXML(stream.get(), 0, 0), S_OK);
  EXPECT_EQ(Describe(set.get()), (std::vector<std::wstring>{L"a=i5/23", L"b=i7/0", L"c=i3/C+d"}));
  SmartPtr<IUnknown> descriptor;
  set->get_ItemDescriptor(2, descriptor.Receive());
  SmartPtr<IParameters> loaded = QueryAs<IParameters>(descriptor.get());
  ASSERT_TRUE(loaded) << "the descriptor is read back as a ParametersCreatable by class name";
  EXPECT_EQ(Describe(loaded.get()), (std::vector<std::wstring>{L"min=i4/0"}));
}

TEST(ParameterXMLTest, ObjectLayoutRoundTrips) {
  SmartPtr<IParametersCreatable> inner = SetOf({{L"k", MakeLong(9)}});
  SmartPtr<IVariant> object = MakeHolding(inner.get());
  SmartPtr<IParametersCreatable> saved = NewParameters();
  saved->Add(MakeString(L"first").get(), object.get(), DescriptorWithMin().get(), 0x23);
  saved->Add(MakeString(L"plain").get(), MakeLong(1).get(), nullptr, 0);  // does not persist: left out
  saved->Add(nullptr, object.get(), nullptr, 0);

  const std::wstring written = LeanXMLOf([&](IDataStream* stream) { saved->Params_SaveXMLUnk(stream, 0); });
  EXPECT_EQ(written,
            L"<first><Flags>#000023</Flags><ParametersCreatable><k>9</k></ParametersCreatable>"
            L"<ItemDescriptor><ParametersCreatable><min>1</min></ParametersCreatable></ItemDescriptor></first>"
            L"<Item3><ParametersCreatable><k>9</k></ParametersCreatable></Item3>");

  SmartPtr<IParametersCreatable> loaded = SetOf({{L"stale", MakeLong(0)}});
  loaded->Params_LoadXMLUnk(XMLReading(L"<r>" + written + L"</r>", true).get(), kLoadReplace);
  EXPECT_EQ(Describe(loaded.get()),
            (std::vector<std::wstring>{L"first=oParametersCreatable/23+d", L"Item3=oParametersCreatable/0"}));
}

TEST(ParameterXMLTest, SetHoldingItselfSavesWithoutEndlessRecursion) {
  SmartPtr<IParametersCreatable> set = SetOf({{L"a", MakeLong(1)}});
  set->put_ItemDescriptor(0, set.get());
  const std::wstring text = SavedXML(set.get(), 0);
  EXPECT_EQ(text.substr(0, 40), L"<a><Value>1</Value><ParametersCreatable>");
  set->put_ItemDescriptor(0, nullptr);  // breaks the cycle so the set can be released
}

std::wstring CSVOf(IParameters* set, int32_t flags) {
  SmartPtr<ICSVStream> csv = CreateObjectAs<ICSVStream>(L"CSVStream");
  set->Params_SaveCSV(csv.get(), flags);
  const wchar_t* text = nullptr;
  int32_t length = 0;
  csv->GetText(&text, &length);
  return std::wstring(text, static_cast<size_t>(length));
}

TEST(ParameterFolderStreamTest, CSVLine) {
  SmartPtr<IParametersCreatable> set = SetOf({{L"a", MakeLong(1)}, {L"hidden", MakeLong(9), 0x40000},
                                              {L"b", MakeText(L"x,y=z")}});
  struct Case { int32_t flags; std::wstring expected; };
  const Case cases[] = {
      {0, L"1,9,x,y=z"}, {0x10000, L"a=1,hidden=9,b=x,y=z"}, {kSaveLean, L"1,x,y=z"},
      {kSaveLean | 0x10000, L"a=1,b=x,y=z"},
  };
  for (const Case& c : cases) EXPECT_EQ(CSVOf(set.get(), c.flags), c.expected) << c.flags;
}

TEST(ParameterFolderStreamTest, LayoutCasesRoundTripAndMerge) {
  SmartPtr<IVariant> object = MakeHolding(SetOf({{L"k", MakeLong(4)}}).get());
  SmartPtr<IParametersCreatable> saved = SetOf({
      {L"plain", MakeDouble(1.5)}, {L"flagged", MakeText(L"t"), 0x10},
      {L"described", MakeLong(2), 0, AsUnknown(SetOf({{L"min", MakeLong(0)}}))}, {L"object", object},
      {L"", MakeLong(5), 0x20}, {L"skipped", MakeLong(6), 0x4000000},
  });
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  ASSERT_EQ(saved->Params_SaveFolderStream(folder.get(), 0), S_OK);
  EXPECT_EQ(FolderDump(folder.get()),
            L"plain=r1.5\n"
            L"flagged=folder\n  Value=t't'\n  Flags=bytes 10 00 00 00\n"
            L"described=folder\n  Value=i2\n  Descriptor=object ParametersCreatable\n    min=i0\n"
            L"object=folder\n  Unknown=object ParametersCreatable\n    k=i4\n"
            L"Item5=folder\n  Value=i5\n  Flags=bytes 20 00 00 00\n");

  SmartPtr<IParametersCreatable> loaded = SetOf({{L"stale", MakeLong(1)}});
  ASSERT_EQ(loaded->Params_LoadFolderStream(folder.get(), kLoadReplace), S_OK);
  EXPECT_EQ(Describe(loaded.get()),
            (std::vector<std::wstring>{L"plain=r1.5/0", L"flagged=t't'/10", L"described=i2/0+d",
                                       L"object=oParametersCreatable/0", L"Item5=i5/20"}));

  SmartPtr<IFolderStream> lean = CreateObjectAs<IFolderStream>(L"FolderStream");
  saved->Params_SaveFolderStream(lean.get(), kSaveLean);
  EXPECT_NE(FolderDump(lean.get()).find(L"skipped=folder\n  Value=i6\n  Flags=bytes 00 00 00 04\n"), std::wstring::npos)
      << "kept in lean mode";

  SmartPtr<IFolderStream> small = CreateObjectAs<IFolderStream>(L"FolderStream");
  SetOf({{L"a", MakeLong(5)}, {L"b", MakeLong(6), 0x10}})->Params_SaveFolderStream(small.get(), 0);
  SmartPtr<IParametersCreatable> merged = SetOf({{L"b", MakeLong(0), 0x8}, {L"c", MakeLong(1), 0x4}});
  merged->Params_LoadFolderStream(small.get(), 0);
  EXPECT_EQ(Describe(merged.get()), (std::vector<std::wstring>{L"b=i6/10", L"c=i1/4", L"a=i5/0"})) << "merge";
}

TEST(ParameterFolderStreamTest, FileNameValuesAreStoredMapped) {
  SettingsFile settings("[Workspace]\nInstallPath=/opt/app\n[Mappings]\nData=/data\n");

  SmartPtr<IParametersCreatable> saved = SetOf({{L"file", MakeText(L"/opt/app/in/x.xml"), 0x2},
                                                {L"data", MakeText(L"/data/y.csv"), 0x4},
                                                {L"other", MakeText(L"/tmp/z"), 0x2}});
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  saved->Params_SaveFolderStream(folder.get(), 0);
  EXPECT_EQ(FolderDump(folder.get()), L"file=folder\n  Value=t'[InstallPath]/in/x.xml'\n  Flags=bytes 02 00 00 00\n"
                                     L"data=folder\n  Value=t'[Data]/y.csv'\n  Flags=bytes 04 00 00 00\n"
                                     L"other=folder\n  Value=t'/tmp/z'\n  Flags=bytes 02 00 00 00\n");

  settings.Write("[Workspace]\nInstallPath=/usr/local/app\n[Mappings]\nData=/srv/data\n");
  SmartPtr<IParametersCreatable> loaded = NewParameters();
  loaded->Params_LoadFolderStream(folder.get(), kLoadReplace);
  EXPECT_EQ(Describe(loaded.get()), (std::vector<std::wstring>{L"file=t'/usr/local/app/in/x.xml'/2",
                                                                L"data=t'/srv/data/y.csv'/4", L"other=t'/tmp/z'/2"}));
}

}  // namespace
