// paramtool classes: which module serves which class name.
#include <cstdio>

#include "commands.h"

namespace {

// Every class name a host can ask the framework for.
const wchar_t* const kKnownClasses[] = {
    L"ConditionalExpression", L"Expression", L"ExpressionBuilder", L"InputParameter", L"InputParameters",
    L"ParametersCreatable", L"ParametersCreator", L"TextParser", L"ParamCollection",
    L"GlobalComponentCollection", L"ComponentString", L"CreatableString", L"Variant", L"SuperCollection",
    L"StringCollection", L"DblBuffer", L"DataStream", L"ASCIIStream", L"XMLStream", L"XMLStreamEx",
    L"XMLFile", L"FolderStream", L"FileInfo", L"CSVStream", L"INIStream", L"INIFileEx", L"Registry",
    L"ActiveWorkspace",
};

// A class no module serves shows "-".
int RunClasses() {
  TextTable table({"CLASS", "MODULE"});
  for (const wchar_t* name : kKnownClasses) {
    const std::wstring module = paramhost::ModuleOf(name);
    table.AddRow({paramhost::ToUtf8(name), module.empty() ? "-" : paramhost::ToUtf8(module)});
  }
  table.Print();
  return kExitYes;
}

}  // namespace

void AddClassesCommand(CLI::App& app, CommandAction& action) {
  CLI::App* classes = app.add_subcommand("classes", "list which module serves which class name");
  classes->callback([&action] { action = RunClasses; });
}
