// Tests of a parameter set as one CSV line and in the folder-stream layout.
#include <gtest/gtest.h>

#include <cstdlib>

#include "persistence_test_support.h"

namespace {

using namespace persistence_test;

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
  struct Case {
    int32_t flags;
    std::wstring expected;
  };
  const Case cases[] = {
      {0, L"1,9,x,y=z"},
      {0x10000, L"a=1,hidden=9,b=x,y=z"},
      {kSaveLean, L"1,x,y=z"},
      {kSaveLean | 0x10000, L"a=1,b=x,y=z"},
  };
  for (const Case& c : cases) EXPECT_EQ(CSVOf(set.get(), c.flags), c.expected) << c.flags;
  SmartPtr<IDataStream> bytes = CreateObjectAs<IDataStream>(L"DataStream");
  EXPECT_EQ(set->Params_SaveCSV(bytes.get(), 0), S_OK);
  EXPECT_EQ(BytesOf(bytes.get()), "");
}

// The entries of a folder: "name" for values and binaries, "name/" and its entries for folders.
std::wstring EntriesOf(IFolderStream* folder) {
  SmartPtr<ISuperCollection> entries = QueryAs<ISuperCollection>(folder);
  std::wstring text;
  int32_t count = 0;
  entries->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    int32_t kind = 0;
    entries->get_ItemName(i, name.Receive());
    entries->get_ItemFlags(i, &kind);
    text += TextOf(name);
    if (kind == kFolderEntryFolder) {
      SmartPtr<IFolderStream> sub;
      folder->OpenFolder(TextView(name.get()), sub.Receive());
      text += L"/(" + EntriesOf(sub.get()) + L")";
    }
    text += L" ";
  }
  return text;
}

TEST(ParameterFolderStreamTest, LayoutCasesRoundTrip) {
  SmartPtr<IVariant> object = MakeVariant();
  object->Assign(SetOf({{L"k", MakeLong(4)}}).get());
  SmartPtr<IParametersCreatable> saved = SetOf({
      {L"plain", MakeDouble(1.5)},
      {L"flagged", MakeText(L"t"), 0x10},
      {L"described", MakeLong(2), 0, AsUnknown(SetOf({{L"min", MakeLong(0)}}))},
      {L"object", object},
      {L"", MakeLong(5), 0x20},
      {L"skipped", MakeLong(6), 0x4000000},
  });
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  ASSERT_EQ(saved->Params_SaveFolderStream(folder.get(), 0), S_OK);
  EXPECT_EQ(EntriesOf(folder.get()),
            L"plain flagged/(Value Flags ) described/(Value Descriptor ) object/(Unknown ) Item5/(Value Flags ) ");

  SmartPtr<IParametersCreatable> loaded = SetOf({{L"stale", MakeLong(1)}});
  ASSERT_EQ(loaded->Params_LoadFolderStream(folder.get(), kLoadReplace), S_OK);
  EXPECT_EQ(Describe(loaded.get()),
            (std::vector<std::wstring>{L"plain=r1.5/0", L"flagged=t't'/10", L"described=i2/0+d",
                                       L"object=oParametersCreatable/0", L"Item5=i5/20"}));

  SmartPtr<IFolderStream> lean = CreateObjectAs<IFolderStream>(L"FolderStream");
  saved->Params_SaveFolderStream(lean.get(), kSaveLean);
  EXPECT_NE(EntriesOf(lean.get()).find(L"skipped/(Value Flags )"), std::wstring::npos) << "kept in lean mode";
}

TEST(ParameterFolderStreamTest, MergeKeepsOtherParameters) {
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  SetOf({{L"a", MakeLong(5)}, {L"b", MakeLong(6), 0x10}})->Params_SaveFolderStream(folder.get(), 0);
  SmartPtr<IParametersCreatable> set = SetOf({{L"b", MakeLong(0), 0x8}, {L"c", MakeLong(1), 0x4}});
  set->Params_LoadFolderStream(folder.get(), 0);
  EXPECT_EQ(Describe(set.get()), (std::vector<std::wstring>{L"b=i6/10", L"c=i1/4", L"a=i5/0"}));
}

TEST(ParameterFolderStreamTest, FileNameValuesAreStoredMapped) {
  const std::string settings = ScratchFolder("mapped") + "/Settings.ini";
  WriteFile(settings, "[Workspace]\nInstallPath=/opt/app\n[Mappings]\nData=/data\n");
  const char* previous = std::getenv("PARAMS_SETTINGS");
  const std::string restore = previous ? previous : "";
  setenv("PARAMS_SETTINGS", settings.c_str(), 1);

  SmartPtr<IParametersCreatable> saved = SetOf({{L"file", MakeText(L"/opt/app/in/x.xml"), 0x2},
                                                {L"data", MakeText(L"/data/y.csv"), 0x4},
                                                {L"other", MakeText(L"/tmp/z"), 0x2}});
  SmartPtr<IFolderStream> folder = CreateObjectAs<IFolderStream>(L"FolderStream");
  saved->Params_SaveFolderStream(folder.get(), 0);
  std::vector<std::wstring> stored;
  for (const wchar_t* name : {L"file", L"data", L"other"}) {
    SmartPtr<IFolderStream> sub;
    folder->OpenFolder(RefOf(name), sub.Receive());
    SmartPtr<IString> text;
    sub->ReadString(RefOf(L"Value"), text.Receive());
    stored.push_back(TextOf(text));
  }
  EXPECT_EQ(stored, (std::vector<std::wstring>{L"[InstallPath]/in/x.xml", L"[Data]/y.csv", L"/tmp/z"}));

  WriteFile(settings, "[Workspace]\nInstallPath=/usr/local/app\n[Mappings]\nData=/srv/data\n");
  SmartPtr<IParametersCreatable> loaded = NewParameters();
  loaded->Params_LoadFolderStream(folder.get(), kLoadReplace);
  EXPECT_EQ(Describe(loaded.get()), (std::vector<std::wstring>{L"file=t'/usr/local/app/in/x.xml'/2",
                                                                L"data=t'/srv/data/y.csv'/4", L"other=t'/tmp/z'/2"}));
  setenv("PARAMS_SETTINGS", restore.c_str(), 1);
}

}  // namespace
