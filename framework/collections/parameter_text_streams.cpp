// CSV and INI text of parameter sets.
#include "parameter_text_streams.h"

#include <charconv>

#include "ini_document.h"
#include "value_objects.h"

namespace {

// "Item<position>", the name of an unnamed parameter (1-based).
std::wstring ItemName(int32_t position) { return L"Item" + std::to_wstring(position); }

// The value as INI text; false for a value that is an object.
bool TextOfValue(IVariant* value, std::wstring* text) {
  if (value->IsObject()) return false;
  if (value->IsString()) {
    SmartPtr<IString> held;
    value->GetString(held.Receive());
    text->assign(ViewOf(held.get()));
    return true;
  }
  switch (value->GetType()) {
    case kVariantInteger: *text = std::to_wstring(value->GetLong()); return true;
    case kVariantReal: {
      char digits[32];
      const std::to_chars_result written = std::to_chars(digits, digits + sizeof(digits), value->GetDouble());
      text->assign(digits, written.ptr);
      return true;
    }
    default: text->clear(); return true;
  }
}

std::wstring_view NextLine(std::wstring_view* text) {
  const size_t end = text->find(L'\n');
  std::wstring_view line = text->substr(0, end);
  text->remove_prefix(end == std::wstring_view::npos ? text->size() : end + 1);
  if (!line.empty() && line.back() == L'\r') line.remove_suffix(1);
  return line;
}

}  // namespace

HRESULT SetParameterText(IParameters* set, std::wstring_view name, std::wstring_view value) {
  SmartPtr<IString> key = NewString(name);
  SmartPtr<IVariant> text = NewTextVariant(value);
  if (!key || !text) return E_OUTOFMEMORY;
  return set->Set(key.get(), text.get(), nullptr, 0, 0);
}

HRESULT CCSVStream::WriteSet(IParameters* set, int32_t flags) {
  return set->Params_SaveCSV(static_cast<ICSVStream*>(this), flags);
}

HRESULT CCSVStream::ReadSet(std::wstring_view text, IParameters* set) {
  int32_t initialCount = 0;
  set->get_Count(&initialCount);
  int32_t position = 0;
  while (!text.empty()) {
    std::wstring_view line = NextLine(&text);
    if (line.empty()) continue;
    for (;;) {
      const size_t comma = line.find(L',');
      const std::wstring_view field = line.substr(0, comma);
      const size_t equals = field.find(L'=');
      HRESULT result = S_OK;
      if (equals != std::wstring_view::npos) {
        result = SetParameterText(set, field.substr(0, equals), field.substr(equals + 1));
      } else if (position < initialCount) {
        SmartPtr<IVariant> value = NewTextVariant(field);
        result = value ? set->put_Item(position, value.get()) : E_OUTOFMEMORY;
      } else {
        result = SetParameterText(set, ItemName(position + 1), field);
      }
      if (FAILED(result)) return result;
      ++position;
      if (comma == std::wstring_view::npos) break;
      line.remove_prefix(comma + 1);
    }
  }
  return S_OK;
}

HRESULT CINIStream::WriteSet(IParameters* set, int32_t /*flags*/) {
  int32_t count = 0;
  set->get_Count(&count);
  std::wstring value;
  for (int32_t i = 0; i < count; ++i) {
    SmartPtr<IString> name;
    SmartPtr<IVariant> variant;
    int32_t flags = 0;
    if (HRESULT result = set->Iterate(i, name.Receive(), variant.Receive(), nullptr, &flags); FAILED(result)) return result;
    if (!variant || !TextOfValue(variant.get(), &value)) continue;
    const std::wstring_view shown = ViewOf(name.get());
    m_Text.append(shown.empty() ? ItemName(i + 1) : std::wstring(shown)).append(L"=").append(value).append(L"\n");
  }
  return S_OK;
}

HRESULT CINIStream::ReadSet(std::wstring_view text, IParameters* set) {
  const IniDocument document = IniDocument::Parse(text);
  for (const IniSection& section : document.Sections())
    for (const IniValue& line : section.values)
      if (HRESULT result = SetParameterText(set, line.name, line.value); FAILED(result)) return result;
  return S_OK;
}
