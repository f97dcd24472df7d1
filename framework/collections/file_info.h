// "FileInfo": details of a stored file (its name, the class of the object it holds, a format version).
#pragma once

#include <string>

#include "runtime/object.h"

// Persists itself into a folder stream as the entries "Filename" and
// "ObjectClass" (text) and "Version" (4-byte binary).
class CFileInfo : public CObjectImpl<CFileInfo, IFileInfo, IDataPersist> {
 public:
  static constexpr wchar_t kObjectName[] = L"FileInfo";
  static constexpr InterfaceEntry<CFileInfo> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CFileInfo, IObjectInfo>},
      {&IID_IFileInfo, InterfaceOf<CFileInfo, IFileInfo>},
      {&IID_IDataPersist, InterfaceOf<CFileInfo, IDataPersist>},
  };

  HRESULT get_Filename(IString** name) override;
  HRESULT put_Filename(IString* name) override;
  HRESULT get_ObjectClass(IString** name) override;
  HRESULT put_ObjectClass(IString* name) override;
  HRESULT get_Version(int32_t* version) override;
  HRESULT put_Version(int32_t version) override;

  // A stream that is not a folder stream gives E_NOTIMPL.
  HRESULT Save(IDataStream* stream, int32_t flags) override;
  HRESULT Load(IDataStream* stream, int32_t flags) override;

 private:
  SmartPtr<IString> m_Filename;
  SmartPtr<IString> m_ObjectClass;
  int32_t m_Version = 0;
};
