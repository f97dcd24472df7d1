// Fuzz target: a parameter set read from an XML stream (values, flags and nested
// descriptor objects), then written back.
#include "fuzz_support.h"

using namespace fuzz_support;

namespace {

// The stream standing on the document's first element, or null when the text is no XML.
SmartPtr<IDataStream> FirstElementOf(const std::wstring& text) {
  SmartPtr<IXMLStream> xml = CreateObjectAs<IXMLStream>(L"XMLStream");
  SmartPtr<IDataStream> element;
  if (xml->LoadContent(text.data(), static_cast<int32_t>(text.size() * sizeof(wchar_t)), 0) < 0) return element;
  xml->OpenChild({0, nullptr}, nullptr, element.Receive(), 0);
  return element;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::wstring text = WideOf(data, size);
  SmartPtr<IParametersCreatable> set = CreateObjectAs<IParametersCreatable>(L"ParametersCreatable");
  if (SmartPtr<IDataStream> element = FirstElementOf(text)) set->Params_LoadXML(element.get(), kLoadReplace, 0);
  if (SmartPtr<IDataStream> element = FirstElementOf(text)) set->Params_LoadXMLUnk(element.get(), 0);
  SmartPtr<IXMLStreamEx> out = CreateObjectAs<IXMLStreamEx>(L"XMLStreamEx");
  set->Params_SaveXML(QueryAs<IDataStream>(out.get()).get(), 0);
  return 0;
}
