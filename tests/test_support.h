// Helpers shared by the test suites: making framework strings and variants through the framework (as a host
// would) and reading them back.
#pragma once

#include <cstdio>
#include <cwchar>
#include <string>

#include "runtime/module_loader.h"
#include "runtime/object.h"
#include "strings/ref_string.h"

namespace test_support {

inline tagREFString Ref(const std::wstring& text) { return {static_cast<int32_t>(text.size()), text.c_str()}; }

inline SmartPtr<ICreatableString> MakeString(const std::wstring& text) {
  SmartPtr<ICreatableString> result = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  if (result) result->SetText(Ref(text));
  return result;
}

inline std::wstring TextOf(IString* text) {
  if (!text) return L"<null>";
  const wchar_t* buffer = nullptr;
  int32_t length = 0;
  if (text->GetBuffer(&buffer, &length) < 0 || !buffer) return L"<no buffer>";
  return std::wstring(buffer, static_cast<size_t>(length));
}

template <class I>
std::wstring TextOf(const SmartPtr<I>& text) {
  return TextOf(static_cast<IString*>(text.get()));
}

// Another reference to the same object, held as IUnknown.
template <class I>
SmartPtr<IUnknown> AsUnknown(const SmartPtr<I>& object) {
  return SmartPtr<IUnknown>(object.get());
}

// A view of `text`, which must outlive it, and the characters a view shows.
inline CREFString ViewOf(const std::wstring& text) {
  return CREFString(text.c_str(), static_cast<int32_t>(text.size()));
}
inline std::wstring TextOf(const tagREFString& view) {
  return std::wstring(view.text, static_cast<size_t>(view.length));
}

inline SmartPtr<IVariant> MakeVariant() { return SmartPtr<IVariant>::Adopt(CREFString::CreateVariant()); }

// A new variant after `set` has been applied to it.
template <class Setter>
SmartPtr<IVariant> MakeVariantBy(Setter set) {
  SmartPtr<IVariant> value = MakeVariant();
  if (value) set(value.get());
  return value;
}
// A variant holding `object`.
inline SmartPtr<IVariant> MakeHolding(IUnknown* o) { return MakeVariantBy([&](IVariant* v) { v->Assign(o); }); }
inline SmartPtr<IVariant> MakeLong(int32_t n) { return MakeVariantBy([&](IVariant* v) { v->SetLong(n); }); }
inline SmartPtr<IVariant> MakeDouble(double x) { return MakeVariantBy([&](IVariant* v) { v->SetDouble(x); }); }
inline SmartPtr<IVariant> MakeText(const std::wstring& text) {
  return MakeVariantBy([&](IVariant* v) { v->SetString(MakeString(text).get()); });
}

// A value in short form: "e" empty, "i<integer>", "r<real, all digits>", "t'<text>'", "o<class name>".
inline std::wstring DescribeValue(IVariant* value) {
  if (!value) return L"<null>";
  if (value->IsObject()) {
    SmartPtr<IUnknown> object;
    value->GetObject(object.Receive());
    tagREFString name{0, L""};
    if (SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(object.get())) info->GetName(0, &name);
    return L"o" + std::wstring(name.text, static_cast<size_t>(name.length));
  }
  if (value->IsString()) {
    SmartPtr<IString> text;
    value->GetString(text.Receive());
    return L"t'" + TextOf(text) + L"'";
  }
  wchar_t number[40];
  switch (value->GetType()) {
    case kVariantInteger: swprintf(number, 40, L"i%d", value->GetLong()); return number;
    case kVariantReal: swprintf(number, 40, L"r%.17g", value->GetDouble()); return number;
    default: return L"e";
  }
}

// The bytes a data stream holds.
inline std::string BytesOf(IDataStream* stream) {
  void* data = nullptr;
  int32_t size = 0;
  if (!stream || stream->GetBuffer(&data, &size) < 0) return "<no buffer>";
  return std::string(static_cast<const char*>(data), static_cast<size_t>(size));
}

// The text an XML stream holds.
inline std::wstring XMLTextOf(IXMLStream* stream) {
  void* data = nullptr;
  int32_t bytes = 0;
  if (!stream || stream->GetTextBuffer(&data, &bytes) < 0) return L"<no buffer>";
  return std::wstring(static_cast<const wchar_t*>(data), static_cast<size_t>(bytes) / sizeof(wchar_t));
}

// A new "XMLStream" holding `text`; `loaded` receives the result of loading it.
inline SmartPtr<IXMLStream> XMLStreamOn(const std::wstring& text, HRESULT* loaded = nullptr) {
  SmartPtr<IXMLStream> stream = CreateObjectAs<IXMLStream>(L"XMLStream");
  const HRESULT result = stream->LoadContent(text.c_str(), static_cast<int32_t>(text.size() * sizeof(wchar_t)), 0);
  if (loaded) *loaded = result;
  return stream;
}

// Bytes in hexadecimal, each after a blank: " 00 FF".
inline std::string HexOf(const void* data, size_t size) {
  std::string hex;
  char digits[5];
  for (size_t i = 0; i < size; ++i) {
    std::snprintf(digits, sizeof(digits), " %02X", static_cast<const unsigned char*>(data)[i]);
    hex += digits;
  }
  return hex;
}

// An object that does not tell its class name.
class CAnonymousObject : public CObjectImpl<CAnonymousObject> {
 public:
  static constexpr wchar_t kObjectName[] = L"AnonymousObject";
  static constexpr InterfaceEntry<CAnonymousObject> kInterfaces[] = {
      {&IID_IObjectInfo, [](CAnonymousObject*) -> IUnknown* { return nullptr; }},
  };
};

// The reference count of an object, read by an AddRef/Release pair.
inline uint32_t RefCountOf(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

}  // namespace test_support
