// ExactNameIndex: finds the first record whose whole name equals a key after
// A-Z folding, in constant time, through an open-addressing hash table.
//
// Record needs `int32_t Position` (its current index in the collection) and
// `uint32_t IndexMark` (the index's mark: 0 while the record is not indexed).
// The table holds the first record of each folded name only, as a pointer
// beside its hash: a dozen bytes or so per name, no copy of the text. A later
// record of the same name is "shadowed" (counted, not stored); when the first
// one leaves while shadowed records exist, Erase answers false and the owner
// rebuilds the index, so that the next record of that name takes its place.
//
// Lookups compare against the records' current name texts; the owner (see
// NameIndex) rebuilds the index before a lookup whenever some name's text may
// have changed since it was built.
#pragma once

#include <cstdint>
#include <memory>

#include "parameters/folded_name.h"

template <class Record>
class ExactNameIndex {
 public:
  // Indexes `record` under `name` (non-empty); its Position must be current.
  void Insert(Record* record, tagREFString name) {
    if (m_Used + 1 > m_Capacity - m_Capacity / 5) Grow();  // at most 80% full
    const uint32_t hash = HashOf(name);
    size_t slot = hash & Mask();
    for (; m_Records[slot]; slot = (slot + 1) & Mask()) {
      Record* held = m_Records[slot];
      if (m_Hashes[slot] != hash || !MatchesWholeName(NameTextOf(held->Name), name)) continue;
      ++m_Shadowed;
      if (held->Position < record->Position) {
        record->IndexMark = kShadowedMark;
        return;
      }
      // A record moved in before the held one becomes the first of the name.
      held->IndexMark = kShadowedMark;
      m_Records[slot] = record;
      record->IndexMark = MarkOf(hash);
      return;
    }
    m_Records[slot] = record;
    m_Hashes[slot] = hash;
    ++m_Used;
    record->IndexMark = MarkOf(hash);
  }

  // Takes `record` out. False when the index no longer answers correctly (a
  // shadowed record may now be the first of its name) and must be rebuilt.
  bool Erase(Record* record) {
    const uint32_t mark = record->IndexMark;
    record->IndexMark = 0;
    if (!mark) return true;
    if (mark == kShadowedMark) {
      --m_Shadowed;
      return true;
    }
    const uint32_t hash = HashOfMark(mark);
    for (size_t slot = hash & Mask(); m_Records[slot]; slot = (slot + 1) & Mask()) {
      if (m_Records[slot] != record) continue;
      RemoveAt(slot);
      break;
    }
    return m_Shadowed == 0;
  }

  // The record with the lowest position whose name equals `key`, or null.
  Record* FindFirst(tagREFString key) const {
    if (m_Capacity == 0) return nullptr;
    const uint32_t hash = HashOf(key);
    for (size_t slot = hash & Mask(); m_Records[slot]; slot = (slot + 1) & Mask())
      if (m_Hashes[slot] == hash && MatchesWholeName(NameTextOf(m_Records[slot]->Name), key)) return m_Records[slot];
    return nullptr;
  }

  void Clear() {
    m_Records.reset();
    m_Hashes.reset();
    m_Capacity = 0;
    m_Used = 0;
    m_Shadowed = 0;
  }

 private:
  // An indexed record's mark is its hash beside a set low bit; a shadowed
  // record's mark is even and non-zero.
  static constexpr uint32_t kShadowedMark = 2;

  // 31 bits, so that the hash fits beside the mark bit.
  static uint32_t HashOf(tagREFString name) { return static_cast<uint32_t>(HashFoldedText(name)) & 0x7FFFFFFFu; }
  static uint32_t MarkOf(uint32_t hash) { return (hash << 1) | 1u; }
  static uint32_t HashOfMark(uint32_t mark) { return mark >> 1; }

  size_t Mask() const { return m_Capacity - 1; }

  // Doubles the table (16 slots at first) and places every held record again.
  void Grow() {
    const size_t capacity = m_Capacity ? m_Capacity * 2 : 16;
    std::unique_ptr<Record*[]> records(new Record*[capacity]());
    std::unique_ptr<uint32_t[]> hashes(new uint32_t[capacity]);
    for (size_t i = 0; i < m_Capacity; ++i) {
      if (!m_Records[i]) continue;
      size_t slot = m_Hashes[i] & (capacity - 1);
      while (records[slot]) slot = (slot + 1) & (capacity - 1);
      records[slot] = m_Records[i];
      hashes[slot] = m_Hashes[i];
    }
    m_Records = std::move(records);
    m_Hashes = std::move(hashes);
    m_Capacity = capacity;
  }

  // Empties `hole` and moves later records of its probe run back, so that no
  // lookup stops early at the gap.
  void RemoveAt(size_t hole) {
    for (size_t next = (hole + 1) & Mask(); m_Records[next]; next = (next + 1) & Mask()) {
      const size_t home = m_Hashes[next] & Mask();
      if (((next - home) & Mask()) < ((next - hole) & Mask())) continue;  // its home lies after the hole
      m_Records[hole] = m_Records[next];
      m_Hashes[hole] = m_Hashes[next];
      hole = next;
    }
    m_Records[hole] = nullptr;
    --m_Used;
  }

  std::unique_ptr<Record*[]> m_Records;  // null: an empty slot
  std::unique_ptr<uint32_t[]> m_Hashes;  // the hash of the record in the same slot
  size_t m_Capacity = 0;                 // a power of two, or 0
  size_t m_Used = 0;
  size_t m_Shadowed = 0;  // records not stored because an earlier one has their name
};
