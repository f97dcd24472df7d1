// Stored file names: the application and installation folders, the mapped
// form ("[InstallPath]" or "[<mapping>]" in place of a known leading folder)
// and names relative to a folder (docs/formats.md, "File names").
//
// Every function hands out a new string (one reference for the caller) in its
// IString** argument, or null when it fails. Settings come from the framework's
// "Registry": [Workspace] InstallPath and AppPath, and the [Mappings] list.
#pragma once

#include "params.h"

// The folder of the active workspace's file, else [Workspace] AppPath.
HRESULT FILENAMEGetAppPath(IString** path);
// [Workspace] InstallPath.
HRESULT FILENAMEGetInstallPath(IString** path);
// The tagged form of `name`; with `strip` non-zero a name below the
// installation folder becomes relative to it instead. E_FAIL when no folder
// matches, CO_E_CREATEFAILED without a settings store.
HRESULT FILENAMEMap(IString* name, IString** mapped, int16_t strip);
// The inverse of FILENAMEMap for a name that begins with a tag; every "\" becomes "/".
HRESULT FILENAMEUnmap(IString* tagged, IString** name);
// `name` relative to the folder `base`: steps up written as "..\", then the
// rest of the name. S_FALSE (and the name itself) when the two share no more
// than the top folder.
HRESULT FILENAMECreateRelative(IString* base, IString* name, IString** relative);
// The inverse of FILENAMECreateRelative: leading "..\" (or "../") steps each
// take one folder off `base`, and the rest follows after "/". A mapped name is
// unmapped, an absolute name (leading "/") is handed back as it is (S_FALSE).
HRESULT FILENAMECreateAbsolute(IString* base, IString* name, IString** absolute);
// As above against the application folder, or against the installation
// folder when `againstInstallPath` is non-zero.
HRESULT FILENAMECreateAbsolute(IString* name, IString** absolute, int againstInstallPath);
