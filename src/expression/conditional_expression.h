// "ConditionalExpression": an expression frame made of two inner "Expression"
// objects. It keeps its own text and value; Evaluate evaluates the two inner
// expressions against the given set but never hands them its text and never
// computes a value of its own, so the stored value stays as it was. This is
// the class's behaviour as the framework knows it (intended, not a gap).
#pragma once

#include "expression/expression_state.h"
#include "runtime/object.h"

class CConditionalExpression : public CObjectImpl<CConditionalExpression, IExpression> {
 public:
  static constexpr wchar_t kObjectName[] = L"ConditionalExpression";
  static constexpr InterfaceEntry<CConditionalExpression> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CConditionalExpression, IObjectInfo>},
      {&IID_IExpression, InterfaceOf<CConditionalExpression, IExpression>},
  };

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }

  // Makes the empty value and the two inner expressions; fails when they cannot be made.
  HRESULT FinalConstruct() override;

  // The class's own operations, in its slot order.
  HRESULT get_Expression(IString** text) override;
  HRESULT put_Expression(tagREFString text) override;
  HRESULT Evaluate(IParameters* parameters) override;
  HRESULT get_Value(IVariant** value) override;
  HRESULT put_Value(IVariant* value) override;

  // Declared after the operations so that its slots follow them in the class's table.

 private:
  ExpressionState m_State;
  SmartPtr<IExpression> m_First;
  SmartPtr<IExpression> m_Second;
};
