// `orkrule check`: all problems of a rule, their marks and fixes, and the rule with its fixes.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

ToolResult Check(std::vector<std::string> arguments, const std::string& input = "",
                 const std::vector<std::string>& environment = {}) {
  arguments.insert(arguments.begin(), {"check", "--db", kSampleDb});
  return RunTool(arguments, input, environment);
}

constexpr const char* kFourProblems = "Orders.Amout == 5 && avg(Orders.Qty) > 1";

TEST(Check, TellsEveryProblemWithItsPlaceAndItsFixes) {
  const ToolResult result = Check({"--type", "logic", kFourProblems});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "error: The word \"Orders.Amout\" is unknown.\n"
            "  Orders.Amout == 5 && avg(Orders.Qty) > 1\n"
            "  ^~~~~~~~~~~~\n"
            "  fix: Write Orders.Amount\n"
            "error: A rule is not written with \"==\".\n"
            "  Orders.Amout == 5 && avg(Orders.Qty) > 1\n"
            "               ^~\n"
            "  fix: Write =\n"
            "error: A rule is not written with \"&&\".\n"
            "  Orders.Amout == 5 && avg(Orders.Qty) > 1\n"
            "                    ^~\n"
            "  fix: Write and\n"
            "  fix: Write &\n"
            "error: The word \"avg\" is one of other systems, here it is: average.\n"
            "  Orders.Amout == 5 && avg(Orders.Qty) > 1\n"
            "                       ^~~\n"
            "  fix: Write average\n");
}

TEST(Check, AppliesTheFirstFixes) {
  const ToolResult result = Check({"--type", "logic", "--fix", kFourProblems});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "Orders.Amount = 5 and average(Orders.Qty) > 1\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(Check({"--fix", "1 + (2"}).out, "1 + (2)\n");
  EXPECT_EQ(Check({"--fix", "T.a + 1"}).out, "T.a + 1\n");
}

TEST(Check, TellsWhatFixesLeaveWrong) {
  const ToolResult result = Check({"--fix"}, "1 + (2\n1 + (xyzzy\n3\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out.rfind("1 + (2)\n1 + (xyzzy", 0), 0u) << result.out;
  EXPECT_NE(result.out.find("\n3\n"), result.out.npos);
  EXPECT_EQ(
      result.err.rfind("orkrule: standard input:2: error: The word \"xyzzy\" is unknown.\n", 0), 0u)
      << result.err;
}

TEST(Check, SaysNothingOfRulesThatAreRight) {
  const ToolResult result = Check({}, "T.a + 1\nT.a > 1\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out + result.err, "");
  // as a date the same rule is wrong
  EXPECT_EQ(Check({"--type", "date", "T.a + 1"}).status, 1);
}

TEST(Check, NamesThePlaceOfARule) {
  const ToolResult result = Check({}, "T.a\n\nxyzzy\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out,
            "standard input:3: error: The word \"xyzzy\" is unknown.\n  xyzzy\n  ^~~~~\n");
}

TEST(Check, GivesTheAnswerOfBatch) {
  const std::string rule = kFourProblems;
  auto answer = Check({"--type", "logic", "--json", rule}).Json().at(0);
  EXPECT_EQ(answer.at("expression"), rule);
  answer.erase("expression");
  const auto batch =
      RunBatch({ConnectLine(),
                nlohmann::ordered_json{{"op", "Check"}, {"type", 4}, {"expression", rule}}.dump()});
  EXPECT_EQ(answer, batch.at(1));
  EXPECT_EQ(answer.at("problems").size(), 4u);
  EXPECT_EQ(Check({"--json"}, "T.a\nxyzzy\n").Json().size(), 2u);
  EXPECT_EQ(Check({"--json"}, "T.a\nxyzzy\n").status, 1);
}

TEST(Check, WarnsAboutTheDatabasesThatAreAskedFor) {
  const std::string rule = "T.a > 1 or T.b > 2 and T.a < 9";
  const ToolResult always = Check({"--type", "logic", rule});
  EXPECT_EQ(always.status, 0);
  EXPECT_EQ(always.out.rfind("warning: ", 0), 0u) << always.out;
  EXPECT_NE(always.out.find("\n  fix: Put brackets as the rule is read\n"), always.out.npos);

  const std::string empty = "T.s = ''";
  EXPECT_EQ(Check({"--type", "logic", empty}).out, "");
  EXPECT_EQ(Check({"--type", "logic", "--dialect", "dm,default", empty}).out, "");
  for (const char* dialects : {"oracle", "dm,PLSQL", "all"}) {
    const ToolResult result = Check({"--type", "logic", "--dialect", dialects, empty});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out.rfind("warning: ", 0), 0u) << dialects << result.out;
  }
  const std::string torn = "T.a > 1 or sum(T.b) > 2";
  EXPECT_EQ(Check({"--type", "logic", torn}).out, "");
  EXPECT_EQ(Check({"--type", "logic", "--split", torn}).out.rfind("warning: ", 0), 0u);
}

TEST(Check, FollowsTheLanguage) {
  const std::string rule = "sum(T.a) > 1 and T.b = 2";
  EXPECT_EQ(Check({"--type", "logic", rule}).status, 0);
  const ToolResult chinese = Check({"--type", "logic", "--language", "zh-CN", rule});
  EXPECT_EQ(chinese.status, 1);
  EXPECT_NE(chinese.out.find("  规则中的词语随所选的语言而定。 (--language)\n"), chinese.out.npos)
      << chinese.out;
  EXPECT_EQ(Check({"--language", "zh-CN", "--fix", rule}).out, "求和(T.a) > 1 且 T.b = 2\n");
  // by the locale of the user, too
  const ToolResult byLocale = Check({"--type", "logic", rule}, "", {"LC_ALL=zh_CN.UTF-8"});
  EXPECT_EQ(byLocale.out, chinese.out);
  // a word of no language needs no such hint
  const ToolResult unknown = Check({"--language", "zh-CN", "xyzzy"});
  EXPECT_EQ(unknown.out.find("--language"), unknown.out.npos) << unknown.out;
}

TEST(Check, HasColoursWhereTheyAreWanted) {
  const std::string escape = "\x1B[";
  EXPECT_EQ(Check({"xyzzy"}).out.find(escape), std::string::npos);
  EXPECT_EQ(Check({"--color", "never", "xyzzy"}).out.find(escape), std::string::npos);
  const ToolResult always = Check({"--color", "always", "1 + xyzzy"}, "", {"NO_COLOR=1"});
  EXPECT_EQ(always.out,
            "\x1B[1;31merror:\x1B[0m The word \"xyzzy\" is unknown.\n"
            "  1 + \x1B[1;31mxyzzy\x1B[0m\n"
            "      \x1B[1;31m^~~~~\x1B[0m\n");
}

TEST(Check, EndsWhereTheDatabaseDoes) {
  const ToolResult result =
      RunTool({"check", "--db", "odbc:DRIVER=/nowhere/libnone.so"}, "T.a\nxyzzy\n");
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(result.err.starts_with("orkrule: the database gives no answer: ")) << result.err;
}

}  // namespace
