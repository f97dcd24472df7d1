// The framework's streams: byte buffers, XML streams and files, folder
// streams, CSV and INI streams, settings files and the settings store.
#pragma once

#include "framework_interfaces.h"

// A byte buffer.
struct IDataStream : IUnknown {
  virtual HRESULT Write(const void* data, int32_t byteCount) = 0;
  virtual HRESULT Read(void* data, int32_t byteCount, int32_t* bytesRead) = 0;
  virtual HRESULT GetBuffer(void** data, int32_t* byteCount) = 0;
  virtual HRESULT Reset() = 0;
};
