// The framework's streams: byte buffers, XML streams and files, folder
// streams, CSV and INI streams, settings files and the settings store.
#pragma once

#include "framework_interfaces.h"

// A byte buffer. Every stream class of the framework answers it, so a stream
// can be handed around as IDataStream* and asked for its richer interface.
struct IDataStream : IUnknown {
  virtual HRESULT Write(const void* data, int32_t byteCount) = 0;  // appends
  // Copies up to byteCount bytes from the read position on and advances it.
  virtual HRESULT Read(void* data, int32_t byteCount, int32_t* bytesRead) = 0;
  // The stream's own bytes (valid until the stream changes) and their count.
  virtual HRESULT GetBuffer(void** data, int32_t* byteCount) = 0;
  virtual HRESULT Reset() = 0;  // empties the stream and rewinds the read position
};

// Options of an XML stream (IXMLStreamEx::SetOptions).
constexpr int32_t kXMLOptionLean = 0x800000;  // no line breaks or indentation between elements

// An XML document, written element by element and read child by child.
//
// Names and texts are wide text (tagREFString in, framework strings out).
// Byte counts are sizeof(wchar_t) per character. Element names that are not
// valid XML names are written in an escaped form and read back decoded.
//
// Reading: a stream stands on one element (the document itself for a
// top-level stream) and keeps a child cursor. NextChild moves to the next
// child and names it; processing instructions show as children named "?xml"
// and "?xml-stylesheet" so that StepOver can pass the prolog. OpenChild and
// ReadObject with an empty name take the child the cursor stands on (or the
// next one); with a name, that child when the name agrees, else the first
// child of that name. Sub-streams share the parsed document.
struct IXMLStream : IUnknown {
  // Replaces the content with the wide text (byteCount bytes, or up to its
  // first zero character); null and 0 start an empty document. Malformed XML
  // fails (GetParseError tells where) and leaves nothing to read.
  virtual HRESULT LoadContent(const void* data, int32_t byteCount, int32_t reserved) = 0;
  // Character offset of the last LoadContent's parse error: S_OK with the
  // offset, or S_FALSE with -1 when the last content parsed.
  virtual HRESULT GetParseError(int32_t* offset) = 0;
  // Moves the cursor past the following children whose names begin with "?".
  virtual HRESULT StepOver() = 0;
  // The content as wide text (the stream's own buffer) and its size in bytes.
  virtual HRESULT GetTextBuffer(void** data, int32_t* byteCount) = 0;
  virtual HRESULT Reserved5() = 0;
  // Appends text as it stands (byteCount bytes; negative: up to the terminating zero).
  virtual HRESULT WriteRawText(const wchar_t* text, int32_t byteCount, int32_t reserved) = 0;
  virtual HRESULT Reserved7() = 0;
  virtual HRESULT BeginElement(tagREFString name, int32_t reserved1, int32_t reserved2) = 0;
  // Begins an element named by the object's class name (IObjectInfo::GetName),
  // so that ReadObject can create the object again by that name.
  virtual HRESULT BeginObject(IUnknown* object, int32_t reserved1, int32_t reserved2) = 0;
  virtual HRESULT WriteElement(tagREFString name, int32_t reserved1, tagREFString text, int32_t reserved2) = 0;
  virtual HRESULT EndElement() = 0;
  // Moves the cursor to the next child and gives its name; a negative result
  // (and a null name) when no child is left.
  virtual HRESULT NextChild(IString** name) = 0;
  // Opens a child (see above): its text (the element's own character data)
  // and a sub-stream that reads it. Either out pointer may be null.
  virtual HRESULT OpenChild(tagREFString name, IString** text, IDataStream** child, int32_t reserved) = 0;
  virtual HRESULT Reserved14() = 0;
  // Reads a child (see above) as an object: creates its element name as a
  // class (CreateObject) and lets it IDataPersist::Load the child's
  // sub-stream with kLoadReplace. S_FALSE when the object does not persist.
  virtual HRESULT ReadObject(tagREFString name, IUnknown** object) = 0;
};

// An XML stream with options.
struct IXMLStreamEx : IXMLStream {
  virtual HRESULT Reserved16() = 0;
  virtual HRESULT Reserved17() = 0;
  virtual HRESULT Reserved18() = 0;
  virtual HRESULT Reserved19() = 0;
  virtual HRESULT Reserved20() = 0;
  // options = (options & ~mask) | (flags & mask); the framework passes mask -1.
  virtual HRESULT SetOptions(int32_t mask, int32_t flags) = 0;
};

// Options of an XML file (IXMLFile::SetOptions).
constexpr int32_t kXMLFileReplace = 0x100000;  // load the target in replace mode (kLoadReplace)

// Whole-file XML loading into an object. The class also answers IFileArchive
// for the file name and Load.
struct IXMLFile : IUnknown {
  virtual HRESULT Reserved1() = 0;
  virtual HRESULT Reserved2() = 0;
  virtual HRESULT SetOptions(int32_t mask, int32_t flags) = 0;  // as IXMLStreamEx::SetOptions
  // The object to load into (it must answer IDataPersist); held until replaced.
  virtual HRESULT SetObject(IUnknown* target) = 0;
};

// Turns one stream into another ("ASCIIStream": an XML stream's text into UTF-8 bytes).
struct IStreamTransform : IUnknown {
  // Appends the transformed content of `source` to `target`.
  virtual HRESULT Transform(IUnknown* source, IDataStream* target) = 0;
};
