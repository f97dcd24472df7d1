// Helpers shared by the test suites: making framework strings and variants
// through the framework (as a host would) and reading them back.
#pragma once

#include <string>

#include "runtime/module_loader.h"
#include "runtime/object.h"
#include "strings/ref_string.h"

namespace test_support {

inline SmartPtr<ICreatableString> MakeString(const std::wstring& text) {
  SmartPtr<ICreatableString> result = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  if (result) result->SetText({static_cast<int32_t>(text.size()), text.c_str()});
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

// A view of `text`, which must outlive it, and the characters a view shows.
inline CREFString ViewOf(const std::wstring& text) {
  return CREFString(text.c_str(), static_cast<int32_t>(text.size()));
}
inline std::wstring TextOf(const tagREFString& view) {
  return std::wstring(view.text, static_cast<size_t>(view.length));
}

inline SmartPtr<IVariant> MakeVariant() { return SmartPtr<IVariant>::Adopt(CREFString::CreateVariant()); }

inline SmartPtr<IVariant> MakeLong(int32_t value) {
  SmartPtr<IVariant> v = MakeVariant();
  v->SetLong(value);
  return v;
}

inline SmartPtr<IVariant> MakeDouble(double value) {
  SmartPtr<IVariant> v = MakeVariant();
  v->SetDouble(value);
  return v;
}

inline SmartPtr<IVariant> MakeText(const std::wstring& text) {
  SmartPtr<IVariant> v = MakeVariant();
  v->SetString(MakeString(text).get());
  return v;
}

// The reference count of an object, read by an AddRef/Release pair.
inline uint32_t RefCountOf(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

}  // namespace test_support
