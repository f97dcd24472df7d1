// Building XML text element by element.
#include "xml_text_writer.h"

#include <algorithm>
#include <cwchar>

#include "utf8_text.h"
#include "xml_name_codec.h"

namespace {

constexpr wchar_t kLineEnd[] = L"\r\n";
constexpr size_t kIndentWidth = 2;
// Elements nested deeper are indented as at this depth, so the text grows in
// step with the element count rather than with the square of the depth.
constexpr size_t kMaxIndentDepth = 32;

void AppendReference(std::wstring& out, unsigned c) {
  wchar_t reference[16];
  std::swprintf(reference, 16, c > 0xFFFF ? L"&#x%X;" : L"&#%u;", c);
  out += reference;
}

}  // namespace

void XMLTextWriter::Assign(const wchar_t* text, size_t length) {
  m_Text.assign(text ? text : L"", text ? length : 0);
  m_Open.clear();
}

void XMLTextWriter::AppendRaw(const wchar_t* text, size_t length) {
  if (text) m_Text.append(text, length);
}

void XMLTextWriter::Begin(tagREFString name) {
  std::wstring tag = EncodeXMLName(name);
  StartTag(tag);
  m_Open.push_back(OpenElement{std::move(tag), false});
}

void XMLTextWriter::TextElement(tagREFString name, tagREFString text) {
  const std::wstring tag = EncodeXMLName(name);
  StartTag(tag);
  AppendEscaped(text);
  EndTag(tag);
}

bool XMLTextWriter::End() {
  if (m_Open.empty()) return false;
  OpenElement element = std::move(m_Open.back());
  m_Open.pop_back();
  if (element.holdsElements && !m_Lean) {
    m_Text += kLineEnd;
    Indent(m_Open.size());
  }
  EndTag(element.tag);
  return true;
}

void XMLTextWriter::StartTag(const std::wstring& tag) {
  if (!m_Open.empty()) m_Open.back().holdsElements = true;
  if (!m_Lean) {
    if (!m_Text.empty() && m_Text.back() != L'\n') m_Text += kLineEnd;
    Indent(m_Open.size());
  }
  m_Text += L'<';
  m_Text += tag;
  m_Text += L'>';
}

void XMLTextWriter::EndTag(const std::wstring& tag) {
  m_Text += L"</";
  m_Text += tag;
  m_Text += L'>';
  if (m_Open.empty() && !m_Lean) m_Text += kLineEnd;
}

void XMLTextWriter::Indent(size_t depth) { m_Text.append(std::min(depth, kMaxIndentDepth) * kIndentWidth, L' '); }

void XMLTextWriter::AppendEscaped(tagREFString text) {
  if (text.length <= 0 || !text.text) return;
  m_Text.reserve(m_Text.size() + static_cast<size_t>(text.length));
  for (int32_t i = 0; i < text.length; ++i) {
    const wchar_t c = text.text[i];
    switch (c) {
      case L'&': m_Text += L"&amp;"; break;
      case L'<': m_Text += L"&lt;"; break;
      case L'>': m_Text += L"&gt;"; break;
      case L'\t':
      case L'\n': m_Text += c; break;
      case L'\0': break;
      default: {
        const unsigned value = IsScalarValue(c) ? static_cast<unsigned>(c) : 0xFFFDu;
        if (value < 0x20 || value > 0xFFFF) {
          AppendReference(m_Text, value);
        } else {
          m_Text += static_cast<wchar_t>(value);
        }
      }
    }
  }
}
