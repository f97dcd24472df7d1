// paramtool show: a parameter file as an aligned table, or as JSON.
#include <cstdio>
#include <memory>

#include "commands.h"

namespace {

struct ShowOptions {
  std::string file;
  bool json = false;
};

int RunShow(const ShowOptions& options) {
  paramhost::Result<paramhost::ParameterSet> set = paramhost::LoadParameters(options.file);
  if (!set) return ReportError(set.message());
  const int32_t count = set->Count();
  if (options.json) {
    std::printf("[");
    for (int32_t i = 0; i < count; ++i) {
      const paramhost::ParameterRecord record = set->At(i);
      std::printf("%s\n  {\"name\": %s, \"value\": %s, \"kind\": \"%s\", \"flags\": %d, \"descriptor\": %s}",
                  i ? "," : "", JsonString(paramhost::ToUtf8(record.name)).c_str(),
                  JsonString(paramhost::ToUtf8(record.value.ToText())).c_str(), record.value.KindName(), record.flags,
                  JsonString(DescriptorText(record.descriptor.get())).c_str());
    }
    std::printf("%s]\n", count ? "\n" : "");
    return kExitYes;
  }
  TextTable table({"NAME", "VALUE", "KIND", "FLAGS", "DESCRIPTOR"});
  for (int32_t i = 0; i < count; ++i) {
    const paramhost::ParameterRecord record = set->At(i);
    table.AddRow({paramhost::ToUtf8(record.name), paramhost::ToUtf8(record.value.ToText()), record.value.KindName(),
                  FlagsText(record.flags), DescriptorText(record.descriptor.get())});
  }
  table.Print();
  return kExitYes;
}

}  // namespace

void AddShowCommand(CLI::App& app, CommandAction& action) {
  auto options = std::make_shared<ShowOptions>();
  CLI::App* show = app.add_subcommand("show", "show a parameter file (XML, INI, CSV or folder stream) as a table");
  show->add_option("FILE", options->file, "parameter file: .xml, .ini, .csv, or .tree (folder stream)")->required();
  show->add_flag("--json", options->json, "print a JSON array of {name, value, kind, flags, descriptor}");
  show->callback([&action, options] { action = [options] { return RunShow(*options); }; });
}
