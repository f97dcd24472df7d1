// The text that replaces a tag: what an item of a named collection shows.
#pragma once

#include <string>

#include "runtime/smart_ptr.h"

// Appends the text of `item` to `out`:
// - a string: its text, after loading it if it is a file archive not yet loaded;
// - a value: its string, a number with automatic decimals ("2.5", "3",
//   "0.333333333"), the class name of an object it holds, or "" for an object
//   without a name or an empty value;
// - null or any other object: nothing.
void AppendItemText(IUnknown* item, std::wstring& out);
