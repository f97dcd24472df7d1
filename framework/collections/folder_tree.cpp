// Folders of named entries with an index by name.
#include "folder_tree.h"

int32_t FolderNode::IndexOf(std::wstring_view name) const {
  auto found = m_IndexByName.find(name);
  return found == m_IndexByName.end() ? -1 : static_cast<int32_t>(found->second);
}

void FolderNode::Put(FolderEntry entry) {
  auto found = m_IndexByName.find(std::wstring_view(entry.name));
  if (found != m_IndexByName.end()) {
    m_Entries[found->second] = std::move(entry);
    return;
  }
  m_IndexByName.emplace(entry.name, m_Entries.size());
  m_Entries.push_back(std::move(entry));
}

void FolderNode::Remove(size_t index) {
  m_IndexByName.erase(m_Entries[index].name);
  m_Entries.erase(m_Entries.begin() + static_cast<std::ptrdiff_t>(index));
  Reindex(index);
}

bool FolderNode::Rename(size_t index, std::wstring name) {
  auto found = m_IndexByName.find(std::wstring_view(name));
  if (found != m_IndexByName.end()) return found->second == index;
  m_IndexByName.erase(m_Entries[index].name);
  m_IndexByName.emplace(name, index);
  m_Entries[index].name = std::move(name);
  return true;
}

void FolderNode::Clear() {
  m_Entries.clear();
  m_IndexByName.clear();
}

void FolderNode::Reindex(size_t from) {
  for (size_t i = from; i < m_Entries.size(); ++i) m_IndexByName[m_Entries[i].name] = i;
}
