// Building XML text element by element.
#include "xml_text_writer.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

#include "utf8_text.h"
#include "xml_name_codec.h"

namespace {

constexpr std::wstring_view kLineEnd = L"\r\n";
constexpr size_t kIndentWidth = 2;
// Elements nested deeper are indented as at this depth, so the text grows in
// step with the element count rather than with the square of the depth.
constexpr size_t kMaxIndentDepth = 32;

void AppendReference(WideTextBuffer& out, unsigned c) {
  wchar_t reference[16];
  const int length = std::swprintf(reference, 16, c > 0xFFFF ? L"&#x%X;" : L"&#%u;", c);
  out.Append(reference, static_cast<size_t>(std::max(length, 0)));
}

void AppendLiteral(WideTextBuffer& out, std::wstring_view text) { out.Append(text.data(), text.size()); }

// True for a character that character data holds as it is: not markup, not a
// control character (but tab and line feed), within 16 bits, not a surrogate.
bool StandsForItself(wchar_t c) {
  const auto value = static_cast<unsigned>(c);
  if (value < 0x20) return value == L'\t' || value == L'\n';
  if (value == L'&' || value == L'<' || value == L'>') return false;
  return value <= 0xFFFF && (value < 0xD800 || value > 0xDFFF);
}

}  // namespace

const WideTextBuffer& XMLTextWriter::Text() {
  MakeWide();
  return m_Text;
}

void XMLTextWriter::MakeWide() {
  if (!m_Pending) return;
  m_Text.clear();  // a conversion cut short by a failed allocation starts again
  AppendWideOfUtf8(m_Text, m_PendingUtf8);
  m_Pending = false;
  std::string().swap(m_PendingUtf8);
}

void XMLTextWriter::Assign(const wchar_t* text, size_t length) {
  m_Text.clear();
  if (text) m_Text.Append(text, length);
  m_Pending = false;
  std::string().swap(m_PendingUtf8);
  m_Open.clear();
}

void XMLTextWriter::AssignUtf8(std::string utf8) {
  m_Text.clear();
  m_PendingUtf8 = std::move(utf8);
  m_Pending = true;
  m_Open.clear();
}

void XMLTextWriter::AppendRaw(const wchar_t* text, size_t length) {
  MakeWide();
  if (text) m_Text.Append(text, length);
}

void XMLTextWriter::Begin(tagREFString name) {
  MakeWide();
  const TagSpan tag = StartTag(name);
  m_Open.push_back(OpenElement{tag, false});
}

void XMLTextWriter::TextElement(tagREFString name, tagREFString text) {
  MakeWide();
  const TagSpan tag = StartTag(name);
  AppendEscaped(text);
  EndTag(tag);
}

bool XMLTextWriter::End() {
  if (m_Open.empty()) return false;
  const OpenElement element = m_Open.back();
  m_Open.pop_back();
  if (element.holdsElements && !m_Lean) {
    AppendLiteral(m_Text, kLineEnd);
    Indent(m_Open.size());
  }
  EndTag(element.tag);
  return true;
}

XMLTextWriter::TagSpan XMLTextWriter::StartTag(tagREFString name) {
  if (!m_Open.empty()) m_Open.back().holdsElements = true;
  if (!m_Lean) {
    if (!m_Text.empty() && m_Text.back() != L'\n') AppendLiteral(m_Text, kLineEnd);
    Indent(m_Open.size());
  }
  m_Text.Append(L'<');
  const size_t start = m_Text.size();
  AppendEncodedXMLName(m_Text, name);
  const TagSpan tag{start, m_Text.size() - start};
  m_Text.Append(L'>');
  return tag;
}

void XMLTextWriter::EndTag(TagSpan tag) {
  AppendLiteral(m_Text, L"</");
  m_Text.AppendOwn(tag.start, tag.length);
  m_Text.Append(L'>');
  if (m_Open.empty() && !m_Lean) AppendLiteral(m_Text, kLineEnd);
}

void XMLTextWriter::Indent(size_t depth) {
  m_Text.AppendRepeated(std::min(depth, kMaxIndentDepth) * kIndentWidth, L' ');
}

// Characters that need no escape (most of any text) are appended a run at a time.
void XMLTextWriter::AppendEscaped(tagREFString text) {
  if (text.length <= 0 || !text.text) return;
  int32_t runStart = 0;
  for (int32_t i = 0; i < text.length; ++i) {
    const wchar_t c = text.text[i];
    if (StandsForItself(c)) continue;
    m_Text.Append(text.text + runStart, static_cast<size_t>(i - runStart));
    runStart = i + 1;
    switch (c) {
      case L'&': AppendLiteral(m_Text, L"&amp;"); break;
      case L'<': AppendLiteral(m_Text, L"&lt;"); break;
      case L'>': AppendLiteral(m_Text, L"&gt;"); break;
      case L'\0': break;
      default: {
        const unsigned value = IsScalarValue(c) ? static_cast<unsigned>(c) : 0xFFFDu;
        if (value < 0x20 || value > 0xFFFF) {
          AppendReference(m_Text, value);
        } else {
          m_Text.Append(static_cast<wchar_t>(value));
        }
      }
    }
  }
  m_Text.Append(text.text + runStart, static_cast<size_t>(text.length - runStart));
}
