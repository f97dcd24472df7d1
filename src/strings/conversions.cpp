// Conversions between text, numbers, framework strings and variants.
#include "strings/conversions.h"

#include <cctype>
#include <cwchar>
#include <cwctype>
#include <limits>

#include "runtime/smart_ptr.h"

namespace {

constexpr int16_t kPrecisionAutomatic = -1;
constexpr int16_t kPrecisionHex = -16;
constexpr uint64_t kMaxFractionDenominator = 999999999999999999ULL;  // at most 18 fraction digits
constexpr int32_t kLongIntegerTextLength = 10;  // integer texts this long stay texts

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

IString* StringOfView(tagREFString text) {
  ICreatableString* string = CREFString::CreateString();
  if (string) string->SetText(text);
  return string;
}

IString* StringOfBuffer(const wchar_t* buffer, int count) { return StringOfView({count, buffer}); }

// The view of a string's own text; empty when there is none.
CREFString ViewOf(IString* string) {
  CREFString view;
  if (!string || FAILED(string->GetBuffer(&view.text, &view.length)) || !view.text || view.length < 0)
    return CREFString();
  return view;
}

enum class NumberKind { kNone, kInteger, kDecimal };

// A plain number is an optional leading "-", then digits with at most one ".",
// optionally ended by white space (what follows is not looked at). Integers
// whose whole text has ten or more characters stay texts.
NumberKind PlainNumberKind(tagREFString text) {
  bool digits = false, dot = false;
  int32_t i = (text.length > 0 && text.text[0] == L'-') ? 1 : 0;
  for (; i < text.length; ++i) {
    const wchar_t c = text.text[i];
    if (IsDigit(c)) {
      digits = true;
    } else if (c == L'.' && !dot) {
      dot = true;
    } else if (std::iswspace(static_cast<wint_t>(c))) {
      break;
    } else {
      return NumberKind::kNone;
    }
  }
  if (!digits) return NumberKind::kNone;
  if (dot) return NumberKind::kDecimal;
  return text.length < kLongIntegerTextLength ? NumberKind::kInteger : NumberKind::kNone;
}

// A number variant's text with `precision` decimals (-1 automatic), read as `kind`.
IString* NumberVariantText(IVariant* value, int32_t kind, int16_t precision) {
  NumberText text;
  if ((precision == 0 || precision == kPrecisionAutomatic) && kind == kVariantInteger) {
    text.SetInteger(value->GetLong());
  } else if (precision >= 0) {
    text.SetFixedPoint(value->GetDouble(), precision);
  } else {
    text.SetAutomatic(value->GetDouble());
  }
  return StringOfView(text.view());
}

// Eight "0"/"1" characters of one byte of `value`, most significant bit first.
IString* BitPatternText(int32_t value, int16_t precision) {
  int shift = 0;
  switch (precision) {
    case -42:
    case -24: shift = 24; break;
    case -32:
    case -23: shift = 16; break;
    case -22: shift = 8; break;
    default: shift = 0; break;
  }
  const uint32_t byte = (static_cast<uint32_t>(value) >> shift) & 0xFFu;
  wchar_t digits[8];
  for (int bit = 0; bit < 8; ++bit) digits[bit] = (byte & (0x80u >> bit)) ? L'1' : L'0';
  return StringOfBuffer(digits, 8);
}

// Decodes one character starting at bytes[i] and moves i past its bytes.
// Bad bytes are not rejected: a stray follower or a lead byte at the very end
// gives its low six bits, and followers are taken without checking them.
wchar_t DecodeUtf8Character(const unsigned char* bytes, int32_t length, int32_t& i) {
  const unsigned lead = bytes[i++];
  if (lead < 0x80) return static_cast<wchar_t>(lead);
  if ((lead & 0xC0) != 0xC0 || i >= length) return static_cast<wchar_t>(lead & 0x3F);
  unsigned marker = 0x40;  // the first zero bit below the leading ones ends the lead's marker
  while (marker && (lead & marker)) marker >>= 1;
  uint32_t value = lead & (marker ? marker - 1 : 0);
  for (unsigned follows = 0x40; (lead & follows) && i < length; follows >>= 1)
    value = (value << 6) | (bytes[i++] & 0x3Fu);
  return static_cast<wchar_t>(value);
}

// Lower-casing of XMLFindStr: the C library's, for the 8-bit codes only.
// The code is taken as a 32-bit value so the test reads the same where wchar_t is unsigned (ARM).
wchar_t FoldForFind(wchar_t c) {
  const int32_t code = static_cast<int32_t>(c);
  return (code >= 0 && code <= 255) ? static_cast<wchar_t>(std::tolower(code)) : c;
}

}  // namespace

IString* ISCreate(const wchar_t* text) {
  if (!text) return StringOfView({0, nullptr});
  return StringOfView({static_cast<int32_t>(std::wcslen(text)), text});
}

IString* ISCreate(const tagREFString& text) { return StringOfView(text); }

IString* ISCreate(const char* text, int32_t length) {
  ICreatableString* string = CREFString::CreateString();
  if (!string || !text || length <= 0) return string;
  // Characters are appended in chunks: the same text as one at a time, fewer calls.
  constexpr int32_t kChunkLength = 256;
  wchar_t chunk[kChunkLength];
  int32_t filled = 0;
  const auto* bytes = reinterpret_cast<const unsigned char*>(text);
  for (int32_t i = 0; i < length;) {
    chunk[filled++] = DecodeUtf8Character(bytes, length, i);
    if (filled == kChunkLength) {
      string->Append({filled, chunk});
      filled = 0;
    }
  }
  if (filled > 0) string->Append({filled, chunk});
  return string;
}

IString* ISCreate(int32_t value) {
  NumberText text;
  text.SetInteger(value);
  return StringOfView(text.view());
}

IString* ISCreateHex(uint32_t value) {
  NumberText text;
  text.SetHex(value);
  return StringOfView(text.view());
}

VariantText::VariantText(IVariant* value) {
  if (!value) return;
  if (value->IsString()) {
    value->GetString(m_String.Receive());
    m_View = ViewOf(m_String.get());
    return;
  }
  const int32_t kind = value->GetType();
  if (kind == kVariantInteger) {
    m_Number.SetInteger(value->GetLong());
    m_View = m_Number.view();
    return;
  }
  if (kind != kVariantNotNumber) {
    m_Number.SetAutomatic(value->GetDouble());
    m_View = m_Number.view();
    return;
  }
  // An object (or nothing): the object's class name, else an empty text.
  if (value->IsObject()) value->GetObject(m_Object.Receive());
  tagREFString name{0, nullptr};
  if (SmartPtr<IObjectInfo> info = QueryAs<IObjectInfo>(m_Object.get())) {
    if (SUCCEEDED(info->GetName(0, &name)) && name.text && name.length > 0) m_View = CREFString(name);
  }
}

IString* ISCreate(IVariant* value) {
  if (!value) return nullptr;
  if (value->IsString()) {
    // The variant's own string itself, not a copy.
    SmartPtr<IString> text;
    value->GetString(text.Receive());
    return text ? text.Detach() : StringOfView({0, nullptr});
  }
  const VariantText text(value);
  return StringOfView(text.view());
}

IString* ISCreate(IVariant* value, int16_t precision) {
  if (!value) return nullptr;
  if (precision == kPrecisionHex) return ISCreateHex(static_cast<uint32_t>(value->GetLong()));
  if (precision < kPrecisionAutomatic) return BitPatternText(value->GetLong(), precision);

  int32_t kind = value->GetType();
  if (value->IsString()) {
    // A text that is a plain number is formatted like a number of its kind;
    // any other text is handed back as it is.
    SmartPtr<IString> text;
    value->GetString(text.Receive());
    switch (PlainNumberKind(ViewOf(text.get()))) {
      case NumberKind::kInteger: kind = kVariantInteger; break;
      case NumberKind::kDecimal: kind = kVariantReal; break;
      case NumberKind::kNone: return text ? text.Detach() : StringOfView({0, nullptr});
    }
  }
  return NumberVariantText(value, kind, precision);
}

IVariant* IVCreate(IString* text) {
  IVariant* variant = CREFString::CreateVariant();
  if (variant) variant->SetString(text);
  return variant;
}

IVariant* IVCreateConvert(CREFString& text) {
  text.TrimLeft(false);
  IVariant* variant = CREFString::CreateVariant();
  if (!variant) return nullptr;
  switch (PlainNumberKind(text)) {
    case NumberKind::kDecimal: variant->SetDouble(_IS2Double(text)); break;
    case NumberKind::kInteger: variant->SetLong(_IS2Integer(text, 10)); break;
    case NumberKind::kNone: {
      // No boolean form: "true" and "false" stay texts.
      SmartPtr<IString> copy = SmartPtr<IString>::Adopt(ISCreate(text));
      variant->SetString(copy.get());
      break;
    }
  }
  return variant;
}

int32_t _IS2Integer(CREFString text, int base) {
  if (text.IsEmpty()) return 0;
  int32_t i = 1;
  bool negative = false;
  switch (text.text[0]) {
    case L'-': negative = true; break;
    case L'+': break;
    case L'#': base = 16; break;
    default: i = 0; break;
  }
  // Letters count only in bases 11 to 16, and then up to F whatever the base.
  const bool letters = base >= 11 && base <= 16;
  uint32_t value = 0;
  for (; i < text.length; ++i) {
    const wchar_t c = text.text[i];
    uint32_t digit = 0;
    if (IsDigit(c)) {
      digit = static_cast<uint32_t>(c - L'0');
    } else if (letters && c >= L'A' && c <= L'F') {
      digit = static_cast<uint32_t>(c - L'A' + 10);
    } else if (letters && c >= L'a' && c <= L'f') {
      digit = static_cast<uint32_t>(c - L'a' + 10);
    } else {
      break;
    }
    value = value * static_cast<uint32_t>(base) + digit;  // wraps, as 32-bit arithmetic does
  }
  return static_cast<int32_t>(negative ? 0u - value : value);
}

double _IS2Double(CREFString text) {
  if (text.IsEmpty()) return 0.0;
  if (text.text[0] == L'#') return _IS2Integer(text, 10);
  int32_t i = 0;
  double sign = 1.0;
  if (text.text[0] == L'-' || text.text[0] == L'+') {
    if (text.text[0] == L'-') sign = -1.0;
    ++i;
  }
  // The integer part is exact in 64 bits; longer digit runs go on in floating point.
  uint64_t whole = 0;
  double beyond = 0;
  bool fits = true;
  for (; i < text.length && IsDigit(text.text[i]); ++i) {
    const unsigned digit = static_cast<unsigned>(text.text[i] - L'0');
    if (fits && whole <= (std::numeric_limits<uint64_t>::max() - digit) / 10) {
      whole = whole * 10 + digit;
      continue;
    }
    if (fits) beyond = static_cast<double>(whole);
    fits = false;
    beyond = beyond * 10 + digit;
  }
  uint64_t numerator = 0, denominator = 1;
  if (i < text.length && text.text[i] == L'.') {
    // Exponents are not read: '1.5e3' is 1.5.
    for (++i; i < text.length && IsDigit(text.text[i]) && denominator <= kMaxFractionDenominator; ++i) {
      numerator = numerator * 10 + static_cast<uint64_t>(text.text[i] - L'0');
      denominator *= 10;
    }
  }
  const double integerPart = fits ? static_cast<double>(whole) : beyond;
  return sign * (integerPart + static_cast<double>(numerator) / static_cast<double>(denominator));
}

HRESULT XMLFindStr(tagREFString& view, tagREFString pattern, int16_t advance, int16_t caseSensitive) {
  if (view.length <= 0 || pattern.length <= 0) return E_FAIL;
  const auto fold = [caseSensitive](wchar_t c) { return caseSensitive ? c : FoldForFind(c); };
  int32_t matched = 0;
  // One character past the view is looked at: the terminating zero of terminated text.
  for (int32_t i = 0; i <= view.length; ++i) {
    const wchar_t c = i < view.length ? view.text[i] : L'\0';
    if (fold(c) == fold(pattern.text[matched])) {
      if (++matched < pattern.length) continue;
      if (!advance) return i;
      const int32_t consumed = i + 1 < view.length ? i + 1 : view.length;
      view.text += consumed;
      view.length -= consumed;
      return consumed;
    }
    if (matched > 0) {
      // Restart the pattern at this same character: only one step back, so a
      // match overlapping the partial one is missed ('aab' in 'aaab'). Intended.
      matched = 0;
      --i;
    }
  }
  return E_FAIL;
}
