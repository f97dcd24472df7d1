// Case-insensitive search for a tag delimiter in a line of text.
//
// Characters 0-255 are compared after the C library's wide lower-casing of the
// current locale (taken once per finder); all others exactly. The scan walks
// the text once: after a partial match fails, it restarts with the first tag
// character at the same text position instead of backing up, so a tag that
// begins inside a failed partial match is missed ("aab" is not found in
// "aaab"). This simple scan is the intended behaviour.
#pragma once

#include <string>

#include "base_types.h"

class TagFinder {
 public:
  explicit TagFinder(tagREFString tag);

  int32_t Length() const { return static_cast<int32_t>(m_Folded.size()); }

  // Index in `text` where the tag starts, or -1. An empty tag is never found.
  int32_t FindIn(const wchar_t* text, int32_t length) const;

 private:
  wchar_t Fold(wchar_t c) const {
    const auto code = static_cast<uint32_t>(c);
    return code < 256 ? m_FoldTable[code] : c;
  }

  wchar_t m_FoldTable[256];
  std::wstring m_Folded;  // the tag, folded
};
