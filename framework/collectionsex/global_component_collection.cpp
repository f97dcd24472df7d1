// "GlobalComponentCollection": class registry with discovery of serving modules.
#include "global_component_collection.h"

HRESULT CGlobalComponentCollection::get_Count(int32_t* count) {
  if (!count) return E_POINTER;
  ScopedLock<CGlobalComponentCollection> hold(*this);
  *count = static_cast<int32_t>(m_Components.size());
  return S_OK;
}

HRESULT CGlobalComponentCollection::GetItem(int32_t handle, IUnknown** item) {
  if (!item) return E_POINTER;
  *item = nullptr;
  ScopedLock<CGlobalComponentCollection> hold(*this);
  if (handle < 0 || static_cast<size_t>(handle) >= m_Components.size()) return E_INVALIDARG;
  return m_Components[static_cast<size_t>(handle)]->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(item));
}

HRESULT CGlobalComponentCollection::Find(IString* className, int32_t* handle) {
  if (!handle) return E_POINTER;
  *handle = -1;
  if (!className) return E_INVALIDARG;
  tagREFString name{0, nullptr};
  if (className->GetBuffer(&name.text, &name.length) < 0) return E_FAIL;
  return GuardedCall([&] {
    *handle = FindOrRegister(name);
    return *handle >= 0 ? S_OK : E_FAIL;
  });
}

HRESULT CGlobalComponentCollection::CreateByName(tagREFString className, IID* iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  return GuardedCall([&] {
    SmartPtr<CComponentString> component;
    {
      ScopedLock<CGlobalComponentCollection> hold(*this);
      int32_t handle = FindOrRegister(className);
      if (handle < 0) return CO_E_CREATEFAILED;
      component = m_Components[static_cast<size_t>(handle)];
    }
    if (!iid) return component->QueryInterface(IID_IComponentString, object);
    return component->CreateInstance(iid, object);
  });
}

int32_t CGlobalComponentCollection::FindOrRegister(tagREFString className) {
  if (className.length <= 0 || !className.text) return -1;
  ScopedLock<CGlobalComponentCollection> hold(*this);
  std::wstring name(className.text, static_cast<size_t>(className.length));
  auto known = m_HandleByName.find(name);
  if (known != m_HandleByName.end()) return known->second;

  std::wstring moduleName;
  CreationFunction create = m_Modules.FindClass(className, this, &moduleName);
  if (!create) return -1;
  SmartPtr<CComponentString> component = NewObject<CComponentString>();
  if (!component) return -1;
  component->Describe(std::move(moduleName), name, create);
  int32_t handle = static_cast<int32_t>(m_Components.size());
  m_Components.push_back(component);
  m_HandleByName.emplace(std::move(name), handle);
  return handle;
}
