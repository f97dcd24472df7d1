// "ExpressionBuilder": literal text with formatted formula pieces.
#include "expression/expression_builder.h"

#include <cmath>

#include "expression/formula_scanner.h"
#include "expression/formula_text.h"
#include "strings/conversions.h"

namespace {

constexpr int kMaxFormatDigits = 2;  // width and precision below 100 keep every piece short
constexpr unsigned kPieceBufferLength = 256;

// A piece's format split around its one conversion; `valid` false when the
// format is not one conversion of the accepted form.
struct PieceFormat {
  bool valid = false;
  bool integer = false;
  std::wstring before, conversion, after;
};

bool IsOneOf(wchar_t c, const wchar_t* set) { return c != 0 && wcschr(set, c) != nullptr; }

// Copies literal text up to the next "%" that is not "%%"; returns its index or the length.
size_t CopyLiteral(const std::wstring& format, size_t i, std::wstring* out) {
  while (i < format.size()) {
    if (format[i] != L'%') {
      out->push_back(format[i++]);
    } else if (i + 1 < format.size() && format[i + 1] == L'%') {
      out->push_back(L'%');
      i += 2;
    } else {
      break;
    }
  }
  return i;
}

size_t SkipDigits(const std::wstring& format, size_t i, bool* tooLong) {
  const size_t start = i;
  while (i < format.size() && format[i] >= L'0' && format[i] <= L'9') ++i;
  if (i - start > kMaxFormatDigits) *tooLong = true;
  return i;
}

PieceFormat ParseFormat(const std::wstring& format) {
  PieceFormat result;
  size_t i = CopyLiteral(format, 0, &result.before);
  if (i >= format.size()) return result;
  const size_t start = i++;
  while (i < format.size() && IsOneOf(format[i], L"-+ #0")) ++i;
  bool tooLong = false;
  i = SkipDigits(format, i, &tooLong);
  if (i < format.size() && format[i] == L'.') i = SkipDigits(format, i + 1, &tooLong);
  if (tooLong || i >= format.size()) return result;
  const wchar_t type = format[i++];
  if (!IsOneOf(type, L"fFeEgGdiuxXo")) return result;
  result.integer = IsOneOf(type, L"diuxXo");
  result.conversion = format.substr(start, i - start);
  if (CopyLiteral(format, i, &result.after) != format.size()) return result;  // a second conversion
  result.valid = true;
  return result;
}

int32_t AsInt32(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 2147483647.0) return INT32_MAX;
  if (value <= -2147483648.0) return INT32_MIN;
  return static_cast<int32_t>(value);
}

void AppendAutomatic(double number, std::wstring* out) {
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  if (!value) return;
  value->SetDouble(number);
  SmartPtr<IString> text = SmartPtr<IString>::Adopt(ISCreate(value.get()));
  const CREFString view = ViewOfString(text.get());
  out->append(view.text ? view.text : L"", static_cast<size_t>(view.length));
}

void AppendFormatted(double number, const std::wstring& format, std::wstring* out) {
  const PieceFormat parsed = ParseFormat(format);
  if (!parsed.valid) {
    AppendAutomatic(number, out);
    return;
  }
  wchar_t buffer[kPieceBufferLength];
  const int count = parsed.integer ? _swprintf(buffer, kPieceBufferLength, parsed.conversion.c_str(), AsInt32(number))
                                   : _swprintf(buffer, kPieceBufferLength, parsed.conversion.c_str(), number);
  out->append(parsed.before).append(buffer, static_cast<size_t>(count)).append(parsed.after);
}

// Evaluates and appends the piece between braces (without them).
void AppendPiece(CREFString piece, const ParameterReader& parameters, std::wstring* out) {
  CREFString formula = piece;
  std::wstring format;
  for (int32_t i = piece.length - 1; i >= 0; --i) {
    if (piece.text[i] != L':') continue;
    formula.length = i;
    format.assign(piece.text + i + 1, static_cast<size_t>(piece.length - i - 1));
    break;
  }
  const double number = EvaluateFormulaText(formula, parameters);
  if (format.empty()) {
    AppendAutomatic(number, out);
  } else {
    AppendFormatted(number, format, out);
  }
}

}  // namespace

std::wstring BuildExpressionText(tagREFString text, const ParameterReader& parameters) {
  std::wstring built;
  const int32_t length = text.text ? text.length : 0;
  for (int32_t i = 0; i < length;) {
    const wchar_t c = text.text[i];
    const bool doubled = i + 1 < length && text.text[i + 1] == c;
    if ((c == L'{' || c == L'}') && doubled) {
      built.push_back(c);
      i += 2;
      continue;
    }
    int32_t close = i + 1;
    while (c == L'{' && close < length && text.text[close] != L'}') ++close;
    if (c != L'{' || close >= length) {
      built.push_back(c);
      ++i;
      continue;
    }
    AppendPiece(CREFString(text.text + i + 1, close - i - 1), parameters, &built);
    i = close + 1;
  }
  return built;
}

HRESULT CExpressionBuilder::get_Expression(IString** text) { return m_State.GetText(text); }

HRESULT CExpressionBuilder::put_Expression(tagREFString text) { return m_State.SetText(text); }

HRESULT CExpressionBuilder::Evaluate(IParameters* parameters) {
  const SmartPtr<IString> text = m_State.m_Text;  // a callee may replace the text meanwhile
  const ParameterReader reader(parameters);
  const std::wstring built = BuildExpressionText(ViewOfString(text.get()), reader);
  SmartPtr<IString> string = SmartPtr<IString>::Adopt(ISCreate(tagREFString{static_cast<int32_t>(built.size()), built.c_str()}));
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  if (!string || !value) return CO_E_CREATEFAILED;
  value->SetString(string.get());
  m_State.SetValue(value.get());
  return S_OK;
}

HRESULT CExpressionBuilder::get_Value(IVariant** value) { return m_State.GetValue(value); }

HRESULT CExpressionBuilder::put_Value(IVariant* value) {
  m_State.SetValue(value);
  return S_OK;
}
