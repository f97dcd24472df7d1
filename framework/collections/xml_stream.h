// "XMLStream" and "XMLStreamEx": XML documents written element by element and
// read child by child (IXMLStream, IDataStream); "XMLStreamEx" also answers
// IXMLStreamEx for its options (lean output).
//
// Both share one implementation. A stream writes into its own text (what
// GetTextBuffer gives) and reads the document last loaded; once text has been
// written, the next read parses the written text afresh and starts before its
// first child. A sub-stream (OpenChild, ReadObject) reads one child of the
// parent's parsed document; what is written to it goes to its own text.
// A stream serves one thread at a time.
#pragma once

#include "runtime/object.h"
#include "xml_read_cursor.h"
#include "runtime/reserved_slots.h"
#include "xml_text_writer.h"

template <class Self>
class CXMLStreamBase : public CObjectImpl<Self, XMLStreamExSlots, IDataStream> {
 public:
  // IXMLStream
  HRESULT LoadContent(const void* data, int32_t byteCount, int32_t reserved) override;
  HRESULT GetParseError(int32_t* offset) override;
  HRESULT StepOver() override;
  HRESULT GetTextBuffer(void** data, int32_t* byteCount) override;
  HRESULT WriteRawText(const wchar_t* text, int32_t byteCount, int32_t reserved) override;
  HRESULT BeginElement(tagREFString name, int32_t reserved1, int32_t reserved2) override;
  HRESULT BeginObject(IUnknown* object, int32_t reserved1, int32_t reserved2) override;
  HRESULT WriteElement(tagREFString name, int32_t reserved1, tagREFString text, int32_t reserved2) override;
  HRESULT EndElement() override;
  HRESULT NextChild(IString** name) override;
  HRESULT OpenChild(tagREFString name, IString** text, IDataStream** child, int32_t reserved) override;
  HRESULT ReadObject(tagREFString name, IUnknown** object) override;
  // IXMLStreamEx
  HRESULT SetOptions(int32_t mask, int32_t flags) override;
  // IDataStream: the same text seen as bytes.
  HRESULT Write(const void* data, int32_t byteCount) override;
  HRESULT Read(void* data, int32_t byteCount, int32_t* bytesRead) override;
  HRESULT GetBuffer(void** data, int32_t* byteCount) override;
  HRESULT Reset() override;

 private:
  // Parses the written text when it changed since the last parse.
  void PrepareReading();
  // The child chosen by name (see XMLReadCursor::Select), after PrepareReading.
  HRESULT SelectChild(tagREFString name, pugi::xml_node* child);
  // A new stream of this class reading `node`.
  SmartPtr<Self> OpenSubStream(pugi::xml_node node);
  void TextWritten() { m_ReadStale = true; }

  XMLTextWriter m_Writer;
  XMLReadCursor m_Reader;
  bool m_ReadStale = false;
  int32_t m_Options = 0;
  int32_t m_ErrorOffset = -1;
  size_t m_ReadPosition = 0;  // in bytes, for IDataStream::Read
};

class CXMLStream : public CXMLStreamBase<CXMLStream> {
 public:
  static constexpr wchar_t kObjectName[] = L"XMLStream";
  static constexpr InterfaceEntry<CXMLStream> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CXMLStream, IObjectInfo>},
      {&IID_IXMLStream, InterfaceOf<CXMLStream, IXMLStream>},
      {&IID_IDataStream, InterfaceOf<CXMLStream, IDataStream>},
  };
};

class CXMLStreamEx : public CXMLStreamBase<CXMLStreamEx> {
 public:
  static constexpr wchar_t kObjectName[] = L"XMLStreamEx";
  static constexpr InterfaceEntry<CXMLStreamEx> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CXMLStreamEx, IObjectInfo>},
      {&IID_IXMLStream, InterfaceOf<CXMLStreamEx, IXMLStream>},
      {&IID_IXMLStreamEx, InterfaceOf<CXMLStreamEx, IXMLStreamEx>},
      {&IID_IDataStream, InterfaceOf<CXMLStreamEx, IDataStream>},
  };
};

extern template class CXMLStreamBase<CXMLStream>;
extern template class CXMLStreamBase<CXMLStreamEx>;
