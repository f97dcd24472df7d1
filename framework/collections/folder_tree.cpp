// Folders of named entries: compact records, one name buffer and an open-addressing index by name.
#include "folder_tree.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <stdexcept>

namespace {

// Folders up to this many entries are searched by a plain scan and carry no index.
constexpr size_t kScannedEntries = 8;
// Dead names are dropped from the name buffer once they outweigh the live ones and this many characters.
constexpr size_t kDeadNamesWorthDropping = 4096;

}  // namespace

FolderEntryView FolderNode::At(size_t index) const {
  const Record& record = m_Records[index];
  FolderEntryView view;
  view.name = NameOf(record);
  view.kind = record.kind;
  view.valueKind = record.valueKind;
  view.integer = record.integer;
  view.real = record.real;
  if (record.content) {
    view.text = record.content->text;
    view.bytes = record.content->bytes;
    view.folder = record.content->folder.get();
  }
  return view;
}

FolderEntry FolderNode::CopyAt(size_t index) const {
  const FolderEntryView view = At(index);
  FolderEntry entry;
  entry.name.assign(view.name);
  entry.kind = view.kind;
  entry.valueKind = view.valueKind;
  entry.integer = view.integer;
  entry.real = view.real;
  entry.text.assign(view.text);
  entry.bytes.assign(view.bytes);
  entry.folder = SubFolderAt(index);
  return entry;
}

std::shared_ptr<FolderNode> FolderNode::SubFolderAt(size_t index) const {
  const Record& record = m_Records[index];
  return record.content ? record.content->folder : nullptr;
}

int32_t FolderNode::IndexOf(std::wstring_view name) const {
  if (m_Slots.empty()) {
    for (size_t i = 0; i < m_Records.size(); ++i)
      if (NameOf(m_Records[i]) == name) return static_cast<int32_t>(i);
    return -1;
  }
  return static_cast<int32_t>(m_Slots[SlotOf(name)]) - 1;
}

void FolderNode::Reserve(size_t count) {
  m_Records.reserve(count);
  ReserveIndex(count);
}

FolderNode::Record FolderNode::RecordOf(FolderEntry* entry) {
  Record record;
  record.kind = static_cast<uint8_t>(entry->kind);
  record.valueKind = entry->valueKind;
  record.integer = entry->integer;
  record.real = entry->real;
  if (!entry->text.empty() || !entry->bytes.empty() || entry->folder)
    record.content.reset(new Content{std::move(entry->text), std::move(entry->bytes), std::move(entry->folder)});
  return record;
}

// Everything that can fail (allocation) happens before the folder changes.
void FolderNode::Put(FolderEntry entry) {
  const int32_t existing = IndexOf(entry.name);
  Record record = RecordOf(&entry);
  if (existing >= 0) {
    Record& stored = m_Records[static_cast<size_t>(existing)];
    record.nameOffset = stored.nameOffset;
    record.nameLength = stored.nameLength;
    stored = std::move(record);
    return;
  }
  if (m_Records.size() == m_Records.capacity()) m_Records.reserve(std::max<size_t>(4, 2 * m_Records.size()));
  ReserveIndex(m_Records.size() + 1);
  record.nameOffset = AppendName(entry.name);
  record.nameLength = static_cast<uint32_t>(entry.name.size());
  m_Records.push_back(std::move(record));
  if (!m_Slots.empty()) IndexInsert(static_cast<uint32_t>(m_Records.size() - 1));
}

void FolderNode::Remove(size_t index) {
  m_DeadNameChars += m_Records[index].nameLength;
  m_Records.erase(m_Records.begin() + static_cast<std::ptrdiff_t>(index));
  RebuildIndex();  // every later entry moved down one place
}

bool FolderNode::Rename(size_t index, std::wstring_view name) {
  const int32_t existing = IndexOf(name);
  if (existing >= 0) return static_cast<size_t>(existing) == index;
  const uint32_t offset = AppendName(name);
  Record& record = m_Records[index];
  if (!m_Slots.empty()) IndexErase(SlotOf(NameOf(record)));
  m_DeadNameChars += record.nameLength;
  record.nameOffset = offset;
  record.nameLength = static_cast<uint32_t>(name.size());
  if (!m_Slots.empty()) IndexInsert(static_cast<uint32_t>(index));
  return true;
}

void FolderNode::Clear() {
  std::vector<Record>().swap(m_Records);
  std::wstring().swap(m_Names);
  m_DeadNameChars = 0;
  std::vector<uint32_t>().swap(m_Slots);
}

uint32_t FolderNode::AppendName(std::wstring_view name) {
  if (m_DeadNameChars >= kDeadNamesWorthDropping && m_DeadNameChars > m_Names.size() / 2) DropDeadNames();
  if (name.size() > std::numeric_limits<uint32_t>::max() - m_Names.size())
    throw std::length_error("folder names exceed 4G characters");
  const size_t offset = m_Names.size();
  m_Names.append(name);
  return static_cast<uint32_t>(offset);
}

void FolderNode::DropDeadNames() {
  std::wstring live;
  live.reserve(m_Names.size() - m_DeadNameChars);
  for (const Record& record : m_Records) live.append(NameOf(record));
  uint32_t offset = 0;
  for (Record& record : m_Records) {
    record.nameOffset = offset;
    offset += record.nameLength;
  }
  m_Names = std::move(live);
  m_DeadNameChars = 0;
}

size_t FolderNode::HomeSlot(std::wstring_view name) const {
  return std::hash<std::wstring_view>{}(name) & (m_Slots.size() - 1);
}

size_t FolderNode::SlotOf(std::wstring_view name) const {
  const size_t mask = m_Slots.size() - 1;
  size_t slot = HomeSlot(name);
  while (m_Slots[slot] != 0 && NameOf(m_Records[m_Slots[slot] - 1]) != name) slot = (slot + 1) & mask;
  return slot;
}

// The index keeps at least a quarter of its slots free, so probe runs stay short.
void FolderNode::ReserveIndex(size_t count) {
  if (count <= kScannedEntries || m_Slots.size() >= count + count / 3 + 1) return;
  size_t size = 16;
  while (size < count + count / 3 + 1) size *= 2;
  std::vector<uint32_t> slots(size, 0);
  m_Slots.swap(slots);
  RebuildIndex();
}

// Backward-shift deletion: later entries of the same probe run move up into the hole.
void FolderNode::IndexErase(size_t slot) {
  const size_t mask = m_Slots.size() - 1;
  size_t hole = slot;
  for (size_t next = (hole + 1) & mask; m_Slots[next] != 0; next = (next + 1) & mask) {
    const size_t home = HomeSlot(NameOf(m_Records[m_Slots[next] - 1]));
    if (((next - home) & mask) >= ((next - hole) & mask)) {
      m_Slots[hole] = m_Slots[next];
      hole = next;
    }
  }
  m_Slots[hole] = 0;
}

void FolderNode::RebuildIndex() {
  if (m_Slots.empty()) return;
  std::fill(m_Slots.begin(), m_Slots.end(), 0);
  for (size_t i = 0; i < m_Records.size(); ++i) IndexInsert(static_cast<uint32_t>(i));
}
