// "CreatableString": the framework's string object.
#include "creatable_string.h"

namespace {

bool IsValidView(tagREFString text) { return text.length >= 0 && (text.length == 0 || text.text); }

// Advanced by every change of a watched string's text.
std::atomic<uint64_t> gWatchedStringChanges{0};

}  // namespace

HRESULT CCreatableString::GetBuffer(const wchar_t** text, int32_t* length) {
  if (!text || !length) return E_POINTER;
  *text = m_Text.c_str();
  *length = static_cast<int32_t>(m_Text.size());
  return S_OK;
}

HRESULT CCreatableString::SetText(tagREFString text) {
  if (!IsValidView(text)) return E_INVALIDARG;
  return GuardedCall([&] {
    m_Text.assign(text.text ? text.text : L"", static_cast<size_t>(text.length));
    CountChange();
    return S_OK;
  });
}

HRESULT CCreatableString::Append(tagREFString text) {
  if (!IsValidView(text)) return E_INVALIDARG;
  return GuardedCall([&] {
    if (text.length > 0) {
      m_Text.append(text.text, static_cast<size_t>(text.length));
      CountChange();
    }
    return S_OK;
  });
}

const std::atomic<uint64_t>* CCreatableString::WatchChanges() {
  m_Watched.store(true, std::memory_order_release);
  return &gWatchedStringChanges;
}

void CCreatableString::CountChange() {
  if (m_Watched.load(std::memory_order_acquire)) gWatchedStringChanges.fetch_add(1, std::memory_order_acq_rel);
}
