// The modules in "./_binlinux/": listed from the folder (no hand-kept list),
// loaded on first need, and asked which of them serves a class.
#pragma once

#include <string>
#include <vector>

#include "runtime/smart_ptr.h"

class SiblingModules {
 public:
  // Asks every module of the folder, in file-name order, for the class; a module
  // is loaded (and handed `collection` through its InitializeModule) the first
  // time it is asked. Answers the creation function and the module's name, or null.
  CreationFunction FindClass(tagREFString className, IComponentCollection* collection, std::wstring* moduleName);

 private:
  struct Module {
    std::wstring name;
    bool tried = false;
    void* createFunction = nullptr;  // the module's CreateFunction once loaded
  };

  void ListFolder();
  bool Load(Module& module, IComponentCollection* collection);

  std::vector<Module> m_Modules;
};
