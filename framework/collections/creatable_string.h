// "CreatableString": a wide text held by an object; set and append copy the
// given characters. The text is always terminated. A string that a
// collection watches (it is an indexed name) advances the shared change
// counter whenever its text changes.
//
// Texts of up to kInlineCapacity characters live inside the object itself,
// so a typical name costs one heap block, not two; a longer text moves to a
// block of its own that grows by doubling and is kept when the text shrinks.
#pragma once

#include <atomic>
#include <cstdint>

#include "runtime/object.h"

class CCreatableString : public CObjectImpl<CCreatableString, ICreatableString, IStringChangeCounter> {
 public:
  static constexpr wchar_t kObjectName[] = L"CreatableString";
  static constexpr InterfaceEntry<CCreatableString> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CCreatableString, IObjectInfo>},
      {&IID_IString, InterfaceOf<CCreatableString, ICreatableString>},
      {&IID_ICreatableString, InterfaceOf<CCreatableString, ICreatableString>},
      {&IID_IStringChangeCounter, InterfaceOf<CCreatableString, IStringChangeCounter>},
  };
  // Characters held without a block of their own (the terminator not counted).
  static constexpr uint32_t kInlineCapacity = 13;

  CCreatableString() = default;
  CCreatableString(const CCreatableString&) = delete;
  CCreatableString& operator=(const CCreatableString&) = delete;
  ~CCreatableString();

  HRESULT GetBuffer(const wchar_t** text, int32_t* length) override;
  HRESULT SetText(tagREFString text) override;
  HRESULT Append(tagREFString text) override;
  const std::atomic<uint64_t>* WatchChanges() override;

 private:
  struct HeapText {
    wchar_t* characters;
    uint32_t capacity;  // characters it holds besides the terminator
  };

  wchar_t* Characters() { return m_OnHeap ? m_Heap.characters : m_Inline; }
  uint32_t Capacity() const { return m_OnHeap ? m_Heap.capacity : kInlineCapacity; }
  // Writes `added` characters at `at`, keeping the `at` before them; grows
  // first when they do not fit. `added` may point into the current text.
  void WriteAt(uint32_t at, const wchar_t* added, uint32_t count);
  void FreeHeapText();
  void CountChange();

  uint32_t m_Length = 0;
  bool m_OnHeap = false;
  std::atomic<bool> m_Watched{false};
  union {
    wchar_t m_Inline[kInlineCapacity + 1] = {};
    HeapText m_Heap;
  };
};

// With the object's header the inline text fills malloc's 112-byte chunk on
// 64-bit hosts; one more character would take the next chunk size.
static_assert(sizeof(void*) != 8 || sizeof(CCreatableString) == 104);
