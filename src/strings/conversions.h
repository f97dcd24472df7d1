// Conversions between text, numbers, framework strings and variants.
//
// The module owns no string or value storage: text lives in framework string
// objects and values in framework variants, both made through
// CREFString::CreateString / CreateVariant. Every function that makes an
// object returns it with one reference owned by the caller (null only for a
// null variant argument) and never takes ownership of its argument.
//
// The number formatting here (ISCreate of a variant) decides how every number
// the module writes to a file looks; the number parsers never fail (unreadable
// text gives 0 or the value read so far).
#pragma once

#include "runtime/smart_ptr.h"
#include "strings/number_text.h"
#include "strings/ref_string.h"

// A string from a terminated wide text (null gives an empty string).
IString* ISCreate(const wchar_t* text);
// A string holding a copy of the view's characters.
IString* ISCreate(const tagREFString& text);
// A string from `length` bytes of UTF-8 (decoded leniently, embedded zeros kept).
IString* ISCreate(const char* text, int32_t length);
// The decimal text of `value`.
IString* ISCreate(int32_t value);
// "#RRGGBB": at least six upper-case hexadecimal digits after "#".
IString* ISCreateHex(uint32_t value);
// The text of any variant: its own string, an object's class name, or the number
// formatted with automatic decimals. Null for a null variant.
IString* ISCreate(IVariant* value);
// The text of any variant exactly as ISCreate(IVariant*) gives it, without
// making a string object: a number is formatted into this object's own
// buffer, a text is a view of the variant's string and a class name a view of
// the object's name, both held while this lives. Empty for a null variant.
// For writers that pass a value's text on and drop it.
class VariantText {
 public:
  explicit VariantText(IVariant* value);
  VariantText(const VariantText&) = delete;
  VariantText& operator=(const VariantText&) = delete;
  const CREFString& view() const { return m_View; }

 private:
  NumberText m_Number;
  SmartPtr<IString> m_String;
  SmartPtr<IUnknown> m_Object;
  CREFString m_View;
};
// The text of a variant with `precision` decimals (-1 automatic), or a special
// form: -16 "#RRGGBB", other values below -1 eight binary digits of one byte.
IString* ISCreate(IVariant* value, int16_t precision);

// A variant holding `text` itself.
IVariant* IVCreate(IString* text);
// A long, double or string variant by the look of the text. Trims the caller's
// view in place first.
IVariant* IVCreateConvert(CREFString& text);

// A signed integer from text in `base`: prefix "-", "+" or "#" (base 16); wraps.
int32_t _IS2Integer(CREFString text, int base);
// A double from text: sign, digits and a fraction; a "#" prefix reads hexadecimal.
// Exponents are not read.
double _IS2Double(CREFString text);

// Position of `pattern` in `view`: the index of the match's last character, or,
// with `advance`, the count of characters the view was moved past the match.
// E_FAIL when not found.
HRESULT XMLFindStr(tagREFString& view, tagREFString pattern, int16_t advance, int16_t caseSensitive);
