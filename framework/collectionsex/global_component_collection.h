// "GlobalComponentCollection": the process-wide registry of component
// classes. A class is registered the first time it is asked for, by finding
// the module of "./_binlinux/" that serves it.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "component_string.h"
#include "runtime/reserved_slots.h"
#include "runtime/resource_lock.h"
#include "sibling_modules.h"

class CGlobalComponentCollection
    : public CObjectImpl<CGlobalComponentCollection, ComponentCollectionSlots> {
 public:
  static constexpr wchar_t kObjectName[] = L"GlobalComponentCollection";
  static constexpr InterfaceEntry<CGlobalComponentCollection> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CGlobalComponentCollection, IObjectInfo>},
      {&IID_IComponentCollection, InterfaceOf<CGlobalComponentCollection, IComponentCollection>},
  };

  HRESULT get_Count(int32_t* count) override;
  HRESULT GetItem(int32_t handle, IUnknown** item) override;
  HRESULT Find(IString* className, int32_t* handle) override;
  HRESULT CreateByName(tagREFString className, IID* iid, void** object) override;

  void Lock() override { m_Lock.Lock(); }
  void Unlock() override { m_Lock.Unlock(); }

 private:
  // The handle of the class, registering it on first need; -1 when no module serves it.
  int32_t FindOrRegister(tagREFString className);

  CResourceLock m_Lock;
  std::vector<SmartPtr<CComponentString>> m_Components;
  std::unordered_map<std::wstring, int32_t> m_HandleByName;
  SiblingModules m_Modules;
};
