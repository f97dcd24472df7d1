// Where the settings store lives and what it defaults to.
#pragma once

#include <string>

#include "ini_document.h"
#include "params.h"

// `$PARAMS_SETTINGS` when set and not empty, else "./_binlinux/Settings.ini".
std::string SettingsFilePath();

// The settings file as a document; a missing or unreadable file gives an empty one.
IniDocument LoadIniFile(const std::string& path);

// Writes the document to the file as UTF-8.
HRESULT SaveIniFile(const std::string& path, const IniDocument& document);

// The absolute folder that holds "_binlinux/": the folder above the one this
// module was loaded from, or the current directory when that is unknown.
std::wstring DefaultInstallPath();
