// Helpers of the input-binding tests: bindings, sets, number vectors and
// collections made through the framework as a host makes them, a short
// description of any value, and a test double that plays a collection
// moniker, a host window or a UI node.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "../parameters/collection_test_support.h"
#include "runtime/reserved_slots.h"

namespace input_test {

using namespace collection_test;

inline SmartPtr<IInputParameters> NewInputs() { return CreateObjectAs<IInputParameters>(L"InputParameters"); }

// A binding with the given fields; a null name stays unset.
inline SmartPtr<IInputParameter> MakeBinding(const wchar_t* name, int32_t sourceIndex, const IID& iid,
                                             IUnknown* source) {
  SmartPtr<IInputParameter> binding = NewBinding();
  if (name) binding->put_Name(MakeString(name).get());
  binding->put_SourceIndex(sourceIndex);
  binding->put_IID(iid);
  binding->put_Source(source);
  return binding;
}

inline SmartPtr<IDblVector> MakeNumbers(const std::vector<double>& numbers) {
  SmartPtr<IDblVector> vector = CreateObjectAs<IDblVector>(L"DblBuffer");
  for (double number : numbers) vector->Append(number, -1);
  return vector;
}

// A collection of the named items in order (a set adds a null value as empty text).
using Items = std::vector<std::pair<std::wstring, IUnknown*>>;
template <class Collection>
SmartPtr<Collection> Filled(const wchar_t* className, const Items& items) {
  SmartPtr<Collection> collection = CreateObjectAs<Collection>(className);
  for (const auto& [name, object] : items) collection->Add(MakeString(name).get(), object, nullptr, 0);
  return collection;
}
inline auto MakeCollection(const Items& items) { return Filled<ISuperCollection>(L"SuperCollection", items); }
inline auto MakeSet(const Items& items) { return Filled<IParametersCreatable>(L"ParametersCreatable", items); }

// "<none>" for null; a variant as DescribeValue gives it; else "c" and the class name, or "?".
inline std::wstring Describe(IUnknown* object) {
  if (!object) return L"<none>";
  if (SmartPtr<IVariant> value = QueryAs<IVariant>(object)) return DescribeValue(value.get());
  tagREFString name{0, L""};
  if (SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(object)) info->GetName(0, &name);
  if (name.length == 0) return L"?";
  return L"c" + std::wstring(name.text, static_cast<size_t>(name.length));
}

inline SmartPtr<IInputParameter> InputAt(INamedCollection* inputs, int32_t index) {
  SmartPtr<IUnknown> item;
  inputs->get_Item(index, item.Receive());
  return QueryAs<IInputParameter>(item.get());
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

// Plays whichever of a collection moniker, a host window and a UI node it is told to.
class CDouble : public CObjectImpl<CDouble, ICollectionMoniker, IHostWindow, IUINode> {
 public:
  enum Role { kMoniker = 1, kHost = 2, kNode = 4 };
  static constexpr wchar_t kObjectName[] = L"Double";
  template <int role, class I>
  static IUnknown* As(CDouble* self) { return (self->roles & role) ? static_cast<I*>(self) : nullptr; }
  static constexpr InterfaceEntry<CDouble> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CDouble, IObjectInfo>},
      {&IID_ICollectionMoniker, &As<kMoniker, ICollectionMoniker>},
      {&IID_IHostWindow, &As<kHost, IHostWindow>},
      {&IID_IUINode, &As<kNode, IUINode>},
  };

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }
  HRESULT Reserved1() override { return E_NOTIMPL; }
  HRESULT Reserved2() override { return E_NOTIMPL; }
  HRESULT Reserved3() override { return E_NOTIMPL; }
  HRESULT Reserved4() override { return E_NOTIMPL; }
  // The moniker finds `inner` when it answers the identity; the host hosts it, the node holds it.
  HRESULT FindObject(IID* iid, void** object) override {
    *object = nullptr;
    return inner && inner->QueryInterface(*iid, object) >= 0 ? S_OK : E_NOINTERFACE;
  }
  HRESULT GetHostedObject(IUnknown** object) override { return inner ? inner.CopyTo(object) : E_FAIL; }
  HRESULT GetObject(IUnknown** object) override { return inner ? inner.CopyTo(object) : E_FAIL; }

  int roles = 0;
  SmartPtr<IUnknown> inner;
};

inline SmartPtr<IUnknown> MakeStandIn(int roles, IUnknown* inner) {
  SmartPtr<CDouble> object = NewObject<CDouble>();
  object->roles = roles;
  object->inner = SmartPtr<IUnknown>(inner);
  return SmartPtr<IUnknown>(object->GetUnknown());
}

}  // namespace input_test
