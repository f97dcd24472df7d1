// "TextParser": fills in templates. Every tag (an item name between an
// opening and a closing delimiter, "__" and "__" by default) in a text is
// replaced by the text of that item taken from a named collection; the text
// is copied line by line, trailing blanks removed and "\r\n" after each line.
#pragma once

#include <string>

#include "runtime/object.h"

class CTextParser : public CObjectImpl<CTextParser, ITextParser> {
 public:
  static constexpr wchar_t kObjectName[] = L"TextParser";
  static constexpr InterfaceEntry<CTextParser> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CTextParser, IObjectInfo>},
      {&IID_ITextParser, InterfaceOf<CTextParser, ITextParser>},
  };

  // Sets both delimiters to "__".
  HRESULT FinalConstruct() override;

  // The class's own operations, in its slot order (the same as ITextParser's).
  // Writes nothing and answers 0: the delimiters cannot be read back (intended).
  HRESULT get_Tags(IString** opening, IString** closing) override;
  // Keeps both strings (null allowed: an empty delimiter, which is never found)
  // and a copy of their text, so later changes to the strings do not reach the parser.
  HRESULT put_Tags(IString* opening, IString* closing) override;
  // 0 when at least one tag was replaced by an item's text, 1 when none was.
  HRESULT ParseTags(IString* text, IString** result, INamedCollection* values, int32_t dropUnknown) override;
  // Not supported: 0x80004005.
  HRESULT Translate(IString* text, IString** result, INamedCollection* values) override;

  // Declared after the documented slots, so its entries come last in the table.

 private:
  // The delimiters' text as put_Tags found it; the scans read these.
  std::wstring m_OpeningText;
  std::wstring m_ClosingText;
  // The delimiter strings themselves, held as given.
  SmartPtr<IString> m_Opening;
  SmartPtr<IString> m_Closing;
};
