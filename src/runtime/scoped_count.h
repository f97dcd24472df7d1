// ScopedCount: adds one to a counter for the life of a scope (nesting depths,
// evaluations in progress), taking it back however the scope is left.
#pragma once

template <class Counter>
class ScopedCount {
 public:
  explicit ScopedCount(Counter& counter) : m_Counter(counter) { ++m_Counter; }
  ~ScopedCount() { --m_Counter; }
  ScopedCount(const ScopedCount&) = delete;
  ScopedCount& operator=(const ScopedCount&) = delete;

 private:
  Counter& m_Counter;
};
