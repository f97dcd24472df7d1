// paramtool: a host command-line tool for the parameter module.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <iostream>

#include "explain_command.h"
#include "host.h"

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

// Lists which module serves which class; a class no module serves shows "-".
int ListClasses(const Host& host) {
  for (const wchar_t* name : kKnownClasses) {
    std::wstring module = host.ModuleOf(name);
    std::printf("%-26ls %ls\n", name, module.empty() ? L"-" : module.c_str());
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"paramtool: parameter sets, formulas and templates from the command line"};
  app.require_subcommand(1);
  std::string moduleFolder = ExecutableFolder();
  app.add_option("--modules", moduleFolder, "folder that holds _binlinux/ (default: the tool's own folder)");

  CLI::App* classes = app.add_subcommand("classes", "list which module serves which class name");
  CLI::App* explain = app.add_subcommand("explain", "show how a formula is read, piece by piece, and its pitfalls");
  std::string formula;
  std::vector<std::string> bindings;
  bool json = false;
  explain->add_option("FORMULA", formula, "the formula")->required();
  explain->add_option("NAME=VALUE", bindings, "parameters the formula reads");
  explain->add_flag("--json", json, "print the explanation as JSON");

  CLI11_PARSE(app, argc, argv);

  Host host;
  std::string error;
  if (!host.Start(AbsolutePath(moduleFolder), &error)) {
    std::fprintf(stderr, "paramtool: %s\n", error.c_str());
    return 2;
  }
  if (*classes) return ListClasses(host);
  if (*explain) return RunExplainCommand(host, formula, bindings, json);
  return 0;
}
