// Text helpers shared by the persistence code: views of framework strings,
// whole-name comparisons, item names by position and value text.
#pragma once

#include <cwchar>

#include "runtime/smart_ptr.h"
#include "strings/conversions.h"

// The string's own text, or an empty view for null.
inline CREFString TextView(IString* text) {
  CREFString view;
  if (text && SUCCEEDED(text->GetBuffer(&view.text, &view.length)) && view.text && view.length > 0) return view;
  return CREFString();
}

// True when the view is exactly `word`, ignoring the case of A-Z.
inline bool EqualsIgnoringCase(tagREFString view, const wchar_t* word) {
  const size_t length = std::wcslen(word);
  return view.length == static_cast<int32_t>(length) && _wcsnicmp(view.text, word, static_cast<unsigned>(length)) == 0;
}

// An item's stored name, or "Item<position>" (1-based) when it has none.
class ItemNameText {
 public:
  ItemNameText(IString* name, int32_t index) : m_View(TextView(name)) {
    if (m_View.IsEmpty()) {
      const int count = _swprintf(m_Buffer, kSize, L"Item%d", index + 1);
      m_View = CREFString(m_Buffer, count);
    }
  }
  ItemNameText(const ItemNameText&) = delete;
  ItemNameText& operator=(const ItemNameText&) = delete;
  const CREFString& view() const { return m_View; }

 private:
  static constexpr unsigned kSize = 24;
  wchar_t m_Buffer[kSize] = {};
  CREFString m_View;
};

// The text of a value ("" for null), as the framework converts a variant.
inline SmartPtr<IString> ValueText(IVariant* value) {
  return SmartPtr<IString>::Adopt(value ? ISCreate(value) : ISCreate(static_cast<const wchar_t*>(nullptr)));
}

// A variant by the look of the string's text (number or text), as the readers convert element text.
inline SmartPtr<IVariant> ConvertedValue(IString* text) {
  CREFString view = TextView(text);
  return SmartPtr<IVariant>::Adopt(IVCreateConvert(view));
}

// Limits how deeply objects may save themselves inside one another on a
// thread, so an object that (directly or not) holds itself cannot recurse
// without end. Objects below the limit are left out.
class SaveNesting {
 public:
  static constexpr int32_t kMaxDepth = 100;
  SaveNesting() { ++Depth(); }
  ~SaveNesting() { --Depth(); }
  SaveNesting(const SaveNesting&) = delete;
  SaveNesting& operator=(const SaveNesting&) = delete;
  bool TooDeep() const { return Depth() > kMaxDepth; }

 private:
  static int32_t& Depth() {
    static thread_local int32_t depth = 0;
    return depth;
  }
};
