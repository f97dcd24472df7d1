// "ParametersCreator": a stateless service that fills a target parameter set
// from text (Create), from a range of another collection (SubSet), from the
// items whose names match a pattern (Copy), through a name table and a
// template (Translate), and updates a collection's items by name (Update).
//
// The creator never empties the target: it appends items or overwrites those
// of the same name. Individual failures of the collections it reads are not
// reported; an item that cannot be read is passed on with null parts.
#pragma once

#include "runtime/object.h"

class CParametersCreator : public CObjectImpl<CParametersCreator, IParametersCreator> {
 public:
  static constexpr wchar_t kObjectName[] = L"ParametersCreator";
  static constexpr InterfaceEntry<CParametersCreator> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CParametersCreator, IObjectInfo>},
      {&IID_IParametersCreator, InterfaceOf<CParametersCreator, IParametersCreator>},
  };

  // The class's own operations, in its slot order (ParametersCreatorObject): each
  // declaration, interface overrides included, takes the next slot of the table
  // the class answers for IUnknown, so the order of these lines is that table's.
  HRESULT SubSet(INamedCollection* source, int32_t first, int32_t count, IParametersCreatable* target) override;
  HRESULT Copy(INamedCollection* source, IString* pattern, int32_t flags, IParametersCreatable* target) override;
  // Does nothing: 0, target unchanged.
  virtual HRESULT Combine(INamedCollection* first, INamedCollection* second, IParametersCreatable* target);
  HRESULT Translate(IParameters* source, IParameters* names, IParameters* templ,
                    IParametersCreatable* target) override;
  HRESULT Create(IString* text, IString* separators, IParametersCreatable* target) override;
  // Not implemented: 0x80004001, *found untouched.
  virtual HRESULT Find(INamedCollection* source, IString* condition, int32_t flags, IParametersCreatable** found);
  HRESULT Update(INamedCollection* target, IUnknown* source, int16_t mode) override;

  // Declared after the documented slots, so its entries come last in the table.
};
