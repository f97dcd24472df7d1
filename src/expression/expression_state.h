// ExpressionState: the text and the value that every expression class of the
// module keeps, with the get/put operations they share.
#pragma once

#include "runtime/smart_ptr.h"

class ExpressionState {
 public:
  // A new framework string holding a copy of `text` (unchanged) replaces the text.
  HRESULT SetText(tagREFString text);
  // The text object with a reference added (null when there is none); E_POINTER for a null out.
  HRESULT GetText(IString** text) const { return m_Text.CopyTo(text); }
  // The value with a reference added: E_POINTER for a null out, E_FAIL (and null) when there is none.
  HRESULT GetValue(IVariant** value) const;
  // Replaces the value; null clears it.
  void SetValue(IVariant* value) {
    m_Value = SmartPtr<IVariant>(value);
    m_ValueMadeHere = false;
  }
  // Stores `number` as the value: in a new variant, or in the one the last
  // call made when nothing else holds it (which no caller can tell apart).
  HRESULT SetNumber(double number);

  SmartPtr<IString> m_Text;
  SmartPtr<IVariant> m_Value;  // written only through SetValue and SetNumber

 private:
  bool m_ValueMadeHere = false;  // m_Value is a framework variant made by SetNumber
};
