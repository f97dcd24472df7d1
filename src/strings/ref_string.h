// CREFString: a counted view of wide text with scanning operations, and the
// factories of the framework's basic value objects.
#pragma once

#include "params.h"

struct CREFString : tagREFString {
  CREFString() : tagREFString{0, nullptr} {}
  CREFString(const wchar_t* text, int32_t length) : tagREFString{length, text} {}
  explicit CREFString(tagREFString view) : tagREFString(view) {}

  // A new, empty framework string ("CreatableString"), one reference for the caller.
  static ICreatableString* CreateString();
  // A new, empty framework variant ("Variant").
  static IVariant* CreateVariant();
  // A new framework collection ("SuperCollection").
  static ISuperCollection* CreateCollection();
};
