// "StringCollection": a text split into lines.
#include "string_collection.h"

#include <climits>

#include "string_result.h"

namespace {

bool IsValidView(tagREFString text) { return text.length >= 0 && (text.length == 0 || text.text); }

}  // namespace

HRESULT CStringCollection::get_Count(int32_t* count) {
  if (!count) return E_POINTER;
  *count = static_cast<int32_t>(m_Lines.size());
  return S_OK;
}

HRESULT CStringCollection::get_Item(int32_t index, IUnknown** line) {
  if (!line) return E_POINTER;
  *line = nullptr;
  if (index < 0 || static_cast<size_t>(index) >= m_Lines.size()) return E_INVALIDARG;
  const Line& found = m_Lines[static_cast<size_t>(index)];
  IString* text = nullptr;
  const HRESULT made = HandOutString(m_Text.data() + found.start, found.length, &text);
  *line = text;
  return made;
}

HRESULT CStringCollection::Reset(int32_t /*reserved*/) {
  m_Text.clear();
  m_Lines.clear();
  return S_OK;
}

HRESULT CStringCollection::GetBuffer(const wchar_t** text, int32_t* length) {
  if (!text || !length) return E_POINTER;
  *text = m_Text.c_str();
  *length = static_cast<int32_t>(m_Text.size());
  return S_OK;
}

HRESULT CStringCollection::SetText(tagREFString text) {
  if (!IsValidView(text)) return E_INVALIDARG;
  return GuardedCall([&] {
    m_Text.assign(text.text ? text.text : L"", static_cast<size_t>(text.length));
    m_Lines.clear();
    SplitFrom(0);
    return S_OK;
  });
}

HRESULT CStringCollection::Append(tagREFString text) {
  if (!IsValidView(text)) return E_INVALIDARG;
  if (m_Text.size() > static_cast<size_t>(INT32_MAX - text.length)) return E_OUTOFMEMORY;  // lengths stay 32-bit
  return GuardedCall([&] {
    if (text.length == 0) return S_OK;
    m_Text.append(text.text, static_cast<size_t>(text.length));
    // The last line may continue (or its CR meet an LF), so it is split again.
    size_t from = 0;
    if (!m_Lines.empty()) {
      from = m_Lines.back().start;
      m_Lines.pop_back();
    }
    SplitFrom(from);
    return S_OK;
  });
}

void CStringCollection::SplitFrom(size_t from) {
  size_t start = from;
  size_t i = from;
  while (i < m_Text.size()) {
    const wchar_t c = m_Text[i];
    if (c != L'\n' && c != L'\r') {
      ++i;
      continue;
    }
    m_Lines.push_back(Line{start, i - start});
    i += (c == L'\r' && i + 1 < m_Text.size() && m_Text[i + 1] == L'\n') ? 2 : 1;
    start = i;
  }
  if (start < m_Text.size()) m_Lines.push_back(Line{start, m_Text.size() - start});
}
