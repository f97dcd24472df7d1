// "CreatableString": the framework's string object.
#include "creatable_string.h"

namespace {

bool IsValidView(tagREFString text) { return text.length >= 0 && (text.length == 0 || text.text); }

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
    return S_OK;
  });
}

HRESULT CCreatableString::Append(tagREFString text) {
  if (!IsValidView(text)) return E_INVALIDARG;
  return GuardedCall([&] {
    if (text.length > 0) m_Text.append(text.text, static_cast<size_t>(text.length));
    return S_OK;
  });
}
