// Holders of one interface reference: SmartPtr<T> and, with the identity
// bound, SmartPtrIID<T, iid> (adds Cast).
#pragma once

#include <utility>

#include "interface_traits.h"

// True when both are null, or both answer IUnknown with the same pointer.
bool SameObject(IUnknown* a, IUnknown* b);

template <class T>
class SmartPtr {
 public:
  SmartPtr() = default;
  // Takes a new reference to `pointer`.
  explicit SmartPtr(T* pointer) : m_Pointer(pointer) {
    if (m_Pointer) m_Pointer->AddRef();
  }
  SmartPtr(const SmartPtr& other) : SmartPtr(other.m_Pointer) {}
  SmartPtr(SmartPtr&& other) noexcept : m_Pointer(std::exchange(other.m_Pointer, nullptr)) {}
  SmartPtr& operator=(SmartPtr other) noexcept {
    std::swap(m_Pointer, other.m_Pointer);
    return *this;
  }
  ~SmartPtr() { Reset(); }

  // Adopts a pointer whose reference the caller already owns.
  static SmartPtr Adopt(T* pointer) {
    SmartPtr result;
    result.m_Pointer = pointer;
    return result;
  }

  // Releases the held pointer: the member is cleared before the release.
  void Reset() {
    T* taken = std::exchange(m_Pointer, nullptr);
    if (taken) taken->Release();
  }
  // Releases the held pointer and gives its slot to a function that stores a new reference.
  T** Receive() {
    Reset();
    return &m_Pointer;
  }
  void** ReceiveVoid() { return reinterpret_cast<void**>(Receive()); }
  // Hands the reference to the caller.
  T* Detach() { return std::exchange(m_Pointer, nullptr); }
  // Stores a new reference in *out (null stays null); E_POINTER for a null out.
  HRESULT CopyTo(T** out) const {
    if (!out) return E_POINTER;
    *out = m_Pointer;
    if (m_Pointer) m_Pointer->AddRef();
    return S_OK;
  }

  T* get() const { return m_Pointer; }
  T* operator->() const { return m_Pointer; }
  explicit operator bool() const { return m_Pointer != nullptr; }

  // Identity comparison through IUnknown.
  bool operator==(IUnknown* other) const { return SameObject(m_Pointer, other); }

 private:
  T* m_Pointer = nullptr;
};

// Hands out a reference that a record holds: E_FAIL when it holds none, else
// *out receives it with a reference added.
template <class T>
HRESULT HandOutHeld(T* held, T** out) {
  if (!held) return E_FAIL;
  held->AddRef();
  *out = held;
  return S_OK;
}

// Copies a plain value to an out-parameter: E_POINTER when there is none.
template <class T>
HRESULT HandOutValue(const T& value, T* out) {
  if (!out) return E_POINTER;
  *out = value;
  return S_OK;
}

// Asks `from` for interface I; null when `from` is null or does not answer.
template <class I>
SmartPtr<I> QueryAs(IUnknown* from) {
  SmartPtr<I> result;
  if (from) from->QueryInterface(IIDOf<I>(), result.ReceiveVoid());
  return result;
}

template <class T, const IID* Iid>
class SmartPtrIID : public SmartPtr<T> {
 public:
  // Replaces the held pointer by `from`'s answer for the bound identity.
  HRESULT Cast(IUnknown* from) {
    void** slot = this->ReceiveVoid();
    if (!from) return E_FAIL;
    return from->QueryInterface(*Iid, slot);
  }
};
