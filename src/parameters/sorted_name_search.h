// Name lookup in a collection sorted by name: a binary search that narrows the
// range to fewer than five candidates, then a short linear scan.
#pragma once

#include <algorithm>

#include "parameters/folded_name.h"
#include "strings/ref_string.h"

struct SortedNameSearch {
  int32_t index;  // -1 when nothing passed the final scan
  bool matched;   // the answer counts as found
};

// `items` are sorted by name (case-insensitively); `key` is non-empty.
//
// The binary search compares only over the shorter of key and name and moves
// its bounds to `mid` itself rather than past it; with prefix lookup a name
// that agrees with the key over its own length ends the search at once. These
// steps are intended: stored lookups depend on exactly these answers.
template <class Slot>
SortedNameSearch FindInSortedItems(Slot* const* items, int32_t count, tagREFString key, bool exactNames) {
  int32_t lo = 0;
  int32_t hi = count - 1;
  while (hi - lo >= 5) {
    int32_t mid = (lo + hi) / 2;
    tagREFString name = NameTextOf(items[mid]->Name);
    int32_t common = std::min(name.length, key.length);
    int order = common > 0 ? _wcsnicmp(name.text, key.text, static_cast<unsigned int>(common)) : 0;
    if (order > 0) {
      hi = mid;
    } else if (order < 0) {
      lo = mid;
    } else if (!exactNames || name.length == key.length) {
      return {mid, true};
    } else if (name.length > key.length) {
      hi = mid - 1;
    } else {
      lo = mid + 1;
    }
  }
  for (int32_t i = lo; i <= hi; ++i) {
    tagREFString name = NameTextOf(items[i]->Name);
    if (!MatchesNamePrefix(name, key)) continue;
    return {i, !exactNames || name.length == key.length};
  }
  return {-1, false};
}
