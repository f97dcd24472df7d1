// ParameterSources: files and NAME=VALUE arguments in one set, later sources winning, and where each value came
// from (load failures are checked end to end by the paramtool tests).
#include "parameter_sources.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

class ParameterSourcesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(paramhost::Start(".").ok());
    m_Folder = fs::temp_directory_path() / ("sources_test_" + std::to_string(getpid()));
    fs::create_directories(m_Folder);
    std::ofstream(m_Folder / "a.ini") << "Speed=1\nMode=manual\nGain=3\n";
    std::ofstream(m_Folder / "b.ini") << "speed=2\n";
  }
  void TearDown() override { fs::remove_all(m_Folder); }
  std::string File(const char* name) const { return (m_Folder / name).string(); }
  fs::path m_Folder;
};

TEST_F(ParameterSourcesTest, LaterSourcesOverrideAndOriginsFollow) {
  ParameterSources sources;
  ASSERT_TRUE(sources.Load({File("a.ini"), File("b.ini")}, {"mode=auto", "Extra=x=y"}).ok());
  struct Case {
    const wchar_t* name;
    std::wstring text;
    std::string origin;
  } cases[] = {
      {L"Speed", L"2", File("b.ini")},  // b.ini's "speed" replaces a.ini's "Speed" (A-Z match either case)
      {L"MODE", L"auto", "command line"},
      {L"Gain", L"3", File("a.ini")},
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
  struct Case {
    const char* word;
    bool assignment;
  } cases[] = {
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
