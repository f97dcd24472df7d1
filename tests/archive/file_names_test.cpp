// Tests of stored file names: folders from the settings, mapping, unmapping,
// relative and absolute names.
#include "archive/file_names.h"

#include <gtest/gtest.h>

#include "../parameters/persistence_test_support.h"

namespace {

using namespace persistence_test;

const char kSettings[] =
    "[Workspace]\nInstallPath=/opt/app\nAppPath=/home/user/app\n"
    "[Mappings]\nData=/data/files\nShared=/mnt/shared\n";

struct Result { HRESULT code; std::wstring text; };

template <class Call>
Result Produced(Call call) {
  SmartPtr<IString> out;
  const HRESULT code = call(out.Receive());
  return {code, out ? TextOf(out) : L"<null>"};
}

TEST(FileNamesTest, MapsInstallFolderAndMappings) {
  SettingsFile settings(kSettings);
  struct Case { const wchar_t* name; int16_t strip; HRESULT code; const wchar_t* expected; };
  const Case cases[] = {
      {L"/opt/app/data/x.xml", 0, S_OK, L"[InstallPath]/data/x.xml"},
      {L"/opt/app/data/x.xml", 1, S_OK, L"data/x.xml"}, {L"/opt/app", 1, S_OK, L"[InstallPath]"},
      {L"/opt/app/", 1, S_OK, L"[InstallPath]"}, {L"/opt/application/x", 0, S_OK, L"[InstallPath]lication/x"},
      {L"//opt/app/y", 0, S_OK, L"[InstallPath]/y"},
      {L"/OPT/App/z", 0, S_OK, L"[InstallPath]/z"}, {L"/data/files/a.csv", 0, S_OK, L"[Data]/a.csv"},
      {L"/mnt/shared/q", 0, S_OK, L"[Shared]/q"}, {L"/mnt/share", 0, E_FAIL, L"<null>"}, {L"", 0, E_FAIL, L"<null>"},
  };
  for (const Case& c : cases) {
    const Result r = Produced([&](IString** out) { return FILENAMEMap(MakeString(c.name).get(), out, c.strip); });
    EXPECT_EQ(r.code, c.code) << c.name;
    EXPECT_EQ(r.text, c.expected) << c.name;
  }
}

TEST(FileNamesTest, UnmapsTags) {
  SettingsFile settings(kSettings);
  struct Case { const wchar_t* name; HRESULT code; const wchar_t* expected; };
  const Case cases[] = {
      {L"[InstallPath]\\data\\x.xml", S_OK, L"/opt/app/data/x.xml"}, {L"[data]/a.csv", S_OK, L"/data/files/a.csv"},
      {L"[Nope]/x", E_FAIL, L"<null>"}, {L"[Data", E_FAIL, L"<null>"}, {L"", E_FAIL, L"<null>"},
  };
  for (const Case& c : cases) {
    const Result r = Produced([&](IString** out) { return FILENAMEUnmap(MakeString(c.name).get(), out); });
    EXPECT_EQ(r.code, c.code) << c.name;
    EXPECT_EQ(r.text, c.expected) << c.name;
  }
  EXPECT_EQ(FILENAMEUnmap(nullptr, nullptr), E_POINTER);
}

TEST(FileNamesTest, RelativeAndAbsoluteNamesAreInverse) {
  // `back`: the absolute name again, when it differs from `name`.
  struct Case { const wchar_t* base; const wchar_t* name; HRESULT code; const wchar_t* relative;
                const wchar_t* back = nullptr; };
  const Case cases[] = {
      {L"/a/b/c/d", L"/a/b/x/y.xml", S_OK, L"..\\..\\x/y.xml"}, {L"/a/b", L"/a/b/d/e.xml", S_OK, L"d/e.xml"},
      {L"/A/B/c", L"/a/b/d/e", S_OK, L"..\\d/e", L"/A/B/d/e"},
      {L"/a/b/", L"/a/b/d/e.xml", S_OK, L"..\\d/e.xml"},  // a trailing separator is one more level
      {L"/a", L"/a/x", S_FALSE, L"/a/x"}, {L"/x/y", L"/a/b/c", S_FALSE, L"/a/b/c"}, {L"", L"/a/b/c", S_OK, L"/a/b/c"},
  };
  for (const Case& c : cases) {
    const Result relative = Produced([&](IString** out) {
      return FILENAMECreateRelative(MakeString(c.base).get(), MakeString(c.name).get(), out);
    });
    EXPECT_EQ(relative.code, c.code) << c.base << L" " << c.name;
    EXPECT_EQ(relative.text, c.relative) << c.base << L" " << c.name;
    const Result absolute = Produced([&](IString** out) {
      return FILENAMECreateAbsolute(MakeString(c.base).get(), MakeString(relative.text).get(), out);
    });
    EXPECT_EQ(absolute.text, c.back ? c.back : c.name) << L"back from " << relative.text;
  }
  const Result tooHigh = Produced([](IString** out) {
    return FILENAMECreateAbsolute(MakeString(L"/a").get(), MakeString(L"..\\..\\..\\x").get(), out);
  });
  EXPECT_EQ(tooHigh.code, E_FAIL);
}

TEST(FileNamesTest, FoldersComeFromWorkspaceAndSettings) {
  {
    SettingsFile settings(kSettings);
    EXPECT_EQ(Produced(FILENAMEGetInstallPath).text, L"/opt/app");
    EXPECT_EQ(Produced(FILENAMEGetAppPath).text, L"/home/user/app") << "no active workspace";
    const Result mapped = Produced([](IString** out) {
      return FILENAMECreateAbsolute(MakeString(L"[Data]/f").get(), out, 0);
    });
    EXPECT_EQ(mapped.text, L"/data/files/f");
    const Result againstInstall = Produced([](IString** out) {
      return FILENAMECreateAbsolute(MakeString(L"..\\lib/x.so").get(), out, 1);
    });
    EXPECT_EQ(againstInstall.text, L"/opt/lib/x.so");
  }
  SettingsFile settings("[Workspace]\nActiveWorkspace=/work/ws/main.wsp\nAppPath=/unused\n");
  EXPECT_EQ(Produced(FILENAMEGetAppPath).text, L"/work/ws");
  const Result relative = Produced([](IString** out) {
    return FILENAMECreateAbsolute(MakeString(L"data/p.xml").get(), out, 0);
  });
  EXPECT_EQ(relative.text, L"/work/ws/data/p.xml");
}

}  // namespace
