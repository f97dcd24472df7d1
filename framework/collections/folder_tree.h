// The in-memory tree behind a folder stream: folders of named entries kept in first-write order.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "params.h"

class FolderNode;

// What a value entry holds.
enum class FolderValueKind : uint8_t { kEmpty = 0, kInteger = 1, kReal = 2, kText = 3, kObject = 4 };

// One named entry on its own: what is stored into a folder and copied out of it.
// `kind` is one of kFolderEntryFolder/Binary/Value/Object.
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

// A look at one stored entry, valid until its folder changes.
struct FolderEntryView {
  std::wstring_view name;
  int32_t kind = kFolderEntryFolder;
  FolderValueKind valueKind = FolderValueKind::kEmpty;
  int32_t integer = 0;
  double real = 0;
  std::wstring_view text;
  std::string_view bytes;
  const FolderNode* folder = nullptr;  // null when the entry has none
};

// A folder: entries in order with an index by exact name. Entries are kept
// compact because a file may hold millions of them: one 32-byte record each,
// all names back to back in one buffer, texts, bytes and sub-folders in a
// separate block only when there are any, and an open-addressing index of
// 32-bit positions once the folder has more than a few entries.
class FolderNode {
 public:
  size_t Count() const { return m_Records.size(); }
  FolderEntryView At(size_t index) const;
  // A copy of the entry at `index`; its sub-folder is shared, not copied.
  FolderEntry CopyAt(size_t index) const;
  // The sub-folder of the entry at `index` (null when it has none).
  std::shared_ptr<FolderNode> SubFolderAt(size_t index) const;

  // Position of the entry named `name`, or -1.
  int32_t IndexOf(std::wstring_view name) const;

  // Makes room for `count` entries in all, so that adding them allocates no more.
  void Reserve(size_t count);
  // Stores `entry` under its name: in place of an existing entry of that name, else appended.
  void Put(FolderEntry entry);
  void Remove(size_t index);
  // False when another entry already has the name.
  bool Rename(size_t index, std::wstring_view name);
  void Clear();

 private:
  struct Content {
    std::wstring text;
    std::string bytes;
    std::shared_ptr<FolderNode> folder;
  };
  struct Record {
    uint32_t nameOffset = 0;
    uint32_t nameLength = 0;
    uint8_t kind = 0;
    FolderValueKind valueKind = FolderValueKind::kEmpty;
    int32_t integer = 0;
    double real = 0;
    std::unique_ptr<Content> content;  // null when the entry has no text, bytes or folder
  };

  static Record RecordOf(FolderEntry* entry);
  std::wstring_view NameOf(const Record& record) const {
    return std::wstring_view(m_Names).substr(record.nameOffset, record.nameLength);
  }
  // Appends `name` to the name buffer (after dropping dead names when they dominate); its offset.
  uint32_t AppendName(std::wstring_view name);
  void DropDeadNames();

  size_t HomeSlot(std::wstring_view name) const;
  // The slot holding the entry named `name`, or the free slot where it would go.
  size_t SlotOf(std::wstring_view name) const;
  // Grows the index (if needed) so that `count` entries fit; may throw, changes nothing then.
  void ReserveIndex(size_t count);
  void IndexInsert(uint32_t index) { m_Slots[SlotOf(NameOf(m_Records[index]))] = index + 1; }
  void IndexErase(size_t slot);
  void RebuildIndex();

  std::vector<Record> m_Records;
  std::wstring m_Names;           // every entry's name, back to back
  size_t m_DeadNameChars = 0;     // characters of m_Names no entry uses any more
  std::vector<uint32_t> m_Slots;  // position + 1 of an entry, 0 when free; empty while the folder is small
};

// The tree shared by every stream object that views one of its folders.
struct FolderTree {
  std::recursive_mutex mutex;
};

// Deepest nesting of folders (object contents count as folders) that is written and read.
constexpr int32_t kMaxFolderDepth = 100;
