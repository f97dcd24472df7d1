// "CreatableString": a wide text held by an object; set and append copy the
// given characters. The text is always terminated.
#pragma once

#include <string>

#include "runtime/object.h"

class CCreatableString final : public CObjectImpl<CCreatableString, ICreatableString> {
 public:
  static constexpr wchar_t kObjectName[] = L"CreatableString";
  static constexpr InterfaceEntry<CCreatableString> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CCreatableString, IObjectInfo>},
      {&IID_IString, InterfaceOf<CCreatableString, ICreatableString>},
      {&IID_ICreatableString, InterfaceOf<CCreatableString, ICreatableString>},
  };

  HRESULT GetBuffer(const wchar_t** text, int32_t* length) override;
  HRESULT SetText(tagREFString text) override;
  HRESULT Append(tagREFString text) override;

 private:
  std::wstring m_Text;
};
