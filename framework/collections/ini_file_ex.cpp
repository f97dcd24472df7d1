// "INIFileEx": settings files by section and value name.
#include "ini_file_ex.h"

#include "settings_file.h"
#include "text_file.h"
#include "value_objects.h"

HRESULT CINIFileEx::Open(IString* fileName) {
  return GuardedCall([&] {
    std::string path = PathOf(fileName);
    if (path.empty()) return E_INVALIDARG;
    IniDocument settings = LoadIniFile(path);
    std::lock_guard<std::mutex> hold(m_Mutex);
    m_Path = std::move(path);
    m_Settings = std::move(settings);
    return S_OK;
  });
}

HRESULT CINIFileEx::Save() {
  return GuardedCall([&] {
    std::lock_guard<std::mutex> hold(m_Mutex);
    if (m_Path.empty()) return E_FAIL;
    return SaveIniFile(m_Path, m_Settings);
  });
}

HRESULT CINIFileEx::GetString(tagREFString section, tagREFString name, IString** value) {
  if (!value) return E_POINTER;
  *value = nullptr;
  return GuardedCall([&] {
    std::lock_guard<std::mutex> hold(m_Mutex);
    const std::wstring* found = m_Settings.FindValue(ViewOf(section), ViewOf(name));
    return found ? CopyOutString(*found, value) : E_ITEMNOTFOUND;
  });
}

HRESULT CINIFileEx::SetString(tagREFString section, tagREFString name, tagREFString value) {
  if (ViewOf(name).empty()) return E_INVALIDARG;
  return GuardedCall([&] {
    std::lock_guard<std::mutex> hold(m_Mutex);
    m_Settings.SetValue(ViewOf(section), ViewOf(name), ViewOf(value));
    return S_OK;
  });
}

HRESULT CINIFileEx::RemoveValue(tagREFString section, tagREFString name) {
  return GuardedCall([&] {
    std::lock_guard<std::mutex> hold(m_Mutex);
    return m_Settings.RemoveValue(ViewOf(section), ViewOf(name)) ? S_OK : E_ITEMNOTFOUND;
  });
}

HRESULT CINIFileEx::get_SectionCount(tagREFString section, int32_t* count) {
  if (!count) return E_POINTER;
  std::lock_guard<std::mutex> hold(m_Mutex);
  const IniSection* found = m_Settings.FindSection(ViewOf(section));
  *count = found ? static_cast<int32_t>(found->values.size()) : 0;
  return S_OK;
}

HRESULT CINIFileEx::SectionText(tagREFString section, int32_t index, bool wantName, IString** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  return GuardedCall([&] {
    std::lock_guard<std::mutex> hold(m_Mutex);
    const IniSection* found = m_Settings.FindSection(ViewOf(section));
    if (!found || index < 0 || static_cast<size_t>(index) >= found->values.size()) return E_INVALIDARG;
    const IniValue& line = found->values[static_cast<size_t>(index)];
    return CopyOutString(wantName ? line.name : line.value, out);
  });
}

HRESULT CINIFileEx::get_SectionName(tagREFString section, int32_t index, IString** name) {
  return SectionText(section, index, true, name);
}

HRESULT CINIFileEx::get_SectionValue(tagREFString section, int32_t index, IString** value) {
  return SectionText(section, index, false, value);
}
