// "CreatableString": a wide text held by an object; set and append copy the
// given characters. The text is always terminated. A string that a
// collection watches (it is an indexed name) advances the shared change
// counter whenever its text changes.
#pragma once

#include <atomic>
#include <string>

#include "runtime/object.h"

class CCreatableString : public CObjectImpl<CCreatableString, ICreatableString, IStringChangeCounter> {
 public:
  static constexpr wchar_t kObjectName[] = L"CreatableString";
  static constexpr InterfaceEntry<CCreatableString> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CCreatableString, IObjectInfo>},
      {&IID_IString, InterfaceOf<CCreatableString, ICreatableString>},
      {&IID_ICreatableString, InterfaceOf<CCreatableString, ICreatableString>},
      {&IID_IStringChangeCounter, InterfaceOf<CCreatableString, IStringChangeCounter>},
  };

  HRESULT GetBuffer(const wchar_t** text, int32_t* length) override;
  HRESULT SetText(tagREFString text) override;
  HRESULT Append(tagREFString text) override;
  const std::atomic<uint64_t>* WatchChanges() override;

 private:
  void CountChange();

  std::wstring m_Text;
  std::atomic<bool> m_Watched{false};
};
