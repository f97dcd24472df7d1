// paramtool find: does a condition hold for a parameter file?
#include <cstdio>
#include <memory>

#include "commands.h"

namespace {

struct FindOptions {
  std::string file;
  std::string condition;
  bool quiet = false;
};

int RunFind(const FindOptions& options) {
  paramhost::Result<paramhost::ParameterSet> set = paramhost::LoadParameters(options.file);
  if (!set) return ReportError(set.message());
  const bool holds = set->Holds(paramhost::FromUtf8(options.condition));
  if (!options.quiet) std::printf("%s: %s\n", options.condition.c_str(), holds ? "yes" : "no");
  return holds ? kExitYes : kExitNo;
}

}  // namespace

void AddFindCommand(CLI::App& app, CommandAction& action) {
  auto options = std::make_shared<FindOptions>();
  CLI::App* find = app.add_subcommand("find", "test a condition on a parameter file: exit 0 yes, 1 no");
  find->add_option("FILE", options->file, "parameter file")->required();
  find->add_option("CONDITION", options->condition,
                   "Speed>=10, Speed!=3, Speed=10+-0.5, Speed=10+-5%, Mode='auto', or a text any value contains")
      ->required();
  find->add_flag("-q,--quiet", options->quiet, "print nothing; answer with the exit status only");
  find->callback([&action, options] { action = [options] { return RunFind(*options); }; });
}
