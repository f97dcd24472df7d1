// The text and value shared by the expression classes.
#include "expression/expression_state.h"

#include "strings/ref_string.h"

HRESULT ExpressionState::SetText(tagREFString text) {
  SmartPtr<ICreatableString> copy = SmartPtr<ICreatableString>::Adopt(CREFString::CreateString());
  if (!copy) return CO_E_CREATEFAILED;
  if (text.text && text.length > 0) copy->SetText(text);
  m_Text = SmartPtr<IString>(copy.get());
  return S_OK;
}

HRESULT ExpressionState::GetValue(IVariant** value) const {
  if (!value) return E_POINTER;
  *value = nullptr;
  return HandOutHeld(m_Value.get(), value);
}

HRESULT ExpressionState::SetNumber(double number) {
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  if (!value) return CO_E_CREATEFAILED;
  value->SetDouble(number);
  m_Value = value;
  return S_OK;
}
