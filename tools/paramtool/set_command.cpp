// paramtool set: update or add parameters of a file in place.
#include <cstdio>
#include <memory>

#include "commands.h"

namespace {

struct SetOptions {
  std::string file;
  std::vector<std::string> assignments;
};

// The file is written back in its own form and replaced safely.
int RunSet(const SetOptions& options) {
  paramhost::Result<paramhost::ParameterSet> set = paramhost::LoadParameters(options.file);
  if (!set) return ReportError(set.message());
  for (const std::string& assignment : options.assignments) {
    const size_t equals = assignment.find('=');
    if (equals == std::string::npos || equals == 0) return ReportError("'" + assignment + "' is not NAME=VALUE");
    const std::wstring name = paramhost::FromUtf8(assignment.substr(0, equals));
    paramhost::Parameter parameter = (*set)[name];
    const std::string old = parameter.Exists() ? paramhost::ToUtf8(parameter.Text()) : "(new)";
    parameter = paramhost::Value::Parse(paramhost::FromUtf8(assignment.substr(equals + 1)));
    std::printf("%s: %s -> %s\n", paramhost::ToUtf8(name).c_str(), old.c_str(),
                paramhost::ToUtf8(parameter.Text()).c_str());
  }
  if (paramhost::Status saved = paramhost::SaveParameters(*set, options.file); !saved)
    return ReportError(saved.message());
  return kExitYes;
}

}  // namespace

void AddSetCommand(CLI::App& app, CommandAction& action) {
  auto options = std::make_shared<SetOptions>();
  CLI::App* set = app.add_subcommand("set", "update or add parameters of a file in place (safe save)");
  set->add_option("FILE", options->file, "parameter file to change")->required();
  set->add_option("NAME=VALUE", options->assignments,
                  "new values, in order; a value that reads as a number is stored as one, else as text")
      ->required();
  set->callback([&action, options] { action = [options] { return RunSet(*options); }; });
}
