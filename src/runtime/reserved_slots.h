// Interfaces with their reserved slots answered: a class derives from one of
// these instead of the bare interface and implements only the real operations.
// The table layout is the interface's own; nothing is added.
#pragma once

#include "framework_streams.h"
#include "result_codes.h"

#define RESERVED_SLOT(n) \
  HRESULT Reserved##n() override { return E_NOTIMPL; }

struct ComponentCollectionSlots : IComponentCollection {
  RESERVED_SLOT(4) RESERVED_SLOT(5) RESERVED_SLOT(6) RESERVED_SLOT(7) RESERVED_SLOT(8)
  RESERVED_SLOT(9) RESERVED_SLOT(10) RESERVED_SLOT(11) RESERVED_SLOT(12) RESERVED_SLOT(13)
};

struct StringCollectionSlots : IStringCollection {
  RESERVED_SLOT(3) RESERVED_SLOT(4) RESERVED_SLOT(5) RESERVED_SLOT(6) RESERVED_SLOT(7)
  RESERVED_SLOT(8) RESERVED_SLOT(9) RESERVED_SLOT(10) RESERVED_SLOT(11) RESERVED_SLOT(12)
};

struct XMLStreamExSlots : IXMLStreamEx {
  RESERVED_SLOT(5) RESERVED_SLOT(7) RESERVED_SLOT(14)
  RESERVED_SLOT(16) RESERVED_SLOT(17) RESERVED_SLOT(18) RESERVED_SLOT(19) RESERVED_SLOT(20)
};

#undef RESERVED_SLOT
