// Parsing, lookup and writing of INI text.
#include "ini_document.h"

namespace {

bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t'; }

std::wstring_view Trim(std::wstring_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

std::wstring FoldAsciiLower(std::wstring_view text) {
  std::wstring folded(text);
  for (wchar_t& c : folded)
    if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c + (L'a' - L'A'));
  return folded;
}

IniDocument IniDocument::Parse(std::wstring_view text) {
  IniDocument document;
  size_t section = static_cast<size_t>(-1);
  while (!text.empty()) {
    const size_t end = text.find(L'\n');
    std::wstring_view line = text.substr(0, end);
    text.remove_prefix(end == std::wstring_view::npos ? text.size() : end + 1);
    if (!line.empty() && line.back() == L'\r') line.remove_suffix(1);
    line = Trim(line);
    if (line.empty() || line.front() == L';' || line.front() == L'#') continue;
    if (line.front() == L'[') {
      const size_t close = line.rfind(L']');
      const size_t length = close == std::wstring_view::npos ? std::wstring_view::npos : close - 1;
      section = document.OpenSection(Trim(line.substr(1, length)));
      continue;
    }
    const size_t equals = line.find(L'=');
    if (equals == std::wstring_view::npos) continue;
    std::wstring_view name = Trim(line.substr(0, equals));
    if (name.empty()) continue;
    if (section == static_cast<size_t>(-1)) section = document.OpenSection(L"");
    document.Append(section, std::wstring(name), std::wstring(Trim(line.substr(equals + 1))));
  }
  return document;
}

std::wstring IniDocument::Serialize() const {
  std::wstring text;
  const auto appendLines = [&](const IniSection& section) {
    for (const IniValue& value : section.values) text.append(value.name).append(L"=").append(value.value).append(L"\n");
  };
  if (const IniSection* unnamed = FindSection(L"")) appendLines(*unnamed);
  for (const IniSection& section : m_Sections) {
    if (section.name.empty()) continue;
    text.append(L"[").append(section.name).append(L"]\n");
    appendLines(section);
  }
  return text;
}

const IniSection* IniDocument::FindSection(std::wstring_view section) const {
  auto found = m_SectionIndex.find(std::wstring_view(FoldAsciiLower(section)));
  return found == m_SectionIndex.end() ? nullptr : &m_Sections[found->second];
}

const std::wstring* IniDocument::FindValue(std::wstring_view section, std::wstring_view name) const {
  auto foundSection = m_SectionIndex.find(std::wstring_view(FoldAsciiLower(section)));
  if (foundSection == m_SectionIndex.end()) return nullptr;
  const FoldedIndex& values = m_ValueIndex[foundSection->second];
  auto found = values.find(std::wstring_view(FoldAsciiLower(name)));
  if (found == values.end()) return nullptr;
  return &m_Sections[foundSection->second].values[found->second].value;
}

size_t IniDocument::OpenSection(std::wstring_view section) {
  std::wstring folded = FoldAsciiLower(section);
  auto found = m_SectionIndex.find(std::wstring_view(folded));
  if (found != m_SectionIndex.end()) return found->second;
  m_SectionIndex.emplace(std::move(folded), m_Sections.size());
  m_ValueIndex.emplace_back();
  m_Sections.push_back(IniSection{std::wstring(section), {}});
  return m_Sections.size() - 1;
}

void IniDocument::Append(size_t section, std::wstring name, std::wstring value) {
  m_ValueIndex[section].emplace(FoldAsciiLower(name), m_Sections[section].values.size());  // keeps the first
  m_Sections[section].values.push_back(IniValue{std::move(name), std::move(value)});
}

void IniDocument::SetValue(std::wstring_view section, std::wstring_view name, std::wstring_view value) {
  const size_t position = OpenSection(section);
  auto found = m_ValueIndex[position].find(std::wstring_view(FoldAsciiLower(name)));
  if (found != m_ValueIndex[position].end()) {
    m_Sections[position].values[found->second].value.assign(value);
    return;
  }
  Append(position, std::wstring(name), std::wstring(value));
}

bool IniDocument::RemoveValue(std::wstring_view section, std::wstring_view name) {
  auto foundSection = m_SectionIndex.find(std::wstring_view(FoldAsciiLower(section)));
  if (foundSection == m_SectionIndex.end()) return false;
  const std::wstring folded = FoldAsciiLower(name);
  std::vector<IniValue>& values = m_Sections[foundSection->second].values;
  const size_t before = values.size();
  std::erase_if(values, [&](const IniValue& value) { return FoldAsciiLower(value.name) == folded; });
  if (values.size() == before) return false;
  ReindexSection(foundSection->second);
  return true;
}

void IniDocument::ReindexSection(size_t section) {
  FoldedIndex& index = m_ValueIndex[section];
  index.clear();
  const std::vector<IniValue>& values = m_Sections[section].values;
  for (size_t i = 0; i < values.size(); ++i) index.emplace(FoldAsciiLower(values[i].name), i);
}
