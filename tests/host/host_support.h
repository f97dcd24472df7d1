// Loading a built module with dlopen and finding its entry points, as a host does.
#pragma once

#include <dlfcn.h>

#include <cwchar>
#include <string>

#include "params.h"
#include "runtime/smart_ptr.h"

typedef int32_t (*CreateFunctionType)(tagREFString, void**);
typedef int32_t (*InitializeModuleType)(void*, IComponentCollection*);

struct LoadedModule {
  void* library = nullptr;
  CreateFunctionType createFunction = nullptr;
  InitializeModuleType initialize = nullptr;
};

inline LoadedModule Load(const char* file) {
  LoadedModule module;
  module.library = dlopen((std::string("./_binlinux/") + file).c_str(), RTLD_NOW);
  if (!module.library) return module;
  module.createFunction = reinterpret_cast<CreateFunctionType>(dlsym(module.library, kCreateFunctionSymbol));
  module.initialize = reinterpret_cast<InitializeModuleType>(dlsym(module.library, kInitializeModuleSymbol));
  return module;
}

inline tagREFString View(const wchar_t* text) { return {static_cast<int32_t>(wcslen(text)), text}; }

// A new object of `className` from the module, answering I; null when the class is not served.
template <class I>
SmartPtr<I> CreateFromModule(const LoadedModule& module, const wchar_t* className) {
  SmartPtr<I> object;
  void* create = nullptr;
  if (!module.createFunction || module.createFunction(View(className), &create) != 0) return object;
  IID iid = IIDOf<I>();
  reinterpret_cast<CreationFunction>(create)(nullptr, &iid, object.ReceiveVoid());
  return object;
}
