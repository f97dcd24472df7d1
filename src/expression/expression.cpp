// "Expression": text, evaluation, value and persistence.
#include "expression/expression.h"

#include "expression/expression_persistence.h"
#include "expression/formula_text.h"

HRESULT CExpression::get_Expression(IString** text) { return m_State.GetText(text); }

HRESULT CExpression::put_Expression(tagREFString text) { return m_State.SetText(text); }

HRESULT CExpression::Evaluate(IParameters* parameters) {
  const ParameterReader reader(parameters);
  return m_State.SetNumber(m_Formula.Evaluate(m_State.m_Text.get(), reader));
}

HRESULT CExpression::get_Value(IVariant** value) { return m_State.GetValue(value); }

HRESULT CExpression::put_Value(IVariant* value) {
  m_State.SetValue(value);
  return S_OK;
}

HRESULT CExpression::Save(IDataStream* stream, int32_t /*flags*/) { return SaveExpressionState(m_State, stream); }

HRESULT CExpression::Load(IDataStream* stream, int32_t /*flags*/) { return LoadExpressionState(m_State, stream); }

HRESULT CExpression::GetBuffer(const wchar_t** text, int32_t* length) {
  if (!m_State.m_Text) return E_FAIL;
  return m_State.m_Text->GetBuffer(text, length);
}
