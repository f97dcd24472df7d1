// "XMLProbe": an object of the XML tests that saves given elements and records what it is asked to load.
#pragma once

#include <string>
#include <vector>

#include "test_support.h"

class CXMLProbe final : public CObjectImpl<CXMLProbe, IDataPersist> {
 public:
  static constexpr wchar_t kObjectName[] = L"XMLProbe";
  static constexpr InterfaceEntry<CXMLProbe> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CXMLProbe, IObjectInfo>},
      {&IID_IDataPersist, InterfaceOf<CXMLProbe, IDataPersist>},
  };
  // Writes one element per "name=text" child.
  HRESULT Save(IDataStream* stream, int32_t) override {
    SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream);
    if (!xml) return E_NOINTERFACE;
    for (const std::wstring& child : m_Children) {
      const size_t split = child.find(L'=');
      xml->WriteElement(test_support::Ref(child.substr(0, split)), 0, test_support::Ref(child.substr(split + 1)), 0);
    }
    return S_OK;
  }
  // Records the flags and every child as "name=text", then answers m_Result.
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
  std::vector<std::wstring> m_Children;
  HRESULT m_Result = S_OK;
};
