// "DataStream": a byte buffer.
#include "data_stream.h"

#include <algorithm>
#include <climits>
#include <cstring>

HRESULT CDataStream::Write(const void* data, int32_t byteCount) {
  if (byteCount < 0) return E_INVALIDARG;
  if (!data && byteCount > 0) return E_POINTER;
  if (m_Bytes.size() > static_cast<size_t>(INT32_MAX - byteCount)) return E_OUTOFMEMORY;  // sizes stay 32-bit
  return GuardedCall([&] {
    const unsigned char* bytes = static_cast<const unsigned char*>(data);
    m_Bytes.insert(m_Bytes.end(), bytes, bytes + byteCount);
    return S_OK;
  });
}

HRESULT CDataStream::Read(void* data, int32_t byteCount, int32_t* bytesRead) {
  if (!bytesRead) return E_POINTER;
  *bytesRead = 0;
  if (byteCount < 0) return E_INVALIDARG;
  if (!data && byteCount > 0) return E_POINTER;
  const size_t count = std::min(static_cast<size_t>(byteCount), m_Bytes.size() - m_ReadPosition);
  if (count > 0) std::memcpy(data, m_Bytes.data() + m_ReadPosition, count);
  m_ReadPosition += count;
  *bytesRead = static_cast<int32_t>(count);
  return S_OK;
}

HRESULT CDataStream::GetBuffer(void** data, int32_t* byteCount) {
  if (!data || !byteCount) return E_POINTER;
  *data = m_Bytes.data();
  *byteCount = static_cast<int32_t>(m_Bytes.size());
  return S_OK;
}

HRESULT CDataStream::Reset() {
  m_Bytes.clear();
  m_ReadPosition = 0;
  return S_OK;
}
