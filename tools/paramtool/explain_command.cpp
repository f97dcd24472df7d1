// paramtool explain: prints how a formula is read, piece by piece, with its pitfalls.
#include "explain_command.h"

#include <cstdio>
#include <memory>

#include "commands.h"
#include "parameter_sources.h"
#include "runtime/module_loader.h"

namespace {

struct ExplainOptions {
  std::vector<std::string> words;  // formulas and NAME=VALUE assignments
  std::vector<std::string> files;
  bool json = false;
};

int RunExplainCommand(const ExplainOptions& options) {
  std::vector<std::string> assignments, formulas;
  SplitAssignments(options.words, &assignments, &formulas);
  if (formulas.empty()) return ReportError("explain: no formula given (paramtool explain --help)");
  ParameterSources sources;
  if (paramhost::Status loaded = sources.Load(options.files, assignments); !loaded) return ReportError(loaded.message());
  // The explanation's scanner is linked into the tool: it makes its framework
  // objects through the collection the host library started.
  ReplaceGlobalComponents(paramhost::Components());
  const OriginOfName originOf = [&sources](const std::wstring& name) { return sources.Origin(name); };
  // Several formulas: blank lines between the texts, or one JSON array.
  const bool array = options.json && formulas.size() > 1;
  int status = kExitYes;
  if (array) std::printf("[\n");
  for (size_t i = 0; i < formulas.size(); ++i) {
    if (i > 0) std::printf(options.json ? ",\n" : "\n");
    std::fflush(stdout);
    const int explained = RunExplain(paramhost::FromUtf8(formulas[i]), sources.Set().get(), originOf, options.json);
    if (explained != kExitYes) status = explained;
  }
  if (array) std::printf("]\n");
  return status;
}

}  // namespace

int RunExplain(const std::wstring& formula, IParameters* set, const OriginOfName& originOf, bool json) {
  const FormulaExplanation explanation = ExplainFormula(formula, set, originOf);
  const std::string out = json ? ExplanationJson(explanation) : ExplanationText(explanation);
  std::fwrite(out.data(), 1, out.size(), stdout);
  std::fflush(stdout);
  if (explanation.moduleEvaluated && !explanation.agrees)
    return ReportError("explain: the explanation gives " + std::to_string(explanation.value) + " but the module gives " +
                       std::to_string(explanation.moduleValue));
  return kExitYes;
}

void AddExplainCommand(CLI::App& app, CommandAction& action) {
  auto options = std::make_shared<ExplainOptions>();
  CLI::App* explain = app.add_subcommand(
      "explain", "show how formulas are read, piece by piece, with their pitfalls and where each value came from");
  explain->add_option("FORMULA|NAME=VALUE", options->words,
                      "formulas to explain in order, and NAME=VALUE parameters (a name, then \"=\")");
  AddParameterFilesOption(explain, &options->files);
  explain->add_flag("--json", options->json, "print each explanation as one JSON object");
  explain->callback([&action, options] { action = [options] { return RunExplainCommand(*options); }; });
}
