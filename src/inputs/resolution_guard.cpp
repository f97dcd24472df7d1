// Per-thread stack of the bindings being resolved.
#include "inputs/resolution_guard.h"

#include <algorithm>

namespace {

// Fixed storage: entering and leaving never allocate.
thread_local const void* tActiveBindings[kMaxResolutionDepth];
thread_local int32_t tDepth = 0;

}  // namespace

ResolutionGuard::ResolutionGuard(const void* binding) noexcept {
  if (tDepth >= kMaxResolutionDepth) return;
  if (std::find(tActiveBindings, tActiveBindings + tDepth, binding) != tActiveBindings + tDepth) return;
  tActiveBindings[tDepth++] = binding;
  m_Entered = true;
}

ResolutionGuard::~ResolutionGuard() {
  if (m_Entered) --tDepth;
}
