// paramtool eval: formulas evaluated against parameters from files and the command line.
#include <cstdio>
#include <memory>

#include "commands.h"
#include "parameter_sources.h"

namespace {

struct EvalOptions {
  std::vector<std::string> words;  // formulas and NAME=VALUE assignments
  std::vector<std::string> files;
  std::string formulaFile;
  bool json = false;
};

// The formulas of a file: one a line; blank lines and lines starting with "#" are skipped.
paramhost::Status ReadFormulaFile(const std::string& file, std::vector<std::wstring>* formulas) {
  paramhost::Result<std::wstring> text = paramhost::ReadTextFile(file);
  if (!text) return text.status();
  size_t start = 0;
  while (start <= text->size()) {
    size_t end = text->find(L'\n', start);
    if (end == std::wstring::npos) end = text->size();
    std::wstring line = text->substr(start, end - start);
    while (!line.empty() && (line.back() == L'\r' || line.back() == L' ')) line.pop_back();
    const size_t first = line.find_first_not_of(L" \t");
    if (first != std::wstring::npos && line[first] != L'#') formulas->push_back(line.substr(first));
    start = end + 1;
  }
  return paramhost::Status();
}

int RunEval(const EvalOptions& options) {
  std::vector<std::string> assignments, formulaWords;
  SplitAssignments(options.words, &assignments, &formulaWords);
  ParameterSources sources;
  if (paramhost::Status loaded = sources.Load(options.files, assignments); !loaded) return ReportError(loaded.message());
  std::vector<std::wstring> formulas;
  if (!options.formulaFile.empty())
    if (paramhost::Status read = ReadFormulaFile(options.formulaFile, &formulas); !read)
      return ReportError(read.message());
  for (const std::string& word : formulaWords) formulas.push_back(paramhost::FromUtf8(word));
  if (formulas.empty()) return ReportError("eval: no formula given (paramtool eval --help)");

  std::vector<paramhost::Value> values;
  for (const std::wstring& formula : formulas) {
    paramhost::Result<paramhost::Value> value = paramhost::Evaluate(formula, sources.Set());
    if (!value) return ReportError(value.message());
    values.push_back(*value);
  }
  if (options.json) {
    std::printf("[");
    for (size_t i = 0; i < formulas.size(); ++i)
      std::printf("%s\n  {\"formula\": %s, \"value\": %s, \"kind\": \"%s\"}", i ? "," : "",
                  JsonString(paramhost::ToUtf8(formulas[i])).c_str(),
                  JsonString(paramhost::ToUtf8(values[i].ToText())).c_str(), values[i].KindName());
    std::printf("\n]\n");
  } else if (formulas.size() == 1) {
    PrintText(values[0].ToText() + L"\n");
  } else {
    TextTable table({"FORMULA", "VALUE"});
    for (size_t i = 0; i < formulas.size(); ++i)
      table.AddRow({paramhost::ToUtf8(formulas[i]), paramhost::ToUtf8(values[i].ToText())});
    table.Print();
  }
  return kExitYes;
}

}  // namespace

void AddEvalCommand(CLI::App& app, CommandAction& action) {
  auto options = std::make_shared<EvalOptions>();
  CLI::App* eval = app.add_subcommand(
      "eval", "evaluate formulas against parameters from files (-p) and NAME=VALUE arguments");
  eval->add_option("FORMULA|NAME=VALUE", options->words,
                   "formulas to evaluate in order, and NAME=VALUE parameters (a name, then \"=\")");
  AddParameterFilesOption(eval, &options->files);
  eval->add_option("-f,--formulas", options->formulaFile, "file with one formula a line (# starts a comment line)");
  eval->add_flag("--json", options->json, "print a JSON array of {formula, value, kind}");
  eval->callback([&action, options] { action = [options] { return RunEval(*options); }; });
}
