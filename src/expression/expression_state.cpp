// The text and value shared by the expression classes.
#include "expression/expression_state.h"

#include "strings/ref_string.h"

namespace {

// True when the only reference to `object` is the caller's: the count after an added reference is 2.
bool HeldOnlyHere(IUnknown* object) {
  const uint32_t count = object->AddRef();
  object->Release();
  return count == 2;
}

}  // namespace

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
  // A value nobody else holds cannot be told from a new one: it is reused
  // rather than replaced, which saves an object per evaluation. Only a
  // variant made here is trusted to report its reference count.
  if (m_ValueMadeHere && m_Value && HeldOnlyHere(m_Value.get())) {
    m_Value->SetDouble(number);
    return S_OK;
  }
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  if (!value) return CO_E_CREATEFAILED;
  value->SetDouble(number);
  m_Value = value;
  m_ValueMadeHere = true;
  return S_OK;
}
