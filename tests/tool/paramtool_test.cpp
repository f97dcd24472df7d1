// paramtool end to end: each command on the examples, its errors and exit codes, round trips and plots.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct ToolRun { int status = -1; std::string out, err; };

std::string ReadFile(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

void WriteFile(const fs::path& file, const std::string& text) { std::ofstream(file, std::ios::binary) << text; }

class ParamtoolTest : public ::testing::Test {
 protected:
  void SetUp() override {
    m_Folder = fs::temp_directory_path() / ("paramtool_test_" + std::to_string(getpid()));
    fs::remove_all(m_Folder);
    fs::create_directories(m_Folder);
    for (const char* file : {"machine.xml", "machine.ini", "report.txt", "formulas.txt"})
      fs::copy_file(fs::path(EXAMPLES_DIR) / file, m_Folder / file);
  }
  void TearDown() override { fs::remove_all(m_Folder); }

  // Runs paramtool in the temporary folder, so file arguments are relative to it (a cross build runs it
  // through the same emulator CTest uses).
  ToolRun Tool(const std::vector<std::string>& args) const {
    std::string command = "cd " + Quoted(m_Folder) + " && " + PARAMTOOL_EMULATOR + " " + Quoted(PARAMTOOL_PATH);
    for (const std::string& arg : args) command += " " + Quoted(arg);
    const int status = std::system((command + " >.stdout 2>.stderr").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(m_Folder / ".stdout"),
            ReadFile(m_Folder / ".stderr")};
  }
  static std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
  }

  fs::path m_Folder;
};

struct OutputCase { std::vector<std::string> args; int status; std::string expected; };  // found in stdout

TEST_F(ParamtoolTest, CommandsOnTheExamples) {
  WriteFile(m_Folder / "override.ini", "Torque=50\n");
  WriteFile(m_Folder / "braces.txt", "{Mode}/{Nope}/{Teeth}\n");
  const OutputCase cases[] = {
      {{"show", "machine.xml"}, 0,
       "SpindleSpeed  1500                        integer  #000010  ParametersCreatable Min=100 Max=3000 Unit=rpm\n"},
      {{"show", "machine.xml"}, 0, "Power         6.68                        real     #000100  Expression Torque*SpindleSpeed/9549\n"},
      {{"show", "machine.ini"}, 0, "Teeth         4                           text\n"},
      {{"show", "--json", "machine.xml"}, 0,
       "{\"name\": \"LogFile\", \"value\": \"/var/lib/mill/logs/run.csv\", \"kind\": \"text\", \"flags\": 2, "
       "\"descriptor\": \"\"}"},
      {{"eval", "-p", "machine.xml", "Torque*SpindleSpeed/9549"}, 0, "6.676091737\n"},
      {{"eval", "-p", "machine.xml", "Torque*2", "Torque=10"}, 0, "20\n"},
      {{"eval", "-p", "machine.xml", "-p", "override.ini", "Torque"}, 0, "50\n"},
      {{"eval", "-f", "formulas.txt", "-p", "machine.xml"}, 0, "FeedRate/(SpindleSpeed*Teeth)           0.2\n"},
      {{"eval", "--json", "Speed*2", "Speed=4"}, 0, "{\"formula\": \"Speed*2\", \"value\": \"8\", \"kind\": \"real\"}"},
      {{"render", "report.txt", "-p", "machine.xml", "Operator=Ada"}, 0,
       "Machine report: Mill-3 line 2\n  mode       auto\n  spindle    1500 rpm at 42.5 Nm\n"
       "  feed       1200 mm/min, 4 teeth\n  log file   /var/lib/mill/logs/run.csv\n  operator   Ada\n"},
      {{"render", "braces.txt", "--tags", "{", "}", "--drop-unknown", "-p", "machine.xml"}, 0, "auto//4\n"},
      {{"find", "machine.xml", "SpindleSpeed>=1000"}, 0, "SpindleSpeed>=1000: yes\n"},
      {{"find", "machine.xml", "SpindleSpeed=1600+-5%"}, 1, "no\n"},  // 1520 to 1680
      {{"find", "machine.xml", "Mode='manual'"}, 1, "no\n"},
      {{"sweep", "x*x", "x", "0", "2", "2"}, 0, "x,x*x\n0,0\n1,1\n2,4\n"},
      {{"sweep", "a+x", "x", "1", "2", "1", "a=0.5"}, 0, "x,a+x\n1,1.5\n2,2.5\n"},
      {{"classes"}, 0, "Expression                 Parameters\n"},
  };
  for (const OutputCase& c : cases) {
    const ToolRun run = Tool(c.args);
    EXPECT_EQ(run.status, c.status) << c.args[0] << " " << c.args.back() << "\n" << run.err;
    EXPECT_NE(run.out.find(c.expected), std::string::npos) << c.args[0] << " " << c.args.back() << "\n" << run.out;
  }
}

struct ErrorCase { std::vector<std::string> args; std::string message; };  // the whole of standard error

TEST_F(ParamtoolTest, ErrorsAreOneLineWithExitStatusTwoAndLoseNoData) {
  WriteFile(m_Folder / "bad.xml", "<?xml version=\"1.0\"?>\n<m>\n  <a>1</a>\n  <b>2</c>\n</m>\n");
  WriteFile(m_Folder / "plain", "a file, not a folder\n");
  WriteFile(m_Folder / "out.xml", "keep me");
  const ErrorCase cases[] = {
      {{"show", "missing.xml"}, "paramtool: missing.xml: no such file\n"},
      {{"show", "bad.xml"}, "paramtool: bad.xml:4:9: malformed XML\n"},
      {{"show", "machine.doc"}, "paramtool: machine.doc: unknown file form (use .xml, .ini, .csv or .tree)\n"},
      {{"frob"}, "paramtool: unknown command 'frob' (paramtool --help lists the commands)\n"},
      {{"convert", "machine.xml", "plain/out.xml"}, "paramtool: plain/out.xml: no such folder " +
                                                        (m_Folder / "plain").string() + "\n"},
      {{"convert", "missing.xml", "out.xml"}, "paramtool: missing.xml: no such file\n"},
      {{"convert", "bad.xml", "out.xml"}, "paramtool: bad.xml:4:9: malformed XML\n"},
      {{"set", "machine.xml", "noequals"}, "paramtool: 'noequals' is not NAME=VALUE\n"},
      {{"sweep", "x", "x", "0", "1", "0"}, "paramtool: sweep: STEPS must be between 1 and 100000\n"},
  };
  for (const ErrorCase& c : cases) {
    const ToolRun run = Tool(c.args);
    EXPECT_EQ(run.status, 2) << c.args[0] << " " << c.args.back();
    EXPECT_EQ(run.err, c.message) << c.args[0] << " " << c.args.back();
  }
  EXPECT_EQ(ReadFile(m_Folder / "out.xml"), "keep me") << "a failed convert leaves its output as it was";
  EXPECT_EQ(Tool({"show"}).status, 2);  // usage error from the argument parser
  EXPECT_EQ(Tool({"show", "--help"}).status, 0);
}

TEST_F(ParamtoolTest, ConvertRoundTripsBetweenAllForms) {
  const char* const forms[] = {"xml", "ini", "csv", "tree"};
  for (const char* first : forms) {
    for (const char* second : forms) {
      const std::string middle = std::string("a.") + first, last = std::string("b_") + first + "." + second;
      ASSERT_EQ(Tool({"convert", "machine.xml", middle}).status, 0) << middle;
      ASSERT_EQ(Tool({"convert", middle, last}).status, 0) << last;
      EXPECT_EQ(Tool({"diff", "machine.xml", middle}).status, 0) << middle;
      // Flags and descriptors are compared when both sides keep them (XML, folder stream).
      const ToolRun diff = Tool({"diff", middle, last});
      EXPECT_EQ(diff.status, 0) << last << "\n" << diff.out;
      EXPECT_EQ(diff.out, middle + " and " + last + " hold the same parameters\n");
    }
  }
  // What INI drops shows when the result is compared with the original in full.
  const ToolRun lost = Tool({"diff", "machine.xml", "b_ini.xml"});
  EXPECT_EQ(lost.status, 1);
  EXPECT_NE(lost.out.find("~  Power         6.68  flags #000100  [Expression Torque*SpindleSpeed/9549]            6.68\n"),
            std::string::npos) << lost.out;
}

TEST_F(ParamtoolTest, DiffAndSetReportTheEditedParameters) {
  ASSERT_EQ(Tool({"convert", "machine.xml", "copy.xml"}).status, 0);
  const ToolRun set = Tool({"set", "copy.xml", "SpindleSpeed=1800", "Operator=Ada"});
  EXPECT_EQ(set.out, "SpindleSpeed: 1500 -> 1800\nOperator: (new) -> Ada\n");
  const ToolRun diff = Tool({"diff", "machine.xml", "copy.xml"});
  EXPECT_EQ(diff.status, 1);
  EXPECT_EQ(diff.out,
            "   NAME          machine.xml  copy.xml\n"
            "~  SpindleSpeed  1500         1800\n"
            "+  Operator                   Ada\n");
  const ToolRun json = Tool({"diff", "--json", "copy.xml", "machine.xml"});
  EXPECT_EQ(json.status, 1);
  EXPECT_EQ(json.out,
            "{\"same\": false,\n \"added\": [],\n \"removed\": [{\"name\": \"Operator\", \"old\": \"Ada\"}],\n"
            " \"changed\": [{\"name\": \"SpindleSpeed\", \"old\": \"1800\", \"new\": \"1500\"}]}\n");
}

TEST_F(ParamtoolTest, SweepDrawsAWellFormedPlot) {
  const ToolRun run = Tool({"sweep", "Torque*SpindleSpeed/9549", "SpindleSpeed", "0", "3000", "6", "-p",
                            "machine.xml", "--svg", "power.svg"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("\n1500,6.676091737\n"), std::string::npos) << run.out;
  pugi::xml_document svg;
  ASSERT_TRUE(svg.load_file((m_Folder / "power.svg").c_str()));
  pugi::xml_node root = svg.child("svg");
  ASSERT_TRUE(root);
  const std::string points = root.child("polyline").attribute("points").value();
  EXPECT_EQ(std::count(points.begin(), points.end(), ','), 7) << points;
  std::vector<std::string> texts;
  for (pugi::xpath_node text : svg.select_nodes("//text")) texts.push_back(text.node().text().get());
  // Title, axis labels, and x ticks every 500 rpm (0 to 3000).
  for (const char* expected : {"Torque*SpindleSpeed/9549", "SpindleSpeed", "0", "500", "1500", "3000"})
    EXPECT_NE(std::find(texts.begin(), texts.end(), expected), texts.end()) << expected;
}

}  // namespace
