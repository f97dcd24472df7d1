// What every paramtool command shares: exit codes, messages, aligned tables and JSON text.
#include "tool_output.h"

#include <charconv>
#include <cstdio>

using paramhost::Ref;

void AddParameterFilesOption(CLI::App* command, std::vector<std::string>* files) {
  command
      ->add_option("-p,--parameters", *files,
                   "parameter file (.xml, .ini, .csv, .tree), repeatable; later sources override earlier ones "
                   "and NAME=VALUE arguments override every file")
      ->allow_extra_args(false);
}

int ReportError(const std::string& message) {
  std::fprintf(stderr, "paramtool: %s\n", message.c_str());
  return kExitError;
}

void PrintText(std::wstring_view text) {
  const std::string bytes = paramhost::ToUtf8(text);
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
}

std::string JsonString(std::string_view text) {
  std::string json = "\"";
  for (char character : text) {
    switch (character) {
      case '"': json += "\\\""; break;
      case '\\': json += "\\\\"; break;
      case '\n': json += "\\n"; break;
      case '\r': json += "\\r"; break;
      case '\t': json += "\\t"; break;
      default:
        if (static_cast<unsigned char>(character) < 0x20) {
          static const char kHex[] = "0123456789abcdef";
          json += "\\u00";
          json += kHex[character >> 4];
          json += kHex[character & 0xF];
        } else {
          json += character;
        }
    }
  }
  return json + "\"";
}

std::string FlagsText(int32_t flags) {
  if (flags == 0) return "";
  char digits[16];
  auto written = std::to_chars(digits, digits + sizeof(digits), static_cast<uint32_t>(flags), 16);
  std::string hex(digits, written.ptr);
  for (char& character : hex) character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  return "#" + std::string(hex.size() < 6 ? 6 - hex.size() : 0, '0') + hex;
}

std::string DescriptorText(IUnknown* descriptor) {
  if (!descriptor) return "";
  Ref<IUnknown> object(descriptor);
  std::wstring text;
  if (Ref<IObjectInfo> info = object.As<IObjectInfo>(IID_IObjectInfo)) {
    tagREFString name{0, nullptr};
    if (SUCCEEDED(info->GetName(0, &name)) && name.text) text.assign(name.text, static_cast<size_t>(name.length));
  }
  if (Ref<IExpression> expression = object.As<IExpression>(IID_IExpression)) {
    Ref<IString> formula;
    expression->get_Expression(formula.Receive());
    text += L" " + paramhost::TextOf(formula.get());
  } else if (Ref<IParametersCreatable> set = object.As<IParametersCreatable>(IID_IParametersCreatable)) {
    const paramhost::ParameterSet view = paramhost::ParameterSet::Wrap(set.get());
    for (int32_t i = 0, count = view.Count(); i < count; ++i) {
      const paramhost::ParameterRecord record = view.At(i);
      text += L" " + record.name + L"=" + record.value.ToText();
    }
  }
  return paramhost::ToUtf8(text);
}

namespace {

size_t CharacterCount(const std::string& text) {
  size_t count = 0;
  for (char byte : text)
    if ((static_cast<unsigned char>(byte) & 0xC0) != 0x80) ++count;
  return count;
}

}  // namespace

void TextTable::Print() const {
  std::vector<size_t> widths;
  for (const auto& row : m_Rows) {
    if (widths.size() < row.size()) widths.resize(row.size(), 0);
    for (size_t column = 0; column < row.size(); ++column)
      widths[column] = std::max(widths[column], CharacterCount(row[column]));
  }
  for (const auto& row : m_Rows) {
    std::string line;
    for (size_t column = 0; column < row.size(); ++column) {
      line += row[column];
      if (column + 1 < row.size()) line.append(widths[column] - CharacterCount(row[column]) + 2, ' ');
    }
    while (!line.empty() && line.back() == ' ') line.pop_back();
    std::printf("%s\n", line.c_str());
  }
}
