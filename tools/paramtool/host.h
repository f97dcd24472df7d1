// The tool's side of the framework: it loads the modules of "_binlinux/" the
// way any host does (dlopen, the shared component collection handed to every
// module through InitializeModule) and creates objects by class name.
#pragma once

#include <string>

#include "runtime/smart_ptr.h"

class Host {
 public:
  // Makes `binFolder`'s parent the current directory (so "./_binlinux/"
  // resolves), loads "CollectionsEx" and creates the global component
  // collection. False with a message in *error when that fails.
  bool Start(const std::string& moduleFolder, std::string* error);

  IComponentCollection* Collection() const { return m_Collection.get(); }

  // A new object of `className` answering I, or null.
  template <class I>
  SmartPtr<I> Create(const std::wstring& className) const {
    SmartPtr<I> result;
    if (!m_Collection) return result;
    IID iid = IIDOf<I>();
    m_Collection->CreateByName({static_cast<int32_t>(className.size()), className.c_str()}, &iid,
                               result.ReceiveVoid());
    return result;
  }

  // The module that serves `className` (by asking the collection), or "" when none does.
  std::wstring ModuleOf(const std::wstring& className) const;

 private:
  SmartPtr<IComponentCollection> m_Collection;
};

// The folder holding the running executable.
std::string ExecutableFolder();
// `path` made absolute against the directory the tool was started in.
std::string AbsolutePath(const std::string& path);
