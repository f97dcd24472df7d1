// Sibling-module loading and creation of framework objects by class name.
#include "module_loader.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <vector>

SmartPtr<IComponentCollection> gGlobalComponentCollection;

namespace {

// Guards gGlobalComponentCollection: threads that make it on first use
// together make it once, and a reader never sees it half replaced. Recursive
// because making it loads a module, which may hand the collection back.
std::recursive_mutex& GlobalComponentsLock() {
  static std::recursive_mutex lock;
  return lock;
}

constexpr char kModuleFolder[] = "./_binlinux/";
constexpr int kModuleFolderLength = sizeof(kModuleFolder) - 1;  // 12
constexpr int kModulePathSize = 256;

typedef int32_t (*CreateFunctionType)(tagREFString, void**);
typedef int32_t (*InitializeModuleType)(void*, IComponentCollection*);

// "./_binlinux/" + module name (one byte per character) + ".so".
bool BuildModulePath(tagREFString moduleName, char (&path)[kModulePathSize]) {
  if (moduleName.length < 0 || moduleName.length > kMaxModuleNameLength || !moduleName.text) return false;
  std::memset(path, 0, sizeof(path));
  std::memcpy(path, kModuleFolder, kModuleFolderLength);
  std::vector<wchar_t> terminated(moduleName.text, moduleName.text + moduleName.length);
  terminated.push_back(L'\0');
  std::wcstombs(path + kModuleFolderLength, terminated.data(), static_cast<size_t>(moduleName.length));
  std::memcpy(path + kModuleFolderLength + moduleName.length, ".so", 4);
  return true;
}

}  // namespace

CreationFunction MODULECreateFunction(tagREFString moduleName, tagREFString className) {
  char path[kModulePathSize];
  if (!BuildModulePath(moduleName, path)) return nullptr;

  void* library = dlopen(path, RTLD_NOW);  // never closed: reopening only counts up
  if (!library) {
    const char* error = dlerror();
    std::printf("Module not available %s, error %s\n", path, error ? error : "");
    std::fflush(stdout);
    dlerror();
    return nullptr;
  }
  auto createFunction = reinterpret_cast<CreateFunctionType>(dlsym(library, "CreateFunction"));
  auto initialize = reinterpret_cast<InitializeModuleType>(dlsym(library, "InitializeModule"));
  if (!initialize)
    initialize = reinterpret_cast<InitializeModuleType>(dlsym(library, "_Z16InitializeModulePvP20IComponentCollection"));
  dlerror();
  if (!createFunction) return nullptr;

  // The other module shares this module's collection; done on every call.
  if (initialize) {
    if (SmartPtr<IComponentCollection> shared = CurrentGlobalComponents()) initialize(nullptr, shared.get());
  }

  void* function = nullptr;
  createFunction(className, &function);
  return reinterpret_cast<CreationFunction>(function);
}

SmartPtr<IComponentCollection> CurrentGlobalComponents() {
  std::lock_guard<std::recursive_mutex> guard(GlobalComponentsLock());
  return gGlobalComponentCollection;
}

void ReplaceGlobalComponents(IComponentCollection* collection) {
  SmartPtr<IComponentCollection> old;
  {
    std::lock_guard<std::recursive_mutex> guard(GlobalComponentsLock());
    old = std::move(gGlobalComponentCollection);
    gGlobalComponentCollection = SmartPtr<IComponentCollection>(collection);
  }
  // `old` is released here, outside the lock.
}

IComponentCollection* GLOBALComponents() {
  std::lock_guard<std::recursive_mutex> guard(GlobalComponentsLock());
  if (!gGlobalComponentCollection) {
    CreationFunction create = MODULECreateFunction(RefOf(L"CollectionsEx"), RefOf(L"GlobalComponentCollection"));
    if (create) {
      IID iid = IID_IComponentCollection;
      void* answer = nullptr;
      create(nullptr, &iid, &answer);
      gGlobalComponentCollection = SmartPtr<IComponentCollection>::Adopt(static_cast<IComponentCollection*>(answer));
    }
    if (!gGlobalComponentCollection) return nullptr;
  }
  IComponentCollection* collection = gGlobalComponentCollection.get();
  collection->AddRef();
  return collection;
}

void* CreateObject(tagREFString className, IID* iid) {
  SmartPtr<IComponentCollection> collection = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  if (!collection) return nullptr;
  void* answer = nullptr;
  collection->CreateByName(className, iid, &answer);  // a failure shows only as a null answer
  return answer;
}

IComponentString* GetComponentString(IString* className) {
  SmartPtr<IComponentCollection> collection = SmartPtr<IComponentCollection>::Adopt(GLOBALComponents());
  if (!collection) return nullptr;
  int32_t handle = -1;
  if (collection->Find(className, &handle) < 0 || handle < 0) return nullptr;
  SmartPtr<IUnknown> item;
  collection->GetItem(handle, item.Receive());
  return QueryAs<IComponentString>(item.get()).Detach();
}
