// The binary image of a folder stream, as kept in a file (layout in docs/formats.md).
#pragma once

#include <string>
#include <string_view>

#include "folder_tree.h"

inline constexpr char kFolderImageMagic[4] = {'P', 'F', 'L', 'D'};
constexpr uint32_t kFolderImageVersion = 1;
constexpr size_t kFolderImageHeaderSize = 8;

// Largest image read from a file or taken by IDataStream::Write.
constexpr size_t kMaxFolderImageBytes = size_t{1} << 28;
// Most entries (in all its folders together) and most folders (sub-folders
// and object contents) one image may hold: they bound the memory a hostile
// image can make the reader allocate, whatever its size.
constexpr size_t kMaxFolderImageEntries = size_t{1} << 22;
constexpr size_t kMaxFolderImageFolders = size_t{1} << 20;

// The image of `folder` and everything below it. E_FAIL when folders nest
// deeper than kMaxFolderDepth or the tree holds more entries or folders than
// an image may (the reader would refuse such an image).
HRESULT EncodeFolderImage(const FolderNode& folder, std::string* image);

// Reads a whole image into *folder (replacing its content) or refuses it with
// E_FAIL, leaving *folder as it was: wrong magic or version, a length or count
// beyond the end, an unknown kind, an empty or repeated name, nesting beyond
// kMaxFolderDepth, more entries or folders than kMaxFolderImageEntries and
// kMaxFolderImageFolders, or bytes left over after the root folder. Counts are
// checked against these caps before anything is allocated for them.
HRESULT DecodeFolderImage(std::string_view image, FolderNode* folder);
