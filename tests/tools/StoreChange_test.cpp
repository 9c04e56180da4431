// `orkrule store rename`, `store strip` and `store sql`: what would change, and what is written.
#include "StoreFile.h"
#include "ToolRun.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

namespace {

constexpr const char* kOrderRules = R"(
insert into rules (id, name, type, expression) values
  (1, 'a', 'logic',  'Orders.Amount > 1'),
  (2, 'b', 'number', 'Orders.Qty + T.a'),
  (3, 'c', 'logic',  'T.a > T.b');
)";
const std::string kUpdateText = "update rules set expression = :expression where id = :id";
const std::string kReadTexts = "select id, expression from rules order by id";
constexpr const char* kOldTexts = "1|Orders.Amount > 1\n2|Orders.Qty + T.a\n3|T.a > T.b\n";
constexpr const char* kNewTexts = "1|Sales.Amount > 1\n2|Sales.Pieces + T.a\n3|T.a > T.b\n";
const std::vector<std::string> kNames = {"--tables", "Orders:Sales", "--fields",
                                         "Orders.Qty:Pieces"};

/// The options of a rename with others behind them.
std::vector<std::string> Renaming(const std::vector<std::string>& others = {}) {
  std::vector<std::string> options = kNames;
  options.insert(options.end(), others.begin(), others.end());
  return options;
}

std::string ContentOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(StoreRename, ShowsWhatWouldChangeAndWritesNothing) {
  const StoreFile store(kOrderRules);
  const ToolResult result = store.Tool("rename", kNames);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "1       would change      [-Orders.Amount-]{+Sales.Amount+} > 1\n"
            "2       would change      [-Orders.Qty-]{+Sales.Pieces+} + T.a\n"
            "would change 2 of 3 rules\n"
            "nothing was written; --apply with --update STATEMENT writes it\n");
  EXPECT_EQ(store.Read(kReadTexts), kOldTexts);
}

TEST(StoreRename, WritesWhatItIsTold) {
  for (const std::vector<std::string>& way : {std::vector<std::string>{},
                                              {"--commit-every", "1"},
                                              {"--ledger", "table"},
                                              {"--jobs", "3"}}) {
    const StoreFile store(kOrderRules);
    std::vector<std::string> options = Renaming({"--apply", "--update", kUpdateText});
    options.insert(options.end(), way.begin(), way.end());
    const ToolResult result = store.Tool("rename", options);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "changed 2 of 3 rules\n") << testing::PrintToString(way);
    EXPECT_EQ(store.Read(kReadTexts), kNewTexts);
  }
}

TEST(StoreRename, DoesARunThatCameToItsEndNotAgain) {
  const StoreFile store(kOrderRules);
  const auto options = Renaming({"--apply", "--update", kUpdateText, "--commit-every", "10"});
  EXPECT_EQ(store.Tool("rename", options).status, 0);
  store.Run("update rules set expression = 'Orders.Qty > 5' where id = 3");
  const ToolResult second = store.Tool("rename", options);
  EXPECT_EQ(second.status, 0) << second.err;
  EXPECT_EQ(second.out, "by the ledger this run came to its end already; --again runs it anew\n");
  EXPECT_EQ(store.Read("select expression from rules where id = 3"), "Orders.Qty > 5\n");
  auto again = options;
  again.push_back("--again");
  EXPECT_EQ(store.Tool("rename", again).status, 1);  // rules 1 and 2 are refused under old names
  EXPECT_EQ(store.Read("select expression from rules where id = 3"), "Sales.Pieces > 5\n");
}

TEST(StoreRename, KeepsALedgerInAFile) {
  const StoreFile store(kOrderRules);
  const std::string ledger = store.Path() + ".ledger";
  const auto options = Renaming({"--apply", "--update", kUpdateText, "--ledger", ledger});
  EXPECT_EQ(store.Tool("rename", options).out, "changed 2 of 3 rules\n");
  EXPECT_EQ(store.Read("select count(*) from sqlite_master where name = 'orkrule_ledger'"), "0\n");
  EXPECT_EQ(store.Tool("rename", options).status, 0);
  EXPECT_EQ(std::remove(ledger.c_str()), 0);
}

TEST(StoreRename, CarriesDocumentsAndSqlAlong) {
  const StoreFile store(kOrderRules);
  const std::string select = "select id, type, expression, document, sql_oracle from rules";
  const std::string update =
      "update rules set expression = :expression, document = :document, sql_oracle = :sql_oracle "
      "where id = :id";
  EXPECT_EQ(store.Tool("sql", {"--apply", "--update", update}, select).status, 0);
  EXPECT_EQ(store.Read("select count(*) from rules where document like '%Orders%'"), "2\n");
  const ToolResult result = store.Tool("rename", Renaming({"--apply", "--update", update}), select);
  EXPECT_EQ(result.status, 0) << result.out << result.err;
  EXPECT_EQ(store.Read(kReadTexts), kNewTexts);
  EXPECT_EQ(store.Read("select id from rules where document like '%Sales%' and document not like "
                       "'%Qty%' order by id"),
            "1\n2\n");
  EXPECT_EQ(store.Read("select count(*) from rules where sql_oracle like '%Orders%'"), "0\n");
}

TEST(StoreRename, TellsWhatWouldBreakAndLeavesIt) {
  const StoreFile store(kOrderRules);
  // What has the new names lacks the field of the first rule.
  TempDatabase after(SourceText("examples/shop.sql"));
  after.Run(
      "update data_tables set dtName = 'Sales' where dtName = 'Orders';"
      "update data_fields set fldName = 'Pieces' where fldName = 'Qty' and dtId = 1;"
      "update data_fields set fldName = 'Sum' where fldName = 'Amount'");
  const std::vector<std::string> to = {"--db-after", "sqlite:" + after.Path()};
  auto options = Renaming(to);
  const ToolResult dry = store.Tool("rename", options);
  EXPECT_EQ(dry.status, 1);
  EXPECT_EQ(dry.out,
            "1       would change      [-Orders.Amount-]{+Sales.Amount+} > 1\n"
            "1       broken            The word \"Sales.Amount\" is unknown.\n"
            "  Sales.Amount > 1\n"
            "  ^~~~~~~~~~~~\n"
            "2       would change      [-Orders.Qty-]{+Sales.Pieces+} + T.a\n"
            "would change 2 of 3 rules; 1 would break and be left alone\n"
            "2 well, 1 broken\n"
            "nothing was written; --apply with --update STATEMENT writes it\n");
  options.insert(options.end(), {"--apply", "--update", kUpdateText});
  const ToolResult applied = store.Tool("rename", options);
  EXPECT_EQ(applied.status, 1);
  EXPECT_EQ(store.Read(kReadTexts), "1|Orders.Amount > 1\n2|Sales.Pieces + T.a\n3|T.a > T.b\n");
}

TEST(StoreRename, WritesNothingUnderANameThatIsTaken) {
  const StoreFile store(kOrderRules);
  const std::vector<std::string> options = {"--tables", "Orders:Stock", "--apply", "--update",
                                            kUpdateText};
  const ToolResult result = store.Tool("rename", options);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out,
            "-       broken            \"Orders\": the new name \"Stock\" is taken already.\n");
  EXPECT_EQ(result.err, "orkrule: nothing was written; --force writes in spite of these names\n");
  EXPECT_EQ(store.Read(kReadTexts), kOldTexts);
  auto forced = options;
  forced.push_back("--force");
  EXPECT_EQ(store.Tool("rename", forced).status, 1);
}

TEST(StoreRename, TellsOfNamesThatMetNothing) {
  const StoreFile store(
      "insert into rules (id, type, expression) values "
      "(1, 'logic', 'orders.Amount > 1')");
  const ToolResult result = store.Tool("rename", {"--tables", "Orders:Sales,Stock:Store"});
  EXPECT_NE(result.out.find("-       notice            Stock:Store met no rule\n"), result.out.npos)
      << result.out;
  EXPECT_NE(result.out.find("1 word that would be Orders in another case: left alone\n"),
            result.out.npos)
      << result.out;
  const auto json = store.Tool("rename", {"--tables", "Orders:Sales,Stock:Store", "--json"}).Json();
  EXPECT_EQ(json.back()["summary"]["pairs"].dump(),
            R"([{"old":"Orders","new":"Sales","matched":0,"differingInCase":1},)"
            R"({"old":"Stock","new":"Store","matched":0,"differingInCase":0}])");
}

TEST(StoreRename, LeavesARuleThatChangedMeanwhile) {
  const StoreFile store(kOrderRules);
  // Writing the first rule changes the second one.
  store.Run(
      "create trigger meddler after update on rules when new.id = 1 begin update rules set "
      "expression = 'Orders.Price' where id = 2; end");
  const ToolResult result =
      store.Tool("rename", Renaming({"--apply", "--update", kUpdateText, "--json"}));
  EXPECT_EQ(result.status, 1);
  const auto lines = result.Json();
  ASSERT_EQ(lines.size(), 4U) << result.out;
  EXPECT_EQ(lines[0]["renamed"], "Sales.Amount > 1");
  EXPECT_EQ(lines[2].dump(), R"({"left":{"id":2,"reason":"changedMeanwhile"}})");
  EXPECT_EQ(lines[3]["summary"]["written"], 1);
  EXPECT_EQ(lines[3]["summary"]["left"], 1);
  EXPECT_EQ(store.Read("select expression from rules where id = 2"), "Orders.Price\n");
}

TEST(StoreRename, GivesTheSameBytesWithAnyNumberOfJobs) {
  const StoreFile store(ManyRules(400));
  for (const char* form : {"--json", "--color=always"}) {
    EXPECT_EQ(store.Tool("rename", Renaming({form})).out,
              store.Tool("rename", Renaming({form, "--jobs", "4"})).out);
  }
}

TEST(StoreStrip, CutsTablesOut) {
  const StoreFile store(
      "insert into rules (id, type, expression) values "
      "(1, 'logic', 'Orders.Amount > 1 and T.a > 2'), (2, 'logic', 'T.a > 2'), "
      "(3, 'logic', 'Orders.Amount > 1')");
  const ToolResult dry = store.Tool("strip", {"--tables", "Orders"});
  EXPECT_EQ(dry.status, 0) << dry.err;
  EXPECT_NE(dry.out.find("would change 2 of 3 rules\n"), dry.out.npos) << dry.out;
  EXPECT_NE(dry.out.find("3       notice            Nothing is left of the rule.\n"), dry.out.npos);
  const ToolResult applied =
      store.Tool("strip", {"--tables", "Orders", "--apply", "--update", kUpdateText});
  EXPECT_EQ(applied.status, 0) << applied.err;
  EXPECT_EQ(store.Read(kReadTexts), "1|T.a > 2\n2|T.a > 2\n3|\n");
}

TEST(StoreSql, WritesALineForEachRule) {
  const StoreFile store(
      "insert into rules (id, name, type, expression) values "
      "(1, 'sum', 'number', '1 + 2'), (2, 'bad', 'number', '1 + foo')");
  const std::string select = "select id, name, type, expression from rules";
  const ToolResult result = store.Tool("sql", {"--dialect", "oracle,default"}, select);
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "orkrule: 2 rules: 1 well, 1 refused\n");
  const auto lines = result.Json();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].dump(),
            R"({"id":1,"name":"sum","type":"number","expression":"1 + 2","state":"well",)"
            R"("sql":{"oracle":"1 + 2","default":"1 + 2"},"problems":[]})");
  EXPECT_EQ(lines[1]["sql"].dump(), "{}");
  EXPECT_EQ(lines[1]["problems"][0]["offset"], 4);

  const std::string out = store.Path() + ".jsonl";
  const ToolResult toFile =
      store.Tool("sql", {"--dialect", "oracle,default", "--out", out}, select);
  EXPECT_EQ(toFile.status, 1);
  EXPECT_EQ(ContentOfFile(out), result.out);
  EXPECT_EQ(toFile.out,
            "2       refused           The word \"foo\" is unknown.\n"
            "  1 + foo\n"
            "      ^~~\n"
            "2 rules: 1 well, 1 refused\n");
  std::remove(out.c_str());
  // What one command writes the next one reads.
  EXPECT_EQ(RunTool({"sql", "--jsonl", "--type", "number"},
                    result.out.substr(0, result.out.find('\n') + 1))
                .out,
            "1 + 2\n");
}

TEST(StoreSql, WritesIntoTheStoreOnlyWhatIsOther) {
  const StoreFile store(
      "insert into rules (id, type, expression, sql_oracle) values "
      "(1, 'number', '1 + 2', null), (2, 'number', '1 + 3', '1 + 3'), "
      "(3, 'number', '1 + foo', 'old')");
  const std::string select = "select id, type, expression, sql_oracle from rules";
  const ToolResult result =
      store.Tool("sql",
                 {"--apply", "--update",
                  "update rules set sql_oracle = :SQL_PLSQL, name = 'new' where id = :id"},
                 select);
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.out.find("changed 1 of 3 rules\n"), result.out.npos) << result.out;
  EXPECT_EQ(store.Read("select id, name, sql_oracle from rules order by id"),
            "1|new|1 + 2\n2|-|1 + 3\n3|-|old\n");
}

TEST(StoreSql, ReadsRulesThatAreKeptAsDocumentsAlone) {
  const StoreFile store("insert into rules (id, type, expression) values (1, 'number', '1 + 2')");
  const std::string select = "select id, type, expression, document from rules";
  const std::string update = "update rules set document = :document where id = :id";
  EXPECT_EQ(store.Tool("sql", {"--apply", "--update", update}, select).status, 0);
  const ToolResult result = store.Tool("sql", {}, "select id, type, document from rules");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.Json().at(0)["sql"].dump(), R"({"default":"1 + 2"})");
}

}  // namespace
