// ParameterSources: files and NAME=VALUE arguments in one set, later sources winning, and where each value came
// from (load failures are checked end to end by the paramtool tests).
#include "parameter_sources.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

TEST(ParameterSourcesTest, LaterSourcesOverrideAndOriginsFollow) {
  ASSERT_TRUE(paramhost::Start(".").ok());
  const fs::path folder = fs::temp_directory_path() / ("sources_test_" + std::to_string(getpid()));
  fs::create_directories(folder);
  const std::string a = (folder / "a.ini").string(), b = (folder / "b.ini").string();
  std::ofstream(a) << "Speed=1\nMode=manual\nGain=3\n";
  std::ofstream(b) << "speed=2\n";
  ParameterSources sources;
  const bool loaded = sources.Load({a, b}, {"mode=auto", "Extra=x=y"}).ok();
  fs::remove_all(folder);
  ASSERT_TRUE(loaded);
  struct Case { const wchar_t* name; std::wstring text; std::string origin; } cases[] = {
      {L"Speed", L"2", b},  // b.ini's "speed" replaces a.ini's "Speed" (A-Z match either case)
      {L"MODE", L"auto", "command line"}, {L"Gain", L"3", a},
      {L"Extra", L"x=y", "command line"},  // the value runs from the first "="
      {L"Nope", L"", ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(sources.Set()[c.name].Text(), c.text) << paramhost::ToUtf8(c.name);
    EXPECT_EQ(sources.Origin(c.name), c.origin) << paramhost::ToUtf8(c.name);
  }
  EXPECT_EQ(sources.Set().Count(), 4);
}

TEST(SplitAssignmentsTest, NameThenEqualsIsAnAssignment) {
  struct Case { const char* word; bool assignment; } cases[] = {
      {"a=1", true}, {"a_b2=x y", true}, {"Speed=", true}, {"a==1", false}, {"=5", false},
      {"2+3", false}, {"Max(a=1)", false}, {"a b=1", false}, {"a>=1", false},
  };
  for (const Case& c : cases) {
    std::vector<std::string> assignments, others;
    SplitAssignments({c.word}, &assignments, &others);
    EXPECT_EQ(assignments.size(), c.assignment ? 1u : 0u) << c.word;
  }
}

}  // namespace
