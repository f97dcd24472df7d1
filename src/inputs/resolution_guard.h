// ResolutionGuard: bounds how deeply input bindings resolve through one another on one thread.
//
// A binding's value may come from a parameter set whose item is itself bound
// (a descriptor that is an input parameter), so resolutions nest. Two sets
// bound to each other, or a binding whose source is the set that holds it,
// would nest without end. Each resolution (and each save, which walks the
// same chain of sources) enters a guard first; the guard refuses a binding
// that is already being resolved on this thread (a cycle) and any nesting
// deeper than kMaxResolutionDepth. The refused call fails with E_FAIL, so the
// parameter set that asked falls back to its stored value.
#pragma once

#include <cstdint>

// Deepest chain of distinct bindings resolved one inside another. Each level
// holds two locks (the binding's and its source set's) and some stack.
constexpr int32_t kMaxResolutionDepth = 16;

class ResolutionGuard {
 public:
  explicit ResolutionGuard(const void* binding) noexcept;
  ~ResolutionGuard();
  ResolutionGuard(const ResolutionGuard&) = delete;
  ResolutionGuard& operator=(const ResolutionGuard&) = delete;

  // False when the binding was refused: already active on this thread, or too deep.
  bool Entered() const { return m_Entered; }

 private:
  bool m_Entered = false;
};
