// A host program that embeds the parameter module through the host library.
#include <cstdio>

#include "param_host.h"

using namespace paramhost;

int Fail(const std::string& message) {
  std::fprintf(stderr, "host_example: %s\n", message.c_str());
  return 2;
}

int main(int argc, char** argv) {
  // The modules sit in _binlinux/ beside this program; file names are relative to the caller.
  if (Status started = Start(ProgramFolder()); !started) return Fail(started.message());
  Result<ParameterSet> machine = LoadParameters(argc > 1 ? argv[1] : "examples/machine.xml");
  if (!machine) return Fail(machine.message());
  ParameterSet& set = *machine;

  std::printf("spindle speed %g rpm, mode %s\n", set[L"SpindleSpeed"].Number(), ToUtf8(set[L"Mode"].Text()).c_str());
  set[L"SpindleSpeed"] = 1800;
  set[L"Operator"] = L"Ada";
  Result<Value> power = Evaluate(L"Torque*SpindleSpeed/9549", set);
  if (!power) return Fail(power.message());
  std::printf("power at 1800 rpm: %s kW\n", ToUtf8(power->ToText()).c_str());

  Result<std::wstring> line = FillTemplate(L"__Operator__ runs __Machine__ at __SpindleSpeed__ rpm", set, {});
  if (!line) return Fail(line.message());
  std::printf("%s", ToUtf8(*line).c_str());
  if (argc > 2)
    if (Status saved = SaveParameters(set, argv[2]); !saved) return Fail(saved.message());
  return 0;
}
