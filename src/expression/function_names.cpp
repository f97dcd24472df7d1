// Function names of the formula language and the choice of the range form.
#include <cwctype>

#include "expression/formula_scanner.h"

namespace {

using namespace function_code;

struct FunctionName {
  const wchar_t* name;  // lower case
  int32_t code;
  int32_t rangeCode;  // the code over a spreadsheet range, or 0
};

// Grouped by name length; within a group the first letter is compared before the rest.
constexpr FunctionName kLength2[] = {{L"if", kIf, 0}, {L"ln", kLn, 0}, {L"pi", kPi, 0}};
constexpr FunctionName kLength3[] = {
    {L"cos", kCos, 0},   {L"sin", kSin, 0},   {L"tan", kTan, 0}, {L"abs", kAbs, 0},
    {L"sqr", kSqr, 0},   {L"pow", kPow, 0},   {L"min", kMin, kRangeMin}, {L"max", kMax, kRangeMax},
    {L"sum", kSum, kRangeSum}, {L"exp", kExp, 0}, {L"log", kLog10, 0}, {L"chr", kChr, 0},
    {L"err", kErr, 0},   {L"cir", kCir, 0}};
constexpr FunctionName kLength4[] = {{L"atan", kArcTan, 0}, {L"find", kFind, 0}, {L"sqrt", kSqrt, 0},
                                     {L"mean", kMean, kRangeMean}};
constexpr FunctionName kLength5[] = {{L"atan2", kArcTan2, 0}, {L"log10", kLog10, 0}, {L"euler", kEuler, 0},
                                     {L"floor", kFloor, 0},   {L"round", kRound, 0},  {L"trunc", kTrunc, 0},
                                     {L"score", kScore, 0},   {L"limit", kLimit, 0}};
constexpr FunctionName kLength6[] = {
    {L"arccos", kArcCos, 0}, {L"arcsin", kArcSin, 0}, {L"arctan", kArcTan, 0}, {L"strlen", kStrLen, 0},
    {L"random", kRandom, 0}, {L"lobyte", kLoByte, 0}, {L"hibyte", kHiByte, 0}, {L"loword", kLoWord, 0},
    {L"hiword", kHiWord, 0}, {L"stddev", kStdDev, kRangeStdDev}};
constexpr FunctionName kLength7[] = {{L"arctan2", kArcTan2, 0}};
constexpr FunctionName kLength8[] = {{L"strtonum", kStrToNum, 0}};

struct NameGroup {
  const FunctionName* names;
  int count;
};

template <size_t N>
constexpr NameGroup GroupOf(const FunctionName (&names)[N]) {
  return {names, static_cast<int>(N)};
}

constexpr NameGroup kByLength[] = {{nullptr, 0},       {nullptr, 0},       GroupOf(kLength2), GroupOf(kLength3),
                                   GroupOf(kLength4),  GroupOf(kLength5),  GroupOf(kLength6), GroupOf(kLength7),
                                   GroupOf(kLength8)};
constexpr int32_t kLongestName = 8;

// Characters below 'A' and the lower-case ASCII letters fold to themselves in
// every locale, so only the others need the C library.
wchar_t Fold(wchar_t c) {
  if (c < L'A' || (c >= L'a' && c <= L'z')) return c;
  return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
}

const FunctionName* FindName(const CREFString& word) {
  if (word.length < 2 || word.length > kLongestName) return nullptr;
  const NameGroup& group = kByLength[word.length];
  const wchar_t first = Fold(word.text[0]);
  for (int i = 0; i < group.count; ++i) {
    const FunctionName& candidate = group.names[i];
    if (candidate.name[0] != first) continue;
    int32_t k = 1;
    while (k < word.length && Fold(word.text[k]) == candidate.name[k]) ++k;
    if (k == word.length) return &candidate;
  }
  return nullptr;
}

}  // namespace

int32_t FunctionCodeOf(const CREFString& word) {
  const FunctionName* found = FindName(word);
  return found ? found->code : kNone;
}

int32_t FormulaScanner::IsFunction(CREFString& word, CREFString& rest) {
  const FunctionName* found = FindName(word);
  if (!found) return kNone;
  if (found->rangeCode && IsSpreadSheetFunction(rest) == S_OK) return found->rangeCode;
  return found->code;
}

// The text is searched before the set is asked for the interface: the search is the cheaper test.
HRESULT FormulaScanner::IsSpreadSheetFunction(CREFString& rest) {
  bool rangeMarked = false;
  // The whole rest of the text is searched, not only the arguments that follow (intended).
  for (int32_t i = 0; i + 1 < rest.length && !rangeMarked; ++i)
    rangeMarked = rest.text[i] == L'.' && rest.text[i + 1] == L'.';
  if (!rangeMarked || !QueryAs<IUISpreadSheet>(m_Parameters.Parameters())) return E_FAIL;
  return S_OK;
}
