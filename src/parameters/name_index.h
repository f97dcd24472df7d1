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
// Names are framework strings held by reference, and a holder may change a
// string's text in place. The index therefore serves lookups only while it
// can see every such change: each indexed name must answer
// IStringChangeCounter, and the shared change counter must not have moved
// since the index was built; otherwise the index is rebuilt from the current
// texts. While some name cannot be watched, lookups scan from index 0. Either
// way a lookup answers exactly what a first-match scan of the current names
// answers.
//
// A caller that looks the same name up again and again passes a
// NameLookupHint: every change of the index (a record added or removed, a
// change of order, a rebuild) moves it to a new epoch, unique in the process,
// and a hint from the current epoch is answered as it stands.
//
// The index has its own mutex, so lookups from several threads that do not
// change the collection are safe even while no collection lock is held.
//
// Records carry the marks of the indexes (see ExactNameIndex and
// PrefixNameIndex). A record type without the prefix index's IndexNode saves
// its pointer; prefix lookups in such a collection scan.
#pragma once

#include <atomic>
#include <mutex>

#include "parameters/exact_name_index.h"
#include "parameters/name_lookup_hint.h"
#include "parameters/prefix_name_index.h"
#include "runtime/smart_ptr.h"

// Sets the Position of records [first, count) to their index.
template <class Record, class Slot>
void SetPositionsFrom(Slot* const* items, int32_t count, int32_t first) {
  for (int32_t i = first; i < count; ++i) static_cast<Record*>(items[i])->Position = i;
}

enum class NameMatch { kWhole, kPrefix };

template <class Record>
class NameIndex {
  static constexpr bool kPrefixIndexed = requires(Record* record) { record->IndexNode; };

 public:
  void Added(Record* record) {
    std::lock_guard<std::mutex> guard(m_Mutex);
    m_Epoch.store(NewEpoch(), std::memory_order_release);
    if (m_Built) IndexOrDrop(record);
  }

  void Removed(Record* record) {
    std::lock_guard<std::mutex> guard(m_Mutex);
    m_Epoch.store(NewEpoch(), std::memory_order_release);
    if (m_Built) EraseFromBuilt(record);
    ForgetEntries(record);
    m_Unwatchable = false;  // the name that could not be watched may be the one leaving
  }

  void Invalidate() {
    std::lock_guard<std::mutex> guard(m_Mutex);
    Drop();
    m_Unwatchable = false;
  }

  // Index of the first of the `count` records in `items` whose name matches
  // `key` (non-empty), or -1. Same answer as a scan from index 0. `hint` (may
  // be null) is the caller's memory of the last lookup of this very key.
  template <class Slot>
  int32_t FindFirst(tagREFString key, NameMatch match, Slot* const* items, int32_t count,
                    NameLookupHint* hint = nullptr) {
    // A hint of the current epoch needs no lock: the epoch moves before anything the answer depends on.
    if (hint && hint->epoch == m_Epoch.load(std::memory_order_acquire) && !NamesChanged() && hint->index < count)
      return hint->index;
    std::lock_guard<std::mutex> guard(m_Mutex);
    if (m_Built && (m_Match != match || NamesChanged())) Drop();
    if (!m_Built && !m_Unwatchable && (kPrefixIndexed || match == NameMatch::kWhole)) Rebuild(match, items, count);
    if (m_Built) {
      Record* found = FindInBuilt(key);
      const int32_t index = found ? found->Position : -1;
      if (hint) *hint = {m_Epoch.load(std::memory_order_relaxed), index};
      return index;
    }
    for (int32_t i = 0; i < count; ++i)
      if (Matches(NameTextOf(items[i]->Name), key, match)) return i;
    return -1;
  }

 private:
  static bool Matches(tagREFString name, tagREFString key, NameMatch match) {
    return match == NameMatch::kWhole ? MatchesWholeName(name, key) : MatchesNamePrefix(name, key);
  }

  bool NamesChanged() const {
    const std::atomic<uint64_t>* changes = m_Changes.load(std::memory_order_acquire);
    return changes && changes->load(std::memory_order_acquire) != m_ChangesSeen.load(std::memory_order_acquire);
  }

  Record* FindInBuilt(tagREFString key) const {
    if constexpr (kPrefixIndexed)
      if (m_Match == NameMatch::kPrefix) return m_Prefix.FindFirst(key);
    return m_Whole.FindFirst(key);
  }

  void EraseFromBuilt(Record* record) {
    if constexpr (kPrefixIndexed) {
      if (m_Match == NameMatch::kPrefix) {
        m_Prefix.Erase(record);
        return;
      }
    }
    // A later record of the same name must become the first: rebuilt at the next lookup.
    if (!m_Whole.Erase(record)) Drop();
  }

  static void ForgetEntries(Record* record) {
    record->IndexMark = 0;
    if constexpr (kPrefixIndexed) record->IndexNode = nullptr;
  }

  // Asks the name to report changes of its text. False when it cannot, or
  // when its changes are counted elsewhere than those of the names before it.
  bool Watch(IString* name) {
    SmartPtr<IStringChangeCounter> watched = QueryAs<IStringChangeCounter>(name);
    const std::atomic<uint64_t>* changes = watched ? watched->WatchChanges() : nullptr;
    const std::atomic<uint64_t>* watching = m_Changes.load(std::memory_order_relaxed);
    if (!changes || (watching && changes != watching)) return false;
    m_Changes.store(changes, std::memory_order_release);
    return true;
  }

  // Indexes a record. A name that cannot be watched switches lookups to
  // scanning; if memory runs out the index is dropped and rebuilt later.
  void IndexOrDrop(Record* record) {
    ForgetEntries(record);
    if (!record->Name) return;  // an unnamed record never matches and cannot change
    if (!Watch(record->Name)) {
      Drop();
      m_Unwatchable = true;
      return;
    }
    tagREFString name = NameTextOf(record->Name);
    if (name.length <= 0) return;  // an empty name never matches a key
    try {
      if constexpr (kPrefixIndexed) {
        if (m_Match == NameMatch::kPrefix) {
          m_Prefix.Insert(record, name);
          return;
        }
      }
      m_Whole.Insert(record, name);
    } catch (...) {
      Drop();
    }
  }

  template <class Slot>
  void Rebuild(NameMatch match, Slot* const* items, int32_t count) {
    Drop();
    m_Match = match;
    m_Built = true;
    // The counter is read before any text, so that a change made while
    // building shows at the next lookup.
    for (int32_t i = 0; i < count && !m_Changes.load(std::memory_order_relaxed); ++i)
      if (items[i]->Name) Watch(items[i]->Name);
    if (const std::atomic<uint64_t>* changes = m_Changes.load(std::memory_order_relaxed))
      m_ChangesSeen.store(changes->load(std::memory_order_acquire), std::memory_order_release);
    for (int32_t i = 0; i < count && m_Built; ++i) IndexOrDrop(static_cast<Record*>(items[i]));
  }

  static uint64_t NewEpoch() {
    static std::atomic<uint64_t> epochs{0};
    return epochs.fetch_add(1, std::memory_order_relaxed) + 1;
  }

  void Drop() {
    m_Epoch.store(NewEpoch(), std::memory_order_release);
    m_Built = false;
    m_Whole.Clear();
    m_Prefix.Clear();
  }

  std::mutex m_Mutex;
  std::atomic<uint64_t> m_Epoch{NewEpoch()};  // read without the lock by hinted lookups
  bool m_Built = false;
  bool m_Unwatchable = false;  // some name cannot be watched: lookups scan
  NameMatch m_Match = NameMatch::kWhole;
  std::atomic<const std::atomic<uint64_t>*> m_Changes{nullptr};  // the counter every indexed name advances
  std::atomic<uint64_t> m_ChangesSeen{0};                         // its value when the index was built
  ExactNameIndex<Record> m_Whole;
  PrefixNameIndex<Record> m_Prefix;  // used only by records with an IndexNode
};
