// paramtool diff: parameters added, removed and changed between two files of any forms.
#include <cstdio>
#include <memory>
#include <unordered_map>

#include "commands.h"

namespace {

struct DiffOptions {
  std::string first;
  std::string second;
  bool json = false;
};

struct Change {
  char mark;  // '+' added, '-' removed, '~' changed
  std::string name, before, after;
};

// A parameter as the comparison sees it: its value text, and its flags and
// descriptor when both files can hold them.
struct Compared {
  std::string value, details;
  Compared(const paramhost::ParameterRecord& record, bool withDetails)
      : value(paramhost::ToUtf8(record.value.ToText())) {
    if (!withDetails) return;
    if (record.flags) details += "  flags " + FlagsText(record.flags);
    if (record.descriptor) details += "  [" + DescriptorText(record.descriptor.get()) + "]";
  }
  std::string Full() const { return value + details; }
};

// INI and CSV files keep names and values only.
bool KeepsDetails(const std::string& file) {
  const paramhost::FileForm form = paramhost::FormOf(file);
  return form == paramhost::FileForm::kXML || form == paramhost::FileForm::kFolderStream;
}

std::vector<Change> Compare(const paramhost::ParameterSet& first, const paramhost::ParameterSet& second,
                            bool withDetails) {
  std::vector<Change> changes;
  for (int32_t i = 0, count = first.Count(); i < count; ++i) {
    const paramhost::ParameterRecord record = first.At(i);
    const int32_t other = second.IndexOf(record.name);
    const Compared before(record, withDetails);
    if (other < 0) {
      changes.push_back({'-', paramhost::ToUtf8(record.name), before.Full(), ""});
      continue;
    }
    const Compared after(second.At(other), withDetails);
    // Only the value is shown when only the value changed.
    if (before.details != after.details)
      changes.push_back({'~', paramhost::ToUtf8(record.name), before.Full(), after.Full()});
    else if (before.value != after.value)
      changes.push_back({'~', paramhost::ToUtf8(record.name), before.value, after.value});
  }
  for (int32_t i = 0, count = second.Count(); i < count; ++i) {
    const paramhost::ParameterRecord record = second.At(i);
    if (first.IndexOf(record.name) < 0)
      changes.push_back({'+', paramhost::ToUtf8(record.name), "", Compared(record, withDetails).Full()});
  }
  return changes;
}

void PrintJson(const std::vector<Change>& changes) {
  static const struct {
    char mark;
    const char* key;
  } kGroups[] = {{'+', "added"}, {'-', "removed"}, {'~', "changed"}};
  std::printf("{\"same\": %s", changes.empty() ? "true" : "false");
  for (const auto& group : kGroups) {
    std::printf(",\n \"%s\": [", group.key);
    const char* separator = "";
    for (const Change& change : changes) {
      if (change.mark != group.mark) continue;
      std::printf("%s{\"name\": %s", separator, JsonString(change.name).c_str());
      if (change.mark != '+') std::printf(", \"old\": %s", JsonString(change.before).c_str());
      if (change.mark != '-') std::printf(", \"new\": %s", JsonString(change.after).c_str());
      std::printf("}");
      separator = ", ";
    }
    std::printf("]");
  }
  std::printf("}\n");
}

int RunDiff(const DiffOptions& options) {
  paramhost::Result<paramhost::ParameterSet> first = paramhost::LoadParameters(options.first);
  if (!first) return ReportError(first.message());
  paramhost::Result<paramhost::ParameterSet> second = paramhost::LoadParameters(options.second);
  if (!second) return ReportError(second.message());
  const std::vector<Change> changes =
      Compare(*first, *second, KeepsDetails(options.first) && KeepsDetails(options.second));
  if (options.json) {
    PrintJson(changes);
  } else if (changes.empty()) {
    std::printf("%s and %s hold the same parameters\n", options.first.c_str(), options.second.c_str());
  } else {
    TextTable table({"", "NAME", options.first, options.second});
    for (const Change& change : changes) table.AddRow({std::string(1, change.mark), change.name, change.before, change.after});
    table.Print();
  }
  return changes.empty() ? kExitYes : kExitNo;
}

}  // namespace

void AddDiffCommand(CLI::App& app, CommandAction& action) {
  auto options = std::make_shared<DiffOptions>();
  CLI::App* diff = app.add_subcommand(
      "diff", "compare two parameter files of any forms: exit 0 same, 1 different. Values are compared by "
              "their text; flags and descriptors too when both files are XML or folder streams");
  diff->add_option("A", options->first, "first parameter file")->required();
  diff->add_option("B", options->second, "second parameter file")->required();
  diff->add_flag("--json", options->json, "print {same, added, removed, changed} as JSON");
  diff->callback([&action, options] { action = [options] { return RunDiff(*options); }; });
}
