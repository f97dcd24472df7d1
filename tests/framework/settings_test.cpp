// The settings store ("Registry") through the framework. ("ActiveWorkspace" is exercised by the file-name tests.)
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "storage_test_support.h"

using namespace test_support;
using storage_test::SettingsFile;

namespace {

// One line of C++ per section; "\xE9" is an 8-bit character.
const std::string kSettings =
    "; settings of the test\n[Workspace]\nInstallPath = /opt/app\nAppPath=/home/u/app\r\nAccent=/\xE9t\xE9\n"
    "[UI]\nUIFileArchive_Lean=0\n"
    "[Mappings]\nData=/data/files\n  data2 = /mnt/x=y  \n# not a line\nno equals sign\n=no name\nAlpha=/alpha\n"
    "[workspace]\nActiveWorkspace=/work/spaces/main.wsp\n";

// The value's text; "<not found>" for E_ITEMNOTFOUND with no string, "<result N>" for anything else.
template <class Settings>
std::wstring ReadSetting(Settings* settings, const std::wstring& section, const std::wstring& name) {
  SmartPtr<IString> value;
  const HRESULT code = settings->GetString(Ref(section), Ref(name), value.Receive());
  if (code == S_OK) return TextOf(value);
  return code == E_ITEMNOTFOUND && !value ? L"<not found>" : L"<result " + std::to_wstring(code) + L">";
}

// UTF-8 bytes of 8-bit text.
std::string Utf8Of(const std::string& text) {
  std::string utf8;
  for (unsigned char c : text)
    utf8 += c < 0x80 ? std::string(1, char(c)) : std::string{char(0xC0 | c >> 6), char(0x80 | (c & 0x3F))};
  return utf8;
}

std::wstring ListOf(IRegistry* registry, const std::wstring& section) {
  int32_t count = -1;
  EXPECT_EQ(registry->get_ListCount(Ref(section), &count), S_OK);
  std::wstring list;
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IVariant> value;
    registry->get_ListName(Ref(section), i, name.Receive());
    registry->get_ListValue(Ref(section), i, value.Receive());
    list += TextOf(name) + L"=" + DescribeValue(value.get()) + L";";
  }
  return list;
}

}  // namespace

// Settings files are read as the file archive reads text, so every encoding it writes loads.
TEST(Registry, ReadsValuesAndListsBySectionAndNameInEveryEncoding) {
  struct Encoding { const char* label; std::string bytes; };
  const Encoding encodings[] = {{"UTF-16 with mark", "\xFF\xFE" + storage_test::Utf16(kSettings)},
                                {"UTF-8 with mark", "\xEF\xBB\xBF" + Utf8Of(kSettings)}, {"8-bit text", kSettings}};
  struct Case { const wchar_t* section; const wchar_t* name; const wchar_t* expected; };
  const Case cases[] = {
      {L"WORKSPACE", L"installpath", L"/opt/app"},  // names are matched without regard to case
      {L"Workspace", L"AppPath", L"/home/u/app"},   // the carriage return is not part of the value
      {L"UI", L"UIFileArchive_Lean", L"0"}, {L"Workspace", L"Accent", L"/\u00E9t\u00E9"},
      {L"Mappings", L"data2", L"/mnt/x=y"},  // split at the first "=", blanks trimmed
      {L"Workspace", L"ActiveWorkspace", L"/work/spaces/main.wsp"},  // a repeated section is one section
      {L"UI", L"Missing", L"<not found>"}, {L"Nowhere", L"AppPath", L"<not found>"},
  };
  for (const Encoding& encoding : encodings) {
    SCOPED_TRACE(encoding.label);
    SettingsFile settings(encoding.bytes);
    SmartPtr<IRegistryEx> registry = CreateObjectAs<IRegistryEx>(L"Registry");
    ASSERT_TRUE(registry);
    for (const Case& c : cases)
      EXPECT_EQ(ReadSetting(registry.get(), c.section, c.name), c.expected) << c.section << "/" << c.name;
    // Lists keep file order and skip comments and lines without a name or "=".
    EXPECT_EQ(ListOf(registry.get(), L"Mappings"), L"Data=t'/data/files';data2=t'/mnt/x=y';Alpha=t'/alpha';");
    EXPECT_EQ(ListOf(registry.get(), L"None"), L"");
    SmartPtr<IString> name;
    EXPECT_EQ(registry->get_ListName(Ref(L"Mappings"), 3, name.Receive()), E_INVALIDARG);
    EXPECT_EQ(registry->get_ListName(Ref(L"Mappings"), -1, name.Receive()), E_INVALIDARG);
  }
  // A valid four-byte sequence at the very end is read as 8-bit text (the strict test wants one byte more).
  SettingsFile settings("[a]\nk=\xF0\x9F\x98\x80");
  EXPECT_EQ(ReadSetting(CreateObjectAs<IRegistry>(L"Registry").get(), L"a", L"k"), L"\u00F0\u009F\u0098\u0080");
}

// A missing file means empty settings, and the install path defaults to the folder holding _binlinux/, which
// for the tests is the current one.
TEST(Registry, AMissingFileMeansEmptySettingsAndTheModulesFolder) {
  SettingsFile settings("[UI]\nUIFileArchive_Lean=1\n");
  setenv("PARAMS_SETTINGS", (settings.Path() + ".absent").c_str(), 1);
  SmartPtr<IRegistryEx> registry = CreateObjectAs<IRegistryEx>(L"Registry");
  EXPECT_EQ(ReadSetting(registry.get(), L"UI", L"UIFileArchive_Lean"), L"<not found>");
  const std::string folder = std::filesystem::canonical(std::filesystem::current_path()).string();
  EXPECT_EQ(ReadSetting(registry.get(), L"Workspace", L"InstallPath"), std::wstring(folder.begin(), folder.end()));
}
