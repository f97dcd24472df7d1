// The settings file: its location, reading and writing, and the default installation folder.
#include "settings_file.h"

#include <dlfcn.h>
#include <limits.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "text_file.h"

namespace {

constexpr char kSettingsVariable[] = "PARAMS_SETTINGS";
constexpr char kDefaultSettingsFile[] = "./_binlinux/Settings.ini";
constexpr size_t kMaxSettingsBytes = size_t{16} << 20;

}  // namespace

std::string SettingsFilePath() {
  const char* configured = std::getenv(kSettingsVariable);
  return configured && *configured ? std::string(configured) : std::string(kDefaultSettingsFile);
}

IniDocument LoadIniFile(const std::string& path) {
  std::wstring text;
  if (FAILED(ReadTextFile(path, kMaxSettingsBytes, &text))) return IniDocument();
  return IniDocument::Parse(text);
}

HRESULT SaveIniFile(const std::string& path, const IniDocument& document) {
  return WriteWholeFile(path, EncodeUtf8(document.Serialize()));
}

std::wstring DefaultInstallPath() {
  std::filesystem::path folder;
  Dl_info info{};
  char resolved[PATH_MAX];
  if (dladdr(reinterpret_cast<void*>(&DefaultInstallPath), &info) && info.dli_fname &&
      realpath(info.dli_fname, resolved)) {
    folder = std::filesystem::path(resolved).parent_path().parent_path();
  } else if (getcwd(resolved, sizeof(resolved))) {
    folder = resolved;
  }
  return DecodeUtf8(folder.native());
}
