// Tests of a parameter set's own file: settings and markers, names, the bytes
// of saved files, the form chosen by extension, and failed saves and loads
// that leave the old file and the set as they were (saving under a full disk
// or a killed process is in the fault-injection tests).
#include "archive/file_archive.h"
#include "archive/file_names.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "../parameters/persistence_test_support.h"
#include "parameters/parameters_creatable.h"

namespace {

using namespace persistence_test;

const std::string kPrologText =
    "<?xml version=\"1.0\"?>\r\n<?xml-stylesheet href=\"generic.xsl\" type=\"text/xsl\"?>\r\n";

int32_t Setting(IFileArchive* archive, int32_t code) {
  int32_t value = -99;
  archive->Inquire(code, &value);
  return value;
}

// The changed (0) and loaded (1) markers.
std::pair<int32_t, int32_t> Markers(IFileArchive* archive) { return {Setting(archive, 0), Setting(archive, 1)}; }

TEST(FileArchiveTest, ControlAndInquireCodes) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  SmartPtr<IFileArchive> archive = QueryAs<IFileArchive>(set.get());
  ASSERT_TRUE(archive) << "a new set answers IFileArchive";
  struct Case { int32_t code, value; HRESULT control, inquire; int32_t seen; };
  const Case cases[] = {
      {0, 7, S_OK, S_ARCHIVE_STATE, 7}, {1, 1, S_OK, S_ARCHIVE_STATE, 1}, {2, 3, S_OK, S_OK, 3},
      {3, 5, S_OK, S_OK, 5},           {4, 0, S_OK, S_ARCHIVE_SETTING, 0}, {4, -1, S_OK, E_INVALIDARG, -99},
      {5, 1, E_INVALIDARG, E_INVALIDARG, -99}, {-1, 1, E_INVALIDARG, E_INVALIDARG, -99},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(archive->Control(c.code, c.value), c.control) << c.code;
    int32_t seen = -99;
    EXPECT_EQ(archive->Inquire(c.code, &seen), c.inquire) << c.code;
    EXPECT_EQ(seen, c.seen) << c.code;
  }
  EXPECT_EQ(archive->Control(6, 1), S_OK) << "the object's own setting";
}

TEST(FileArchiveTest, FilenameMarkersExpansionAndName) {
  SmartPtr<IFileArchive> archive = QueryAs<IFileArchive>(NewParameters().get());
  SmartPtr<IString> name;
  EXPECT_EQ(archive->get_Filename(name.Receive()), E_FAIL);
  EXPECT_EQ(archive->get_Name(name.Receive()), E_FAIL);
  archive->put_Filename(MakeString(L"/d/params.v1.xml").get());
  EXPECT_EQ(Markers(archive.get()), std::make_pair(1, 0));
  archive->get_Name(name.Receive());
  EXPECT_EQ(TextOf(name), L"params.v1");
  archive->Control(2, 1);
  archive->get_Name(name.Receive());
  EXPECT_EQ(TextOf(name), L"params.v1.xml") << "setting 2 keeps the extension";
  archive->Control(0, 0);
  archive->Control(1, 1);
  archive->put_Filename(MakeString(L"/D/PARAMS.V1.XML").get());
  EXPECT_EQ(Markers(archive.get()), std::make_pair(0, 1)) << "same name but for case: no change";

  SmartPtr<IString> install;
  FILENAMEGetInstallPath(install.Receive());
  for (const wchar_t* given : {L"./data/p.xml", L".\\data\\p.xml"}) {
    archive->put_Filename(MakeString(given).get());
    archive->get_Filename(name.Receive());
    EXPECT_EQ(TextOf(name), TextOf(install) + L"/data/p.xml") << given;
  }
}

TEST(FileArchiveTest, SavedXMLFileBytes) {
  const std::string folder = ScratchFolder("xmlbytes");
  SmartPtr<IParametersCreatable> set = SetOf({{L"speed", MakeLong(3)}});
  SmartPtr<IFileArchive> archive = ArchiveOf(set.get(), folder + "/p.xml");
  ASSERT_EQ(archive->Save(), S_OK);
  EXPECT_EQ(FileBytes(folder + "/p.xml"),
            "\xFF\xFE" + Utf16(kPrologText + "<p>\r\n  <speed>3</speed>\r\n</p>\r\n"));
  EXPECT_EQ(Markers(archive.get()), std::make_pair(0, 1));

  archive->Control(4, 1);
  ASSERT_EQ(archive->Save(), S_OK);
  EXPECT_EQ(FileBytes(folder + "/p.xml"), kPrologText + "<p>\r\n  <speed>3</speed>\r\n</p>\r\n") << "UTF-8 bytes";
  std::filesystem::create_directories(folder + "/blocked.xml/inside");  // a folder stands where the file goes
  EXPECT_EQ(ArchiveOf(set.get(), folder + "/blocked.xml")->Save(), E_FAIL);
  EXPECT_EQ(ArchiveOf(set.get(), folder + "/no/such/folder.xml")->Save(), E_FAIL);
  std::error_code ignored;
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder, ignored), {}), 2) << "no temporary left";

  SmartPtr<CParametersCreatable> object = NewObject<CParametersCreatable>();
  object->Add(MakeString(L"speed").get(), MakeLong(3).get(), nullptr, 0);
  ArchiveOf(object->GetUnknown(), folder + "/lean.xml");
  ASSERT_EQ(object->SaveXML(MakeString(L"my.xsl").get(), kSaveLean), S_OK);
  EXPECT_EQ(FileBytes(folder + "/lean.xml"),
            "\xFF\xFE" + Utf16("<?xml version=\"1.0\"?>\r\n<?xml-stylesheet href=\"my.xsl\" type=\"text/xsl\"?>\r\n"
                               "<lean><speed>3</speed></lean>"));
}

TEST(FileArchiveTest, FormChosenByExtension) {
  const std::string folder = ScratchFolder("routing");
  struct Case { const char* file; HRESULT result; std::string start; };  // the first bytes written
  const Case cases[] = {
      {"a.xml", S_OK, "\xFF\xFE<\0"},  {"a.XLS", S_OK, "\xFF\xFE<\0"}, {"a.xsd", S_OK, "\xFF\xFE<\0"},
      {"a.tab", S_OK, "PFLD"},         {"a.txt", S_OK, "PFLD"},       {"a.INI", S_OK, "speed=3\n"},
      {"a.i", S_OK, "speed=3\n"},      {"a.m", S_OK, "3\n"},          {"a.mcsv", S_OK, "3\n"},
      {"a.csv", E_FAIL, ""},           {"noext", E_FAIL, ""},
  };
  for (const Case& c : cases) {
    SmartPtr<IParametersCreatable> set = SetOf({{L"speed", MakeLong(3)}});
    const std::string path = folder + "/" + c.file;
    EXPECT_EQ(ArchiveOf(set.get(), path)->Save(), c.result) << c.file;
    EXPECT_EQ(FileBytes(path).substr(0, c.start.size()), c.start) << c.file;
  }
  struct LoadCase { const char* file; HRESULT result; };
  WriteFile(folder + "/p.XML", "\xFF\xFE" + Utf16("<p><speed>4</speed></p>"));
  WriteFile(folder + "/p.x", "<p><speed>4</speed></p>");
  WriteFile(folder + "/p.txt", FileBytes(folder + "/a.txt"));
  for (const LoadCase& c : {LoadCase{"p.XML", S_OK}, LoadCase{"p.x", S_OK}, LoadCase{"p.txt", E_FAIL}}) {
    SmartPtr<IParametersCreatable> set = SetOf({{L"speed", MakeLong(3)}});
    SmartPtr<IFileArchive> archive = ArchiveOf(set.get(), folder + "/" + c.file);
    EXPECT_EQ(archive->Load(), c.result) << c.file;
    EXPECT_EQ(Describe(set.get()), (std::vector<std::wstring>{c.result == S_OK ? L"speed=i4/0" : L"speed=i3/0"}))
        << c.file;
    EXPECT_EQ(Setting(archive.get(), 1), c.result == S_OK ? 1 : 0) << c.file;
  }
}

TEST(FileArchiveTest, FailedLoadLeavesTheSetAsItWas) {
  const std::string folder = ScratchFolder("badload");
  WriteFile(folder + "/malformed.xml", "\xFF\xFE" + Utf16("<p><speed>4</speed>"));
  WriteFile(folder + "/empty.xml", "");
  WriteFile(folder + "/noelement.xml", "\xFF\xFE" + Utf16(kPrologText));
  SmartPtr<IParametersCreatable> source = SetOf({{L"speed", MakeLong(3)}, {L"label", MakeText(L"a<b")}});
  ASSERT_EQ(ArchiveOf(source.get(), folder + "/good.tab")->Save(), S_OK);
  const std::string image = FileBytes(folder + "/good.tab");
  WriteFile(folder + "/truncated.tab", image.substr(0, image.size() - 3));
  for (const char* file : {"malformed.xml", "empty.xml", "noelement.xml", "missing.xml", "truncated.tab"}) {
    SmartPtr<CParametersCreatable> set = NewObject<CParametersCreatable>();
    set->Add(MakeString(L"keep").get(), MakeLong(1).get(), nullptr, 0x10);
    SmartPtr<IFileArchive> archive = ArchiveOf(set->GetUnknown(), folder + "/" + file);
    archive->Control(1, 0);
    const bool folderStream = std::string(file).find(".tab") != std::string::npos;
    const HRESULT result = folderStream ? set->LoadFolderStream() : archive->Load();
    EXPECT_LT(result, 0) << file;
    EXPECT_EQ(Describe(set.get()), (std::vector<std::wstring>{L"keep=i1/10"})) << file;
    EXPECT_EQ(Setting(archive.get(), 1), 0) << file;
  }
}

}  // namespace
