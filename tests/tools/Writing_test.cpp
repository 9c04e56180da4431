// `orkrule write` and `format`: documents back to rules, and rules in even form.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct SampleRule {
  std::string type;
  std::string text;
};

/// The rules of examples/rules.txt.
std::vector<SampleRule> SampleRules() {
  std::vector<SampleRule> rules;
  std::ifstream file(ORKRULE_SOURCE_DIR "/examples/rules.txt");
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    SampleRule rule;
    if (!(words >> rule.type) || rule.type == "#") continue;
    std::getline(words >> std::ws, rule.text);
    rules.push_back(rule);
  }
  EXPECT_GE(rules.size(), 10u);
  return rules;
}

std::string JsonLines(const std::vector<SampleRule>& rules) {
  std::string lines;
  for (const SampleRule& rule : rules) {
    lines += nlohmann::json{{"type", rule.type}, {"expression", rule.text}}.dump() + "\n";
  }
  return lines;
}

/// Documents without what is another in each language.
std::string WithoutDescriptions(const std::string& documents) {
  return std::regex_replace(documents, std::regex(" (outDesc|content)=\"[^\"]*\""), "");
}

std::string DocumentsOf(const std::vector<SampleRule>& rules, const std::string& language) {
  const ToolResult result =
      RunTool({"verify", "--db", kSampleDb, "--language", language, "--document", "--jsonl"},
              JsonLines(rules));
  EXPECT_EQ(result.status, 0) << result.err;
  return result.out;
}

TEST(Write, GivesTheRulesOfDocumentsInAnyLanguage) {
  std::vector<SampleRule> rules = SampleRules();
  const std::string documents = DocumentsOf(rules, "en");
  for (const char* language : {"en", "zh-CN"}) {
    const ToolResult written =
        RunTool({"write", "--db", kSampleDb, "--language", language}, documents);
    EXPECT_EQ(written.status, 0) << written.err;
    std::istringstream lines(written.out);
    for (SampleRule& rule : rules) ASSERT_TRUE(std::getline(lines, rule.text));
    EXPECT_EQ(lines.peek(), EOF);
    EXPECT_EQ(WithoutDescriptions(DocumentsOf(rules, language)), WithoutDescriptions(documents))
        << written.out;
  }
  EXPECT_EQ(rules.back().text, "Stock.Count < 5 且 Stock.Item <> 输入.item[S]");
}

TEST(Write, TakesDocumentsInEveryForm) {
  const std::string sum = RunTool({"verify", "--document", "1 + 2"}).out;
  std::string flat = sum;
  for (std::size_t at; (at = flat.find('\n')) != flat.npos;) flat.erase(at, 1);
  const auto written = [](const std::string& input) { return RunTool({"write"}, input).out; };
  EXPECT_EQ(RunTool({"write", sum}).out, "1 + 2\n");
  EXPECT_EQ(RunTool({"write", flat}).out, "1 + 2\n");
  EXPECT_EQ(written(sum), "1 + 2\n");
  EXPECT_EQ(written(flat), "1 + 2\n");
  EXPECT_EQ(written(sum + "\n \n" + flat + "\n" + sum), "1 + 2\n1 + 2\n1 + 2\n");
  EXPECT_EQ(written("<?xml version=\"1.0\"?>\n<!-- a -->\n" + sum + sum), "1 + 2\n1 + 2\n");

  // signs of a document within a text, and an element without another
  const std::string hostile = RunTool({"verify", "--document", "'</a>\"<b>' & '/'"}).out;
  EXPECT_EQ(written(hostile + hostile), "'</a>\"<b>' & '/'\n'</a>\"<b>' & '/'\n");
  const std::string one = RunTool({"verify", "--document", "'a/'"}).out;
  EXPECT_EQ(written(one + one), "'a/'\n'a/'\n");

  const std::string path = testing::TempDir() + "orkrule_documents.txt";
  std::ofstream(path) << sum << flat;
  EXPECT_EQ(RunTool({"write", "--file", path}).out, "1 + 2\n1 + 2\n");
  std::remove(path.c_str());

  const std::string text = nlohmann::json(sum).dump() + "\n";
  const ToolResult json = RunTool({"verify", "--document", "--json", "1 + 2"});
  EXPECT_EQ(RunTool({"write", "--jsonl"}, text + json.out).out, "1 + 2\n1 + 2\n");
}

TEST(Write, TellsOfDocumentsThatNoRuleGives) {
  const std::string sum = RunTool({"verify", "--document", "1 + 2"}).out;
  const ToolResult result = RunTool({"write"}, "<x/>\n" + sum + "<a>\n<b/>");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "\n1 + 2\n\n");
  EXPECT_EQ(result.err.rfind("orkrule: standard input:1: No rule gives this document.\n"
                             "orkrule: standard input:6: ",
                             0),
            0u)
      << result.err;
  const auto json = RunTool({"write", "--json", "<x/>"}).Json().at(0);
  EXPECT_EQ(json.at("result"), false);
  EXPECT_EQ(json.at("errDescription"), "No rule gives this document.");
}

TEST(Format, EvensOutSpacingAndLines) {
  EXPECT_EQ(RunTool({"format", "ROUND( 1.50,2 )*-  3"}).out, "ROUND(1.50, 2) * -3\n");
  EXPECT_EQ(RunTool({"format", "--db", kSampleDb, "--width", "40",
                     "Orders.Amount>1000 and(Orders.Qty<5 or Orders.State=2)"})
                .out,
            "Orders.Amount > 1000\nand (Orders.Qty < 5 or Orders.State = 2)\n");
  EXPECT_EQ(RunTool({"format", "--db", kSampleDb, "--width", "0",
                     "Orders.Amount>1000 and(Orders.Qty<5 or Orders.State=2)"})
                .out,
            "Orders.Amount > 1000 and (Orders.Qty < 5 or Orders.State = 2)\n");
}

TEST(Format, TellsOfRulesThatWouldChange) {
  const ToolResult result = RunTool({"format", "--check"}, "1 + 2\n1+2\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "orkrule: standard input:2: the rule would be written\n1 + 2\n"
            "orkrule: 1 of 2 rules would be written otherwise\n");
  EXPECT_EQ(RunTool({"format", "--check", "1 + 2"}).err, "");
}

TEST(Format, GivesTheAnswerOfBatch) {
  EXPECT_EQ(RunTool({"format", "--json", "1+2"}).Json().at(0),
            RunBatch({R"({"op":"Format","expression":"1+2"})"}).at(0));
}

}  // namespace
