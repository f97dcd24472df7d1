// Parameters from "name<separator>value" lines.
#include "creator/text_to_parameters.h"

#include "strings/conversions.h"

namespace {

constexpr wchar_t kLineFeed = L'\n';
constexpr tagREFString kContinuationBreak{2, L"\r\n"};

// Without blanks, control characters and stray byte-order-mark bytes at the start.
CREFString SkipLeading(CREFString text) {
  text.TrimLeft(false);
  return text;
}

CREFString DropTrailing(CREFString text) {
  while (text.length > 0 && IsTrailingBlank(text.text[text.length - 1])) --text.length;
  return text;
}

}  // namespace

SeparatorRanks::SeparatorRanks(tagREFString separators) {
  for (int32_t& rank : m_ByteRanks) rank = kNoRank;
  // Walked backwards so that a character given twice keeps its first rank.
  for (int32_t i = separators.length - 1; i >= 0; --i) {
    const auto code = static_cast<uint32_t>(separators.text[i]);
    if (code < 256)
      m_ByteRanks[code] = i;
    else
      m_OtherRanks[code] = i;
  }
}

int32_t SeparatorRanks::RankOf(wchar_t c) const {
  const auto code = static_cast<uint32_t>(c);
  if (code < 256) return m_ByteRanks[code];
  if (m_OtherRanks.empty()) return kNoRank;
  auto found = m_OtherRanks.find(code);
  return found == m_OtherRanks.end() ? kNoRank : found->second;
}

int32_t SeparatorRanks::SplitPosition(tagREFString line) const {
  int32_t bestRank = kNoRank, bestPosition = -1;
  for (int32_t i = 0; i < line.length; ++i) {
    const int32_t rank = RankOf(line.text[i]);
    if (rank == kNoRank || (bestRank != kNoRank && rank >= bestRank)) continue;
    bestRank = rank;
    bestPosition = i;
    if (rank == 0) break;  // nothing ranks better
  }
  return bestPosition;
}

void AddParametersFromText(tagREFString text, const SeparatorRanks& separators, IParametersCreatable* target) {
  SmartPtr<ICreatableString> lastValue;  // the value that continuation lines extend
  CREFString rest(text);
  CREFString line;
  while (!rest.IsEmpty()) {
    rest.GetLine(&line, true, kLineFeed, true);
    const CREFString trimmed = SkipLeading(line);
    const int32_t split = separators.SplitPosition(trimmed);
    if (split < 0) {
      if (lastValue && trimmed.length > 0) {
        lastValue->Append(kContinuationBreak);
        lastValue->Append(trimmed);
      }
      continue;
    }
    const tagREFString name{split, trimmed.text};
    const CREFString afterSeparator(trimmed.text + split + 1, trimmed.length - split - 1);
    const tagREFString value = DropTrailing(SkipLeading(afterSeparator));
    SmartPtr<IString> nameString = SmartPtr<IString>::Adopt(ISCreate(name));
    SmartPtr<ICreatableString> valueString = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
    if (valueString) valueString->SetText(value);
    target->Add(nameString.get(), valueString.get(), nullptr, 0);
    lastValue = valueString;
  }
}
