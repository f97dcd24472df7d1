// "Registry": values and named lists of the settings file.
#include "registry.h"

#include <algorithm>

#include "settings_file.h"
#include "value_objects.h"

namespace {

// "Workspace" and "InstallPath", folded as names are compared.
constexpr std::wstring_view kWorkspaceSectionFolded = L"workspace";
constexpr std::wstring_view kInstallPathFolded = L"installpath";

bool IsInstallPath(tagREFString section, tagREFString name) {
  return FoldAsciiLower(ViewOf(section)) == kWorkspaceSectionFolded && FoldAsciiLower(ViewOf(name)) == kInstallPathFolded;
}

}  // namespace

HRESULT CRegistry::FinalConstruct() { return Reload(); }

HRESULT CRegistry::Reload() {
  return GuardedCall([&] {
    IniDocument settings = LoadIniFile(SettingsFilePath());
    std::lock_guard<std::mutex> hold(m_Mutex);
    m_Path = SettingsFilePath();
    m_Settings = std::move(settings);
    return S_OK;
  });
}

HRESULT CRegistry::Lookup(tagREFString section, tagREFString name, std::wstring* value) {
  {
    std::lock_guard<std::mutex> hold(m_Mutex);
    if (const std::wstring* found = m_Settings.FindValue(ViewOf(section), ViewOf(name))) {
      *value = *found;
      return S_OK;
    }
  }
  if (!IsInstallPath(section, name)) return E_ITEMNOTFOUND;
  *value = DefaultInstallPath();
  return S_OK;
}

HRESULT CRegistry::GetString(tagREFString section, tagREFString name, IString** value) {
  if (!value) return E_POINTER;
  *value = nullptr;
  return GuardedCall([&] {
    std::wstring text;
    if (HRESULT result = Lookup(section, name, &text); FAILED(result)) return result;
    return CopyOutString(text, value);
  });
}

HRESULT CRegistry::GetBuffer(tagREFString section, tagREFString name, wchar_t* buffer, int32_t byteCount) {
  if (!buffer) return E_POINTER;
  const size_t capacity = byteCount > 0 ? static_cast<size_t>(byteCount) / sizeof(wchar_t) : 0;
  if (capacity == 0) return E_INVALIDARG;
  buffer[0] = L'\0';
  return GuardedCall([&] {
    std::wstring text;
    if (HRESULT result = Lookup(section, name, &text); FAILED(result)) return result;
    const size_t copied = std::min(text.size(), capacity - 1);
    std::copy_n(text.data(), copied, buffer);
    buffer[copied] = L'\0';
    return copied == text.size() ? S_OK : S_FALSE;
  });
}

HRESULT CRegistry::SetString(tagREFString section, tagREFString name, tagREFString value) {
  if (ViewOf(name).empty()) return E_INVALIDARG;
  return GuardedCall([&] {
    std::lock_guard<std::mutex> hold(m_Mutex);
    m_Settings.SetValue(ViewOf(section), ViewOf(name), ViewOf(value));
    return SaveIniFile(m_Path, m_Settings);
  });
}

HRESULT CRegistry::ListEntry(tagREFString section, int32_t index, IniValue* entry) {
  std::lock_guard<std::mutex> hold(m_Mutex);
  const IniSection* found = m_Settings.FindSection(ViewOf(section));
  if (!found || index < 0 || static_cast<size_t>(index) >= found->values.size()) return E_INVALIDARG;
  *entry = found->values[static_cast<size_t>(index)];
  return S_OK;
}

HRESULT CRegistry::get_ListCount(tagREFString section, int32_t* count) {
  if (!count) return E_POINTER;
  std::lock_guard<std::mutex> hold(m_Mutex);
  const IniSection* found = m_Settings.FindSection(ViewOf(section));
  *count = found ? static_cast<int32_t>(found->values.size()) : 0;
  return S_OK;
}

HRESULT CRegistry::get_ListValue(tagREFString section, int32_t index, IVariant** value) {
  if (!value) return E_POINTER;
  *value = nullptr;
  return GuardedCall([&] {
    IniValue entry;
    if (HRESULT result = ListEntry(section, index, &entry); FAILED(result)) return result;
    SmartPtr<IVariant> text = NewTextVariant(entry.value);
    if (!text) return E_OUTOFMEMORY;
    *value = text.Detach();
    return S_OK;
  });
}

HRESULT CRegistry::get_ListName(tagREFString section, int32_t index, IString** name) {
  if (!name) return E_POINTER;
  *name = nullptr;
  return GuardedCall([&] {
    IniValue entry;
    if (HRESULT result = ListEntry(section, index, &entry); FAILED(result)) return result;
    return CopyOutString(entry.name, name);
  });
}
