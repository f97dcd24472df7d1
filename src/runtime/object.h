// The object model: CObject<T> (creation, atomic reference counting, the
// per-class interface table), IObjectInfoImpl<T> (the class name) and
// CObjectImpl<T, Interfaces...>, the base every creatable class derives from.
//
// A creatable class is declared as
//   class CExpression : public CObjectImpl<CExpression, IExpression, IDataPersist> {
//     static constexpr wchar_t kObjectName[] = L"Expression";
//     static constexpr InterfaceEntry<CExpression> kInterfaces[] = {...};
//     ...own operations, in the class's documented slot order...
//   };
// Its layout is: the primary table pointer and the reference count
// (CObject<T>), the IObjectInfo table pointer, one table pointer per further
// interface, then the class's own members. The object actually made is a
// GuardedObject<T> (interface_guards.h), which keeps exceptions from crossing
// any of T's interfaces; a class is therefore never declared final.
#pragma once

#include <atomic>
#include <new>

#include "boundary.h"
#include "interface_traits.h"

// One row of a class's interface table. `get` answers the interface pointer,
// or null to refuse (an interface that is switched off).
template <class T>
struct InterfaceEntry {
  const IID* iid;
  IUnknown* (*get)(T* self);
};

// The interface pointer of `self` for interface I.
template <class T, class I>
IUnknown* InterfaceOf(T* self) {
  return static_cast<I*>(self);
}

template <class T>
class GuardedObject;

template <class T>
class CObject : public IUnknown {
 public:
  // The creation function handed out by CreateFunction. The outer object is
  // ignored: no class supports aggregation.
  static HRESULT _CreateInstance(void* outer, IID* iid, void** out);

  HRESULT QueryInterface(const IID& iid, void** out) override {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (iid == IID_IUnknown) {
      *out = static_cast<IUnknown*>(this);
      AddRef();
      return S_OK;
    }
    for (const InterfaceEntry<T>& entry : T::kInterfaces) {
      if (*entry.iid != iid) continue;
      IUnknown* answer = entry.get(static_cast<T*>(this));
      if (!answer) continue;
      answer->AddRef();
      *out = answer;
      return S_OK;
    }
    return E_NOINTERFACE;
  }

  // Both answer the count the atomic operation itself produced: reading the
  // count again could touch an object another thread has just destroyed.
  uint32_t AddRef() override {
    return static_cast<uint32_t>(m_RefCount.fetch_add(1, std::memory_order_seq_cst) + 1);
  }

  uint32_t Release() override {
    int32_t remaining = m_RefCount.fetch_sub(1, std::memory_order_seq_cst) - 1;
    if (remaining == 0) Destroy();
    return static_cast<uint32_t>(remaining);
  }

  virtual HRESULT FinalConstruct() { return S_OK; }
  virtual void FinalRelease() {}
  virtual void Lock() {}
  virtual void Unlock() {}

 protected:
  CObject() = default;
  ~CObject() = default;

 private:
  void Destroy() {
    FinalRelease();
    // Every object is made as a GuardedObject<T>; members release what they hold.
    delete static_cast<GuardedObject<T>*>(static_cast<T*>(this));
  }

  std::atomic<int32_t> m_RefCount{1};
};

template <class T>
HRESULT CObject<T>::_CreateInstance(void* /*outer*/, IID* iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  T* object = nullptr;
  return GuardedCall([&]() -> HRESULT {
    object = new GuardedObject<T>();
    HRESULT result = object->FinalConstruct();
    if (result == S_OK) {
      result = object->QueryInterface(iid ? *iid : IID_NULL, out);
      if (result == S_OK) {
        object->Release();  // the query's reference now stands for the caller's
        return S_OK;
      }
    }
    if (*out) static_cast<IUnknown*>(*out)->Release();
    *out = nullptr;
    object->Destroy();
    return result;
  }, [&] {
    if (object) object->Destroy();
  });
}

// The class name of T, as GetName reports it and CreateFunction matches it.
template <class T>
class IObjectInfoImpl : public IObjectInfo {
 public:
  static inline const tagREFString m_ObjectName{
      static_cast<int32_t>(sizeof(T::kObjectName) / sizeof(wchar_t) - 1), T::kObjectName};

  // `which` is ignored; the static text itself is handed out, not a copy.
  HRESULT GetName(int32_t /*which*/, tagREFString* name) override {
    if (!name) return E_POINTER;
    *name = m_ObjectName;
    return S_OK;
  }
};

// Base of every creatable class: joins CObject<T>, IObjectInfoImpl<T> and the
// class's interfaces, and answers the IUnknown operations of all of them.
template <class T, class... Interfaces>
class CObjectImpl : public CObject<T>, public IObjectInfoImpl<T>, public Interfaces... {
 public:
  HRESULT QueryInterface(const IID& iid, void** out) override { return CObject<T>::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObject<T>::AddRef(); }
  uint32_t Release() override { return CObject<T>::Release(); }

  // The pointer answered for IUnknown.
  IUnknown* GetUnknown() { return static_cast<CObject<T>*>(this); }
};

// Makes an object of class T directly (not through the component registry)
// and answers interface I, or null.
template <class T, class I>
SmartPtr<I> CreateInstanceOf() {
  SmartPtr<I> result;
  IID iid = IIDOf<I>();
  CObject<T>::_CreateInstance(nullptr, &iid, result.ReceiveVoid());
  return result;
}

// Makes an object of class T directly and holds it by its concrete type, or null.
template <class T>
SmartPtr<T> NewObject() {
  IID iid = IID_IUnknown;
  void* unknown = nullptr;
  if (CObject<T>::_CreateInstance(nullptr, &iid, &unknown) != S_OK) return SmartPtr<T>();
  return SmartPtr<T>::Adopt(static_cast<T*>(static_cast<CObject<T>*>(static_cast<IUnknown*>(unknown))));
}

#include "interface_guards.h"
