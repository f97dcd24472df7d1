// paramtool sweep: a formula over a range of one parameter, as CSV and optionally as an SVG plot.
#include <cmath>
#include <cstdio>
#include <memory>

#include "commands.h"
#include "parameter_sources.h"
#include "svg_plot.h"

namespace {

constexpr int kMaxSteps = 100000;

struct SweepOptions {
  std::string formula;
  std::string name;
  double from = 0, to = 0;
  int steps = 0;
  std::vector<std::string> assignments;
  std::vector<std::string> files;
  std::string svg;
};

// A CSV field, quoted when it holds a comma or a quote.
std::string CsvField(const std::string& text) {
  if (text.find_first_of(",\"\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (char character : text) quoted += character == '"' ? std::string("\"\"") : std::string(1, character);
  return quoted + "\"";
}

int RunSweep(const SweepOptions& options) {
  if (options.steps < 1 || options.steps > kMaxSteps)
    return ReportError("sweep: STEPS must be between 1 and " + std::to_string(kMaxSteps));
  if (!std::isfinite(options.from) || !std::isfinite(options.to)) return ReportError("sweep: FROM and TO must be numbers");
  ParameterSources sources;
  if (paramhost::Status loaded = sources.Load(options.files, options.assignments); !loaded)
    return ReportError(loaded.message());
  const std::wstring name = paramhost::FromUtf8(options.name), formula = paramhost::FromUtf8(options.formula);
  std::vector<double> xs, ys;
  std::printf("%s,%s\n", CsvField(options.name).c_str(), CsvField(options.formula).c_str());
  for (int i = 0; i <= options.steps; ++i) {
    const double x = options.from + (options.to - options.from) * i / options.steps;
    const paramhost::Value xValue = paramhost::Value::Number(x);
    sources.Set()[name] = xValue;
    paramhost::Result<paramhost::Value> y = paramhost::Evaluate(formula, sources.Set());
    if (!y) return ReportError(y.message());
    std::printf("%s,%s\n", CsvField(paramhost::ToUtf8(xValue.ToText())).c_str(),
                CsvField(paramhost::ToUtf8(y->ToText())).c_str());
    xs.push_back(x);
    ys.push_back(y->kind() == paramhost::Value::Kind::kText ? NAN : y->ToNumber());
  }
  if (options.svg.empty()) return kExitYes;
  const PlotLabels labels{options.formula, options.name, options.formula};
  if (paramhost::Status written = paramhost::WriteTextFile(options.svg, SvgLinePlot(xs, ys, labels)); !written)
    return ReportError(written.message());
  return kExitYes;
}

}  // namespace

void AddSweepCommand(CLI::App& app, CommandAction& action) {
  auto options = std::make_shared<SweepOptions>();
  CLI::App* sweep = app.add_subcommand(
      "sweep", "evaluate a formula while one parameter runs from FROM to TO; print CSV, optionally plot it as SVG");
  sweep->add_option("FORMULA", options->formula, "formula to evaluate")->required();
  sweep->add_option("NAME", options->name, "parameter that runs over the range")->required();
  sweep->add_option("FROM", options->from, "first value")->required();
  sweep->add_option("TO", options->to, "last value")->required();
  sweep->add_option("STEPS", options->steps, "number of steps (STEPS + 1 points)")->required();
  sweep->add_option("NAME=VALUE", options->assignments, "other parameters given on the command line");
  AddParameterFilesOption(sweep, &options->files);
  sweep->add_option("--svg", options->svg, "also draw the curve as an SVG line plot into this file");
  sweep->callback([&action, options] { action = [options] { return RunSweep(*options); }; });
}
