// Parsing and walking XML documents.
#include "xml_read_cursor.h"

#include <algorithm>
#include <utility>

#include "result_codes.h"
#include "utf8_text.h"
#include "xml_name_codec.h"

namespace {

// Whitespace between elements is layout; a text of blanks alone in its element is kept.
constexpr unsigned kParseOptions =
    pugi::parse_default | pugi::parse_declaration | pugi::parse_pi | pugi::parse_ws_pcdata_single;

bool IsChild(pugi::xml_node node) {
  const pugi::xml_node_type type = node.type();
  return type == pugi::node_element || type == pugi::node_declaration || type == pugi::node_pi;
}

// The first child at or after `node`.
pugi::xml_node ChildFrom(pugi::xml_node node) {
  while (node && !IsChild(node)) node = node.next_sibling();
  return node;
}

// Characters of the UTF-8 text before byte `offset`.
int32_t CharacterOffset(const std::string& utf8, ptrdiff_t offset) {
  int32_t characters = 0;
  const size_t end = offset < 0 ? 0 : std::min(static_cast<size_t>(offset), utf8.size());
  for (size_t i = 0; i < end; ++i) {
    if ((static_cast<unsigned char>(utf8[i]) & 0xC0) != 0x80) ++characters;
  }
  return characters;
}

}  // namespace

HRESULT ParseXMLText(const wchar_t* text, size_t length, std::shared_ptr<XMLParsedDocument>* parsed,
                     int32_t* errorOffset) {
  std::string utf8;
  AppendUtf8(utf8, text, length);
  return ParseXMLUtf8(std::move(utf8), parsed, errorOffset);
}

HRESULT ParseXMLUtf8(std::string utf8, std::shared_ptr<XMLParsedDocument>* parsed, int32_t* errorOffset) {
  *errorOffset = -1;
  auto document = std::make_shared<XMLParsedDocument>();
  document->source = std::move(utf8);
  const pugi::xml_parse_result result = document->document.load_buffer_inplace(
      document->source.data(), document->source.size(), kParseOptions, pugi::encoding_utf8);
  // A text without an element (empty, or the prolog alone) is a document without children.
  if (result.status != pugi::status_ok && result.status != pugi::status_no_document_element) {
    *errorOffset = CharacterOffset(document->source, result.offset);
    parsed->reset();
    return E_FAIL;
  }
  *parsed = std::move(document);
  return S_OK;
}

std::wstring XMLChildName(pugi::xml_node child) {
  switch (child.type()) {
    case pugi::node_element: return DecodeXMLName(pugi::as_wide(child.name()));
    case pugi::node_declaration: return L"?xml";
    case pugi::node_pi: return L"?" + pugi::as_wide(child.name());
    default: return std::wstring();
  }
}

std::wstring XMLChildText(pugi::xml_node child) {
  if (child.type() == pugi::node_pi) return pugi::as_wide(child.value());
  const pugi::xml_node first = child.first_child();
  if (first.type() == pugi::node_pcdata && !first.next_sibling()) return pugi::as_wide(first.value());  // most elements
  std::string text;
  for (pugi::xml_node part = child.first_child(); part; part = part.next_sibling()) {
    if (part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata) text += part.value();
  }
  return pugi::as_wide(text);
}

void XMLReadCursor::Reset(std::shared_ptr<XMLParsedDocument> document, pugi::xml_node node) {
  m_Document = std::move(document);
  m_Node = node;
  m_Current = pugi::xml_node();
  m_Next = ChildFrom(node.first_child());
}

pugi::xml_node XMLReadCursor::Next() {
  m_Current = m_Next;
  if (m_Next) m_Next = ChildFrom(m_Next.next_sibling());
  return m_Current;
}

bool XMLReadCursor::StepOverProcessingInstructions() {
  bool stepped = false;
  while (m_Next && m_Next.type() != pugi::node_element) {
    m_Current = pugi::xml_node();
    m_Next = ChildFrom(m_Next.next_sibling());
    stepped = true;
  }
  return stepped;
}

pugi::xml_node XMLReadCursor::Select(const std::wstring& name) {
  if (name.empty()) return m_Current ? m_Current : Next();
  if (m_Current && XMLChildName(m_Current) == name) return m_Current;
  for (pugi::xml_node child = ChildFrom(m_Node.first_child()); child; child = ChildFrom(child.next_sibling())) {
    if (XMLChildName(child) == name) return child;
  }
  return pugi::xml_node();
}
