// Element names that are not valid XML names, in a reversible escaped form.
//
// A character that may not stand at its place in an XML name is written as
// "_x" + its code in 4 to 8 upper-case hex digits + "_" ("alpha " becomes
// "alpha_x0020_", "1st" becomes "_x0031_st"). A "_" followed by "x" is
// escaped too ("_x005F_"), so every "_x" in an encoded name starts an escape,
// and the empty name is written "_x_". Characters above U+FFFF are always
// escaped, so names survive files written in 16-bit units. Colons are
// escaped (they would read as namespace prefixes).
#pragma once

#include <string>

#include "base_types.h"
#include "wide_text_buffer.h"

// Appends the encoded form of `name` to `out`.
void AppendEncodedXMLName(WideTextBuffer& out, tagREFString name);

// The name an encoded name stands for; text that is no escape stays as it is.
std::wstring DecodeXMLName(std::wstring encoded);
