// NameLookupHint: a caller's memory of one name lookup, which a name index
// answers again without looking while nothing that could change the answer
// has happened to it since.
#pragma once

#include <cstdint>

struct NameLookupHint {
  uint64_t epoch = 0;  // the index's state when the answer was given; 0 is never a state
  int32_t index = -1;  // the answer
};
