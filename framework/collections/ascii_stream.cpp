// "ASCIIStream": XML text to UTF-8 bytes.
#include "ascii_stream.h"

#include <climits>
#include <string>

#include "utf8_text.h"

HRESULT CASCIIStream::Transform(IUnknown* source, IDataStream* target) {
  if (!source || !target) return E_POINTER;
  SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(source);
  if (!xml) return E_NOINTERFACE;
  void* text = nullptr;
  int32_t byteCount = 0;
  const HRESULT got = xml->GetTextBuffer(&text, &byteCount);
  if (FAILED(got)) return got;
  if (byteCount < 0 || (!text && byteCount > 0)) return E_FAIL;
  return GuardedCall([&] {
    std::string bytes;
    AppendUtf8(bytes, static_cast<const wchar_t*>(text), static_cast<size_t>(byteCount) / sizeof(wchar_t));
    if (bytes.size() > static_cast<size_t>(INT32_MAX)) return E_OUTOFMEMORY;
    return target->Write(bytes.data(), static_cast<int32_t>(bytes.size()));
  });
}
