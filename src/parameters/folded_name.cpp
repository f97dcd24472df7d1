// Name text helpers: ASCII folding, folded hashing and name match tests.
#include "parameters/folded_name.h"

#include <algorithm>

#include "strings/ref_string.h"

tagREFString NameTextOf(IString* name) {
  tagREFString view{0, nullptr};
  if (!name || name->GetBuffer(&view.text, &view.length) < 0 || !view.text || view.length < 0) return {0, nullptr};
  return view;
}

std::wstring FoldedCopyOf(tagREFString text) {
  std::wstring folded(static_cast<size_t>(std::max(text.length, 0)), L'\0');
  for (int32_t i = 0; i < text.length; ++i) folded[static_cast<size_t>(i)] = FoldAsciiLower(text.text[i]);
  return folded;
}

size_t HashFoldedText(tagREFString text) {
  // FNV-1a over the folded code points.
  uint64_t hash = 14695981039346656037ull;
  for (int32_t i = 0; i < text.length; ++i) {
    hash ^= static_cast<uint32_t>(FoldAsciiLower(text.text[i]));
    hash *= 1099511628211ull;
  }
  return static_cast<size_t>(hash ^ (hash >> 32));
}

bool MatchesWholeName(tagREFString name, tagREFString key) {
  return key.length > 0 && name.length == key.length &&
         _wcsnicmp(name.text, key.text, static_cast<unsigned int>(key.length)) == 0;
}

bool MatchesNamePrefix(tagREFString name, tagREFString key) {
  return key.length > 0 && name.length >= key.length &&
         _wcsnicmp(name.text, key.text, static_cast<unsigned int>(key.length)) == 0;
}

namespace {

int CompareFoldedStretch(const wchar_t* a, const wchar_t* b, int32_t count) {
  for (int32_t i = 0; i < count; ++i) {
    uint32_t ca = static_cast<uint32_t>(FoldAsciiLower(a[i]));
    uint32_t cb = static_cast<uint32_t>(FoldAsciiLower(b[i]));
    if (ca != cb) return ca < cb ? -1 : 1;
  }
  return 0;
}

}  // namespace

int ComparePrefixToKey(const std::wstring& folded, tagREFString key) {
  int32_t length = static_cast<int32_t>(folded.size());
  int32_t common = std::min(length, key.length);
  if (int order = CompareFoldedStretch(folded.data(), key.text, common)) return order;
  return length < key.length ? -1 : 0;
}

int CompareFoldedTexts(tagREFString a, tagREFString b) {
  if (int order = CompareFoldedStretch(a.text, b.text, std::min(a.length, b.length))) return order;
  return a.length < b.length ? -1 : (a.length > b.length ? 1 : 0);
}
