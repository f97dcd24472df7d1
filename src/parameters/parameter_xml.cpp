// A parameter set as XML elements: one element per parameter (simple or full
// shape), and the object layout of Params_SaveXMLUnk with its reader.
#include <utility>
#include <vector>

#include "parameters/parameter_flags.h"
#include "parameters/parameter_persistence.h"
#include "parameters/persist_text.h"

namespace {

constexpr tagREFString kNoName{0, nullptr};
constexpr tagREFString kValueName{5, L"Value"};
constexpr tagREFString kFlagsName{5, L"Flags"};
constexpr tagREFString kDescriptorName{14, L"ItemDescriptor"};

// Writes an element holding "#" and the hexadecimal digits of `value` (at least six).
void WriteHexElement(IXMLStream* xml, tagREFString name, uint32_t value) {
  NumberText text;
  text.SetHex(value);
  xml->WriteElement(name, 0, text.view(), 0);
}

// Holds the set's lock for a consistent pass over its parameters.
class SetLock {
 public:
  explicit SetLock(IParameters* set) : m_Set(set) { m_Set->CollectionLock(); }
  ~SetLock() { m_Set->CollectionUnlock(); }
  SetLock(const SetLock&) = delete;
  SetLock& operator=(const SetLock&) = delete;

 private:
  IParameters* m_Set;
};

// 0x00BBGGRR becomes 0x00RRGGBB: the lowest and third-lowest bytes change places.
uint32_t SwapColourBytes(uint32_t colour) {
  return (colour & 0xFF00FF00u) | (colour & 0xFFu) << 16 | (colour >> 16 & 0xFFu);
}

// Lets `object` write itself inside an object element of its own.
void WriteObjectElement(IXMLStream* xml, IDataStream* stream, IDataPersist* object, int32_t flags) {
  const SaveNesting nesting;
  if (nesting.TooDeep() || FAILED(xml->BeginObject(object, 0, 0))) return;
  object->Save(stream, flags);
  xml->EndElement();
}

void WriteParameter(IParameters* set, IXMLStream* xml, IDataStream* stream, int32_t index, int32_t saveFlags) {
  SmartPtr<IString> name;
  SmartPtr<IVariant> value;
  SmartPtr<IUnknown> descriptor;
  int32_t flags = 0;
  // One call for name, effective value, descriptor and flags (a large set is written parameter by parameter).
  set->Iterate(index, name.Receive(), value.Receive(), descriptor.Receive(), &flags);
  SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(descriptor.get());
  const CREFString element = TextView(name.get());

  flags &= ~kParamFlagTransient;
  if (saveFlags & kSaveLean) {
    if (flags & kParamFlagLeanNoDescriptor) {
      flags &= ~kParamFlagLeanNoDescriptor;
      persist.Reset();
    }
    if (flags & kParamFlagLeanHidden) persist.Reset();
    if (flags == kParamFlagColour && !persist && value && value->GetType() != kVariantNotNumber) {
      WriteHexElement(xml, element, SwapColourBytes(static_cast<uint32_t>(value->GetLong())));
      return;
    }
    const int32_t low = flags & 0xF;
    if (low == 3 || low == 5 || low == 6 || flags == 9) flags = 0;  // kinds that lean output leaves implicit
  }

  const VariantText text(value.get());
  if (!persist && flags == 0) {
    xml->WriteElement(element, 0, text.view(), 0);
    return;
  }
  xml->BeginElement(element, 0, 0);
  xml->WriteElement(kValueName, 0, text.view(), 0);
  if (flags) WriteHexElement(xml, kFlagsName, static_cast<uint32_t>(flags));
  if (persist) WriteObjectElement(xml, stream, persist.get(), saveFlags);
  xml->EndElement();
}

// The text and sub-stream of the child the cursor stands on.
HRESULT OpenCurrentChild(IXMLStream* xml, IString** text, SmartPtr<IXMLStream>* child) {
  SmartPtr<IDataStream> sub;
  const HRESULT result = xml->OpenChild(kNoName, text, child ? sub.Receive() : nullptr, 0);
  if (child) *child = QueryAs<IXMLStream>(sub.get());
  return result;
}

// Merge mode: the children of a known parameter's element update it.
void MergeParameter(IParameters* set, int32_t index, IXMLStream* element, IString* ownText) {
  SmartPtr<IString> childName;
  bool anyChild = false;
  while (SUCCEEDED(element->NextChild(childName.Receive()))) {
    anyChild = true;
    const CREFString childView = TextView(childName.get());
    SmartPtr<IString> text;
    if (EqualsIgnoringCase(childView, L"Value")) {
      if (FAILED(OpenCurrentChild(element, text.Receive(), nullptr))) continue;
      SmartPtr<IVariant> value = ConvertedValue(text.get());
      if (value) set->put_Item(index, value.get());
    } else if (EqualsIgnoringCase(childView, L"Flags")) {
      if (FAILED(OpenCurrentChild(element, text.Receive(), nullptr))) continue;
      set->put_ItemFlags(index, _IS2Integer(TextView(text.get()), 10));
    } else {
      SmartPtr<IUnknown> descriptor;
      if (SUCCEEDED(element->ReadObject(kNoName, descriptor.Receive())) && descriptor)
        set->put_ItemDescriptor(index, descriptor.get());
    }
  }
  if (!anyChild) {
    SmartPtr<IVariant> value = ConvertedValue(ownText);
    if (value) set->put_Item(index, value.get());
  }
}

struct LoadedParameter {
  SmartPtr<IString> name;
  SmartPtr<IUnknown> value;
  SmartPtr<IUnknown> descriptor;
  int32_t flags = 0;
};

// Empties the set and adds the parameters read, under one lock.
void ReplaceContent(IParameters* set, const std::vector<LoadedParameter>& loaded) {
  SetLock lock(set);
  set->RemoveAll();
  for (const LoadedParameter& item : loaded)
    set->AddNOLOCK(item.name.get(), item.value.get(), item.descriptor.get(), item.flags);
}

}  // namespace

HRESULT ParamsSaveXML(IParameters* set, IDataStream* stream, int32_t flags) {
  SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream);
  if (!set || !xml) return S_OK;
  SetLock lock(set);
  int32_t count = 0;
  set->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) WriteParameter(set, xml.get(), stream, i, flags);
  return S_OK;
}

HRESULT ParamsLoadXML(IParameters* set, IDataStream* stream, int32_t flags) {
  SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream);
  if (!set || !xml) return S_OK;
  const bool replace = (flags & kLoadReplace) != 0;
  std::vector<LoadedParameter> loaded;
  SmartPtr<IString> name;
  while (SUCCEEDED(xml->NextChild(name.Receive()))) {
    SmartPtr<IString> text;
    if (replace) {
      // Replace mode takes each element's own text; child elements are not interpreted (intended).
      if (FAILED(OpenCurrentChild(xml.get(), text.Receive(), nullptr))) continue;
      LoadedParameter item;
      item.name = name;
      item.value = SmartPtr<IUnknown>(ConvertedValue(text.get()).get());
      loaded.push_back(std::move(item));
      continue;
    }
    int32_t index = -1;
    if (FAILED(set->get_Index(name.get(), &index)) || index < 0) continue;
    SmartPtr<IXMLStream> element;
    if (FAILED(OpenCurrentChild(xml.get(), text.Receive(), &element)) || !element) continue;
    MergeParameter(set, index, element.get(), text.get());
  }
  if (replace) ReplaceContent(set, loaded);
  return S_OK;
}

HRESULT ParamsSaveXMLUnk(IParameters* set, IDataStream* stream, int32_t flags) {
  SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream);
  if (!set || !xml) return S_OK;
  SetLock lock(set);
  int32_t count = 0;
  set->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IUnknown> item;
    set->get_Item(i, item.Receive());
    SmartPtr<IDataPersist> persist = QueryAs<IDataPersist>(item.get());
    if (!persist) continue;  // values that do not persist themselves are left out
    SmartPtr<IString> name;
    SmartPtr<IUnknown> descriptor;
    int32_t itemFlags = 0;
    set->get_ItemName(i, name.Receive());
    set->get_ItemDescriptor(i, descriptor.Receive());
    set->get_ItemFlags(i, &itemFlags);
    const ItemNameText element(name.get(), i);
    xml->BeginElement(element.view(), 0, 0);
    if (itemFlags) WriteHexElement(xml.get(), kFlagsName, static_cast<uint32_t>(itemFlags));
    WriteObjectElement(xml.get(), stream, persist.get(), flags);
    if (SmartPtr<IDataPersist> descriptorPersist = QueryAs<IDataPersist>(descriptor.get())) {
      xml->BeginElement(kDescriptorName, 0, 0);
      WriteObjectElement(xml.get(), stream, descriptorPersist.get(), flags);
      xml->EndElement();
    }
    xml->EndElement();
  }
  return S_OK;
}

// Reads what ParamsSaveXMLUnk writes. Replace mode adds every element with an
// object; merge mode updates the parameters the set already has by name.
HRESULT ParamsLoadXMLUnk(IParameters* set, IDataStream* stream, int32_t flags) {
  SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream);
  if (!set || !xml) return S_OK;
  const bool replace = (flags & kLoadReplace) != 0;
  std::vector<LoadedParameter> loaded;
  SmartPtr<IString> name;
  while (SUCCEEDED(xml->NextChild(name.Receive()))) {
    SmartPtr<IXMLStream> element;
    if (FAILED(OpenCurrentChild(xml.get(), nullptr, &element)) || !element) continue;
    LoadedParameter item;
    item.name = name;
    SmartPtr<IString> childName;
    while (SUCCEEDED(element->NextChild(childName.Receive()))) {
      const CREFString childView = TextView(childName.get());
      if (EqualsIgnoringCase(childView, L"Flags")) {
        SmartPtr<IString> text;
        if (SUCCEEDED(OpenCurrentChild(element.get(), text.Receive(), nullptr)))
          item.flags = _IS2Integer(TextView(text.get()), 10);
      } else if (EqualsIgnoringCase(childView, L"ItemDescriptor")) {
        SmartPtr<IXMLStream> holder;
        if (SUCCEEDED(OpenCurrentChild(element.get(), nullptr, &holder)) && holder)
          holder->ReadObject(kNoName, item.descriptor.Receive());
      } else {
        element->ReadObject(kNoName, item.value.Receive());
      }
    }
    if (!item.value) continue;
    if (replace) {
      loaded.push_back(std::move(item));
      continue;
    }
    int32_t index = -1;
    if (FAILED(set->get_Index(name.get(), &index)) || index < 0) continue;
    set->put_Item(index, item.value.get());
    set->put_ItemFlags(index, item.flags);
    if (item.descriptor) set->put_ItemDescriptor(index, item.descriptor.get());
  }
  if (replace) ReplaceContent(set, loaded);
  return S_OK;
}
