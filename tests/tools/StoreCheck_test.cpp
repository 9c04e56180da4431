// `orkrule store check` and `store uses`, and what all commands over a store have in common.
#include "StoreFile.h"
#include "ToolRun.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr const char* kMixedRules = R"(
insert into rules (id, name, type, expression) values
  (1, 'well',        'logic',    'Orders.Amount > 1'),
  (2, 'misspelt',    'logic',    'Orders.Amout > 5'),
  (3, 'no rule',     'logic',    null),
  (4, 'odd type',    'nonsense', '1 = 1'),
  (5, 'no type',     null,       '1 = 1'),
  (6, 'by number',   '4',        'Orders.Qty > 1'),
  (7, 'padded type', 'LOGIC   ', 'Orders.Qty > 2');
insert into rules (id, name, type, expression, document) values
  (8, 'no document', 'logic', 'Orders.Qty > 3', '<x'),
  (9, 'wrong type',  'date',  'Orders.Qty', null);
)";

TEST(StoreCheck, TellsWhichRulesAreNotWell) {
  const StoreFile store(kMixedRules);
  const ToolResult result = store.Tool("check", {});
  EXPECT_EQ(result.status, 1) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(
      result.out,
      "2       refused           The word \"Orders.Amout\" is unknown.\n"
      "  Orders.Amout > 5\n"
      "  ^~~~~~~~~~~~\n"
      "  fix: Write Orders.Amount\n"
      "3       unreadable        There is no rule here: neither a text nor a document.\n"
      "4       unreadable        'nonsense' is neither the name nor the number of a type.\n"
      "5       unreadable        The column type has no value.\n"
      "8       unreadable        The stored document is no document of a rule.\n"
      "9       refused           The word \"Orders.Qty\" has the wrong data type. Expected: date.\n"
      "  Orders.Qty\n"
      "  ^~~~~~~~~~\n"
      "9 rules: 3 well, 2 refused, 0 changed, 0 not translatable, 4 unreadable\n");
}

TEST(StoreCheck, WritesOneObjectARuleThatIsNotWell) {
  const StoreFile store(kMixedRules);
  const auto lines =
      store.Tool("check", {"--json"}, "select name as NAME, id as ID, type, expression from rules")
          .Json();
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[0].dump(),
            R"({"NAME":"misspelt","id":2,"type":"logic","expression":"Orders.Amout > 5",)"
            R"("state":"refused","problems":[{"state":"refused","number":6260,)"
            R"("text":"The word \"Orders.Amout\" is unknown.","offset":0,"length":12,)"
            R"("unit":"utf-16","fixes":[{"label":"Write Orders.Amount","edits":[{"offset":0,)"
            R"("length":12,"text":"Orders.Amount"}]}]}]})");
  EXPECT_EQ(lines[1]["expression"], nullptr);
  EXPECT_EQ(lines[1]["state"], "unreadable");
  EXPECT_EQ(lines.back().dump(),
            R"({"summary":{"rules":9,"well":4,"refused":2,"changed":0,"notTranslatable":0,)"
            R"("unreadable":3,"broken":0,"isComplete":true}})");
}

TEST(StoreCheck, ComparesDocumentAndSqlWithThoseOfToday) {
  const StoreFile store(R"(insert into rules (id, type, expression, document, sql_oracle) values
      (1, 'number', '1 + 2', null, 'nothing of today'), (2, 'number', '1 + 3', null, null),
      (3, 'number', '1 + 2', null, null))");
  const std::string select = "select id, type, expression, document, sql_oracle from rules";
  const std::string update =
      "update rules set document = :document, sql_oracle = :sql_oracle where id = :id";
  const ToolResult filled =
      store.Tool("sql", {"--dialect", "Oracle", "--apply", "--update", update}, select);
  EXPECT_EQ(filled.status, 0) << filled.out << filled.err;
  EXPECT_EQ(store.Tool("check", {"--dialect", "oracle"}, select).out,
            "3 rules: 3 well, 0 refused, 0 changed, 0 not translatable\n");
  store.Run(
      "update rules set expression = '1 + 2', document = ' ' || document where id = 2;"
      "update rules set sql_oracle = sql_oracle || ' ' where id = 3");
  const ToolResult aged = store.Tool("check", {"--dialect", "oracle"}, select);
  EXPECT_EQ(aged.status, 1);
  EXPECT_EQ(aged.out,
            "2       changed           The stored document is not the one that the rule has "
            "today.\n"
            "2       changed           oracle: The stored SQL for \"oracle\" is not the one that "
            "the rule has today.\n"
            "3       changed           oracle: The stored SQL for \"oracle\" is not the one that "
            "the rule has today.\n"
            "3 rules: 1 well, 0 refused, 2 changed, 0 not translatable\n");
}

TEST(StoreCheck, ReadsRulesInTheirOwnLanguage) {
  const StoreFile store(R"(insert into rules (id, type, expression, language) values
      (1, 'logic', 'Orders.Qty > 1 and Orders.Qty < 9', null),
      (2, 'logic', 'Orders.Qty > 1 且 Orders.Qty < 9', 'zh-CN'),
      (3, 'logic', 'Orders.Qty > 1 or Orders.Qty < 9', 'zh-CN'))");
  const std::string select = "select id, type, expression, language from rules";
  const ToolResult english = store.Tool("check", {}, select);
  EXPECT_EQ(english.status, 1);
  EXPECT_EQ(english.out.rfind("3       refused           The word \"or\" is unknown.\n", 0), 0U)
      << english.out;
  // In the threads of several workers too.
  for (const char* jobs : {"1", "3"}) {
    const ToolResult chinese = store.Tool("check", {"--language", "zh-CN", "--jobs", jobs}, select);
    EXPECT_EQ(chinese.status, 1);
    EXPECT_EQ(chinese.out.rfind("1       refused           “and”是未知的词。\n", 0), 0U)
        << chinese.out;
    EXPECT_NE(chinese.out.find("\n3       refused           “or”是未知的词。\n"), chinese.out.npos)
        << chinese.out;
  }
}

TEST(StoreCheck, KnowsCadDocumentsByThePathAndNameOfTheirFiles) {
  const std::string path = ORKRULE_SOURCE_DIR "/examples/drawing.xml";
  // The drawing knows this field as a text; without it nobody knows its type.
  const StoreFile store("insert into rules (id, type, name) values (1, 'logic', '" + path +
                        "'), (2, 'logic', 'drawing.xml'), (3, 'logic', 'drawing '), (4, 'logic', "
                        "null), (5, 'logic', 'nowhere'), (6, 'logic', ''); "
                        "update rules set expression = 'thisDoc.TitleBlock.MadeOn = 1'");
  const ToolResult result = store.Tool("check", {"--json", "--cax", "1=" + path},
                                       "select id, type, expression, name as cax from rules");
  std::string states;
  for (const auto& line : result.Json()) {
    if (line.contains("id")) states += line["id"].dump() + " " + line["state"].dump() + "\n";
  }
  EXPECT_EQ(states,
            "1 \"refused\"\n2 \"refused\"\n3 \"refused\"\n4 \"refused\"\n"
            "5 \"unreadable\"\n");
}

TEST(StoreCheck, GivesTheSameBytesWithAnyNumberOfJobs) {
  const StoreFile store(ManyRules(500) +
                        "update rules set expression = replace(expression, "
                        "'Amount', 'Amout') where id % 7 = 0");
  for (const char* json : {"--json", "--color=never"}) {
    const ToolResult one = store.Tool("check", {json});
    const ToolResult four = store.Tool("check", {json, "--jobs", "4"});
    EXPECT_EQ(one.out, four.out);
    EXPECT_EQ(one.status, four.status);
    EXPECT_NE(one.out.find(json[2] == 'j' ? R"("well":429)" : "429 well"), one.out.npos) << one.out;
  }
}

TEST(StoreCheck, TamesWhatWouldMoveTheCursor) {
  const StoreFile store(
      "insert into rules (name, type, expression) values ('a' || char(27) || 'b', 'logic', "
      "'foo = ''' || char(27) || '[31m' || char(13) || '''')");
  const ToolResult result =
      store.Tool("check", {}, "select name as id, type, expression from rules");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out.find_first_of("\x1B\r"), result.out.npos) << result.out;
  EXPECT_EQ(result.out.rfind("a b     refused ", 0), 0U) << result.out;
}

TEST(StoreUses, TellsOfNamesInAnotherCase) {
  const StoreFile store(
      "insert into rules (id, type, expression) values "
      "(1, 'logic', 'orders.Amount > 1'), (2, 'logic', 'Orders.AMOUNT > 1')");
  const ToolResult table = store.Tool("uses", {"--table", "Orders"});
  EXPECT_EQ(table.out,
            "1       character 1       orders.Amount (in another case)\n"
            "2       character 1       Orders.AMOUNT\n"
            "2 of 2 rules listed; 1 word in another case, which a rename leaves alone\n");
  const auto json = store.Tool("uses", {"--json", "--field", "Orders.Amount"}).Json();
  ASSERT_EQ(json.size(), 3U);
  EXPECT_EQ(json[1]["uses"][0]["differsInCase"], true);
  EXPECT_EQ(json[2]["summary"]["differingInCase"], 2);
}

constexpr const char* kUsedRules = R"(
insert into rules (id, type, expression) values
  (1, 'logic', 'Orders.Amount > 1 and Orders.Amount < T.a'),
  (2, 'logic', 'T.a > T.b'),
  (3, 'logic', 'ROUND(Orders.Qty, 1) > 1'),
  (4, 'logic', null);
)";

TEST(StoreUses, CountsTheRulesOfEachWord) {
  const StoreFile store(kUsedRules);
  const ToolResult result = store.Tool("uses", {"--jobs", "2"});
  EXPECT_EQ(result.status, 1);  // rule 4 tells nothing
  EXPECT_EQ(result.out,
            "4       unreadable        There is no rule here: neither a text nor a document.\n"
            "kind      name           rules\n"
            "field     Orders.Amount  1\n"
            "field     Orders.Qty     1\n"
            "field     T.a            2\n"
            "field     T.b            1\n"
            "function  ROUND          1\n"
            "4 rules; 1 unreadable\n");
  const auto json = store.Tool("uses", {"--json"}, kSelectRules + " where id < 3").Json();
  ASSERT_EQ(json.size(), 4U);
  EXPECT_EQ(json[1].dump(), R"({"kind":"field","name":"T.a","rules":2})");
  EXPECT_EQ(json[3].dump(), R"({"summary":{"rules":2,"unreadable":0,"isComplete":true}})");
}

TEST(StoreUses, ListsTheRulesWithATableOrField) {
  const StoreFile store(kUsedRules);
  const std::string select = kSelectRules + " where id < 4";
  const ToolResult table = store.Tool("uses", {"--table", "Orders"}, select);
  EXPECT_EQ(table.status, 0) << table.err;
  EXPECT_EQ(table.out,
            "1       character 1       Orders.Amount\n"
            "1       character 23      Orders.Amount\n"
            "3       character 7       Orders.Qty\n"
            "2 of 3 rules listed\n");
  const ToolResult either =
      store.Tool("uses", {"--table", "Stock", "--field", "T.b,Orders.Qty"}, select);
  EXPECT_EQ(either.out,
            "2       character 7       T.b\n"
            "3       character 7       Orders.Qty\n"
            "2 of 3 rules listed\n");
  const auto json = store.Tool("uses", {"--json", "--field", "T.b"}, select).Json();
  ASSERT_EQ(json.size(), 2U);
  EXPECT_EQ(json[0]["id"], 2);
  EXPECT_EQ(json[0]["uses"].dump(),
            R"([{"kind":"field","name":"T.b","table":"T","field":"b","offset":6,"length":3,)"
            R"("unit":"utf-16"}])");
}

TEST(Store, EndsWithWhatWentWrong) {
  struct Row {
    int status;
    std::vector<std::string> arguments;
    const char* text;  ///< part of what is written to standard error
  };
  const StoreFile store("insert into rules (id, type, expression) values (1, 'logic', '1 = 1')");
  const std::string at = store.Path();
  const std::string update = "update rules set expression = :expression where id = :id";
  const Row rows[] = {
      // clang-format off
      {0, {"store", "--help"}, ""},
      {0, {"store", "check", "--help"}, ""},
      {0, {"store", "check", "--store", at, "--select", kSelectRules}, ""},
      {0, {"store", "check", "--store", "sqlite:" + at, "--select", kSelectRules}, ""},
      {2, {"store"}, "a command is missing"},
      {2, {"store", "nonsense"}, ""},
      {2, {"store", "check", "--select", kSelectRules}, "--store"},
      {2, {"store", "check", "--store", at}, "--select"},
      {2, {"store", "check", "--store", at, "--select", "select type, expression from rules"},
       "no column id; it has: type, expression"},
      {2, {"store", "check", "--store", at, "--select", "select id, name from rules"},
       "no column expression and no column document; it has: id, name"},
      {2, {"store", "check", "--store", at, "--select", kSelectRules, "--dialect", "nonsense"},
       "dialect"},
      {2, {"store", "check", "--store", at, "--select", kSelectRules, "--jobs", "1000"}, "--jobs"},
      {2, {"store", "rename", "--store", at, "--select", kSelectRules}, "--tables or --fields"},
      {2, {"store", "rename", "--store", at, "--select", kSelectRules, "--tables", "A"}, "OLD:NEW"},
      {2, {"store", "rename", "--store", at, "--select", kSelectRules, "--fields", "x:y"},
       "TABLE.OLD:NEW"},
      {2, {"store", "rename", "--store", at, "--select", kSelectRules, "--tables", "A:B", "--apply"},
       "--update"},
      {2, {"store", "rename", "--store", at, "--select", kSelectRules, "--tables", "A:B",
           "--update", update}, "--apply"},
      {2, {"store", "rename", "--store", at, "--select", kSelectRules, "--tables", "A:B", "--apply",
           "--update", "update rules set expression = :text where id = :id"},
       ":text, which stands for nothing; there are :id, :type, :expression, :document"},
      {2, {"store", "strip", "--store", at, "--select", kSelectRules}, "--tables"},
      {2, {"store", "sql", "--store", at, "--select", kSelectRules, "--dialect", "oracle",
           "--apply", "--update", "update rules set sql_oracle = :sql_dm where id = :id"},
       ":sql_dm, which stands for nothing; there are :id, :type, :expression, :document, "
       ":sql_oracle"},
      {3, {"store", "check", "--store", "/nowhere/rules.db", "--select", kSelectRules},
       "/nowhere/rules.db"},
      {3, {"store", "check", "--store", at, "--select", "select nonsense"}, "nonsense"},
      {3, {"store", "check", "--store", at, "--select", kSelectRules, "--db", "nowhere.db"},
       "nowhere.db"},
      {3, {"store", "rename", "--store", at, "--select", kSelectRules, "--tables", "A:B", "--apply",
           "--update", "update nowhere set x = :id where id = :id"}, "nowhere"},
      {3, {"store", "sql", "--store", at, "--select", kSelectRules, "--out", "/nowhere/out.jsonl"},
       "/nowhere/out.jsonl"},
      // clang-format on
  };
  for (const Row& row : rows) {
    const ToolResult result = RunTool(row.arguments);
    const std::string shown = testing::PrintToString(row.arguments) + result.out + result.err;
    EXPECT_EQ(result.status, row.status) << shown;
    EXPECT_NE(result.err.find(row.text), result.err.npos) << shown;
    EXPECT_EQ(result.err.empty(), row.status == 0) << shown;
  }
}

TEST(Store, StopsWhereTheMetadataCannotBeReached) {
  const StoreFile store(kMixedRules);
  const TempDatabase noMetadata("create table other (x)");
  const ToolResult result = RunTool({"store", "check", "--store", store.Path(), "--db",
                                     "sqlite:" + noMetadata.Path(), "--select", kSelectRules});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.out, "");
  EXPECT_NE(result.err.find("mx_v_datafield"), result.err.npos) << result.err;
}

}  // namespace
