// "CreatableString": the framework's string object.
#include "creatable_string.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace {

bool IsValidView(tagREFString text) { return text.length >= 0 && (text.length == 0 || text.text); }

// Texts stay short enough that GetBuffer can report their length.
constexpr uint64_t kMaxLength = INT32_MAX;

// Advanced by every change of a watched string's text.
std::atomic<uint64_t> gWatchedStringChanges{0};

}  // namespace

CCreatableString::~CCreatableString() { FreeHeapText(); }

// The block a union member points at cannot be a unique_ptr; it is freed here only.
void CCreatableString::FreeHeapText() {
  if (m_OnHeap) delete[] m_Heap.characters;
}

HRESULT CCreatableString::GetBuffer(const wchar_t** text, int32_t* length) {
  if (!text || !length) return E_POINTER;
  *text = Characters();
  *length = static_cast<int32_t>(m_Length);
  return S_OK;
}

HRESULT CCreatableString::SetText(tagREFString text) {
  if (!IsValidView(text)) return E_INVALIDARG;
  return GuardedCall([&] {
    WriteAt(0, text.text, static_cast<uint32_t>(text.length));
    CountChange();
    return S_OK;
  });
}

HRESULT CCreatableString::Append(tagREFString text) {
  if (!IsValidView(text)) return E_INVALIDARG;
  if (text.length == 0) return S_OK;
  if (uint64_t{m_Length} + static_cast<uint64_t>(text.length) > kMaxLength) return E_OUTOFMEMORY;
  return GuardedCall([&] {
    WriteAt(m_Length, text.text, static_cast<uint32_t>(text.length));
    CountChange();
    return S_OK;
  });
}

void CCreatableString::WriteAt(uint32_t at, const wchar_t* added, uint32_t count) {
  const uint32_t length = at + count;
  if (length <= Capacity()) {
    wchar_t* characters = Characters();
    if (count) std::memmove(characters + at, added, count * sizeof(wchar_t));
    characters[length] = L'\0';
    m_Length = length;
    return;
  }
  // The new block is filled before the old one is freed: `added` may lie in it.
  const auto capacity =
      static_cast<uint32_t>(std::min<uint64_t>(std::max<uint64_t>(length, 2 * uint64_t{Capacity()}), kMaxLength));
  std::unique_ptr<wchar_t[]> grown = std::make_unique_for_overwrite<wchar_t[]>(capacity + 1);
  std::copy_n(Characters(), at, grown.get());
  std::copy_n(added, count, grown.get() + at);
  grown[length] = L'\0';
  FreeHeapText();
  m_Heap = {grown.release(), capacity};
  m_OnHeap = true;
  m_Length = length;
}

const std::atomic<uint64_t>* CCreatableString::WatchChanges() {
  m_Watched.store(true, std::memory_order_release);
  return &gWatchedStringChanges;
}

void CCreatableString::CountChange() {
  if (m_Watched.load(std::memory_order_acquire)) gWatchedStringChanges.fetch_add(1, std::memory_order_acq_rel);
}
