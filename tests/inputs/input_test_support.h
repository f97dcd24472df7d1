// Helpers of the input-binding tests: bindings, sets, number vectors and
// collections made through the framework as a host makes them, a short
// description of any value, and a test double that plays a collection
// moniker, a host window or a UI node.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "runtime/reserved_slots.h"
#include "test_support.h"

namespace input_test {

using namespace test_support;

inline SmartPtr<IInputParameter> NewBinding() { return CreateObjectAs<IInputParameter>(L"InputParameter"); }
inline SmartPtr<IInputParameters> NewInputs() { return CreateObjectAs<IInputParameters>(L"InputParameters"); }
inline SmartPtr<IParametersCreatable> NewSet() { return CreateObjectAs<IParametersCreatable>(L"ParametersCreatable"); }

inline SmartPtr<IDblVector> MakeNumbers(const std::vector<double>& numbers) {
  SmartPtr<IDblVector> vector = CreateObjectAs<IDblVector>(L"DblBuffer");
  for (double number : numbers) vector->Append(number, -1);
  return vector;
}

// A collection of named objects ("SuperCollection").
inline SmartPtr<ISuperCollection> MakeCollection(const std::vector<std::pair<std::wstring, IUnknown*>>& items) {
  SmartPtr<ISuperCollection> collection = CreateObjectAs<ISuperCollection>(L"SuperCollection");
  for (const auto& [name, object] : items) collection->Add(MakeString(name).get(), object, nullptr, 0);
  return collection;
}

// A parameter set of named values (a null value is added as empty text).
inline SmartPtr<IParametersCreatable> MakeSet(const std::vector<std::pair<std::wstring, IUnknown*>>& items) {
  SmartPtr<IParametersCreatable> set = NewSet();
  for (const auto& [name, value] : items) set->Add(MakeString(name).get(), value, nullptr, 0);
  return set;
}

// "<none>" for null; a variant as DescribeValue gives it; else "c" and the class name, or "?".
inline std::wstring Describe(IUnknown* object) {
  if (!object) return L"<none>";
  if (SmartPtr<IVariant> value = QueryAs<IVariant>(object)) return DescribeValue(value.get());
  tagREFString name{0, L""};
  if (SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(object)) info->GetName(0, &name);
  if (name.length == 0) return L"?";
  return L"c" + std::wstring(name.text, static_cast<size_t>(name.length));
}

inline std::wstring NameOf(IInputParameter* binding) {
  SmartPtr<IString> name;
  if (binding->get_Name(name.Receive()) < 0) return L"<unset>";
  return TextOf(name);
}

inline int32_t SourceIndexOf(IInputParameter* binding) {
  int32_t index = -99;
  binding->get_SourceIndex(&index);
  return index;
}

inline SmartPtr<IUnknown> SourceOf(IInputParameter* binding) {
  SmartPtr<IUnknown> source;
  binding->get_Source(source.Receive());
  return source;
}

// The result of get_Object and a description of what it handed out.
struct Fetched {
  HRESULT result;
  std::wstring value;
};
inline Fetched Fetch(IInputParameter* binding) {
  SmartPtr<IUnknown> object;
  HRESULT result = binding->get_Object(object.Receive());
  return {result, Describe(object.get())};
}

// Plays whichever of a collection moniker, a host window and a UI node it is told to.
class CDouble : public CObjectImpl<CDouble, ICollectionMoniker, IHostWindow, IUINode> {
 public:
  enum Role { kMoniker = 1, kHost = 2, kNode = 4 };
  static constexpr wchar_t kObjectName[] = L"Double";
  static IUnknown* AsMoniker(CDouble* self);
  static IUnknown* AsHost(CDouble* self);
  static IUnknown* AsNode(CDouble* self);
  static constexpr InterfaceEntry<CDouble> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CDouble, IObjectInfo>},
      {&IID_ICollectionMoniker, &AsMoniker},
      {&IID_IHostWindow, &AsHost},
      {&IID_IUINode, &AsNode},
  };

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }

  HRESULT Reserved1() override { return E_NOTIMPL; }
  HRESULT Reserved2() override { return E_NOTIMPL; }
  HRESULT Reserved3() override { return E_NOTIMPL; }
  HRESULT Reserved4() override { return E_NOTIMPL; }
  // The moniker finds `inner` when it answers the identity.
  HRESULT FindObject(IID* iid, void** object) override {
    *object = nullptr;
    if (!inner) return E_NOINTERFACE;
    return inner->QueryInterface(*iid, object) >= 0 ? S_OK : E_NOINTERFACE;
  }
  HRESULT GetHostedObject(IUnknown** object) override { return inner ? inner.CopyTo(object) : E_FAIL; }
  HRESULT GetObject(IUnknown** object) override { return inner ? inner.CopyTo(object) : E_FAIL; }

  int roles = 0;
  SmartPtr<IUnknown> inner;  // what the moniker finds, the host hosts or the node holds
};

inline IUnknown* CDouble::AsMoniker(CDouble* self) {
  return (self->roles & kMoniker) ? static_cast<ICollectionMoniker*>(self) : nullptr;
}
inline IUnknown* CDouble::AsHost(CDouble* self) {
  return (self->roles & kHost) ? static_cast<IHostWindow*>(self) : nullptr;
}
inline IUnknown* CDouble::AsNode(CDouble* self) { return (self->roles & kNode) ? static_cast<IUINode*>(self) : nullptr; }

inline SmartPtr<IUnknown> MakeStandIn(int roles, IUnknown* inner) {
  SmartPtr<CDouble> object = NewObject<CDouble>();
  object->roles = roles;
  object->inner = SmartPtr<IUnknown>(inner);
  return SmartPtr<IUnknown>(object->GetUnknown());
}

}  // namespace input_test
