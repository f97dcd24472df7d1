// Helpers of the persistence tests: sets built from rows, described back, XML text in and out.
#pragma once

#include <string>

#include "collection_test_support.h"
#include "storage_test_support.h"

namespace persistence_test {

using namespace collection_test;
using namespace storage_test;

struct Row {
  const wchar_t* name;
  SmartPtr<IVariant> value;
  int32_t flags = 0;
  SmartPtr<IUnknown> descriptor = {};
};

inline SmartPtr<IParametersCreatable> SetOf(std::initializer_list<Row> rows) {
  SmartPtr<IParametersCreatable> set = NewParameters();
  for (const Row& row : rows) set->Add(MakeString(row.name).get(), row.value.get(), row.descriptor.get(), row.flags);
  return set;
}

// "name=value/flags" per parameter, value as DescribeValue shows it; "+d" when it has a descriptor.
inline std::vector<std::wstring> Describe(IParameters* set) {
  std::vector<std::wstring> rows;
  int32_t count = 0;
  set->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IVariant> value;
    SmartPtr<IUnknown> descriptor;
    int32_t flags = 0;
    set->Iterate(i, name.Receive(), value.Receive(), descriptor.Receive(), &flags);
    wchar_t hex[16];
    swprintf(hex, 16, L"/%X", static_cast<unsigned>(flags));
    rows.push_back(TextOf(name) + L"=" + DescribeValue(value.get()) + hex + (descriptor ? L"+d" : L""));
  }
  return rows;
}

// "name:flags:item parameters:attached parameters:" per item of a collection.
inline std::vector<std::wstring> DescribeItems(ISuperCollection* collection) {
  std::vector<std::wstring> rows;
  int32_t count = 0;
  collection->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IUnknown> object, attached;
    int32_t flags = 0;
    collection->get_ItemName(i, name.Receive());
    collection->get_Item(i, object.Receive());
    collection->get_ItemAttached(i, attached.Receive());
    collection->get_ItemFlags(i, &flags);
    std::wstring row = (name ? TextOf(name) : L"<null>") + L":" + std::to_wstring(flags) + L":";
    for (IUnknown* part : {object.get(), attached.get()}) {
      if (SmartPtr<IParameters> set = QueryAs<IParameters>(part))
        for (const std::wstring& p : Describe(set.get())) row += p + L";";
      row += L":";
    }
    rows.push_back(row);
  }
  return rows;
}

// The text `save` writes to a lean XML stream (no layout text).
template <class Save>
std::wstring LeanXMLOf(Save save) {
  SmartPtr<IXMLStreamEx> xml = CreateObjectAs<IXMLStreamEx>(L"XMLStreamEx");
  xml->SetOptions(-1, kXMLOptionLean);
  save(QueryAs<IDataStream>(xml.get()).get());
  return XMLTextOf(xml.get());
}

// What Params_SaveXML writes with `flags`.
inline std::wstring SavedXML(IParameters* set, int32_t flags) {
  return LeanXMLOf([&](IDataStream* stream) { set->Params_SaveXML(stream, flags); });
}

// A stream reading `text`, positioned on its first element when `enter`.
inline SmartPtr<IDataStream> XMLReading(const std::wstring& text, bool enter) {
  SmartPtr<IXMLStream> xml = XMLStreamOn(text);
  SmartPtr<IDataStream> stream;
  if (enter)
    xml->OpenChild({0, nullptr}, nullptr, stream.Receive(), 0);
  else
    stream = QueryAs<IDataStream>(xml.get());
  return stream;
}

}  // namespace persistence_test
