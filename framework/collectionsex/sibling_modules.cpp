// Discovery and loading of the modules in "./_binlinux/".
#include "sibling_modules.h"

#include <dirent.h>
#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "runtime/module_loader.h"

namespace {

constexpr char kModuleFolder[] = "./_binlinux/";
constexpr std::string_view kModuleExtension = ".so";

typedef int32_t (*CreateFunctionType)(tagREFString, void**);
typedef int32_t (*InitializeModuleType)(void*, IComponentCollection*);

std::wstring Widen(std::string_view text) { return std::wstring(text.begin(), text.end()); }

std::string Narrow(const std::wstring& text) {
  std::string result;
  result.reserve(text.size());
  for (wchar_t c : text) result.push_back(static_cast<char>(c));
  return result;
}

}  // namespace

void SiblingModules::ListFolder() {
  DIR* folder = opendir(kModuleFolder);
  if (!folder) return;
  std::vector<std::wstring> found;
  while (dirent* entry = readdir(folder)) {
    std::string_view file = entry->d_name;
    if (file.size() <= kModuleExtension.size() || file.substr(file.size() - kModuleExtension.size()) != kModuleExtension)
      continue;
    std::string_view stem = file.substr(0, file.size() - kModuleExtension.size());
    if (stem.size() > static_cast<size_t>(kMaxModuleNameLength)) continue;
    found.push_back(Widen(stem));
  }
  closedir(folder);
  std::sort(found.begin(), found.end());
  for (std::wstring& name : found) {
    bool known = std::any_of(m_Modules.begin(), m_Modules.end(), [&](const Module& m) { return m.name == name; });
    if (!known) m_Modules.push_back(Module{std::move(name)});
  }
}

bool SiblingModules::Load(Module& module, IComponentCollection* collection) {
  if (module.tried) return module.createFunction != nullptr;
  module.tried = true;
  std::string path = kModuleFolder + Narrow(module.name) + std::string(kModuleExtension);
  void* library = dlopen(path.c_str(), RTLD_NOW);  // never closed
  if (!library) {
    const char* error = dlerror();
    std::printf("Module not available %s, error %s\n", path.c_str(), error ? error : "");
    std::fflush(stdout);
    return false;
  }
  module.createFunction = dlsym(library, "CreateFunction");
  void* initialize = dlsym(library, "InitializeModule");
  if (!initialize) initialize = dlsym(library, "_Z16InitializeModulePvP20IComponentCollection");
  dlerror();
  if (initialize && collection) reinterpret_cast<InitializeModuleType>(initialize)(nullptr, collection);
  return module.createFunction != nullptr;
}

CreationFunction SiblingModules::FindClass(tagREFString className, IComponentCollection* collection,
                                           std::wstring* moduleName) {
  ListFolder();  // picks up modules dropped into the folder since the last search
  for (Module& module : m_Modules) {
    if (!Load(module, collection)) continue;
    void* create = nullptr;
    if (reinterpret_cast<CreateFunctionType>(module.createFunction)(className, &create) == 0 && create) {
      *moduleName = module.name;
      return reinterpret_cast<CreationFunction>(create);
    }
  }
  return nullptr;
}
