// "ASCIIStream": turns an XML stream's text into bytes (IStreamTransform).
//
// The text is encoded as UTF-8 without a byte-order mark, which is what the
// XML declaration without an encoding name announces and what
// FileArchiveLoad reads back; ASCII text stays one byte per character.
// Characters that are not Unicode scalar values become U+FFFD.
#pragma once

#include "runtime/object.h"

class CASCIIStream : public CObjectImpl<CASCIIStream, IStreamTransform> {
 public:
  static constexpr wchar_t kObjectName[] = L"ASCIIStream";
  static constexpr InterfaceEntry<CASCIIStream> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CASCIIStream, IObjectInfo>},
      {&IID_IStreamTransform, InterfaceOf<CASCIIStream, IStreamTransform>},
  };

  // `source` must answer IXMLStream; its text is appended to `target`.
  HRESULT Transform(IUnknown* source, IDataStream* target) override;
};
