// NameIndex: serves a collection's first-match name lookups from an index
// kept in step with the collection, instead of scanning the items.
//
// The owner keeps every record's Position equal to its index (see
// SetPositionsFrom) and reports each change: Added after a record got its
// place and name, Removed before it loses them, Invalidate after a change of
// order (sort, reverse) or a clear. The index is built on the first lookup
// after an invalidation, in the mode that lookup asks for (whole name or
// prefix), and then updated incrementally.
//
// Names are framework strings held by reference; the index keeps a folded
// copy of each name's text taken when the record was indexed. If a caller
// changes a name string's text in place afterwards, a lookup that lands on
// that record sees that its current text no longer matches, rebuilds the
// index from the current texts and looks again, so a lookup never answers a
// record whose name does not match. A lookup by the changed text may miss the
// record until then: a rename goes through Rename.
//
// The index has its own mutex, so lookups from several threads that do not
// change the collection are safe even while no collection lock is held.
#pragma once

#include <mutex>

#include "parameters/exact_name_index.h"
#include "parameters/prefix_name_index.h"

// Sets the Position of records [first, count) to their index.
template <class Record, class Slot>
void SetPositionsFrom(Slot* const* items, int32_t count, int32_t first) {
  for (int32_t i = first; i < count; ++i) static_cast<Record*>(items[i])->Position = i;
}

enum class NameMatch { kWhole, kPrefix };

template <class Record>
class NameIndex {
 public:
  void Added(Record* record) {
    std::lock_guard<std::mutex> guard(m_Mutex);
    if (m_Built) IndexOrDrop(record);
  }

  void Removed(Record* record) {
    std::lock_guard<std::mutex> guard(m_Mutex);
    if (m_Built) EraseFromBuilt(record);
    record->IndexEntry = nullptr;
  }

  void Invalidate() {
    std::lock_guard<std::mutex> guard(m_Mutex);
    Drop();
  }

  // Index of the first of the `count` records in `items` whose name matches
  // `key` (non-empty), or -1. Same answer as a scan from index 0.
  template <class Slot>
  int32_t FindFirst(tagREFString key, NameMatch match, Slot* const* items, int32_t count) {
    std::lock_guard<std::mutex> guard(m_Mutex);
    for (int attempt = 0; attempt < 2; ++attempt) {
      if (!m_Built || m_Match != match) Rebuild(match, items, count);
      if (!m_Built) break;  // out of memory while building
      Record* found = FindInBuilt(key);
      if (!found) return -1;
      if (Matches(NameTextOf(found->Name), key)) return found->Position;
      Drop();  // a name was changed in place: rebuild from the current texts
    }
    for (int32_t i = 0; i < count; ++i)
      if (Matches(NameTextOf(items[i]->Name), key)) return i;
    return -1;
  }

 private:
  bool Matches(tagREFString name, tagREFString key) const {
    return m_Match == NameMatch::kWhole ? MatchesWholeName(name, key) : MatchesNamePrefix(name, key);
  }

  Record* FindInBuilt(tagREFString key) const {
    return m_Match == NameMatch::kWhole ? m_Whole.FindFirst(key) : m_Prefix.FindFirst(key);
  }

  void EraseFromBuilt(Record* record) {
    if (m_Match == NameMatch::kWhole)
      m_Whole.Erase(record);
    else
      m_Prefix.Erase(record);
  }

  // Indexes a record; if memory runs out the index is dropped and rebuilt later.
  void IndexOrDrop(Record* record) {
    record->IndexEntry = nullptr;
    tagREFString name = NameTextOf(record->Name);
    if (name.length <= 0) return;  // an empty name never matches a key
    try {
      if (m_Match == NameMatch::kWhole)
        m_Whole.Insert(record, name);
      else
        m_Prefix.Insert(record, name);
    } catch (...) {
      Drop();
    }
  }

  template <class Slot>
  void Rebuild(NameMatch match, Slot* const* items, int32_t count) {
    Drop();
    m_Match = match;
    m_Built = true;
    for (int32_t i = 0; i < count && m_Built; ++i) IndexOrDrop(static_cast<Record*>(items[i]));
  }

  void Drop() {
    m_Built = false;
    m_Whole.Clear();
    m_Prefix.Clear();
  }

  std::mutex m_Mutex;
  bool m_Built = false;
  NameMatch m_Match = NameMatch::kWhole;
  ExactNameIndex<Record> m_Whole;
  PrefixNameIndex<Record> m_Prefix;
};
