// Flag bits of a parameter that the writers and readers of a set look at.
#pragma once

#include <cstdint>

constexpr int32_t kParamFlagFileName = 0x2;            // the value is a file name (stored mapped)
constexpr int32_t kParamFlagRelativeFileName = 0x4;    // the value is a file name (stored relative)
constexpr int32_t kParamFlagLeanNoDescriptor = 0x40;   // lean output drops the bit and the descriptor
constexpr int32_t kParamFlagLeanHidden = 0x40000;      // lean output leaves out the descriptor (CSV: the parameter)
constexpr int32_t kParamFlagNotStored = 0x4000000;     // the folder writer leaves the parameter out
constexpr int32_t kParamFlagTransient = 0x8000000;     // never written to XML
constexpr int32_t kParamFlagColour = 0x23;             // a colour kept as 0x00BBGGRR

// Writer option: the CSV line holds name=value pairs.
constexpr int32_t kSaveNamedValues = 0x10000;
