// Wildcard matching of item names.
#include "creator/name_pattern.h"

#include "parameters/folded_name.h"

namespace {

constexpr wchar_t kAnyRun = L'*';
constexpr wchar_t kAnyOne = L'?';

}  // namespace

bool NameMatchesPattern(tagREFString name, tagREFString pattern) {
  int32_t n = 0, p = 0;
  // After a "*": where the pattern resumes and the name position it was tried at.
  int32_t starPattern = -1, starName = 0;
  while (n < name.length) {
    if (p < pattern.length && pattern.text[p] == kAnyRun) {
      starPattern = ++p;
      starName = n;
    } else if (p < pattern.length &&
               (pattern.text[p] == kAnyOne || FoldAsciiLower(pattern.text[p]) == FoldAsciiLower(name.text[n]))) {
      ++p;
      ++n;
    } else if (starPattern >= 0) {
      p = starPattern;  // let the last "*" take one more character
      n = ++starName;
    } else {
      return false;
    }
  }
  while (p < pattern.length && pattern.text[p] == kAnyRun) ++p;
  return p == pattern.length;
}
