// The variant's own conversions between its kinds.
#pragma once

#include <cstdint>

// The number at the start of a text: optional blanks, an optional sign, digits
// with an optional fraction and an optional exponent. 0 when there is none.
double LeadingNumberOf(const wchar_t* text, int32_t length);

// Toward zero; saturates outside the 32-bit range; NaN gives 0.
int32_t TruncateToInt32(double value);
