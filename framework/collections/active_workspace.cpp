// "ActiveWorkspace": the process-wide workspace object and its file name.
#include "active_workspace.h"

#include "settings_file.h"
#include "value_objects.h"

HRESULT CActiveWorkspace::CreateShared(void* /*outer*/, IID* iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  return GuardedCall([&] {
    static const SmartPtr<CActiveWorkspace> gWorkspace = NewObject<CActiveWorkspace>();
    if (!gWorkspace) return E_OUTOFMEMORY;
    return gWorkspace->QueryInterface(iid ? *iid : IID_NULL, object);
  });
}

std::wstring CActiveWorkspace::CurrentName() {
  {
    std::lock_guard<std::mutex> hold(m_Mutex);
    if (!m_Filename.empty()) return m_Filename;
  }
  const IniDocument settings = LoadIniFile(SettingsFilePath());
  const std::wstring* configured = settings.FindValue(L"Workspace", L"ActiveWorkspace");
  return configured ? *configured : std::wstring();
}

HRESULT CActiveWorkspace::get_Filename(IString** name) {
  if (!name) return E_POINTER;
  *name = nullptr;
  return GuardedCall([&] {
    const std::wstring current = CurrentName();
    return current.empty() ? E_FAIL : CopyOutString(current, name);
  });
}

HRESULT CActiveWorkspace::put_Filename(IString* name) {
  return GuardedCall([&] {
    std::lock_guard<std::mutex> hold(m_Mutex);
    m_Filename.assign(ViewOf(name));
    return S_OK;
  });
}

HRESULT CActiveWorkspace::get_Filter(IString** filter, int16_t /*reserved*/) {
  if (!filter) return E_POINTER;
  *filter = nullptr;
  return E_FAIL;
}

HRESULT CActiveWorkspace::get_Name(IString** name) {
  if (!name) return E_POINTER;
  *name = nullptr;
  return GuardedCall([&] {
    const std::wstring current = CurrentName();
    const size_t slash = current.rfind(L'/');
    std::wstring last = current.substr(slash == std::wstring::npos ? 0 : slash + 1);
    if (const size_t dot = last.rfind(L'.'); dot != std::wstring::npos) last.resize(dot);
    return last.empty() ? E_FAIL : CopyOutString(last, name);
  });
}

HRESULT CActiveWorkspace::Load() { return E_NOTIMPL; }
HRESULT CActiveWorkspace::Save() { return E_NOTIMPL; }

HRESULT CActiveWorkspace::Control(int32_t code, int32_t value) {
  if (code < 0 || static_cast<size_t>(code) >= m_Settings.size()) return E_INVALIDARG;
  std::lock_guard<std::mutex> hold(m_Mutex);
  m_Settings[static_cast<size_t>(code)] = value;
  return S_OK;
}

HRESULT CActiveWorkspace::Inquire(int32_t code, int32_t* value) {
  if (!value) return E_POINTER;
  if (code < 0 || static_cast<size_t>(code) >= m_Settings.size()) return E_INVALIDARG;
  std::lock_guard<std::mutex> hold(m_Mutex);
  *value = m_Settings[static_cast<size_t>(code)];
  return S_OK;
}
