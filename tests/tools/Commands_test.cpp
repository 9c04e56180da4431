// `orkrule verify`, `vocabulary` and `messages`, and the help of every command.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <string>

namespace {

const std::string kDb = ORKRULE_SAMPLE_DB;

TEST(Verify, AnswersLineByLine) {
  const ToolResult result = RunTool({"verify", "--db", kDb}, "T.a\nT.nope\n1\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "valid\nrefused\nvalid\n");
  EXPECT_EQ(RunTool({"verify", "--type", "logic", "1 = 1"}).out, "valid\n");
  EXPECT_EQ(RunTool({"verify", "--type", "logic", "1 + 1"}).status, 1);
}

TEST(Verify, GivesTheDocument) {
  const ToolResult text = RunTool({"verify", "--document", "1"});
  EXPECT_EQ(text.out.rfind("<tag ", 0), 0u) << text.out;
  const auto json = RunTool({"verify", "--document", "--json", "1"}).Json().at(0);
  EXPECT_EQ(json.at("valid"), true);
  EXPECT_EQ(json.at("document").get<std::string>() + "\n", text.out);
  EXPECT_FALSE(RunTool({"verify", "--json", "1"}).Json().at(0).contains("document"));
}

TEST(Verify, LoadsAReportTemplate) {
  // A field of the form is written behind the word before a field of the current record.
  EXPECT_EQ(RunTool({"verify", "--db", kDb, "--rt", "7", "thisReport.Header.Total + 1"}).status, 0);
  EXPECT_EQ(RunTool({"verify", "--db", kDb, "thisReport.Header.Total + 1"}).status, 1);
  const ToolResult missing = RunTool({"verify", "--db", kDb, "--rt", "8", "1"});
  EXPECT_EQ(missing.status, 3);
  EXPECT_EQ(missing.err,
            "orkrule: --rt 8: The report template 8 does not exist or has no fields.\n");
}

TEST(Vocabulary, ListsWords) {
  const ToolResult functions = RunTool({"vocabulary", "functions"});
  EXPECT_EQ(functions.status, 0);
  EXPECT_NE(functions.out.find("\nsum "), functions.out.npos);
  const ToolResult operators = RunTool({"vocabulary", "operators"});
  EXPECT_NE(operators.out.find("\n<= "), operators.out.npos) << operators.out;
  const ToolResult variables = RunTool({"vocabulary", "sysvars"});
  EXPECT_NE(variables.out.find("sysVar.userName "), variables.out.npos);
}

TEST(Vocabulary, GivesJsonAndXml) {
  const auto list = RunTool({"vocabulary", "operators", "--json"}).Json().at(0);
  bool found = false;
  for (const auto& word : list) {
    if (word.at("primary") != "<>") continue;
    found = true;
    EXPECT_EQ(word.at("word"), "<>");
    EXPECT_EQ(word.at("type"), 5);
    EXPECT_EQ(word.at("symbol"), 19);
  }
  EXPECT_TRUE(found);
  const ToolResult xml = RunTool({"vocabulary", "functions", "--xml"});
  EXPECT_NE(xml.out.find("<item primary=\"sum\" outdesc=\"sum\" datatype=\"1\" symbol=\"27\"/>"),
            xml.out.npos);
}

TEST(Vocabulary, IsInTheLanguageAskedFor) {
  const auto list =
      RunTool({"vocabulary", "functions", "--json", "--language", "zh-CN"}).Json().at(0);
  for (const auto& word : list) {
    if (word.at("primary") != "sum") continue;
    EXPECT_NE(word.at("word"), "sum");
  }
  // By the locale of the user, too.
  const ToolResult byLocale = RunTool({"vocabulary", "functions"}, "", {"LC_ALL=zh_CN.UTF-8"});
  EXPECT_EQ(byLocale.out, RunTool({"vocabulary", "functions", "--language", "zh-CN"}).out);
}

TEST(Messages, AreOneObject) {
  const ToolResult english = RunTool({"messages"});
  EXPECT_EQ(english.status, 0);
  const auto texts = nlohmann::ordered_json::parse(english.out);
  EXPECT_EQ(texts.at("6306"), "and");
  EXPECT_EQ(texts.at("6294"), "The rule ends too early, something is missing at its end.");
  EXPECT_FALSE(texts.contains("1"));
  EXPECT_EQ(texts.begin().key(), "6101");
  const auto chinese =
      nlohmann::ordered_json::parse(RunTool({"messages", "--language", "zh-CN"}).out);
  EXPECT_EQ(chinese.size(), texts.size());
  EXPECT_NE(chinese.at("6306"), "and");
}

/// Runs the example of a help text as a shell does, on the sample database of the tests.
int RunExample(const std::string& help) {
  const std::string mark = "Examples:\n";
  std::string example = help.substr(help.find(mark) + mark.size());
  const std::string sample = "examples/shop.db";
  for (std::size_t at; (at = example.find(sample)) != example.npos;)
    example.replace(at, sample.size(), kDb);
  const std::string tool = ORKRULE_TOOL;
  const std::string path = "PATH='" + tool.substr(0, tool.rfind('/')) + "':\"$PATH\"\n";
  const int state = std::system((path + "export LC_ALL=C\nexec >/dev/null\n" + example).c_str());
  return WIFEXITED(state) ? WEXITSTATUS(state) : -1;
}

TEST(Help, ShowsAnExampleThatWorks) {
  EXPECT_EQ(RunTool({"--help"}).status, 0);
  for (const char* command :
       {"sql", "verify", "check", "format", "write", "complete", "explain", "functions", "tables",
        "fields", "vocabulary", "messages", "uses", "strip", "rename", "batch"}) {
    const ToolResult help = RunTool({command, "--help"});
    EXPECT_EQ(help.status, 0) << command;
    EXPECT_NE(help.out.find("Examples:\n"), help.out.npos) << command;
    EXPECT_NE(help.out.find(std::string("orkrule ") + command), help.out.npos) << command;
    EXPECT_EQ(RunExample(help.out), 0) << help.out;
  }
}

}  // namespace
