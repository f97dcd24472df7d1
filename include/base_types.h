// Basic types shared by every module of the framework: counted text views,
// interface identities and the IUnknown contract.
//
// Every integer that crosses an interface is fixed-width: the framework's home
// platform is 32-bit ARM where `long` is 32 bits, so interfaces use int32_t
// throughout to keep one ABI on every platform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <type_traits>

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
  if (!std::is_constant_evaluated()) {
    // Two 8-byte words: every QueryInterface compares identities.
    uint64_t wordsA[2], wordsB[2];
    std::memcpy(wordsA, a.bytes, sizeof wordsA);
    std::memcpy(wordsB, b.bytes, sizeof wordsB);
    return ((wordsA[0] ^ wordsB[0]) | (wordsA[1] ^ wordsB[1])) == 0;
  }
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
static_assert(alignof(IID) == 1, "an IID is a plain byte array, passed and stored unaligned");
static_assert(std::is_same_v<HRESULT, int32_t>, "result codes are 32-bit signed on every platform");
// tagREFString is passed by value: its layout is the calling convention.
static_assert(offsetof(tagREFString, length) == 0, "the length comes first");
static_assert(offsetof(tagREFString, text) == sizeof(void*), "the text pointer follows the length");
static_assert(sizeof(tagREFString) == 2 * sizeof(void*), "8 bytes on 32-bit ARM, 16 on 64-bit hosts");
// An interface pointer is exactly one table pointer; interfaces carry no data.
static_assert(sizeof(IUnknown) == sizeof(void*), "interfaces hold only their function table");
