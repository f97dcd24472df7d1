// "Registry": the settings store, read from the settings file when the object is made.
#pragma once

#include <mutex>
#include <string>

#include "ini_document.h"
#include "runtime/object.h"

// Each object reads the file when it is made (and on Reload), so a changed
// file or `$PARAMS_SETTINGS` is seen by the next object. "Workspace"/
// "InstallPath" defaults to the folder that holds "_binlinux/".
class CRegistry : public CObjectImpl<CRegistry, IRegistryEx> {
 public:
  static constexpr wchar_t kObjectName[] = L"Registry";
  static constexpr InterfaceEntry<CRegistry> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CRegistry, IObjectInfo>},
      {&IID_IRegistry, InterfaceOf<CRegistry, IRegistryEx>},
      {&IID_IRegistryEx, InterfaceOf<CRegistry, IRegistryEx>},
  };

  HRESULT FinalConstruct() override;

  // IRegistry
  HRESULT GetString(tagREFString section, tagREFString name, IString** value) override;
  HRESULT get_ListCount(tagREFString section, int32_t* count) override;
  HRESULT get_ListValue(tagREFString section, int32_t index, IVariant** value) override;
  HRESULT get_ListName(tagREFString section, int32_t index, IString** name) override;

  // IRegistryEx
  HRESULT GetBuffer(tagREFString section, tagREFString name, wchar_t* buffer, int32_t byteCount) override;
  HRESULT SetString(tagREFString section, tagREFString name, tagREFString value) override;
  HRESULT Reload() override;

 private:
  // The value's text into *value; E_ITEMNOTFOUND when it is not set.
  HRESULT Lookup(tagREFString section, tagREFString name, std::wstring* value);
  // The index-th line of the section; E_INVALIDARG when there is none.
  HRESULT ListEntry(tagREFString section, int32_t index, IniValue* entry);

  std::mutex m_Mutex;
  std::string m_Path;
  IniDocument m_Settings;
};
