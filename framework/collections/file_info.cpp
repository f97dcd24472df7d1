// "FileInfo": file details and their folder-stream persistence.
#include "file_info.h"

#include "runtime/module_loader.h"

namespace {

HRESULT HandOut(const SmartPtr<IString>& held, IString** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (!held) return E_FAIL;
  return held.CopyTo(out);
}

}  // namespace

HRESULT CFileInfo::get_Filename(IString** name) { return HandOut(m_Filename, name); }

HRESULT CFileInfo::put_Filename(IString* name) {
  m_Filename = SmartPtr<IString>(name);
  return S_OK;
}

HRESULT CFileInfo::get_ObjectClass(IString** name) { return HandOut(m_ObjectClass, name); }

HRESULT CFileInfo::put_ObjectClass(IString* name) {
  m_ObjectClass = SmartPtr<IString>(name);
  return S_OK;
}

HRESULT CFileInfo::get_Version(int32_t* version) {
  if (!version) return E_POINTER;
  *version = m_Version;
  return S_OK;
}

HRESULT CFileInfo::put_Version(int32_t version) {
  m_Version = version;
  return S_OK;
}

HRESULT CFileInfo::Save(IDataStream* stream, int32_t /*flags*/) {
  SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream);
  if (!folder) return E_NOTIMPL;
  if (m_Filename) folder->WriteString(RefOf(L"Filename"), m_Filename.get());
  if (m_ObjectClass) folder->WriteString(RefOf(L"ObjectClass"), m_ObjectClass.get());
  return folder->WriteBinary(RefOf(L"Version"), &m_Version, sizeof(m_Version));
}

HRESULT CFileInfo::Load(IDataStream* stream, int32_t /*flags*/) {
  SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream);
  if (!folder) return E_NOTIMPL;
  folder->ReadString(RefOf(L"Filename"), m_Filename.Receive());
  folder->ReadString(RefOf(L"ObjectClass"), m_ObjectClass.Receive());
  int32_t version = 0;
  if (folder->ReadBinary(RefOf(L"Version"), &version, sizeof(version), nullptr) == S_OK) m_Version = version;
  return S_OK;
}
