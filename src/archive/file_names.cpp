// Stored file names: folders from the settings, mapping and relative names.
#include "archive/file_names.h"

#include <cwctype>
#include <string>

#include "parameters/persist_text.h"
#include "runtime/module_loader.h"

namespace {

constexpr wchar_t kInstallTag[] = L"InstallPath";
constexpr tagREFString kWorkspace{9, L"Workspace"};
constexpr tagREFString kInstallPath{11, kInstallTag};
constexpr tagREFString kAppPath{7, L"AppPath"};
constexpr tagREFString kMappings{8, L"Mappings"};
constexpr wchar_t kStepUp[] = L"..\\";
constexpr int32_t kStepUpLength = 3;
constexpr wchar_t kSeparators[] = L"\\/";
// Setting values are read into a buffer of this many bytes.
constexpr int32_t kSettingBytes = 712;

bool IsSeparator(wchar_t c) { return c == kSeparators[0] || c == kSeparators[1]; }

SmartPtr<IRegistryEx> SettingsStore() { return CreateObjectAs<IRegistryEx>(L"Registry"); }

// A setting into *text (cleared buffer, cut to fit); the store's result code.
HRESULT ReadSetting(IRegistryEx* store, tagREFString section, tagREFString name, std::wstring* text) {
  wchar_t buffer[kSettingBytes / sizeof(wchar_t)] = {};
  const HRESULT result = store->GetBuffer(section, name, buffer, kSettingBytes);
  text->assign(SUCCEEDED(result) ? buffer : L"");
  return result;
}

HRESULT HandOut(const std::wstring& text, IString** out) {
  *out = ISCreate(tagREFString{static_cast<int32_t>(text.size()), text.c_str()});
  return *out ? S_OK : E_OUTOFMEMORY;
}

HRESULT HandOutSame(IString* name, IString** out, HRESULT code) {
  *out = name;
  if (name) name->AddRef();
  return code;
}

std::wstring TextOf(tagREFString view) { return view.length > 0 ? std::wstring(view.text, view.length) : std::wstring(); }

// A text that begins with "//" loses its first "/" when longer than `minLength` - 1 characters.
void DropDoubleSlash(std::wstring* text, size_t minLength) {
  if (text->size() >= minLength && text->compare(0, 2, L"//") == 0) text->erase(0, 1);
}

HRESULT InstallPathText(IRegistryEx* store, std::wstring* text) {
  return ReadSetting(store, kWorkspace, kInstallPath, text);
}

// The folder above the base's last separator (a trailing separator counts as an empty last folder).
bool StepUp(std::wstring* base) {
  const size_t separator = base->find_last_of(kSeparators);
  if (separator == std::wstring::npos) return false;
  base->erase(separator);
  return true;
}

}  // namespace

HRESULT FILENAMEGetAppPath(IString** path) {
  if (!path) return E_POINTER;
  *path = nullptr;
  if (SmartPtr<IFileArchive> workspace = CreateObjectAs<IFileArchive>(L"ActiveWorkspace")) {
    SmartPtr<IString> name;
    workspace->get_Filename(name.Receive());
    CREFString view = TextView(name.get());
    CREFString folder;
    if (!view.IsEmpty() && SUCCEEDED(view.GetReverseLine(&folder, L'/', true, true)) && !folder.IsEmpty())
      return HandOut(TextOf(folder), path);
  }
  SmartPtr<IRegistryEx> store = SettingsStore();
  std::wstring text;
  const HRESULT result = store ? ReadSetting(store.get(), kWorkspace, kAppPath, &text) : E_FAIL;
  const HRESULT made = HandOut(text, path);
  return FAILED(made) ? made : result;
}

HRESULT FILENAMEGetInstallPath(IString** path) {
  if (!path) return E_POINTER;
  *path = nullptr;
  SmartPtr<IRegistryEx> store = SettingsStore();
  std::wstring text;
  const HRESULT result = store ? InstallPathText(store.get(), &text) : E_FAIL;
  const HRESULT made = HandOut(text, path);
  return FAILED(made) ? made : result;
}

HRESULT FILENAMEMap(IString* name, IString** mapped, int16_t strip) {
  if (!mapped) return E_POINTER;
  *mapped = nullptr;
  SmartPtr<IRegistryEx> store = SettingsStore();
  if (!store) return CO_E_CREATEFAILED;
  std::wstring text = TextOf(TextView(name));
  std::wstring folder;
  InstallPathText(store.get(), &folder);
  DropDoubleSlash(&text, 3);
  DropDoubleSlash(&folder, 2);

  const CREFString view(text.c_str(), static_cast<int32_t>(text.size()));
  // A plain prefix test: /opt/application matches the folder /opt/app (intended).
  if (SUCCEEDED(view.CompareI({static_cast<int32_t>(folder.size()), folder.c_str()}, 1))) {
    std::wstring rest = text.substr(folder.size());
    const std::wstring tag = std::wstring(L"[") + kInstallTag + L"]";
    if (!strip) return HandOut(tag + rest, mapped);
    if (rest.empty() || (rest.size() == 1 && IsSeparator(rest[0]))) return HandOut(tag, mapped);
    if (IsSeparator(rest[0])) rest.erase(0, 1);
    return HandOut(rest, mapped);
  }

  int32_t count = 0;
  const HRESULT listed = store->get_ListCount(kMappings, &count);
  if (FAILED(listed)) return listed;
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IVariant> value;
    if (FAILED(store->get_ListValue(kMappings, i, value.Receive())) || !value || !value->IsString()) continue;
    SmartPtr<IString> entryText;
    value->GetString(entryText.Receive());
    const CREFString entry = TextView(entryText.get());
    if (entry.IsEmpty() || entry.length > view.length || FAILED(view.CompareI(entry, 1))) continue;
    SmartPtr<IString> entryName;
    store->get_ListName(kMappings, i, entryName.Receive());
    return HandOut(L"[" + TextOf(TextView(entryName.get())) + L"]" + text.substr(entry.length), mapped);
  }
  return E_FAIL;
}

HRESULT FILENAMEUnmap(IString* tagged, IString** name) {
  if (!name) return E_POINTER;
  *name = nullptr;
  const std::wstring text = TextOf(TextView(tagged));
  const size_t close = text.find(L']');
  if (text.empty() || text[0] != L'[' || close == std::wstring::npos) return E_FAIL;
  const std::wstring tag = text.substr(1, close - 1);
  SmartPtr<IRegistryEx> store = SettingsStore();
  if (!store) return E_FAIL;
  std::wstring folder;
  const tagREFString tagView{static_cast<int32_t>(tag.size()), tag.c_str()};
  const HRESULT read = EqualsIgnoringCase(tagView, kInstallTag) ? InstallPathText(store.get(), &folder)
                                                                 : ReadSetting(store.get(), kMappings, tagView, &folder);
  if (FAILED(read)) return E_FAIL;
  std::wstring result = folder + text.substr(close + 1);
  for (wchar_t& c : result)
    if (c == L'\\') c = L'/';
  return HandOut(result, name);
}

HRESULT FILENAMECreateRelative(IString* base, IString* name, IString** relative) {
  if (!relative) return E_POINTER;
  *relative = nullptr;
  const CREFString baseView = TextView(base), nameView = TextView(name);
  const int32_t shorter = baseView.length < nameView.length ? baseView.length : nameView.length;
  if (shorter <= 0) return HandOutSame(name, relative, S_OK);

  int32_t shared = shorter;  // the index of the last equal character, or all of them
  for (int32_t i = 0; i < shorter; ++i) {
    if (std::towlower(static_cast<wint_t>(baseView.text[i])) != std::towlower(static_cast<wint_t>(nameView.text[i]))) {
      shared = i - 1;
      break;
    }
  }
  int32_t separators = 0, lastSeparator = -1;
  for (int32_t i = 1; i <= shared && i < nameView.length; ++i) {
    if (!IsSeparator(nameView.text[i])) continue;
    ++separators;
    lastSeparator = i;
  }
  if (shared <= 0 || separators < 2) return HandOutSame(name, relative, S_FALSE);

  int32_t levels = lastSeparator < baseView.length ? 1 : 0;
  for (int32_t i = lastSeparator + 1; i < baseView.length; ++i)
    if (IsSeparator(baseView.text[i])) ++levels;
  std::wstring result;
  result.reserve(static_cast<size_t>(levels * kStepUpLength + nameView.length));
  // Steps up are always written with a backslash, whatever the names use (intended: loaders expect it).
  for (int32_t i = 0; i < levels; ++i) result += kStepUp;
  result.append(nameView.text + lastSeparator + 1, static_cast<size_t>(nameView.length - lastSeparator - 1));
  return HandOut(result, relative);
}

HRESULT FILENAMECreateAbsolute(IString* base, IString* name, IString** absolute) {
  if (!absolute) return E_POINTER;
  *absolute = nullptr;
  const CREFString nameView = TextView(name);
  if (nameView.IsEmpty() || nameView.text[0] == L'/') return HandOutSame(name, absolute, S_FALSE);
  if (nameView.text[0] == L'[') return FILENAMEUnmap(name, absolute);

  std::wstring folder = TextOf(TextView(base));
  if (folder.empty()) return HandOutSame(name, absolute, S_FALSE);
  std::wstring rest = TextOf(nameView);
  size_t at = 0;
  while (rest.size() - at >= kStepUpLength && rest.compare(at, 2, L"..") == 0 && IsSeparator(rest[at + 2])) {
    if (!StepUp(&folder)) return E_FAIL;
    at += kStepUpLength;
  }
  std::wstring result = folder + L"/" + rest.substr(at);
  for (wchar_t& c : result)
    if (c == L'\\') c = L'/';
  return HandOut(result, absolute);
}

HRESULT FILENAMECreateAbsolute(IString* name, IString** absolute, int againstInstallPath) {
  if (!absolute) return E_POINTER;
  *absolute = nullptr;
  SmartPtr<IString> base;
  const HRESULT found = againstInstallPath ? FILENAMEGetInstallPath(base.Receive()) : FILENAMEGetAppPath(base.Receive());
  if (FAILED(found) && TextView(base.get()).IsEmpty()) return E_FAIL;
  return FILENAMECreateAbsolute(base.get(), name, absolute);
}
