// Condition search over a parameter set.
#include "parameters/parameter_find.h"

#include <cwctype>
#include <string_view>

#include "parameters/persist_text.h"

namespace {

using Text = std::wstring_view;

constexpr Text kOperators = L"<>!=";
constexpr Text kWordEnds = L"\t\f\v\n\r !\"#$%&'()*+,-./:;<=>?@)[\\]^_`{|}~";
constexpr Text kTolerance = L"+-";
constexpr size_t kLongestNumberText = 9;

Text ViewText(const tagREFString& view) { return view.length > 0 ? Text(view.text, view.length) : Text(); }

// Leading white space, control characters and the bytes 0xEF and 0xFE go;
// trailing characters below 0x21 and 0x7F go.
Text TrimConditionPart(Text part) {
  while (!part.empty()) {
    const wchar_t c = part.front();
    if (!std::iswspace(static_cast<wint_t>(c)) && !std::iswcntrl(static_cast<wint_t>(c)) && c != 0xEF && c != 0xFE)
      break;
    part.remove_prefix(1);
  }
  while (!part.empty() && (static_cast<uint32_t>(part.back()) < 0x21 || part.back() == 0x7F)) part.remove_suffix(1);
  return part;
}

bool HoldsWordAt(Text text, Text word) {
  for (size_t at = text.find(word); at != Text::npos; at = text.find(word, at + 1)) {
    const size_t after = at + word.size();
    if (after == text.size() || kWordEnds.find(text[after]) != Text::npos) return true;
  }
  return false;
}

// The parameter's number: a numeric variant, or text of an optional "-" and
// digits and "." only, at most 9 characters.
bool NumberOf(IVariant* value, Text text, double* number) {
  if (value && value->GetType() != kVariantNotNumber) {
    *number = value->GetDouble();
    return true;
  }
  if (text.empty() || text.size() > kLongestNumberText) return false;
  const Text digits = text.front() == L'-' ? text.substr(1) : text;
  if (digits.empty() || digits.find_first_not_of(L"0123456789.") != Text::npos) return false;
  *number = _IS2Double(CREFString(text.data(), static_cast<int32_t>(text.size())));
  return true;
}

double NumberIn(Text text) { return _IS2Double(CREFString(text.data(), static_cast<int32_t>(text.size()))); }

bool CompareNumbers(double p, wchar_t op, bool orEquals, Text valueText) {
  switch (op) {
    case L'>': return orEquals ? p >= NumberIn(valueText) : p > NumberIn(valueText);
    case L'<': return orEquals ? p <= NumberIn(valueText) : p < NumberIn(valueText);
    case L'!': return p != NumberIn(valueText);
    default: break;
  }
  const size_t plusMinus = valueText.find(kTolerance);
  if (plusMinus == Text::npos) return p == NumberIn(valueText);
  const double v = NumberIn(valueText.substr(0, plusMinus));
  const Text toleranceText = valueText.substr(plusMinus + kTolerance.size());
  double t = NumberIn(toleranceText);
  if (toleranceText.find(L'%') != Text::npos) t = v != 0 ? v * t / 100 : t / 100;
  return v - t <= p && p <= v + t;
}

HRESULT PlainTextSearch(IParameters* set, Text condition) {
  int32_t count = 0;
  set->get_Count(&count);
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IVariant> value;
    set->get_ItemVariant(i, value.Receive());
    SmartPtr<IString> text = ValueText(value.get());
    if (ViewText(TextView(text.get())).find(condition) != Text::npos) return S_OK;
  }
  return E_FAIL;
}

}  // namespace

HRESULT ParamsFind(IParameters* set, tagREFString conditionView) {
  if (!set) return E_POINTER;
  const Text condition = ViewText(conditionView);
  size_t at = Text::npos;
  for (wchar_t op : kOperators) {
    at = condition.find(op);
    if (at != Text::npos) break;
  }
  // Without "<", ">" or an "=" after the first character the whole text is searched for.
  const bool comparison = condition.find_first_of(L"<>") != Text::npos || condition.find(L'=', 1) != Text::npos;
  if (at == Text::npos || !comparison) return PlainTextSearch(set, condition);

  const wchar_t op = condition[at];
  Text valuePart = condition.substr(at + 1);
  const bool orEquals = !valuePart.empty() && valuePart.front() == L'=';
  if (orEquals) valuePart.remove_prefix(1);
  const Text name = TrimConditionPart(condition.substr(0, at));
  const Text valueText = TrimConditionPart(valuePart);
  if (name.empty() || valueText.empty()) return E_FAIL;

  SmartPtr<IString> key = SmartPtr<IString>::Adopt(ISCreate(CREFString(name.data(), static_cast<int32_t>(name.size()))));
  int32_t index = -1;
  if (FAILED(set->get_Index(key.get(), &index)) || index < 0) return E_FAIL;
  SmartPtr<IVariant> value;
  if (FAILED(set->get_ItemVariant(index, value.Receive()))) return E_FAIL;
  SmartPtr<IString> parameterString = ValueText(value.get());
  const Text parameterText = ViewText(TextView(parameterString.get()));
  const bool negate = op == L'!';

  const wchar_t quote = valueText.front();
  if (valueText.size() >= 2 && (quote == L'\'' || quote == L'"') && valueText.back() == quote) {
    const bool holds = HoldsWordAt(parameterText, valueText.substr(1, valueText.size() - 2));
    return holds != negate ? S_OK : E_FAIL;
  }
  double number = 0;
  if (!NumberOf(value.get(), parameterText, &number)) {
    const bool contains = parameterText.find(valueText) != Text::npos;
    return contains != negate ? S_OK : E_FAIL;
  }
  return CompareNumbers(number, op, orEquals, valueText) ? S_OK : E_FAIL;
}
