// Basic types shared by every module of the framework: counted text views,
// interface identities and the IUnknown contract.
//
// Every integer that crosses an interface is fixed-width: the framework's home
// platform is 32-bit ARM where `long` is 32 bits, so interfaces use int32_t
// throughout to keep one ABI on every platform.
#pragma once

#include <cstdint>
#include <cwchar>

// Result code of every interface operation (negative = failure).
typedef int32_t HRESULT;

// A non-owning counted view of UTF-32 text; the text need not be terminated.
struct tagREFString {
  int32_t length;
  const wchar_t* text;
};

// A 16-byte interface identity, compared bytewise.
struct IID {
  unsigned char bytes[16];
};

constexpr bool operator==(const IID& a, const IID& b) {
  for (int i = 0; i < 16; ++i)
    if (a.bytes[i] != b.bytes[i]) return false;
  return true;
}
constexpr bool operator!=(const IID& a, const IID& b) { return !(a == b); }

// The first three operations of every interface.
struct IUnknown {
  virtual HRESULT QueryInterface(const IID& iid, void** object) = 0;
  virtual uint32_t AddRef() = 0;
  virtual uint32_t Release() = 0;

 protected:
  ~IUnknown() = default;  // objects are destroyed by Release, never by delete
};

// The creation function a module hands out for one class: (outer, identity, out).
typedef HRESULT (*CreationFunction)(void* outer, IID* iid, void** object);

static_assert(sizeof(IID) == 16, "an IID is 16 bytes");
static_assert(sizeof(int32_t) == 4, "interface integers are 32 bits");
static_assert(sizeof(wchar_t) == 4, "wide characters are UTF-32");
