// Case-insensitive, single-pass search for a tag delimiter.
#include "textparser/tag_finder.h"

#include <cwctype>

TagFinder::TagFinder(tagREFString tag) {
  for (uint32_t code = 0; code < 256; ++code) m_FoldTable[code] = static_cast<wchar_t>(std::towlower(code));
  m_Folded.reserve(static_cast<size_t>(tag.length > 0 ? tag.length : 0));
  for (int32_t i = 0; i < tag.length; ++i) m_Folded.push_back(Fold(tag.text[i]));
}

int32_t TagFinder::FindIn(const wchar_t* text, int32_t length) const {
  const int32_t tagLength = Length();
  if (tagLength == 0) return -1;
  const wchar_t* tag = m_Folded.data();
  const wchar_t first = tag[0];
  int32_t matched = 0;
  for (int32_t i = 0; i < length; ++i) {
    const wchar_t c = Fold(text[i]);
    if (c == tag[matched]) {
      if (++matched == tagLength) return i - tagLength + 1;
    } else if (matched != 0) {
      // Restart at this same position; earlier positions are not tried again (intended).
      matched = (c == first) ? 1 : 0;
    }
  }
  return -1;
}
