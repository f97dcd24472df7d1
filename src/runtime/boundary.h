// Keeps exceptions from crossing an interface or an exported function: the
// call is run, and an escaping exception becomes a result code (0x8007000E
// for out of memory, else 0x80004005) after an optional clean-up.
#pragma once

#include <new>

#include "smart_ptr.h"

template <class Body, class Cleanup>
HRESULT GuardedCall(Body&& body, Cleanup&& cleanup) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    cleanup();
    return E_OUTOFMEMORY;
  } catch (...) {
    cleanup();
    return E_FAIL;
  }
}

template <class Body>
HRESULT GuardedCall(Body&& body) noexcept {
  return GuardedCall(static_cast<Body&&>(body), [] {});
}
