// ParameterReader: the parameter set an evaluation is attached to, and the
// reading of parameters by name for the formula language.
//
// Sets of this module are read through their private lookup by view
// (IParameterLookup): no key object and no allocation per name. Any other
// IParameters is read through get_Index and get_ItemVariant; both paths give
// the same answers, input-binding values included.
#pragma once

#include "parameters/parameter_lookup.h"
#include "runtime/smart_ptr.h"
#include "strings/ref_string.h"

class ParameterReader {
 public:
  // `parameters` may be null: then no name is ever found.
  explicit ParameterReader(IParameters* parameters);

  IParameters* Parameters() const { return m_Parameters.get(); }

  // The value of the first parameter named `name` as a double; a value that
  // holds an IExpression gives that expression's stored value (it is not
  // evaluated again). False when there is no such parameter.
  bool FindNumber(tagREFString name, double* value) const;

  // The text of the first parameter named `name` when its value holds text; else null.
  SmartPtr<IString> FindText(tagREFString name) const;

 private:
  SmartPtr<IVariant> FindVariant(tagREFString name) const;

  SmartPtr<IParameters> m_Parameters;
  SmartPtr<IParameterLookup> m_Lookup;  // null for a set of another module
};
