// `orkrule sql`: texts, dialects, the two-text form, where rules come from.
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

TEST(Sql, TranslatesFieldsOfTheSampleDatabase) {
  struct Row {
    const char* type;
    const char* rule;
    const char* sql;
  };
  const Row rows[] = {
      // clang-format off
      {"logic",  "Orders.Amount > 1",   "isnull([Orders].Amount,0) > 1"},
      {"4",      "Orders.Amount > 1",   "isnull([Orders].Amount,0) > 1"},
      {"number", "T.a + T.b",           "isnull([T].a,0) + isnull([T].b,0)"},
      {"text",   "Customer.Name & 'x'", "isnull([Customer].Name,'') + N'x'"},
      {"any",    "客户.金额 * 2",       "isnull([客户].金额,0) * 2"},
      {"any",    "Stock.Count",         "isnull([Stock].qty_left,0)"},
      // clang-format on
  };
  for (const Row& row : rows) {
    const ToolResult result = RunTool({"sql", "--db", kSampleDb, "--type", row.type, row.rule});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, std::string(row.sql) + "\n") << row.rule;
  }
}

TEST(Sql, TakesModes) {
  EXPECT_EQ(RunTool({"sql", "--db", kSampleDb, "--no-is-null", "T.a + 1"}).out, "[T].a + 1\n");
  EXPECT_EQ(RunTool({"sql", "--db", "sqlite:" + kSampleDb, "--tables", "T,Orders", "T.a"}).out,
            "isnull([T].a,0)\n");
}

TEST(Sql, TakesReportTemplatesAndTheirModes) {
  const auto sql = [](std::vector<std::string> options, const char* rule) {
    std::vector<std::string> arguments = {"sql", "--db", kSampleDb, "--rt", "7", "--no-is-null"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.emplace_back(rule);
    const ToolResult result = RunTool(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
  };
  EXPECT_EQ(sql({}, "thisReport.Header.Total * 2"), "<F1604> * 2\n");
  EXPECT_EQ(sql({}, "thisReport.Lines.Qty > 1"), "#t_7_repvar_72.F1702 > 1\n");
  EXPECT_EQ(sql({"--rt-id", "x9"}, "thisReport.Lines.Qty > 1"), "#t_x9_repvar_72.F1702 > 1\n");
  EXPECT_EQ(sql({"--rt-id", ""}, "thisReport.Lines.Qty > 1"), "#t__repvar_72.F1702 > 1\n");
  EXPECT_EQ(sql({"--form-data-in", "1"}, "thisReport.Header.Total"), "t_7_thisCaseVar_71.Total\n");
}

TEST(Sql, PrintsDialectsUnderEachOther) {
  const ToolResult result =
      RunTool({"sql", "--type", "text", "--dialect", "all", "toLower('A') & 'b'"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "default    lower(N'A') + N'b'\n"
            "oracle     toLower('A') || 'b'\n"
            "dm         lower('A') + 'b'\n"
            "kingbase   lower('A') || 'b'\n"
            "opengauss  lower('A') || 'b'\n");
}

TEST(Sql, TranslatesForOneDialectWithoutADatabase) {
  EXPECT_EQ(RunTool({"sql", "--dialect", "dm", "length('abc')"}).out, "len('abc')\n");
  EXPECT_EQ(RunTool({"sql", "--dialect", "kingbase", "length('abc')"}).out, "length('abc')\n");
  EXPECT_EQ(RunTool({"sql", "length('abc')"}).out, "len(N'abc')\n");
}

TEST(Sql, TakesDialectsByAnyOfTheirNames) {
  const auto sql = [](const std::string& dialects) {
    return RunTool({"sql", "--dialect", dialects, "length('abc')"}).out;
  };
  EXPECT_EQ(sql("DM"), "len('abc')\n");
  EXPECT_EQ(sql("MsSql"), "len(N'abc')\n");
  EXPECT_EQ(sql("plsql"), "length('abc')\n");
  EXPECT_EQ(sql("dm,DEFAULT"), "dm         len('abc')\ndefault    len(N'abc')\n");
  EXPECT_EQ(sql("tsql,default,sqlserver"), "len(N'abc')\n");
  EXPECT_EQ(sql("opengauss,all"),
            "opengauss  length('abc')\n"
            "default    len(N'abc')\n"
            "oracle     length('abc')\n"
            "dm         len('abc')\n"
            "kingbase   length('abc')\n");
  EXPECT_EQ(sql("ALL"), sql("all"));
  const auto json =
      RunTool({"sql", "--dialect", "PLSQL,dm", "--json", "1"}).Json().at(0).at("dialects");
  ASSERT_EQ(json.size(), 2u);
  EXPECT_EQ(json[0].at("dialect"), "oracle");
  EXPECT_EQ(json[1].at("dialect"), "dm");
}

TEST(Sql, ListsTheDialectsForANameThatIsNone) {
  const std::string names = "default, oracle, dm, kingbase, opengauss";
  for (const char* dialects : {"mysql", "dm,mysql", "mysql,dm"}) {
    const ToolResult result = RunTool({"sql", "--dialect", dialects, "1"});
    EXPECT_EQ(result.status, 2) << dialects;
    EXPECT_NE(result.err.find("\"mysql\" is none of the dialects " + names + ", all\n"),
              result.err.npos)
        << result.err;
  }
  for (const char* dialects : {"", ",", "dm,"}) {
    EXPECT_EQ(RunTool({"sql", "--dialect", dialects, "1"}).status, 2) << dialects;
  }
  const ToolResult several = RunTool({"rename", "--tables", "A:B", "--dialect", "dm,oracle", "1"});
  EXPECT_EQ(several.status, 2);
  EXPECT_NE(several.err.find("\"dm,oracle\" is more than one dialect"), several.err.npos)
      << several.err;
}

TEST(Sql, TellsThatAFieldNeedsADatabase) {
  const ToolResult result = RunTool({"sql", "--dialect", "dm", "T.a"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err,
            "orkrule: The word \"T.a\" is unknown. "
            "Nothing can be loaded without a database connection.\n  T.a\n  ^~~\n");
  const ToolResult nowhere = RunTool({"verify", "--db", kSampleDb, "--json", "Nowhere.a + 1"});
  EXPECT_EQ(nowhere.Json().at(0).at("error").at("hint"),
            "The data table \"Nowhere\" does not exist or has no fields.");
  const ToolResult field = RunTool({"verify", "--db", kSampleDb, "--json", "T.nope"});
  EXPECT_FALSE(field.Json().at(0).at("error").contains("hint"));
  // refused for what they are, not because a table were missing
  for (const char* rule :
       {"1 2.5", "1 'a.b'", "length(sysVar.currentDate)", "Input.x[Q]", "a.b.c", ".a"}) {
    for (const char* database : {"", kSampleDb.c_str()}) {
      const ToolResult refused = RunTool({"verify", "--db", database, "--json", rule});
      EXPECT_EQ(refused.status, 1) << rule;
      EXPECT_FALSE(refused.Json().at(0).at("error").contains("hint")) << rule << refused.out;
    }
  }
}

TEST(Sql, SplitsIntoTwoTexts) {
  const std::string rule = "T.a > 1 and sum(T.b) > 2";
  const ToolResult human = RunTool({"sql", "--db", kSampleDb, "--type", "logic", "--split", rule});
  EXPECT_EQ(human.out,
            "where   (isnull([T].a,0) > 1)\n"
            "having  (sum(isnull([T].b,0)) > 2)\n");
  const auto json =
      RunTool({"sql", "--db", kSampleDb, "--type", "logic", "--split", "--json", rule})
          .Json()
          .at(0);
  EXPECT_EQ(json.at("expression"), rule);
  EXPECT_EQ(json.at("dialect"), "default");
  EXPECT_EQ(json.at("where"), "(isnull([T].a,0) > 1)");
  EXPECT_EQ(json.at("having"), "(sum(isnull([T].b,0)) > 2)");
}

TEST(Sql, ShowsWhatADialectRefuses) {
  const std::string rule = "T.a in thisSet(1,2)";
  const ToolResult one =
      RunTool({"sql", "--db", kSampleDb, "--type", "logic", "--dialect", "oracle", rule});
  EXPECT_EQ(one.status, 1);
  EXPECT_EQ(one.out, "");
  EXPECT_EQ(one.err, "orkrule: This database does not support thisSet.\n  " + rule + "\n");

  const ToolResult all =
      RunTool({"sql", "--db", kSampleDb, "--type", "logic", "--dialect", "all", rule});
  EXPECT_EQ(all.status, 1);
  EXPECT_NE(all.out.find("\noracle     refused: This database does not support thisSet.\ndm "),
            all.out.npos)
      << all.out;

  const auto json =
      RunTool({"sql", "--db", kSampleDb, "--type", "logic", "--dialect", "all", "--json", rule})
          .Json();
  ASSERT_EQ(json.size(), 1u);
  ASSERT_EQ(json[0].at("dialects").size(), 5u);
  EXPECT_EQ(json[0]["dialects"][1].at("dialect"), "oracle");
  EXPECT_EQ(json[0]["dialects"][1].at("error").at("text"),
            "This database does not support thisSet.");
  EXPECT_TRUE(json[0]["dialects"][4].contains("sql"));
}

TEST(Sql, RefusesAVerifiedRuleOnceForAllDialects) {
  const ToolResult result = RunTool({"sql", "--dialect", "all", "1 + foo"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "orkrule: The word \"foo\" is unknown.\n  1 + foo\n      ^~~\n");
}

TEST(Sql, ReadsRulesFromFilesAndStandardInput) {
  const std::string path = testing::TempDir() + "orkrule_rules.txt";
  std::ofstream(path) << "1 + 2\r\n\n3 * 4";
  EXPECT_EQ(RunTool({"sql", "--file", path}).out, "1 + 2\n3 * 4\n");
  EXPECT_EQ(RunTool({"sql", "--file", "-"}, "5\n6\n").out, "5\n6\n");
  EXPECT_EQ(RunTool({"sql"}, "7").out, "7\n");
  std::remove(path.c_str());
}

TEST(Sql, ReadsJsonLines) {
  const ToolResult result = RunTool({"sql", "--jsonl"},
                                    "\"1 +\\n2\"\n"
                                    "{\"expression\":\"'a'\",\"type\":\"text\"}\n"
                                    "{\"expression\":\"'a'\",\"type\":1}\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "1 + 2\nN'a'\n\n");
  EXPECT_EQ(result.err.rfind("orkrule: standard input:3: ", 0), 0u) << result.err;
}

TEST(Sql, LeavesArgumentsAsTheyStand) {
  EXPECT_EQ(RunTool({"sql", "--", "-1 + 2"}).out, RunTool({"sql"}, "-1 + 2\n").out);
  // Brackets around a list are no list of arguments.
  const ToolResult brackets = RunTool({"verify", "[a],[b]"});
  EXPECT_NE(brackets.err.find("  [a],[b]\n"), brackets.err.npos) << brackets.err;
}

TEST(Sql, LoadsCadDocuments) {
  const std::string path = testing::TempDir() + "orkrule_cax.xml";
  std::ofstream(path) << "not a document";
  const ToolResult result = RunTool({"sql", "--cax", "1=" + path, "1"});
  EXPECT_EQ(result.status, 3);
  EXPECT_NE(result.err.find(path + ": Document not parsed successfully."), result.err.npos)
      << result.err;
  std::remove(path.c_str());
}

TEST(Sql, TakesValuesAndConditionsWhereNoTypeIsNamed) {
  const ToolResult both = RunTool({"sql", "--db", kSampleDb}, "T.a + 1\nT.a > 1\n");
  EXPECT_EQ(both.status, 0) << both.err;
  EXPECT_EQ(both.out, "isnull([T].a,0) + 1\nisnull([T].a,0) > 1\n");
  // Both readings fail; the one that got further tells why. As a value the rule ends at ">".
  const ToolResult refused = RunTool({"sql", "--db", kSampleDb, "T.a > )"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.err.find("  T.a > )\n        ^\n"), refused.err.npos) << refused.err;
}

}  // namespace
