// Hands out new framework strings ("CreatableString") made in this module.
#pragma once

#include <cstddef>

#include "runtime/smart_ptr.h"

// A new string holding a copy of the text, with a reference for the caller;
// *out is null on failure.
HRESULT HandOutString(const wchar_t* text, size_t length, IString** out);
