// Reading parameters by name for the formula language.
#include "expression/parameter_reader.h"

#include "strings/conversions.h"

ParameterReader::ParameterReader(IParameters* parameters)
    : m_Parameters(parameters), m_Lookup(QueryAs<IParameterLookup>(parameters)) {}

SmartPtr<IVariant> ParameterReader::FindVariant(tagREFString name, NameLookupHint* hint) const {
  SmartPtr<IVariant> value;
  if (!m_Parameters || name.length <= 0) return value;
  int32_t index = -1;
  if (m_Lookup) {
    m_Lookup->FindFirstByName(name, hint, &index, value.Receive());
    return value;
  }
  SmartPtr<IString> key = SmartPtr<IString>::Adopt(ISCreate(name));
  if (key && SUCCEEDED(m_Parameters->get_Index(key.get(), &index))) m_Parameters->get_ItemVariant(index, value.Receive());
  return value;
}

bool ParameterReader::FindNumber(tagREFString name, double* value, NameLookupHint* hint) const {
  if (m_Lookup && m_Parameters && name.length > 0) {
    const HRESULT plain = m_Lookup->FindNumberByName(name, hint, value);
    if (plain != S_FALSE) return plain == S_OK;
  }
  SmartPtr<IVariant> variant = FindVariant(name, hint);
  if (!variant) return false;
  *value = 0;
  if (variant->IsObject()) {
    SmartPtr<IUnknown> object;
    variant->GetObject(object.Receive());
    if (SmartPtr<IExpression> expression = QueryAs<IExpression>(object.get())) {
      SmartPtr<IVariant> stored;
      if (SUCCEEDED(expression->get_Value(stored.Receive())) && stored) *value = stored->GetDouble();
      return true;
    }
  }
  *value = variant->GetDouble();
  return true;
}

SmartPtr<IString> ParameterReader::FindText(tagREFString name) const {
  SmartPtr<IString> text;
  SmartPtr<IVariant> variant = FindVariant(name, nullptr);
  if (variant && variant->IsString()) variant->GetString(text.Receive());
  return text;
}
