// The read side of an XML stream: the parsed document (shared by a stream and
// its sub-streams) and a cursor over the children of one of its nodes.
//
// Children are the elements and the processing instructions of the node;
// character data, comments and the document type are not children. A
// processing instruction is named "?" + its target ("?xml" for the XML
// declaration, "?xml-stylesheet"), an element by its decoded name.
#pragma once

#include <memory>
#include <string>

#include <pugixml.hpp>

#include "base_types.h"

// A document and the UTF-8 text it was parsed from in place.
struct XMLParsedDocument {
  std::string source;
  pugi::xml_document document;
};

// Parses wide text. On malformed XML, fails with 0x80004005 and gives the
// character offset of the error.
HRESULT ParseXMLText(const wchar_t* text, size_t length, std::shared_ptr<XMLParsedDocument>* parsed,
                     int32_t* errorOffset);
// The same for the text's UTF-8 form, which the document takes over.
HRESULT ParseXMLUtf8(std::string utf8, std::shared_ptr<XMLParsedDocument>* parsed, int32_t* errorOffset);

// The name a child is read under.
std::wstring XMLChildName(pugi::xml_node child);
// An element's own character data (its text and CDATA children, joined); a
// processing instruction's value.
std::wstring XMLChildText(pugi::xml_node child);

class XMLReadCursor {
 public:
  // Stands on `node` of `document`, before its first child.
  void Reset(std::shared_ptr<XMLParsedDocument> document, pugi::xml_node node);
  void Clear() { Reset(nullptr, pugi::xml_node()); }

  const std::shared_ptr<XMLParsedDocument>& Document() const { return m_Document; }

  // Moves to the next child; a null node when none is left.
  pugi::xml_node Next();
  // Moves past the following children whose names begin with "?"; true if any.
  bool StepOverProcessingInstructions();
  // With an empty name, the current child, or else the next one (which becomes
  // current). With a name, the current child if it has that name, else the
  // first child of that name (the cursor stays). A null node when none.
  pugi::xml_node Select(const std::wstring& name);

 private:
  std::shared_ptr<XMLParsedDocument> m_Document;
  pugi::xml_node m_Node;
  pugi::xml_node m_Current;
  pugi::xml_node m_Next;
};
