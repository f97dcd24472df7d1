// INI text: [section] headers and name=value lines, kept in file order with lookup by name.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct IniValue {
  std::wstring name;
  std::wstring value;
};

struct IniSection {
  std::wstring name;
  std::vector<IniValue> values;
};

// Section and value names are matched with ASCII letters folded to lower case.
// A name that occurs twice in a section is listed twice; lookup finds the first.
class IniDocument {
 public:
  // Reads INI text. Blank lines and lines beginning with ";" or "#" are
  // skipped, "[name]" opens a section (lines before the first header belong to
  // the section ""), other lines split at their first "=" into a name and a
  // value, both trimmed of blanks and tabs; lines without "=" or with an empty
  // name are skipped. A section that appears twice is one section.
  static IniDocument Parse(std::wstring_view text);

  // The document as text: the section "" first without header, then each
  // section's header and lines, one "\n" after every line. Comments are not kept.
  std::wstring Serialize() const;

  const std::vector<IniSection>& Sections() const { return m_Sections; }
  // The section, or null.
  const IniSection* FindSection(std::wstring_view section) const;
  // The first value named `name` in `section`, or null.
  const std::wstring* FindValue(std::wstring_view section, std::wstring_view name) const;

  // Changes the first value of that name, or appends one (opening the section when needed).
  void SetValue(std::wstring_view section, std::wstring_view name, std::wstring_view value);
  // Removes every value of that name; false when there was none.
  bool RemoveValue(std::wstring_view section, std::wstring_view name);

 private:
  struct FoldedHash {
    using is_transparent = void;
    size_t operator()(std::wstring_view text) const { return std::hash<std::wstring_view>{}(text); }
  };
  using FoldedIndex = std::unordered_map<std::wstring, size_t, FoldedHash, std::equal_to<>>;

  // Position of the section, opened at the end when new.
  size_t OpenSection(std::wstring_view section);
  void Append(size_t section, std::wstring name, std::wstring value);
  void ReindexSection(size_t section);

  std::vector<IniSection> m_Sections;
  FoldedIndex m_SectionIndex;             // folded section name -> position
  std::vector<FoldedIndex> m_ValueIndex;  // per section: folded value name -> first position
};

// `text` with ASCII capitals folded to lower case.
std::wstring FoldAsciiLower(std::wstring_view text);
