// Growing a wide text in place.
#include "wide_text_buffer.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr size_t kFirstCapacity = 256;
constexpr size_t kMaxCharacters = std::numeric_limits<size_t>::max() / sizeof(wchar_t) / 2;

}  // namespace

WideTextBuffer::~WideTextBuffer() { std::free(m_Data); }

void WideTextBuffer::clear() {
  m_Size = 0;
  if (m_Data) m_Data[0] = L'\0';
}

void WideTextBuffer::Truncate(size_t length) {
  if (length >= m_Size) return;
  m_Size = length;
  m_Data[m_Size] = L'\0';
}

void WideTextBuffer::AppendOwn(size_t start, size_t length) {
  wchar_t* out = Extend(length);  // may move the text: read it only afterwards
  std::copy_n(m_Data + start, length, out);
}

wchar_t* WideTextBuffer::Extend(size_t count) {
  if (count > kMaxCharacters - m_Size) throw std::bad_alloc();
  const size_t needed = m_Size + count + 1;
  if (needed > m_Capacity) {
    const size_t capacity = std::max({needed, m_Capacity * 2, kFirstCapacity});
    void* grown = std::realloc(m_Data, capacity * sizeof(wchar_t));
    if (!grown) throw std::bad_alloc();
    m_Data = static_cast<wchar_t*>(grown);
    m_Capacity = capacity;
  }
  wchar_t* end = m_Data + m_Size;
  m_Size += count;
  m_Data[m_Size] = L'\0';
  return end;
}
