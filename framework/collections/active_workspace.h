// "ActiveWorkspace": the process's one workspace, known by its file name.
#pragma once

#include <array>
#include <mutex>
#include <string>

#include "runtime/object.h"

// Every creation answers the same object, so a name set by one part of the
// process is seen by all. Until a name is set with put_Filename, the name is
// the settings value "Workspace"/"ActiveWorkspace" (read on each request);
// put_Filename with a null or empty name returns to it. The stand-in holds
// only the name: Load and Save answer E_NOTIMPL.
class CActiveWorkspace : public CObjectImpl<CActiveWorkspace, IFileArchive> {
 public:
  static constexpr wchar_t kObjectName[] = L"ActiveWorkspace";
  static constexpr InterfaceEntry<CActiveWorkspace> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CActiveWorkspace, IObjectInfo>},
      {&IID_IFileArchive, InterfaceOf<CActiveWorkspace, IFileArchive>},
  };

  // The creation function of the class: hands out the process's one object.
  static HRESULT CreateShared(void* outer, IID* iid, void** object);

  HRESULT get_Filename(IString** name) override;
  HRESULT put_Filename(IString* name) override;
  HRESULT get_Filter(IString** filter, int16_t reserved) override;
  HRESULT get_Name(IString** name) override;
  HRESULT Load() override;
  HRESULT Save() override;
  // Settings 0 to 4 are stored and reported; other codes give E_INVALIDARG.
  HRESULT Control(int32_t code, int32_t value) override;
  HRESULT Inquire(int32_t code, int32_t* value) override;

 private:
  // The set name, else the one of the settings file ("" when neither).
  std::wstring CurrentName();

  std::mutex m_Mutex;
  std::wstring m_Filename;
  std::array<int32_t, 5> m_Settings{};
};
