// paramtool: parameter sets, formulas and templates from the command line.
#include "commands.h"

namespace {

// The first word that is not an option (nor the value of --modules), or "".
std::string FirstCommandWord(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == "--modules") {
      ++i;
      continue;
    }
    if (!word.empty() && word[0] != '-') return word;
  }
  return "";
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{
      "paramtool: parameter sets, formulas and templates from the command line.\n"
      "Exit status: 0 success (find: yes, diff: same), 1 find: no, diff: different, 2 any error."};
  app.require_subcommand(1);
  std::string moduleFolder = paramhost::ProgramFolder();
  app.add_option("--modules", moduleFolder, "folder that holds _binlinux/ (default: the tool's own folder)");

  CommandAction action;
  AddShowCommand(app, action);
  AddEvalCommand(app, action);
  AddExplainCommand(app, action);
  AddRenderCommand(app, action);
  AddConvertCommand(app, action);
  AddDiffCommand(app, action);
  AddFindCommand(app, action);
  AddSetCommand(app, action);
  AddSweepCommand(app, action);
  AddClassesCommand(app, action);

  const std::string command = FirstCommandWord(argc, argv);
  const auto named = [&command](CLI::App* sub) { return sub->get_name() == command; };
  if (!command.empty() && app.get_subcommands(named).empty())
    return ReportError("unknown command '" + command + "' (paramtool --help lists the commands)");
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& help) {
    return app.exit(help);
  } catch (const CLI::CallForAllHelp& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    return ReportError(std::string(error.what()) + (command.empty() ? "" : " (paramtool " + command + " --help)"));
  }
  if (paramhost::Status started = paramhost::Start(moduleFolder); !started) return ReportError(started.message());
  return action ? action() : kExitError;
}
