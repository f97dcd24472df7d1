// "TextParser": tag substitution, line by line, into one growing buffer.
#include "textparser/text_parser.h"

#include "parameters/folded_name.h"
#include "runtime/module_loader.h"
#include "strings/conversions.h"
#include "textparser/item_text.h"
#include "textparser/tag_finder.h"

namespace {

constexpr wchar_t kDefaultTag[] = L"__";
constexpr wchar_t kLineEnd[] = L"\r\n";

std::wstring CopyOfText(IString* string) {
  const tagREFString view = NameTextOf(string);
  return view.length > 0 ? std::wstring(view.text, static_cast<size_t>(view.length)) : std::wstring();
}

tagREFString ViewOf(const std::wstring& text) { return {static_cast<int32_t>(text.size()), text.data()}; }

// The lines of the template: the text itself if it is a string collection,
// else a new "StringCollection" given the whole text. Null if none can be made.
SmartPtr<IStringCollection> LinesOf(IString* text) {
  if (SmartPtr<IStringCollection> lines = QueryAs<IStringCollection>(text)) return lines;
  SmartPtr<IStringCollection> lines = CreateObjectAs<IStringCollection>(L"StringCollection");
  SmartPtr<ICreatableString> setter = QueryAs<ICreatableString>(lines.get());
  if (!setter) return SmartPtr<IStringCollection>();
  lines->Reset(0);
  const tagREFString view = NameTextOf(text);
  setter->SetText(view.length > 0 ? view : tagREFString{0, L""});
  return lines;
}

// Removes from the end of `out`, down to `from`, every space, control character and DEL.
void DropTrailingBlanks(std::wstring& out, size_t from) {
  size_t end = out.size();
  while (end > from && IsTrailingBlank(out[end - 1])) --end;
  out.resize(end);
}

// One ParseTags call: the delimiters, the values and the reusable lookup key.
class TagFiller {
 public:
  TagFiller(const std::wstring& opening, const std::wstring& closing, INamedCollection* values, bool dropUnknown)
      : m_Opening(ViewOf(opening)), m_Closing(ViewOf(closing)), m_Values(values), m_DropUnknown(dropUnknown),
        m_Key(SmartPtr<ICreatableString>::Adopt(CREFString::CreateString())) {}

  bool Replaced() const { return m_Replaced; }

  // Appends the filled-in line, without trailing blanks, and the line end.
  void FillLine(const wchar_t* text, int32_t length, std::wstring& out) {
    const size_t lineStart = out.size();
    while (length > 0) {
      const int32_t open = m_Opening.FindIn(text, length);
      if (open < 0) break;
      const int32_t nameStart = open + m_Opening.Length();
      const int32_t nameLength = m_Closing.FindIn(text + nameStart, length - nameStart);
      if (nameLength < 0) break;  // unterminated: the rest is copied once, below
      const int32_t tagEnd = nameStart + nameLength + m_Closing.Length();
      out.append(text, static_cast<size_t>(open));
      if (!AppendValue({nameLength, text + nameStart}, out) && !m_DropUnknown)
        out.append(text + open, static_cast<size_t>(tagEnd - open));
      // Replaced text is never scanned again.
      text += tagEnd;
      length -= tagEnd;
    }
    if (length > 0) out.append(text, static_cast<size_t>(length));
    DropTrailingBlanks(out, lineStart);
    out.append(kLineEnd);
  }

 private:
  // Appends the text of the item named exactly `name`; false when the values do not know it.
  bool AppendValue(tagREFString name, std::wstring& out) {
    int32_t index = -1;
    if (!m_Key || FAILED(m_Key->SetText(name)) || FAILED(m_Values->get_Index(m_Key.get(), &index))) return false;
    SmartPtr<IUnknown> item;
    m_Values->get_Item(index, item.Receive());
    AppendItemText(item.get(), out);
    m_Replaced = true;
    return true;
  }

  TagFinder m_Opening;
  TagFinder m_Closing;
  INamedCollection* m_Values;
  bool m_DropUnknown;
  SmartPtr<ICreatableString> m_Key;
  bool m_Replaced = false;
};

}  // namespace

HRESULT CTextParser::FinalConstruct() {
  SmartPtr<IString> opening = SmartPtr<IString>::Adopt(ISCreate(kDefaultTag));
  SmartPtr<IString> closing = SmartPtr<IString>::Adopt(ISCreate(kDefaultTag));
  return put_Tags(opening.get(), closing.get());
}

HRESULT CTextParser::get_Tags(IString** /*opening*/, IString** /*closing*/) { return S_OK; }

HRESULT CTextParser::put_Tags(IString* opening, IString* closing) {
  std::wstring openingText = CopyOfText(opening), closingText = CopyOfText(closing);
  m_OpeningText.swap(openingText);
  m_ClosingText.swap(closingText);
  m_Opening = SmartPtr<IString>(opening);
  m_Closing = SmartPtr<IString>(closing);
  return S_OK;
}

HRESULT CTextParser::ParseTags(IString* text, IString** result, INamedCollection* values, int32_t dropUnknown) {
  if (!result || !values) return E_POINTER;
  SmartPtr<IStringCollection> lines = LinesOf(text);
  SmartPtr<ICreatableString> output = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  if (!lines || !output) return CO_E_CREATEFAILED;
  int32_t count = 0;
  if (FAILED(lines->get_Count(&count))) count = 0;

  TagFiller filler(m_OpeningText, m_ClosingText, values, dropUnknown != 0);
  std::wstring filled;
  filled.reserve(static_cast<size_t>(NameTextOf(text).length) + static_cast<size_t>(count) * 2);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IUnknown> item;
    lines->get_Item(i, item.Receive());
    SmartPtr<IString> line = QueryAs<IString>(item.get());  // anything else is an empty line
    const tagREFString lineText = NameTextOf(line.get());
    filler.FillLine(lineText.text, lineText.length, filled);
  }
  if (filled.size() > static_cast<size_t>(INT32_MAX)) return E_OUTOFMEMORY;  // lengths stay 32-bit
  output->SetText(ViewOf(filled));
  *result = output.Detach();
  return filler.Replaced() ? S_OK : S_FALSE;
}

HRESULT CTextParser::Translate(IString* /*text*/, IString** /*result*/, INamedCollection* /*values*/) {
  return E_FAIL;
}
