// `orkrule complete`, `explain`, `functions`, `tables`, `fields` and `uses --list`.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

bool HasLineWith(const std::string& text, const std::string& begin) {
  return text.rfind(begin, 0) == 0 || text.find("\n" + begin) != text.npos;
}

/// What `batch` answers over the sample database.
nlohmann::ordered_json Batch(const nlohmann::ordered_json& request) {
  return RunBatch({ConnectLine(), request.dump()}).at(1);
}

TEST(Complete, ListsWhatFits) {
  const ToolResult result = RunTool({"complete", "--db", kSampleDb, "--type", "logic", "--tables",
                                     "Orders", "Orders.Amount > Or"});
  EXPECT_EQ(result.status, 0);
  for (const char* field : {"Amount", "Discount", "Price", "Qty", "State"}) {
    EXPECT_TRUE(HasLineWith(result.out, std::string("Orders.") + field + " ")) << field;
  }
  EXPECT_EQ(result.out.find("Date"), result.out.npos) << result.out;
  EXPECT_EQ(LinesOf(result.out).at(0), "Orders.Amount    field     number");
}

TEST(Complete, TellsWhyTheOthersDoNot) {
  const std::vector<std::string> command = {"complete", "--db",  kSampleDb,
                                            "--type",   "logic", "--tables",
                                            "Orders",   "--all", "Orders.Amount > Or"};
  const ToolResult result = RunTool(command);
  EXPECT_TRUE(HasLineWith(result.out, "Orders.ShipDate ")) << result.out;
  EXPECT_NE(result.out.find("(date, a number is expected)"), result.out.npos) << result.out;
}

TEST(Complete, TakesAnOffsetAndALimit) {
  EXPECT_EQ(LinesOf(RunTool({"complete", "--type", "number", "--offset", "3", "ROU + 1"}).out)
                .at(0)
                .substr(0, 6),
            "ROUND ");
  const ToolResult few = RunTool({"complete", "--type", "number", "--limit", "3", ""});
  EXPECT_EQ(LinesOf(few.out).size(), 4u) << few.out;  // and the constants
  EXPECT_EQ(few.err, "orkrule: there are more, --limit 0 lists all\n");
  EXPECT_EQ(RunTool({"complete", "--type", "number", "--limit", "0", ""}).err, "");
}

TEST(Complete, GivesTheAnswerOfBatch) {
  const auto answer =
      RunTool({"complete", "--db", kSampleDb, "--type", "4", "--json", "T.a > R"}).Json().at(0);
  EXPECT_EQ(answer,
            Batch({{"op", "Complete"}, {"type", 4}, {"expression", "T.a > R"}, {"offset", 7}}));
}

TEST(Explain, TellsWhatAWordIs) {
  const ToolResult round = RunTool({"explain", "ROUND"});
  EXPECT_EQ(round.status, 0);
  EXPECT_EQ(round.out,
            "ROUND  function  number\n"
            "  Rounds a number to so many digits behind the point: ROUND(2.37, 1) is 2.4.\n"
            "  default    ROUND(1.5,0)\n"
            "  oracle     ROUND(1.5,0)\n"
            "  dm         ROUND(1.5,0)\n"
            "  kingbase   ROUND(1.5,0)\n"
            "  opengauss  ROUND(1.5,0)\n");
  const ToolResult field =
      RunTool({"explain", "--db", kSampleDb, "--offset", "9", "1 + T.a > Orders.Qty"});
  EXPECT_EQ(LinesOf(field.out).at(0).substr(0, 3), ">  ") << field.out;
  const ToolResult inField =
      RunTool({"explain", "--db", kSampleDb, "--offset", "12", "1 + T.a > Orders.Qty"});
  EXPECT_EQ(LinesOf(inField.out).at(0), "Orders.Qty  field  number") << inField.out;
}

TEST(Explain, GivesTheAnswerOfBatch) {
  const auto answer =
      RunTool({"explain", "--language", "zh-CN", "--json", "--offset", "1", "求和(1)"}).Json();
  EXPECT_EQ(
      answer.at(0),
      Batch({{"op", "Explain"}, {"language", "zh-CN"}, {"expression", "求和(1)"}, {"offset", 1}}));
}

TEST(Functions, TellWhatEachDatabaseMakesOfThem) {
  const ToolResult all = RunTool({"functions"});
  EXPECT_EQ(all.status, 0);
  const std::vector<std::string> lines = LinesOf(all.out);
  EXPECT_EQ(lines.at(0),
            "function                 type    default  oracle   dm      kingbase  opengauss");
  for (const std::string& line : lines) EXPECT_LE(line.size(), 80u) << line;
  EXPECT_EQ(lines.size(), RunTool({"vocabulary", "functions", "--json"}).Json().at(0).size() + 1);
  EXPECT_TRUE(HasLineWith(all.out, "thisSet                  any     native   refused  native"))
      << all.out;
}

TEST(Functions, ShowTheSqlOfOneDatabase) {
  const ToolResult oracle = RunTool({"functions", "--dialect", "oracle"});
  EXPECT_NE(oracle.out.find("refused  This database does not support thisSet.\n"), oracle.out.npos);
  const auto json = RunTool({"functions", "--dialect", "oracle,dm", "--json"}).Json().at(0);
  for (const auto& function : json.at("functions")) {
    EXPECT_EQ(function.at("databases").size(), 2u);
    EXPECT_EQ(function.at("databases").begin().key(), "oracle");
  }
  EXPECT_EQ(RunTool({"functions", "--json"}).Json().at(0), Batch({{"op", "Capabilities"}}));
}

TEST(Tables, AreListedByAPartOfTheirName) {
  EXPECT_EQ(RunTool({"tables", "--db", kSampleDb, "OR"}).out, "Orders\n");
  EXPECT_EQ(LinesOf(RunTool({"tables", "--db", kSampleDb}).out).size(), 7u);
  EXPECT_EQ(RunTool({"tables", "--db", kSampleDb, "--json", "st"}).Json().at(0),
            Batch({{"op", "Tables"}, {"like", "st"}}));
  const ToolResult none = RunTool({"tables", "--json"});
  EXPECT_EQ(none.status, 3);
  EXPECT_EQ(none.Json().at(0).at("tables"), nlohmann::ordered_json::array());
  EXPECT_EQ(none.err, "orkrule: Nothing can be loaded without a database connection.\n");
}

TEST(Fields, AreListedWithTheirTypesAndRealNames) {
  EXPECT_EQ(RunTool({"fields", "--db", kSampleDb, "Stock"}).out,
            "Item     text    item_code\n"
            "Count    number  qty_left\n"
            "Counted  date    counted_at\n");
  // columns stand under each other under wide characters too
  EXPECT_EQ(LinesOf(RunTool({"fields", "--db", kSampleDb, "客户"}).out).at(2),
            "金额      number  金额");
  EXPECT_EQ(RunTool({"fields", "--db", kSampleDb, "--json", "T"}).Json().at(0),
            Batch({{"op", "Fields"}, {"table", "T"}}));
}

TEST(Uses, ListsTheWordsThatARuleDependsOn) {
  const std::string rule = "sum(Orders.Amount) > T.a + Input.x[N] and nowhere";
  EXPECT_EQ(RunTool({"uses", "--db", kSampleDb, "--list", rule}).out,
            "function  sum\n"
            "field     Orders.Amount\n"
            "field     T.a\n"
            "input     Input.x[N]\n"
            "unknown   nowhere\n");
  EXPECT_EQ(RunTool({"uses", "--db", kSampleDb, "--list"}, "T.a\n\nT.b\n").out,
            "standard input:1:  field  T.a\n"
            "standard input:3:  field  T.b\n");
  auto answer = RunTool({"uses", "--db", kSampleDb, "--list", "--json", rule}).Json().at(0);
  EXPECT_EQ(answer.at("expression"), rule);
  answer.erase("expression");
  EXPECT_EQ(answer, Batch({{"op", "Uses"}, {"expression", rule}}));
}

TEST(Uses, AsksForTablesOrAList) {
  const ToolResult result = RunTool({"uses", "T.a"});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "orkrule: --tables or --list is required\n");
}

}  // namespace
