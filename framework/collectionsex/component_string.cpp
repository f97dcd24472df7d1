// "ComponentString": a class's description and its instance factory.
#include "component_string.h"

#include "runtime/module_loader.h"
#include "strings/ref_string.h"

HRESULT CComponentString::GetProperty(int32_t which, IString** value) {
  if (!value) return E_POINTER;
  *value = nullptr;
  const std::wstring* text = which == kComponentClassName ? &m_ClassName
                             : which == kComponentModuleName ? &m_ModuleName
                                                             : nullptr;
  if (!text) return E_INVALIDARG;
  return GuardedCall([&] {
    SmartPtr<ICreatableString> result = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
    if (!result) return E_FAIL;
    result->SetText({static_cast<int32_t>(text->size()), text->c_str()});
    *value = result.Detach();
    return S_OK;
  });
}

HRESULT CComponentString::CreateInstance(IID* iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  return GuardedCall([&] {
    CreationFunction create = m_Create.load();
    if (!create) {
      create = MODULECreateFunction({static_cast<int32_t>(m_ModuleName.size()), m_ModuleName.c_str()},
                                    {static_cast<int32_t>(m_ClassName.size()), m_ClassName.c_str()});
      if (!create) return CO_E_CREATEFAILED;
      m_Create.store(create);
    }
    return create(nullptr, iid, object);
  });
}

HRESULT CComponentString::SetProperty(int32_t which, tagREFString value) {
  if (value.length < 0 || (value.length > 0 && !value.text)) return E_INVALIDARG;
  return GuardedCall([&] {
    std::wstring text(value.text ? value.text : L"", static_cast<size_t>(value.length));
    if (which == kComponentClassName) m_ClassName = std::move(text);
    else if (which == kComponentModuleName) m_ModuleName = std::move(text);
    else return E_INVALIDARG;
    m_Create.store(nullptr);  // a new description resolves anew
    return S_OK;
  });
}

void CComponentString::Describe(std::wstring moduleName, std::wstring className, CreationFunction create) {
  m_ModuleName = std::move(moduleName);
  m_ClassName = std::move(className);
  m_Create.store(create);
}
