// ExactNameIndex: finds the first record whose whole name equals a key after
// A-Z folding, in constant time, through a hash table of folded names.
//
// Record needs `int32_t Position` (its current index in the collection) and
// `void* IndexEntry` (the index's handle, null while the record is not
// indexed). Each table entry holds the records of one folded name in
// collection order, so the first one is the answer. Keys are snapshots taken
// when a record is inserted: the index never reads a record's name again.
#pragma once

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

#include "parameters/folded_name.h"

struct FoldedTextHash {
  using is_transparent = void;
  size_t operator()(const std::wstring& text) const {
    return HashFoldedText({static_cast<int32_t>(text.size()), text.data()});
  }
  size_t operator()(const tagREFString& text) const { return HashFoldedText(text); }
};

struct FoldedTextEqual {
  using is_transparent = void;
  static tagREFString ViewOf(const std::wstring& text) { return {static_cast<int32_t>(text.size()), text.data()}; }
  static tagREFString ViewOf(const tagREFString& text) { return text; }
  template <class A, class B>
  bool operator()(const A& a, const B& b) const {
    return CompareFoldedTexts(ViewOf(a), ViewOf(b)) == 0;
  }
};

template <class Record>
class ExactNameIndex {
 public:
  // Indexes `record` under `name` (non-empty); its Position must be current.
  void Insert(Record* record, tagREFString name) {
    auto found = m_Groups.find(name);
    if (found == m_Groups.end()) found = m_Groups.emplace(FoldedCopyOf(name), std::vector<Record*>()).first;
    std::vector<Record*>& group = found->second;
    // Appends land at the end; a record moved into the middle goes to its place.
    auto place = std::upper_bound(group.begin(), group.end(), record->Position,
                                  [](int32_t position, const Record* other) { return position < other->Position; });
    group.insert(place, record);
    record->IndexEntry = &*found;
  }

  void Erase(Record* record) {
    auto* entry = static_cast<Entry*>(record->IndexEntry);
    if (!entry) return;
    record->IndexEntry = nullptr;
    std::vector<Record*>& group = entry->second;
    group.erase(std::find(group.begin(), group.end(), record));
    if (group.empty()) m_Groups.erase(m_Groups.find(entry->first));
  }

  // The record with the lowest position whose indexed name equals `key`, or null.
  Record* FindFirst(tagREFString key) const {
    auto found = m_Groups.find(key);
    return found == m_Groups.end() ? nullptr : found->second.front();
  }

  void Clear() { m_Groups.clear(); }

 private:
  using Groups = std::unordered_map<std::wstring, std::vector<Record*>, FoldedTextHash, FoldedTextEqual>;
  using Entry = typename Groups::value_type;

  Groups m_Groups;
};
