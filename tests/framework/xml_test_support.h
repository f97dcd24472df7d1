// Helpers of the XML tests: the file archive's prolog and "XMLProbe", which records what it is asked to load.
#pragma once

#include <string>
#include <vector>

#include "test_support.h"

using Names = std::vector<std::wstring>;

const std::wstring kProlog =
    L"<?xml version=\"1.0\"?>\r\n<?xml-stylesheet href=\"generic.xsl\" type=\"text/xsl\"?>\r\n";

class CXMLProbe : public CObjectImpl<CXMLProbe, IDataPersist> {
 public:
  static constexpr wchar_t kObjectName[] = L"XMLProbe";
  static constexpr InterfaceEntry<CXMLProbe> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CXMLProbe, IObjectInfo>},
      {&IID_IDataPersist, InterfaceOf<CXMLProbe, IDataPersist>},
  };
  HRESULT Save(IDataStream*, int32_t) override { return E_NOTIMPL; }
  // Records the flags and every child as "name=text", walking them as readers do, then answers m_Result.
  HRESULT Load(IDataStream* stream, int32_t flags) override {
    m_Flags = flags;
    m_Children.clear();
    SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream);
    if (!xml) return E_NOINTERFACE;
    SmartPtr<IString> name;
    while (xml->NextChild(name.Receive()) >= 0) {
      SmartPtr<IString> text;
      xml->OpenChild(test_support::Ref(test_support::TextOf(name)), text.Receive(), nullptr, 1);
      m_Children.push_back(test_support::TextOf(name) + L"=" + test_support::TextOf(text));
    }
    return m_Result;
  }
  int32_t m_Flags = -1;
  Names m_Children;
  HRESULT m_Result = S_OK;
};

// The children of an XML stream as "name=text", in document order.
inline Names ChildrenOf(IUnknown* stream) {
  SmartPtr<CXMLProbe> probe = NewObject<CXMLProbe>();
  probe->Load(QueryAs<IDataStream>(stream).get(), 0);
  return probe->m_Children;
}
