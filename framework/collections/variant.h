// "Variant": a value that is empty, an integer, a real number, a text (a
// held string object) or any other object.
#pragma once

#include "runtime/object.h"

class CVariant : public CObjectImpl<CVariant, IVariant> {
 public:
  static constexpr wchar_t kObjectName[] = L"Variant";
  static constexpr InterfaceEntry<CVariant> kInterfaces[] = {
      {&IID_IObjectInfo, InterfaceOf<CVariant, IObjectInfo>},
      {&IID_IVariant, InterfaceOf<CVariant, IVariant>},
  };

  int32_t GetType() override;
  double GetDouble() override;
  int32_t GetLong() override;
  HRESULT SetLong(int32_t value) override;
  HRESULT SetDouble(double value) override;
  int32_t IsObject() override;
  HRESULT GetObject(IUnknown** object) override;
  HRESULT Assign(IUnknown* from) override;
  int32_t IsString() override;
  HRESULT GetString(IString** text) override;
  HRESULT SetString(IString* text) override;

 private:
  enum class Kind { kEmpty, kInteger, kReal, kText, kObject };

  void Clear();
  HRESULT CopyFrom(IVariant* other);
  HRESULT TakeTextOf(IString* text);

  // The held string of a text value (m_Held holds the IString pointer itself).
  IString* Text() const { return static_cast<IString*>(m_Held.get()); }

  // A tagged union: the number of a numeric kind, the string or object of the
  // others in the one held pointer (56 bytes, malloc's 64-byte chunk).
  Kind m_Kind = Kind::kEmpty;
  union {
    int32_t m_Integer;
    double m_Real = 0;
  };
  SmartPtr<IUnknown> m_Held;
};
