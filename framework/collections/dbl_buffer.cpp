// "DblBuffer": a vector of numbers.
#include "dbl_buffer.h"

#include <algorithm>
#include <climits>

HRESULT CDblBuffer::get_Count(int32_t* count) {
  if (!count) return E_POINTER;
  *count = static_cast<int32_t>(m_Numbers.size());
  return S_OK;
}

HRESULT CDblBuffer::Append(double value, int32_t position) {
  const size_t size = m_Numbers.size();
  if (position < -1 || (position >= 0 && static_cast<size_t>(position) > size)) return E_INVALIDARG;
  if (size >= static_cast<size_t>(INT32_MAX)) return E_OUTOFMEMORY;  // counts stay 32-bit
  return GuardedCall([&] {
    const size_t at = position < 0 ? size : static_cast<size_t>(position);
    m_Numbers.insert(m_Numbers.begin() + static_cast<std::ptrdiff_t>(at), value);
    return S_OK;
  });
}

HRESULT CDblBuffer::get_Number(int32_t index, double* value) {
  if (!value) return E_POINTER;
  if (index < 0 || static_cast<size_t>(index) >= m_Numbers.size()) return E_INVALIDARG;
  *value = m_Numbers[static_cast<size_t>(index)];
  return S_OK;
}

HRESULT CDblBuffer::Reserve(int32_t count) {
  if (count < 0) return E_INVALIDARG;
  return GuardedCall([&] {
    m_Numbers.reserve(static_cast<size_t>(std::min(count, kMaxReserve)));
    return S_OK;
  });
}
