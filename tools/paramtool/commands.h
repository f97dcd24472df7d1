// The paramtool commands: each adds its sub-command to the application and,
// when chosen, sets the action that runs it once the framework is started.
#pragma once

#include "tool_output.h"

void AddShowCommand(CLI::App& app, CommandAction& action);
void AddEvalCommand(CLI::App& app, CommandAction& action);
void AddExplainCommand(CLI::App& app, CommandAction& action);
void AddRenderCommand(CLI::App& app, CommandAction& action);
void AddConvertCommand(CLI::App& app, CommandAction& action);
void AddDiffCommand(CLI::App& app, CommandAction& action);
void AddFindCommand(CLI::App& app, CommandAction& action);
void AddSetCommand(CLI::App& app, CommandAction& action);
void AddSweepCommand(CLI::App& app, CommandAction& action);
void AddClassesCommand(CLI::App& app, CommandAction& action);
