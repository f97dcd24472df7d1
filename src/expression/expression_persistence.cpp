// Saving and loading an expression's text and value.
#include "expression/expression_persistence.h"

#include <charconv>
#include <cstdio>
#include <string>

#include "expression/formula_text.h"
#include "strings/conversions.h"

namespace {

const tagREFString kFormulaName{7, L"Formula"};
const tagREFString kValueName{5, L"Value"};
constexpr wchar_t kQuote = L'"';

// The XML text of a number or text value; false for an empty or object value.
bool ValueText(IVariant* value, std::wstring* text) {
  if (!value || value->IsObject()) return false;
  if (value->IsString()) {
    SmartPtr<IString> string;
    value->GetString(string.Receive());
    const CREFString view = ViewOfString(string.get());
    text->assign(1, kQuote).append(view.text ? view.text : L"", static_cast<size_t>(view.length)).push_back(kQuote);
    return true;
  }
  char digits[32];
  std::to_chars_result written{};
  switch (value->GetType()) {
    case kVariantInteger: written = std::to_chars(digits, digits + sizeof(digits), value->GetLong()); break;
    case kVariantReal: written = std::to_chars(digits, digits + sizeof(digits), value->GetDouble()); break;
    default: return false;
  }
  text->assign(digits, written.ptr);
  return true;
}

// A variant from the XML text written by ValueText.
SmartPtr<IVariant> ValueFromText(CREFString text) {
  SmartPtr<IVariant> value = SmartPtr<IVariant>::Adopt(CREFString::CreateVariant());
  if (!value) return value;
  if (text.length >= 2 && text.text[0] == kQuote && text.text[text.length - 1] == kQuote) {
    SmartPtr<IString> string = SmartPtr<IString>::Adopt(ISCreate(tagREFString{text.length - 2, text.text + 1}));
    value->SetString(string.get());
    return value;
  }
  std::string narrow;
  for (int32_t i = 0; i < text.length; ++i)
    narrow.push_back(text.text[i] > 0 && text.text[i] < 0x80 ? static_cast<char>(text.text[i]) : '?');
  const char* end = narrow.data() + narrow.size();
  int32_t integer = 0;
  if (std::from_chars(narrow.data(), end, integer).ptr == end && !narrow.empty()) {
    value->SetLong(integer);
    return value;
  }
  double real = 0;
  std::from_chars(narrow.data(), end, real);
  value->SetDouble(real);
  return value;
}

HRESULT SaveXML(const ExpressionState& state, IXMLStream* xml) {
  if (state.m_Text) {
    CREFString text = ViewOfString(state.m_Text.get());
    if (!text.text) text = CREFString(L"", 0);
    const HRESULT written = xml->WriteElement(kFormulaName, 0, text, 0);
    if (FAILED(written)) return written;
  }
  std::wstring text;
  if (!ValueText(state.m_Value.get(), &text)) return S_OK;
  return xml->WriteElement(kValueName, 0, {static_cast<int32_t>(text.size()), text.c_str()}, 0);
}

HRESULT LoadXML(ExpressionState& state, IXMLStream* xml) {
  SmartPtr<IString> formula, value;
  xml->OpenChild(kFormulaName, formula.Receive(), nullptr, 0);
  SmartPtr<IVariant> loaded;
  if (SUCCEEDED(xml->OpenChild(kValueName, value.Receive(), nullptr, 0)) && value) {
    loaded = ValueFromText(ViewOfString(value.get()));
    if (!loaded) return CO_E_CREATEFAILED;
  }
  state.m_Text = formula;
  state.SetValue(loaded.get());
  return S_OK;
}

// An entry that is absent from the state is removed, so that saving over an older save leaves no stale entry.
HRESULT SaveFolder(const ExpressionState& state, IFolderStream* folder) {
  if (!state.m_Text) {
    folder->RemoveEntry(kFormulaName);
  } else if (const HRESULT written = folder->WriteString(kFormulaName, state.m_Text.get()); FAILED(written)) {
    return written;
  }
  if (!state.m_Value) {
    folder->RemoveEntry(kValueName);
    return S_OK;
  }
  return folder->WriteValue(kValueName, state.m_Value.get());
}

HRESULT LoadFolder(ExpressionState& state, IFolderStream* folder) {
  SmartPtr<IString> formula;
  SmartPtr<IVariant> value;
  folder->ReadString(kFormulaName, formula.Receive());
  folder->ReadValue(kValueName, value.Receive());
  state.m_Text = formula;
  state.SetValue(value.get());
  return S_OK;
}

}  // namespace

HRESULT SaveExpressionState(const ExpressionState& state, IDataStream* stream) {
  if (!stream) return E_POINTER;
  if (SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream)) return SaveXML(state, xml.get());
  if (SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream)) return SaveFolder(state, folder.get());
  return E_INVALIDARG;
}

HRESULT LoadExpressionState(ExpressionState& state, IDataStream* stream) {
  if (!stream) return E_POINTER;
  if (SmartPtr<IXMLStream> xml = QueryAs<IXMLStream>(stream)) return LoadXML(state, xml.get());
  if (SmartPtr<IFolderStream> folder = QueryAs<IFolderStream>(stream)) return LoadFolder(state, folder.get());
  return E_INVALIDARG;
}
