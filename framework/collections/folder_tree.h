// The in-memory tree behind a folder stream: folders of named entries kept in first-write order.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "params.h"

class FolderNode;

// What a value entry holds.
enum class FolderValueKind : uint8_t { kEmpty = 0, kInteger = 1, kReal = 2, kText = 3, kObject = 4 };

// One named entry. `kind` is one of kFolderEntryFolder/Binary/Value/Object.
struct FolderEntry {
  std::wstring name;
  int32_t kind = kFolderEntryFolder;
  FolderValueKind valueKind = FolderValueKind::kEmpty;
  int32_t integer = 0;
  double real = 0;
  std::wstring text;                   // a value's text, or the class name of an object
  std::string bytes;                   // a binary entry's bytes
  std::shared_ptr<FolderNode> folder;  // a sub-folder, or the content an object saved
};

// A folder: entries in order with an index by exact name.
class FolderNode {
 public:
  const std::vector<FolderEntry>& Entries() const { return m_Entries; }
  size_t Count() const { return m_Entries.size(); }
  const FolderEntry& At(size_t index) const { return m_Entries[index]; }

  // Position of the entry named `name`, or -1.
  int32_t IndexOf(std::wstring_view name) const;

  // Stores `entry` under its name: in place of an existing entry of that name, else appended.
  void Put(FolderEntry entry);
  void Remove(size_t index);
  // False when another entry already has the name.
  bool Rename(size_t index, std::wstring name);
  void Clear();

 private:
  struct NameHash {
    using is_transparent = void;
    size_t operator()(std::wstring_view name) const { return std::hash<std::wstring_view>{}(name); }
  };

  void Reindex(size_t from);

  std::vector<FolderEntry> m_Entries;
  std::unordered_map<std::wstring, size_t, NameHash, std::equal_to<>> m_IndexByName;
};

// The tree shared by every stream object that views one of its folders.
struct FolderTree {
  std::recursive_mutex mutex;
};

// Deepest nesting of folders (object contents count as folders) that is written and read.
constexpr int32_t kMaxFolderDepth = 100;
