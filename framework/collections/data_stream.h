// "DataStream": a growable byte buffer (IDataStream) with a read position.
#pragma once

#include <vector>

#include "runtime/object.h"

class CDataStream : public CObjectImpl<CDataStream, IDataStream> {
 public:
  static constexpr wchar_t kObjectName[] = L"DataStream";
  static constexpr InterfaceEntry<CDataStream> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CDataStream, IObjectInfo>},
      {&IID_IDataStream, InterfaceOf<CDataStream, IDataStream>},
  };

  HRESULT Write(const void* data, int32_t byteCount) override;
  HRESULT Read(void* data, int32_t byteCount, int32_t* bytesRead) override;
  HRESULT GetBuffer(void** data, int32_t* byteCount) override;
  HRESULT Reset() override;

 private:
  std::vector<unsigned char> m_Bytes;
  size_t m_ReadPosition = 0;
};
