// Result codes returned by every interface operation of the framework.
#pragma once

#include "base_types.h"

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;                                 // partial or special success
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001);
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002);
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003);
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000E);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057);
constexpr HRESULT CO_E_CREATEFAILED = static_cast<HRESULT>(0x80040010);  // object could not be created
constexpr HRESULT E_ITEMNOTFOUND = static_cast<HRESULT>(0xF0040033);     // named item not found
constexpr HRESULT S_ARCHIVE_STATE = 0x00040013;  // Inquire of the archive's markers
constexpr HRESULT S_ARCHIVE_SETTING = 0x13;       // Inquire of the byte-transform setting

constexpr bool SUCCEEDED(HRESULT hr) { return hr >= 0; }
constexpr bool FAILED(HRESULT hr) { return hr < 0; }
