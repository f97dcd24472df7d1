// Read-only byte copy of a folder stream's binary entry.
#include "folder_binary_value.h"

#include <algorithm>
#include <cstring>

HRESULT CFolderBinaryValue::Write(const void* /*data*/, int32_t /*byteCount*/) { return E_NOTIMPL; }

HRESULT CFolderBinaryValue::Read(void* data, int32_t byteCount, int32_t* bytesRead) {
  if (bytesRead) *bytesRead = 0;
  if (byteCount < 0) return E_INVALIDARG;
  if (!data && byteCount > 0) return E_POINTER;
  const size_t count = std::min(static_cast<size_t>(byteCount), m_Bytes.size() - m_Position);
  if (count > 0) std::memcpy(data, m_Bytes.data() + m_Position, count);
  m_Position += count;
  if (bytesRead) *bytesRead = static_cast<int32_t>(count);
  return count == static_cast<size_t>(byteCount) ? S_OK : S_FALSE;
}

HRESULT CFolderBinaryValue::GetBuffer(void** data, int32_t* byteCount) {
  if (!data || !byteCount) return E_POINTER;
  *data = m_Bytes.data();
  *byteCount = static_cast<int32_t>(m_Bytes.size());
  return S_OK;
}

HRESULT CFolderBinaryValue::Reset() {
  m_Position = 0;
  return S_OK;
}
