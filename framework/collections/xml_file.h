// "XMLFile": loads a whole XML file into an object (IXMLFile, IFileArchive).
//
// Load reads the file as the file archive does (FileArchiveLoad as text),
// steps over the leading processing instructions (the XML declaration and the
// stylesheet line), opens the first element after them and lets the object
// given with SetObject load it through IDataPersist::Load, in replace mode
// when option kXMLFileReplace is set. Only get_Filename, put_Filename and
// Load of IFileArchive are served; the rest answer E_NOTIMPL.
#pragma once

#include "runtime/object.h"

class CXMLFile : public CObjectImpl<CXMLFile, IXMLFile, IFileArchive> {
 public:
  static constexpr wchar_t kObjectName[] = L"XMLFile";
  static constexpr InterfaceEntry<CXMLFile> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CXMLFile, IObjectInfo>},
      {&IID_IXMLFile, InterfaceOf<CXMLFile, IXMLFile>},
      {&IID_IFileArchive, InterfaceOf<CXMLFile, IFileArchive>},
  };

  // IXMLFile
  HRESULT Reserved1() override { return E_NOTIMPL; }
  HRESULT Reserved2() override { return E_NOTIMPL; }
  HRESULT SetOptions(int32_t mask, int32_t flags) override;
  HRESULT SetObject(IUnknown* target) override;
  // IFileArchive
  HRESULT get_Filename(IString** name) override;
  HRESULT put_Filename(IString* name) override;
  HRESULT get_Filter(IString** /*filter*/, int16_t /*reserved*/) override { return E_NOTIMPL; }
  HRESULT get_Name(IString** /*name*/) override { return E_NOTIMPL; }
  HRESULT Load() override;
  HRESULT Save() override { return E_NOTIMPL; }
  HRESULT Control(int32_t /*code*/, int32_t /*value*/) override { return E_NOTIMPL; }
  HRESULT Inquire(int32_t /*code*/, int32_t* /*value*/) override { return E_NOTIMPL; }

 private:
  SmartPtr<IString> m_Filename;
  SmartPtr<IUnknown> m_Target;
  int32_t m_Options = 0;
};
