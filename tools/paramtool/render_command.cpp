// paramtool render: a tagged template filled with parameter values.
#include <memory>

#include "commands.h"
#include "parameter_sources.h"

namespace {

struct RenderOptions {
  std::string templateFile;
  std::vector<std::string> assignments;
  std::vector<std::string> files;
  std::vector<std::string> tags;
  bool dropUnknown = false;
  std::string output;
};

// The text parser ends every line with "\r\n"; the tool writes "\n" line ends.
std::string WithNewlines(const std::wstring& text) {
  std::wstring lines;
  lines.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i)
    if (!(text[i] == L'\r' && i + 1 < text.size() && text[i + 1] == L'\n')) lines.push_back(text[i]);
  return paramhost::ToUtf8(lines);
}

int RunRender(const RenderOptions& options) {
  for (const std::string& word : options.assignments)
    if (word.find('=') == std::string::npos) return ReportError("render: '" + word + "' is not NAME=VALUE");
  ParameterSources sources;
  if (paramhost::Status loaded = sources.Load(options.files, options.assignments); !loaded)
    return ReportError(loaded.message());
  paramhost::Result<std::wstring> text = paramhost::ReadTextFile(options.templateFile);
  if (!text) return ReportError(text.message());
  paramhost::TemplateOptions templateOptions;
  if (options.tags.size() == 2) {
    templateOptions.opening = paramhost::FromUtf8(options.tags[0]);
    templateOptions.closing = paramhost::FromUtf8(options.tags[1]);
  }
  templateOptions.dropUnknown = options.dropUnknown;
  paramhost::Result<std::wstring> filled = paramhost::FillTemplate(*text, sources.Set(), templateOptions);
  if (!filled) return ReportError(options.templateFile + ": " + filled.message());
  const std::string bytes = WithNewlines(*filled);
  if (options.output.empty()) {
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
    return kExitYes;
  }
  if (paramhost::Status written = paramhost::WriteTextFile(options.output, bytes); !written)
    return ReportError(written.message());
  return kExitYes;
}

}  // namespace

void AddRenderCommand(CLI::App& app, CommandAction& action) {
  auto options = std::make_shared<RenderOptions>();
  CLI::App* render = app.add_subcommand("render", "fill the tags of a template (__Name__ by default) with values");
  render->add_option("TEMPLATE", options->templateFile, "template text file")->required();
  render->add_option("NAME=VALUE", options->assignments, "parameters given on the command line (override files)");
  AddParameterFilesOption(render, &options->files);
  render->add_option("--tags", options->tags, "opening and closing tag (default: __ __)")->expected(2);
  render->add_flag("--drop-unknown", options->dropUnknown, "remove tags naming no parameter instead of keeping them");
  render->add_option("-o,--output", options->output, "write to this file (replaced safely) instead of standard output");
  render->callback([&action, options] { action = [options] { return RunRender(*options); }; });
}
