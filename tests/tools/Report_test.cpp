// Refused rules on standard error: message, rule, and the mark under the refused word.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

/// The rule and its mark: what stands between the first line, which is the message, and the fixes.
std::string MarkedPart(const std::string& err) {
  const std::size_t end = err.find('\n');
  return end == err.npos ? "" : err.substr(end + 1, err.find("  fix: ") - end - 1);
}

TEST(Report, MarksTheRefusedWord) {
  struct Row {
    const char* rule;
    const char* marked;
  };
  const Row rows[] = {
      {"foo", "  foo\n  ^~~\n"},
      {"1 + foo", "  1 + foo\n      ^~~\n"},
      {"1  +  foo + 2", "  1  +  foo + 2\n        ^~~\n"},
      // a Chinese character takes two columns
      {"'中文' & foo", "  '中文' & foo\n           ^~~\n"},
      {"'a，b' & 中 & 1", "  'a，b' & 中 & 1\n           ^~\n"},
      // a tab is shown as a blank
      {"'a\tb' & foo", "  'a b' & foo\n          ^~~\n"},
      // an accent that combines takes none
      {"'e\xCC\x81' & foo", "  'e\xCC\x81' & foo\n        ^~~\n"},
      // one line of several
      {"1 +\nfoo\n+ 2", "  foo\n  ^~~\n"},
      // words that the grammar refuses
      {"1 2", "  1 2\n    ^\n"},
      {"(1 + ) * 2", "  (1 + ) * 2\n       ^\n"},
      // a rule that ends too early, the caret behind its end
      {"1 +", "  1 +\n     ^\n"},
      {"中 +", "  中 +\n  ^~\n"},
      {"", "  \n  ^\n"},
  };
  for (const Row& row : rows) {
    const ToolResult result = RunTool({"verify", row.rule});
    EXPECT_EQ(result.status, 1) << row.rule;
    EXPECT_EQ(MarkedPart(result.err), row.marked) << row.rule;
  }
}

TEST(Report, TellsTheMessageAndThePlace) {
  const ToolResult direct = RunTool({"sql", "1 + foo"});
  EXPECT_EQ(direct.err.substr(0, direct.err.find('\n')), "orkrule: The word \"foo\" is unknown.");
  EXPECT_EQ(direct.out, "");

  const ToolResult lines = RunTool({"sql"}, "1 + 2\n\n  \n1 + foo\n3\n");
  EXPECT_EQ(lines.status, 1);
  EXPECT_EQ(lines.out, "1 + 2\n\n3\n");
  EXPECT_EQ(lines.err,
            "orkrule: standard input:4: The word \"foo\" is unknown.\n  1 + foo\n      ^~~\n"
            "orkrule: 1 of 3 rules refused\n");
}

// The rule itself loads the table of the refused field: the first time the engine has no word for
// it.
TEST(Report, NamesAFieldOfATableThatTheRuleLoads) {
  struct Row {
    const char* rule;
    const char* word;
    const char* mark;
  };
  const Row rows[] = {
      {"Orders.Amount > Customer.Name", "Customer.Name", "                  ^~~~~~~~~~~~~\n"},
      {"客户.金额 > 1 and T.a > 1 + 客户.名称", "客户.名称",
       "                              ^~~~~~~~~\n"},
      {"客户.金额 > T.s", "T.s", "              ^~~\n"},
  };
  for (const Row& row : rows) {
    const std::string text = "The word \"" + std::string(row.word) + "\" has the wrong data type.";
    for (const char* command : {"verify", "sql"}) {
      const ToolResult result = RunTool({command, "--db", kSampleDb, "--type", "logic", row.rule});
      EXPECT_EQ(result.status, 1) << row.rule;
      EXPECT_EQ(result.err.substr(0, result.err.find(" Expected")), "orkrule: " + text);
      EXPECT_EQ(MarkedPart(result.err), "  " + std::string(row.rule) + "\n" + row.mark);
    }
    const auto json =
        RunTool({"verify", "--db", kSampleDb, "--type", "logic", "--json", row.rule}).Json().at(0);
    EXPECT_EQ(json.at("error").at("text").get<std::string>().substr(0, text.size()), text);
  }
}

TEST(Report, CountsCharactersInJson) {
  const auto answer = RunTool({"verify", "--json", "'\xF0\xA0\x80\x8B文' & foo"}).Json().at(0);
  EXPECT_EQ(answer.at("valid"), false);
  EXPECT_EQ(answer.at("error").at("number"), 6260);  // "The word "%s" is unknown."
  EXPECT_EQ(answer.at("error").at("text"), "The word \"foo\" is unknown.");
  EXPECT_EQ(answer.at("error").at("position"), 7);
}

TEST(Report, SpeaksTheLanguageAskedFor) {
  const ToolResult english = RunTool({"verify", "foo"});
  const ToolResult chinese = RunTool({"verify", "--language", "zh-CN", "foo"});
  EXPECT_NE(chinese.err, english.err);
  EXPECT_NE(chinese.err.find("foo"), chinese.err.npos);
  EXPECT_EQ(MarkedPart(chinese.err), "  foo\n  ^~~\n");
}

}  // namespace
