// Wildcard patterns over item names: "*" matches any run of characters, "?"
// exactly one; other characters match after folding A-Z to lower case, as
// parameter names are compared everywhere.
#pragma once

#include "base_types.h"

// True when the whole of `name` matches `pattern`. Linear in practice, at
// worst the product of the two lengths (no exponential backtracking).
bool NameMatchesPattern(tagREFString name, tagREFString pattern);
