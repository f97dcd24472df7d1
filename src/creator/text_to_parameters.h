// Parameters from text: "name<separator>value" lines, with continuation
// lines appended to the value before them.
#pragma once

#include <unordered_map>

#include "runtime/smart_ptr.h"

// The separator characters of one Create call, by rank: the first character
// of the set that occurs in a line splits it, wherever it occurs.
class SeparatorRanks {
 public:
  explicit SeparatorRanks(tagREFString separators);

  // Index of the first occurrence of the best-ranked separator in `line`, or -1.
  // One pass over the line, whatever the number of separators.
  int32_t SplitPosition(tagREFString line) const;

 private:
  static constexpr int32_t kNoRank = -1;
  int32_t RankOf(wchar_t c) const;

  int32_t m_ByteRanks[256];                       // characters 0-255
  std::unordered_map<uint32_t, int32_t> m_OtherRanks;  // every other character
};

// Adds one item per separated line of `text` to `target` (values are strings,
// no descriptor, flags 0); lines without a separator continue the last value.
void AddParametersFromText(tagREFString text, const SeparatorRanks& separators, IParametersCreatable* target);
