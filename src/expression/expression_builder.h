// "ExpressionBuilder": an expression whose text mixes literal text with
// formula pieces in braces. Evaluate evaluates each piece with the formula
// language against the given set, formats it, and stores the built text as a
// string variant.
//
//   Speed {Speed*2:%.1f} km/h, {Count} items, {{literal braces}}
//
// A piece is "{formula}" or "{formula:format}" (the format follows the last
// ":" of the piece). A format holds one printf conversion for the number:
// %f %F %e %E %g %G (flags "-+ #0", width and precision up to two digits
// each), or %d %i %u %x %X %o for the number truncated to a 32-bit integer;
// text around it is copied and "%%" gives "%". Without a format, or with one
// that is not of this form, the number is written as the module writes
// numbers to files (automatic decimals). "{{" and "}}" give literal braces; a
// "{" without a closing "}" is copied as it stands with the rest of the text.
#pragma once

#include <string>

#include "expression/expression_state.h"
#include "expression/parameter_reader.h"
#include "runtime/object.h"

// The text built from `text` with every piece evaluated against `parameters`.
std::wstring BuildExpressionText(tagREFString text, const ParameterReader& parameters);

class CExpressionBuilder : public CObjectImpl<CExpressionBuilder, IExpression> {
 public:
  static constexpr wchar_t kObjectName[] = L"ExpressionBuilder";
  static constexpr InterfaceEntry<CExpressionBuilder> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CExpressionBuilder, IObjectInfo>},
      {&IID_IExpression, InterfaceOf<CExpressionBuilder, IExpression>},
  };

  HRESULT QueryInterface(const IID& iid, void** out) override { return CObjectImpl::QueryInterface(iid, out); }
  uint32_t AddRef() override { return CObjectImpl::AddRef(); }
  uint32_t Release() override { return CObjectImpl::Release(); }

  // The class's own operations, in the slot order of the other expression classes.
  HRESULT get_Expression(IString** text) override;
  HRESULT put_Expression(tagREFString text) override;
  HRESULT Evaluate(IParameters* parameters) override;
  HRESULT get_Value(IVariant** value) override;
  HRESULT put_Value(IVariant* value) override;

  // Declared after the operations so that its slots follow them in the class's table.

 private:
  ExpressionState m_State;
};
