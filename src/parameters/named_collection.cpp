// Name orders of the named collection's sort.
#include "parameters/named_collection.h"

#include <cwctype>

int CompareNamesIgnoringCase(IString* a, IString* b) {
  tagREFString first = NameTextOf(a);
  tagREFString second = NameTextOf(b);
  if (!first.text || !second.text) return 0;
  int32_t common = std::min(first.length, second.length);
  for (int32_t i = 0; i < common; ++i) {
    auto ca = static_cast<uint32_t>(std::towlower(static_cast<wint_t>(first.text[i])));
    auto cb = static_cast<uint32_t>(std::towlower(static_cast<wint_t>(second.text[i])));
    if (ca != cb) return ca < cb ? -1 : 1;
  }
  return first.length < second.length ? -1 : (first.length > second.length ? 1 : 0);
}

int CompareNamesByLengthThenText(IString* a, IString* b) {
  tagREFString first = NameTextOf(a);
  tagREFString second = NameTextOf(b);
  if (!first.text || !second.text) return 0;
  if (first.length != second.length) return first.length < second.length ? -1 : 1;
  if (first.length == 0) return 0;
  return _wcsnicmp(first.text, second.text, static_cast<unsigned int>(first.length));
}
