// "Variant": the framework's value object and its conversions.
#include "variant.h"

#include "creatable_string.h"
#include "variant_conversions.h"

void CVariant::Clear() {
  m_Kind = Kind::kEmpty;
  m_Real = 0;
  m_Held.Reset();
}

int32_t CVariant::GetType() {
  switch (m_Kind) {
    case Kind::kInteger: return kVariantInteger;
    case Kind::kReal: return kVariantReal;
    default: return kVariantNotNumber;
  }
}

double CVariant::GetDouble() {
  switch (m_Kind) {
    case Kind::kInteger: return m_Integer;
    case Kind::kReal: return m_Real;
    case Kind::kText: {
      const wchar_t* text = nullptr;
      int32_t length = 0;
      if (Text()->GetBuffer(&text, &length) < 0) return 0;
      return LeadingNumberOf(text, length);
    }
    default: return 0;
  }
}

int32_t CVariant::GetLong() {
  switch (m_Kind) {
    case Kind::kInteger: return m_Integer;
    case Kind::kReal:
    case Kind::kText: return TruncateToInt32(GetDouble());
    default: return 0;
  }
}

HRESULT CVariant::SetLong(int32_t value) {
  Clear();
  m_Kind = Kind::kInteger;
  m_Integer = value;
  return S_OK;
}

HRESULT CVariant::SetDouble(double value) {
  Clear();
  m_Kind = Kind::kReal;
  m_Real = value;
  return S_OK;
}

int32_t CVariant::IsObject() { return m_Kind == Kind::kObject ? 1 : 0; }

HRESULT CVariant::GetObject(IUnknown** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (m_Kind != Kind::kObject) return E_FAIL;
  return m_Held.CopyTo(object);
}

HRESULT CVariant::Assign(IUnknown* from) {
  return GuardedCall([&] {
    if (!from) {
      Clear();
      return S_OK;
    }
    if (SmartPtr<IVariant> other = QueryAs<IVariant>(from)) return CopyFrom(other.get());
    // A framework string becomes the value's text, the same string object (so
    // appending to it later shows in the value); any other object, also one that
    // merely shows a text such as an expression, is held as an object.
    if (SmartPtr<ICreatableString> text = QueryAs<ICreatableString>(from)) return SetString(text.get());
    SmartPtr<IUnknown> held(from);
    Clear();
    m_Kind = Kind::kObject;
    m_Held = std::move(held);
    return S_OK;
  });
}

HRESULT CVariant::CopyFrom(IVariant* other) {
  if (SameObject(other, static_cast<IVariant*>(this))) return S_OK;
  if (other->IsString()) {
    SmartPtr<IString> text;
    other->GetString(text.Receive());
    return TakeTextOf(text.get());
  }
  if (other->IsObject()) {
    SmartPtr<IUnknown> object;
    other->GetObject(object.Receive());
    Clear();
    m_Kind = Kind::kObject;
    m_Held = std::move(object);
    return S_OK;
  }
  switch (other->GetType()) {
    case kVariantInteger: return SetLong(other->GetLong());
    case kVariantNotNumber: Clear(); return S_OK;
    default: return SetDouble(other->GetDouble());
  }
}

// Holds a new string with a copy of the text, so that the two values do not share it.
HRESULT CVariant::TakeTextOf(IString* text) {
  tagREFString view{0, nullptr};
  if (text) text->GetBuffer(&view.text, &view.length);
  SmartPtr<CCreatableString> copy = NewObject<CCreatableString>();
  if (!copy) return E_OUTOFMEMORY;
  copy->SetText(view);
  Clear();
  m_Kind = Kind::kText;
  m_Held = SmartPtr<IUnknown>(static_cast<IString*>(static_cast<ICreatableString*>(copy.get())));
  return S_OK;
}

int32_t CVariant::IsString() { return m_Kind == Kind::kText ? 1 : 0; }

HRESULT CVariant::GetString(IString** text) {
  if (!text) return E_POINTER;
  *text = nullptr;
  if (m_Kind != Kind::kText) return E_FAIL;
  *text = Text();
  (*text)->AddRef();
  return S_OK;
}

HRESULT CVariant::SetString(IString* text) {
  SmartPtr<IUnknown> held(text);
  Clear();
  if (!held) return S_OK;
  m_Kind = Kind::kText;
  m_Held = std::move(held);
  return S_OK;
}
