// The written side of an XML stream: builds the document text directly, so
// raw text (the prolog) stays exactly where it was written.
//
// Layout: every element starts on its own line, indented by two blanks per
// level up to 32 levels (deeper ones are indented as the 32nd), and an
// element holding elements closes on its own line; lean output
// writes neither line breaks nor indentation. Character data is escaped: "&",
// "<" and ">" as entities, carriage returns and other control characters
// (but tab and line feed) as character references, characters above U+FFFF
// as character references (so the text survives 16-bit files). Zero
// characters are left out and characters that are not Unicode scalar values
// become U+FFFD.
#pragma once

#include <string>
#include <vector>

#include "base_types.h"
#include "wide_text_buffer.h"

class XMLTextWriter {
 public:
  // The whole text (made from the UTF-8 form kept by AssignUtf8 on first need).
  const WideTextBuffer& Text();
  void SetLean(bool lean) { m_Lean = lean; }

  // Replaces the whole text; no element is open afterwards.
  void Assign(const wchar_t* text, size_t length);
  // Replaces the whole text by the characters of `utf8` (well-formed), kept
  // in that form until the wide text is asked for: a loaded document's text
  // is often never asked for, and as UTF-8 it takes a quarter of the memory.
  void AssignUtf8(std::string utf8);
  void AppendRaw(const wchar_t* text, size_t length);
  void Begin(tagREFString name);
  void TextElement(tagREFString name, tagREFString text);
  // Closes the innermost open element; false when none is open.
  bool End();

 private:
  // Turns text kept as UTF-8 into the wide text; before any change to the text.
  void MakeWide();

  // Where an element's encoded name stands in the text (after its "<"), so
  // the end tag copies it from there.
  struct TagSpan {
    size_t start;
    size_t length;
  };
  struct OpenElement {
    TagSpan tag;
    bool holdsElements;
  };

  // Starts a new line at the current depth (unless lean) and writes "<tag>".
  TagSpan StartTag(tagREFString name);
  void EndTag(TagSpan tag);
  void Indent(size_t depth);
  void AppendEscaped(tagREFString text);

  WideTextBuffer m_Text;
  std::string m_PendingUtf8;  // the text, while m_Pending
  bool m_Pending = false;
  std::vector<OpenElement> m_Open;
  bool m_Lean = false;
};
