// "Expression": one line of formula text, evaluated against a parameter set;
// the result of the last evaluation is kept as a variant.
//
// The class's own table follows its documented slot order (QueryInterface,
// AddRef, Release, FinalConstruct, FinalRelease, Lock, Unlock, then the
// operations below in declaration order), so a host reaches GetBuffer through
// the pointer answered for IUnknown. IString is a base for that slot only: it
// is not answered by QueryInterface.
#pragma once

#include "expression/compiled_formula.h"
#include "expression/expression_state.h"
#include "runtime/object.h"

class CExpression : public CObjectImpl<CExpression, IExpression, IDataPersist, IString> {
 public:
  static constexpr wchar_t kObjectName[] = L"Expression";
  static constexpr InterfaceEntry<CExpression> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CExpression, IObjectInfo>},
      {&IID_IDataPersist, InterfaceOf<CExpression, IDataPersist>},
      {&IID_IExpression, InterfaceOf<CExpression, IExpression>},
  };

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }

  // The class's own operations, in its slot order.
  HRESULT get_Expression(IString** text) override;
  HRESULT put_Expression(tagREFString text) override;
  // Evaluates the text (up to its first ";") against `parameters` (may be
  // null) and stores the result as a new double variant. Always 0.
  HRESULT Evaluate(IParameters* parameters) override;
  HRESULT get_Value(IVariant** value) override;
  HRESULT put_Value(IVariant* value) override;
  HRESULT Save(IDataStream* stream, int32_t flags) override;
  HRESULT Load(IDataStream* stream, int32_t flags) override;
  // The text object's characters and count; E_FAIL when there is no text.
  HRESULT GetBuffer(const wchar_t** text, int32_t* length) override;

  // Declared after the operations so that its slots follow them in the class's table.

 private:
  ExpressionState m_State;
  CompiledFormula m_Formula;
};
