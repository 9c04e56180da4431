// How the tool speaks of itself: help, versions, what is wrong with a command line and what may
// have been meant, and databases that do not answer.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> Words(const std::string& text) {
  std::vector<std::string> words;
  std::istringstream stream(text);
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

std::vector<std::string> Commands() {
  std::vector<std::string> commands = Lines(RunTool({"help", "--commands"}).out);
  EXPECT_GT(commands.size(), 15u);
  return commands;
}

TEST(Usage, OfAWrongCommandLineTellsWhatMayHaveBeenMeant) {
  struct Row {
    std::vector<std::string> arguments;
    const char* message;  // behind "orkrule: "
    const char* help;     // whose help is named
  };
  const Row rows[] = {
      // clang-format off
      {{"verfy"},                     "unknown command \"verfy\"; did you mean \"verify\"?", "orkrule"},
      {{"verfy", "--db", "x", "1"},   "unknown command \"verfy\"; did you mean \"verify\"?", "orkrule"},
      {{"VERIFY"},                    "unknown command \"VERIFY\"; did you mean \"verify\"?", "orkrule"},
      {{"zzzzzz"},                    "unknown command \"zzzzzz\"", "orkrule"},
      {{"--db", "x", "sql", "1"},     "unknown option \"--db\"; it stands behind its command", "orkrule sql"},
      {{"sql", "--dialekt", "x"},     "unknown option \"--dialekt\"; did you mean \"--dialect\"?", "orkrule sql"},
      {{"sql", "--dialekt=x", "1"},   "unknown option \"--dialekt\"; did you mean \"--dialect\"?", "orkrule sql"},
      {{"sql", "-q", "1"},            "unknown option \"-q\"", "orkrule sql"},
      {{"sql", "-T.a + 2"},             "\"-T.a + 2\" begins as an option does; put -- before such a rule", "orkrule sql"},
      {{"sql", "1", "2"},             "there is no place for the argument \"2\"", "orkrule sql"},
      {{"sql", "--type", "nubmer"},   "--type: \"nubmer\" is neither the name nor the number of a type; did you mean \"number\"?", "orkrule sql"},
      {{"sql", "--dialect", "orcle"}, "--dialect: \"orcle\" is none of the dialects default, oracle, dm, kingbase, opengauss, all; did you mean \"oracle\"?", "orkrule sql"},
      {{"sql", "--dialect", "dm,sqlservr"}, "--dialect: \"sqlservr\" is none of the dialects default, oracle, dm, kingbase, opengauss, all; did you mean \"sqlserver\"?", "orkrule sql"},
      {{"rename", "--dialect", "al"}, "--dialect: \"al\" is none of the dialects default, oracle, dm, kingbase, opengauss", "orkrule rename"},
      {{"check", "--color", "allways"}, "--color: \"allways\" is none of auto, always, never; did you mean \"always\"?", "orkrule check"},
      {{"vocabulary", "fuctions"},    "KIND: \"fuctions\" is none of functions, operators, sysvars; did you mean \"functions\"?", "orkrule vocabulary"},
      {{"sql", "--port", "x", "1"},   "--port: \"x\" is no whole number", "orkrule sql"},
      {{"strip", "1"},                "--tables is required", "orkrule strip"},
      {{"fields"},                    "TABLE is required", "orkrule fields"},
      // clang-format on
  };
  for (const Row& row : rows) {
    const ToolResult result = RunTool(row.arguments);
    EXPECT_EQ(result.status, 2) << row.message;
    EXPECT_EQ(result.out, "") << row.message;
    EXPECT_EQ(result.err, std::string("orkrule: ") + row.message + "\nTry '" + row.help +
                              " --help' for how it is used.\n");
  }
}

TEST(Usage, OfNoCommandIsAnErrorWithTheHelp) {
  const ToolResult result = RunTool({});
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(result.err.starts_with("orkrule: a command is missing\n")) << result.err;
  EXPECT_TRUE(result.err.ends_with(RunTool({"--help"}).out)) << result.err;
}

TEST(Help, IsTheSameByOptionAndByCommand) {
  EXPECT_EQ(RunTool({"help"}).out, RunTool({"--help"}).out);
  for (const std::string& command : Commands()) {
    std::vector<std::string> asked = Words("help " + command);
    std::vector<std::string> option = Words(command + " --help");
    const ToolResult help = RunTool(asked);
    EXPECT_EQ(help.status, 0) << command;
    EXPECT_EQ(help.out, RunTool(option).out) << command;
  }
}

TEST(Help, OfEveryCommandHasUsageAndAnExampleWithinEightyColumns) {
  for (const std::string& command : Commands()) {
    const std::string help = RunTool(Words("help " + command)).out;
    EXPECT_TRUE(help.starts_with("Usage: orkrule " + command + " [OPTIONS]")) << help;
    EXPECT_NE(help.find("\nOptions:\n"), help.npos) << help;
    const std::size_t examples = help.find("Examples:\n");
    ASSERT_NE(examples, help.npos) << help;
    EXPECT_NE(help.find("orkrule " + command, examples), help.npos) << help;
    // What an example prints cannot be broken; the options and what they mean can.
    for (const std::string& line : Lines(help.substr(0, examples))) {
      EXPECT_LE(line.size(), 80u) << command << ": " << line;
    }
  }
}

TEST(Help, ListsEveryCommandButThoseForOurselves) {
  const std::string help = RunTool({"help"}).out;
  for (const std::string& command : Commands()) {
    EXPECT_NE(help.find("\n  " + Words(command).front() + " "), help.npos) << command;
  }
  EXPECT_EQ(help.find("reference "), help.npos);
}

TEST(Help, OfAnUnknownCommandTellsWhatMayHaveBeenMeant) {
  const ToolResult result = RunTool({"help", "renam"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "orkrule: unknown command \"renam\"; did you mean \"rename\"?\n");
}

TEST(Version, TellsLibraryMessagesAndLibraries) {
  const ToolResult result = RunTool({"--version"});
  EXPECT_EQ(result.status, 0);
  const std::vector<std::string> lines = Lines(result.out);
  ASSERT_EQ(lines.size(), 3u) << result.out;
  EXPECT_EQ(lines[0], "orkrule " ORKRULE_VERSION);
  EXPECT_EQ(lines[1], "messages: " ORKRULE_BINARY_DIR "/bin/Hearth.resource.dll (en-US, zh-CN)");
  EXPECT_TRUE(lines[2].starts_with("libraries: libxml2 2.")) << lines[2];
  for (const char* name : {", ICU ", ", SQLite 3.", ", unixODBC 2."}) {
    EXPECT_NE(lines[2].find(name), std::string::npos) << lines[2];
  }
}

TEST(Language, ThatIsNotThereIsAWarningWithThoseThatAre) {
  const ToolResult unknown = RunTool({"sql", "--language", "xx", "1 + 2"});
  EXPECT_EQ(unknown.status, 0);
  EXPECT_EQ(unknown.out, "1 + 2\n");
  EXPECT_EQ(unknown.err,
            "orkrule: warning: there are no texts in the language \"xx\", but in en-US, zh-CN\n");
  for (const char* tag : {"en", "en-GB", "zh", "zh-CN", "zh_CN", "ZH-tw", ""}) {
    EXPECT_EQ(RunTool({"sql", "--language", tag, "1 + 2"}).err, "") << tag;
  }
  for (const char* tag : {"de", "zh-", "nonsense", "\xE4\xB8\xAD"}) {
    EXPECT_NE(RunTool({"sql", "--language", tag, "1 + 2"}).err, "") << tag;
  }
}

TEST(Dialects, AreNamedInAnyCaseByTheirUsualNamesAsAList) {
  struct Row {
    const char* names;
    const char* out;
  };
  const Row rows[] = {
      // clang-format off
      {"ORACLE",                  "1\n"},
      {"oracle,dm",               "oracle     1\ndm         1\n"},
      {"Oracle, DM",              "oracle     1\ndm         1\n"},
      {"plsql,PL/SQL,ora",        "1\n"},
      {"SQL Server,T-SQL,mssql",  "1\n"},
      {"KingbaseES,openGauss",    "kingbase   1\nopengauss  1\n"},
      // clang-format on
  };
  for (const Row& row : rows) {
    const ToolResult result = RunTool({"sql", "--dialect", row.names, "1"});
    EXPECT_EQ(result.status, 0) << row.names << result.err;
    EXPECT_EQ(result.out, row.out) << row.names;
  }
}

TEST(Database, OfTheEnvironmentIsTheDefault) {
  const std::vector<std::string> environment = {"ORKRULE_DB=" + kSampleDb};
  const ToolResult result = RunTool({"sql", "T.a"}, "", environment);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "isnull([T].a,0)\n");
  EXPECT_EQ(RunTool({"sql", "--db", kSampleDb, "T.a"}, "", {"ORKRULE_DB=/nowhere/x.db"}).status, 0);
  EXPECT_EQ(RunTool({"sql", "T.a"}, "", {"ORKRULE_DB=/nowhere/x.db"}).status, 3);
  EXPECT_EQ(RunTool({"sql", "1"}, "", {"ORKRULE_DB="}).status, 0);
}

/// A file that no database can be read from.
class Outage : public testing::Test {
 protected:
  void SetUp() override { std::ofstream(path_) << "this is no database, whatever its name says\n"; }
  void TearDown() override { std::filesystem::remove(path_); }

  const std::string path_ = testing::TempDir() + "outage_" + std::to_string(getpid()) + ".db";
};

TEST_F(Outage, AtTheStartEndsEveryCommandBeforeTheFirstRule) {
  const std::vector<std::vector<std::string>> commands = {
      {"sql"},
      {"verify"},
      {"verify", "--json"},
      {"check"},
      {"check", "--json"},
      {"format"},
      {"write"},
      {"uses", "--list"},
      {"strip", "--tables", "T"},
      {"rename", "--check", "--tables", "T:U"},
      {"complete", ""},
      {"explain", "T.a"},
      {"tables"},
      {"fields", "T"},
  };
  for (std::vector<std::string> arguments : commands) {
    const std::string name = testing::PrintToString(arguments);
    arguments.insert(arguments.begin() + 1, {"--db", path_});
    const ToolResult result = RunTool(arguments, "T.a\nT.b\n1\n");
    EXPECT_EQ(result.status, 3) << name;
    EXPECT_EQ(result.out, "") << name;
    EXPECT_EQ(result.err, "orkrule: the database gives no answer: file is not a database\n")
        << name;
  }
}

TEST_F(Outage, OfADatabaseWithoutTheViewsOfTheMetadataIsOneToo) {
  std::filesystem::remove(path_);
  std::ofstream(path_).close();  // an empty database
  const ToolResult result = RunTool({"sql", "--db", path_, "1"});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.err, "orkrule: the database gives no answer: no such table: mx_v_datafield\n");
}

/// Runs a command on three rules; behind the answer to the first one the database is spoilt.
ToolResult SpoiltBehindOneRule(std::vector<std::string> arguments, const std::string& path,
                               const std::string& rules) {
  std::filesystem::copy_file(kSampleDb, path, std::filesystem::copy_options::overwrite_existing);
  arguments.insert(arguments.begin() + 1, {"--db", path, "--file", path + ".rules"});
  const std::string fifo = path + ".rules";
  EXPECT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  int ends[2];
  EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
  std::FILE* const errors = std::tmpfile();
  const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
  const int process = StartTool(arguments, null, ends[1], fileno(errors));
  close(ends[1]);
  const int feed = open(fifo.c_str(), O_WRONLY | O_CLOEXEC);
  const std::size_t line = rules.find('\n') + 1;
  EXPECT_EQ(write(feed, rules.data(), line), static_cast<ssize_t>(line));
  ToolResult result;
  char block[4096];
  ssize_t count = read(ends[0], block, sizeof block);  // the answer to the first rule
  if (count > 0) result.out.assign(block, static_cast<std::size_t>(count));
  std::ofstream(path) << std::string(8192, 'x');
  const std::string rest = rules.substr(line);
  EXPECT_EQ(write(feed, rest.data(), rest.size()), static_cast<ssize_t>(rest.size()));
  close(feed);
  while ((count = read(ends[0], block, sizeof block)) > 0) {
    result.out.append(block, static_cast<std::size_t>(count));
  }
  result.status = WaitForTool(process);
  std::rewind(errors);
  while (const std::size_t size = std::fread(block, 1, sizeof block, errors)) {
    result.err.append(block, size);
  }
  std::fclose(errors);
  close(ends[0]);
  close(null);
  std::filesystem::remove(fifo);
  return result;
}

TEST_F(Outage, InTheMiddleStopsTheRunWithTheNumberOfRulesDone) {
  struct Row {
    std::vector<std::string> arguments;
    const char* out;  // behind the place of the rule, where that is told
  };
  const Row rows[] = {
      // clang-format off
      {{"sql"},                                "isnull([T].a,0)\n"},
      {{"verify"},                             "valid\n"},
      {{"verify", "--json"},                   "{\"expression\":\"T.a\",\"valid\":true}\n"},
      {{"strip", "--tables", "Lines"},         "T.a\n"},
      {{"uses", "--list"},                     "field  T.a\n"},
      // clang-format on
  };
  for (const Row& row : rows) {
    const ToolResult result =
        SpoiltBehindOneRule(row.arguments, path_, "T.a\nOrders.Amount\nStock.Count\n");
    const std::string name = row.arguments[0];
    EXPECT_EQ(result.status, 3) << name;
    EXPECT_TRUE(result.out.ends_with(row.out)) << name << result.out;
    EXPECT_EQ(result.err,
              "orkrule: the database gives no answer: file is not a database\n"
              "  1 rule is done, the run stops here\n")
        << name;
  }
}

}  // namespace
