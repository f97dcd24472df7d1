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
  // `parameters` may be null: then no name is ever found. The reader lives
  // only for one evaluation, which holds the set.
  explicit ParameterReader(IParameters* parameters);

  IParameters* Parameters() const { return m_Parameters; }

  // The value of the first parameter named `name` as a double; a value that
  // holds an IExpression gives that expression's stored value (it is not
  // evaluated again). False when there is no such parameter. `hint` (may be
  // null) remembers the lookup for the next one of the same name.
  bool FindNumber(tagREFString name, double* value, NameLookupHint* hint = nullptr) const;

  // The text of the first parameter named `name` when its value holds text; else null.
  SmartPtr<IString> FindText(tagREFString name) const;

 private:
  SmartPtr<IVariant> FindVariant(tagREFString name, NameLookupHint* hint) const;

  IParameters* m_Parameters;  // borrowed: the caller holds the set while it reads
  SmartPtr<IParameterLookup> m_Lookup;  // null for a set of another module
};
