// paramtool explain: prints how a formula is read, piece by piece, with its pitfalls.
#pragma once

#include <string>

#include "formula_explanation.h"

// Explains `formula` against `set` (may be null) and prints the explanation
// (text or JSON) on standard output. Returns 0, or 2 with a message on
// standard error when the explanation disagrees with the module's own value.
int RunExplain(const std::wstring& formula, IParameters* set, const OriginOfName& originOf, bool json);
