// The parameters of eval, explain, render and sweep: files and NAME=VALUE arguments in one set.
#include "parameter_sources.h"

#include <cctype>

using paramhost::Status;

namespace {

// Names are matched with A-Z folded, as the parameter set matches them.
std::wstring FoldedName(const std::wstring& name) {
  std::wstring folded = name;
  for (wchar_t& character : folded)
    if (character >= L'A' && character <= L'Z') character = static_cast<wchar_t>(character - L'A' + L'a');
  return folded;
}

}  // namespace

Status ParameterSources::Load(const std::vector<std::string>& files, const std::vector<std::string>& assignments) {
  if (!m_Set.valid()) return Status::Failure("the framework cannot make a ParametersCreatable");
  for (const std::string& file : files)
    if (Status loaded = LoadFile(file); !loaded) return loaded;
  for (const std::string& assignment : assignments)
    if (Status assigned = Assign(assignment); !assigned) return assigned;
  return Status();
}

Status ParameterSources::LoadFile(const std::string& file) {
  paramhost::Result<paramhost::ParameterSet> loaded = paramhost::LoadParameters(file);
  if (!loaded) return loaded.status();
  const int32_t count = loaded->Count();
  for (int32_t i = 0; i < count; ++i) {
    paramhost::ParameterRecord record = loaded->At(i);
    if (Status put = m_Set.Put(record.name, record.value, record.flags, record.descriptor.get()); !put) return put;
    Record(record.name, file);
  }
  return Status();
}

Status ParameterSources::Assign(const std::string& assignment) {
  const size_t equals = assignment.find('=');
  if (equals == std::string::npos || equals == 0)
    return Status::Failure("'" + assignment + "' is not NAME=VALUE");
  const std::wstring name = paramhost::FromUtf8(assignment.substr(0, equals));
  const paramhost::Value value = paramhost::Value::Parse(paramhost::FromUtf8(assignment.substr(equals + 1)));
  if (Status put = m_Set.Put(name, value, 0, nullptr); !put) return put;
  Record(name, "command line");
  return Status();
}

void ParameterSources::Record(const std::wstring& name, const std::string& origin) {
  m_Origins[FoldedName(name)] = origin;
}

std::string ParameterSources::Origin(const std::wstring& name) const {
  auto found = m_Origins.find(FoldedName(name));
  return found == m_Origins.end() ? std::string() : found->second;
}

void SplitAssignments(const std::vector<std::string>& words, std::vector<std::string>* assignments,
                      std::vector<std::string>* others) {
  for (const std::string& word : words) {
    size_t end = 0;
    while (end < word.size() && (std::isalnum(static_cast<unsigned char>(word[end])) || word[end] == '_')) ++end;
    const bool assignment = end > 0 && end < word.size() && word[end] == '=' &&
                            (end + 1 == word.size() || word[end + 1] != '=');
    (assignment ? assignments : others)->push_back(word);
  }
}
