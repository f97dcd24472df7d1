// Loading the framework as a host does.
#include "host.h"

#include <dlfcn.h>
#include <limits.h>
#include <unistd.h>

#include <filesystem>

#include "runtime/module_loader.h"

namespace {

typedef int32_t (*CreateFunctionType)(tagREFString, void**);

}  // namespace

std::string ExecutableFolder() {
  char buffer[PATH_MAX];
  ssize_t length = readlink("/proc/self/exe", buffer, sizeof(buffer) - 1);
  if (length <= 0) return ".";
  return std::filesystem::path(std::string(buffer, static_cast<size_t>(length))).parent_path().string();
}

std::string AbsolutePath(const std::string& path) {
  std::error_code error;
  std::filesystem::path absolute = std::filesystem::absolute(path, error);
  return error ? path : absolute.lexically_normal().string();
}

bool Host::Start(const std::string& moduleFolder, std::string* error) {
  std::filesystem::path modules = std::filesystem::path(moduleFolder) / "_binlinux";
  if (!std::filesystem::is_directory(modules)) {
    *error = "no module folder " + modules.string();
    return false;
  }
  if (chdir(moduleFolder.c_str()) != 0) {
    *error = "cannot enter " + moduleFolder;
    return false;
  }
  void* library = dlopen("./_binlinux/CollectionsEx.so", RTLD_NOW);
  if (!library) {
    const char* reason = dlerror();
    *error = std::string("cannot load ./_binlinux/CollectionsEx.so: ") + (reason ? reason : "");
    return false;
  }
  auto createFunction = reinterpret_cast<CreateFunctionType>(dlsym(library, "CreateFunction"));
  const wchar_t kClass[] = L"GlobalComponentCollection";
  void* create = nullptr;
  if (!createFunction || createFunction({static_cast<int32_t>(wcslen(kClass)), kClass}, &create) != 0 || !create) {
    *error = "CollectionsEx.so does not serve GlobalComponentCollection";
    return false;
  }
  IID iid = IID_IComponentCollection;
  reinterpret_cast<CreationFunction>(create)(nullptr, &iid, m_Collection.ReceiveVoid());
  if (!m_Collection) {
    *error = "the global component collection could not be created";
    return false;
  }
  // The formula scanner linked into the tool makes its framework objects through this same collection.
  ReplaceGlobalComponents(m_Collection.get());
  return true;
}

std::wstring Host::ModuleOf(const std::wstring& className) const {
  if (!m_Collection) return L"";
  SmartPtr<ICreatableString> name = Create<ICreatableString>(L"CreatableString");
  if (!name) return L"";
  name->SetText({static_cast<int32_t>(className.size()), className.c_str()});
  int32_t handle = -1;
  if (m_Collection->Find(name.get(), &handle) < 0 || handle < 0) return L"";
  SmartPtr<IUnknown> item;
  m_Collection->GetItem(handle, item.Receive());
  SmartPtr<IComponentString> component = QueryAs<IComponentString>(item.get());
  SmartPtr<IString> module;
  if (!component || component->GetProperty(kComponentModuleName, module.Receive()) < 0 || !module) return L"";
  const wchar_t* text = nullptr;
  int32_t length = 0;
  module->GetBuffer(&text, &length);
  return std::wstring(text, static_cast<size_t>(length));
}
