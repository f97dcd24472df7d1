// paramtool convert: a parameter file into another form, chosen by the output's extension.
#include <cstdio>
#include <memory>

#include "commands.h"

namespace {

struct ConvertOptions {
  std::string input;
  std::string output;
};

// CSV fields are not quoted: a value holding "," comes back as two fields.
void WarnAboutCommas(const paramhost::ParameterSet& set, const std::string& output) {
  for (int32_t i = 0, count = set.Count(); i < count; ++i) {
    const paramhost::ParameterRecord record = set.At(i);
    if (record.value.ToText().find(L',') != std::wstring::npos)
      std::fprintf(stderr, "paramtool: warning: %s: the value of %s holds \",\", which CSV does not keep whole\n",
                   output.c_str(), paramhost::ToUtf8(record.name).c_str());
  }
}

// The output is replaced safely: when saving fails, the old file stays as it was.
int RunConvert(const ConvertOptions& options) {
  paramhost::Result<paramhost::ParameterSet> set = paramhost::LoadParameters(options.input);
  if (!set) return ReportError(set.message());
  if (paramhost::FormOf(options.output) == paramhost::FileForm::kCSV) WarnAboutCommas(*set, options.output);
  if (paramhost::Status saved = paramhost::SaveParameters(*set, options.output); !saved)
    return ReportError(saved.message());
  std::printf("%s: %d parameters written as %s\n", options.output.c_str(), set->Count(),
              paramhost::FormName(paramhost::FormOf(options.output)));
  return kExitYes;
}

}  // namespace

void AddConvertCommand(CLI::App& app, CommandAction& action) {
  auto options = std::make_shared<ConvertOptions>();
  CLI::App* convert = app.add_subcommand(
      "convert", "load a parameter file in any form and save it in the form OUT's extension selects");
  convert->add_option("IN", options->input, "parameter file to read (.xml, .ini, .csv, .tree)")->required();
  convert->add_option("OUT", options->output, "file to write; never damaged when writing fails")->required();
  convert->callback([&action, options] { action = [options] { return RunConvert(*options); }; });
}
