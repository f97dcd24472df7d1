// What every paramtool command shares: exit codes, messages, aligned tables and JSON text.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "param_host.h"

// Exit codes, as grep and diff use them.
constexpr int kExitYes = 0;    // success, "yes", "same"
constexpr int kExitNo = 1;     // a negative answer of find or diff
constexpr int kExitError = 2;  // usage, missing or malformed file, unwritable output, no framework

// What a command does once the framework is started; set by the command's parse callback.
using CommandAction = std::function<int()>;

// The -p FILE option of eval, render and sweep: one file per -p, repeatable.
void AddParameterFilesOption(CLI::App* command, std::vector<std::string>* files);

// Prints "paramtool: <message>" on standard error and answers kExitError.
int ReportError(const std::string& message);
// Writes wide text to standard output as UTF-8.
void PrintText(std::wstring_view text);

// `text` as a JSON string literal, quotes included.
std::string JsonString(std::string_view text);
// "#0000A0" for non-zero flags (as the XML files write them), "" for none.
std::string FlagsText(int32_t flags);
// A descriptor in one line: "Expression Torque*Speed/9550", "ParametersCreatable Min=0 Max=3000", a class name.
std::string DescriptorText(IUnknown* descriptor);

// Columns padded to their widest cell (counted in characters); the last column is not padded.
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> header) { m_Rows.push_back(std::move(header)); }
  void AddRow(std::vector<std::string> row) { m_Rows.push_back(std::move(row)); }
  void Print() const;

 private:
  std::vector<std::vector<std::string>> m_Rows;
};
