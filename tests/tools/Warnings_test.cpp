// `orkrule sql` and `verify` beside their answers: fixes under a refusal, and warnings about rules
// that verify. What they print on standard output is the same with and without.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr const char* kOrBeforeAnd = "T.a > 1 or T.b > 2 and T.a < 9";
constexpr const char* kEmptyText = "T.s = ''";

ToolResult Shop(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin() + 1, {"--db", kSampleDb, "--type", "logic"});
  return RunTool(arguments);
}

TEST(Refusals, HaveTheirFixesBelow) {
  const std::string shown =
      "orkrule: The word \"Orders.Amout\" is unknown.\n"
      "  Orders.Amout > 1\n"
      "  ^~~~~~~~~~~~\n"
      "  fix: Write Orders.Amount\n";
  for (const char* command : {"sql", "verify"}) {
    const ToolResult result = Shop({command, "Orders.Amout > 1"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, shown);
  }
  const auto json = Shop({"verify", "--json", "Orders.Amout > 1"});
  EXPECT_EQ(json.err, "");
  EXPECT_EQ(json.Json().at(0).at("error").at("fixes").dump(),
            R"([{"label":"Write Orders.Amount",)"
            R"("edits":[{"offset":0,"length":12,"text":"Orders.Amount"}]}])");
}

TEST(Refusals, TellThatWordsFollowTheLanguage) {
  const ToolResult result = Shop({"verify", "--language", "zh-CN", "sum(T.a) > 1"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("规则中的词语随所选的语言而定。 (--language)\n"), result.err.npos)
      << result.err;
  const ToolResult english = Shop({"verify", "求和(T.a) > 1"});
  EXPECT_NE(english.err.find(" The words of a rule follow the language that is chosen. "
                             "(--language)\n"),
            english.err.npos)
      << english.err;
  EXPECT_EQ(Shop({"verify", "xyzzy"}).err.find("--language"), std::string::npos);
}

TEST(Warnings, StandOnStandardErrorAlone) {
  for (const char* command : {"sql", "verify"}) {
    const ToolResult warned = Shop({command, kOrBeforeAnd});
    const ToolResult silent = Shop({command, "--no-warnings", kOrBeforeAnd});
    EXPECT_EQ(warned.status, 0);
    EXPECT_EQ(silent.status, 0);
    EXPECT_EQ(warned.out, silent.out);
    EXPECT_EQ(silent.err, "");
    EXPECT_EQ(warned.err.rfind("orkrule: warning: ", 0), 0u) << warned.err;
    EXPECT_NE(warned.err.find("\n  " + std::string(kOrBeforeAnd) + "\n"), warned.err.npos);
    const ToolResult json = Shop({command, "--json", kOrBeforeAnd});
    EXPECT_EQ(json.err, "");
  }
}

TEST(Warnings, TouchTheDatabasesThatAreAskedFor) {
  EXPECT_EQ(Shop({"verify", kEmptyText}).err, "");
  EXPECT_EQ(Shop({"sql", kEmptyText}).err, "");
  EXPECT_EQ(Shop({"sql", "--dialect", "dm,kingbase", kEmptyText}).err, "");
  const std::string oracle = Shop({"sql", "--dialect", "oracle", kEmptyText}).err;
  EXPECT_EQ(oracle.rfind("orkrule: warning: ", 0), 0u) << oracle;
  EXPECT_EQ(Shop({"sql", "--dialect", "all", kEmptyText}).err.rfind("orkrule: warning: ", 0), 0u);
}

TEST(Warnings, TouchTheTwoTextsWhereThereAreTwo) {
  const char* const torn = "T.a > 1 or sum(T.b) > 2";
  EXPECT_EQ(Shop({"sql", torn}).err, "");
  EXPECT_NE(Shop({"sql", "--split", torn}).err, "");
}

TEST(Warnings, KeepQuietAboutWhatIsSaidAlready) {
  const char* const set = "T.a in thisSet(1,2)";
  EXPECT_EQ(Shop({"sql", "--dialect", "oracle", set}).err,
            "orkrule: This database does not support thisSet.\n  " + std::string(set) + "\n");
  const ToolResult all = Shop({"sql", "--dialect", "all", set});
  EXPECT_EQ(all.err.find("This database does not support"), all.err.npos) << all.err;
}

TEST(Warnings, LeaveInformationToCheck) {
  const char* const rule = "T.d not_in thisSet(Orders.OrderDate)";
  EXPECT_EQ(Shop({"check", rule}).out.rfind("information: ", 0), 0u);
  EXPECT_EQ(Shop({"verify", rule}).err, "");
}

}  // namespace
