// The item a folder stream's collection view hands out for a binary entry: a read-only copy of its bytes.
#pragma once

#include <string>

#include "runtime/object.h"

// Read gives the bytes in order, Reset starts over, GetBuffer shows them all;
// Write is refused (change the entry through IFolderStream::WriteBinary).
class CFolderBinaryValue : public CObjectImpl<CFolderBinaryValue, IDataStream> {
 public:
  static constexpr wchar_t kObjectName[] = L"FolderBinaryValue";
  static constexpr InterfaceEntry<CFolderBinaryValue> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CFolderBinaryValue, IObjectInfo>},
      {&IID_IDataStream, InterfaceOf<CFolderBinaryValue, IDataStream>},
  };

  void Assign(std::string bytes) { m_Bytes = std::move(bytes); }

  HRESULT Write(const void* data, int32_t byteCount) override;
  HRESULT Read(void* data, int32_t byteCount, int32_t* bytesRead) override;
  HRESULT GetBuffer(void** data, int32_t* byteCount) override;
  HRESULT Reset() override;

 private:
  std::string m_Bytes;
  size_t m_Position = 0;
};
