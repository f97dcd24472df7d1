// "ComponentString": describes one class (its module and class name) and
// creates instances of it.
#pragma once

#include <atomic>
#include <string>

#include "runtime/object.h"

class CComponentString : public CObjectImpl<CComponentString, IComponentString> {
 public:
  static constexpr wchar_t kObjectName[] = L"ComponentString";
  static constexpr InterfaceEntry<CComponentString> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CComponentString, IObjectInfo>},
      {&IID_IComponentString, InterfaceOf<CComponentString, IComponentString>},
  };

  // Properties 1 (class name) and 4 (module name) as text; E_INVALIDARG for others.
  HRESULT GetProperty(int32_t which, IString** value) override;
  HRESULT Reserved2() override { return E_NOTIMPL; }
  HRESULT CreateInstance(IID* iid, void** object) override;
  HRESULT SetProperty(int32_t which, tagREFString value) override;

  // Used by the component collection, which already knows the creation function.
  void Describe(std::wstring moduleName, std::wstring className, CreationFunction create);
  const std::wstring& ClassName() const { return m_ClassName; }

 private:
  std::wstring m_ModuleName;
  std::wstring m_ClassName;
  std::atomic<CreationFunction> m_Create{nullptr};  // resolved once, then reused
};
