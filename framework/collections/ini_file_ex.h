// "INIFileEx": a settings file read, changed and written by section and value name.
#pragma once

#include <mutex>
#include <string>

#include "ini_document.h"
#include "runtime/object.h"

class CINIFileEx : public CObjectImpl<CINIFileEx, IINIFileEx> {
 public:
  static constexpr wchar_t kObjectName[] = L"INIFileEx";
  static constexpr InterfaceEntry<CINIFileEx> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CINIFileEx, IObjectInfo>},
      {&IID_IINIFileEx, InterfaceOf<CINIFileEx, IINIFileEx>},
  };

  HRESULT Open(IString* fileName) override;
  HRESULT Save() override;
  HRESULT GetString(tagREFString section, tagREFString name, IString** value) override;
  HRESULT SetString(tagREFString section, tagREFString name, tagREFString value) override;
  HRESULT RemoveValue(tagREFString section, tagREFString name) override;
  HRESULT get_SectionCount(tagREFString section, int32_t* count) override;
  HRESULT get_SectionName(tagREFString section, int32_t index, IString** name) override;
  HRESULT get_SectionValue(tagREFString section, int32_t index, IString** value) override;

 private:
  // The name or value of the index-th line of the section into *out.
  HRESULT SectionText(tagREFString section, int32_t index, bool wantName, IString** out);

  std::mutex m_Mutex;
  std::string m_Path;
  IniDocument m_Settings;
};
