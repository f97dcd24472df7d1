// The parameters of eval, explain, render and sweep: files and NAME=VALUE arguments in one set.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "param_host.h"

// Loads `-p FILE` sources and then `NAME=VALUE` arguments into one parameter
// set. Later sources override earlier ones: a parameter of a later file
// replaces one of the same name (value, flags and descriptor), and the
// command line comes last. Origin() tells where each value came from.
class ParameterSources {
 public:
  // Loads every file, in order, then the assignments. The first failure
  // (a file that cannot be loaded, an argument without "=" or without a name)
  // is returned and nothing more is loaded.
  paramhost::Status Load(const std::vector<std::string>& files, const std::vector<std::string>& assignments);
  // Adds or replaces one parameter from "NAME=VALUE" (VALUE a number or text).
  paramhost::Status Assign(const std::string& assignment);

  paramhost::ParameterSet& Set() { return m_Set; }
  const paramhost::ParameterSet& Set() const { return m_Set; }
  // Where the parameter's current value came from: the file as given
  // ("examples/machine.xml"), "command line", or "" when no source has it.
  // Names match as the set matches them (A-Z in either case).
  std::string Origin(const std::wstring& name) const;

 private:
  paramhost::Status LoadFile(const std::string& file);
  void Record(const std::wstring& name, const std::string& origin);

  paramhost::ParameterSet m_Set = paramhost::ParameterSet::New();
  std::unordered_map<std::wstring, std::string> m_Origins;  // by name with A-Z folded
};

// Splits the words after a command into NAME=VALUE assignments (a name of
// letters, digits and "_", then "=" and not "==") and the rest, keeping their order.
void SplitAssignments(const std::vector<std::string>& words, std::vector<std::string>* assignments,
                      std::vector<std::string>* others);
