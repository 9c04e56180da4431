// `RuleUpkeep::Rename`: rules under new names of tables and fields, and what would break.
#include <gtest/gtest.h>

#include <iterator>

#include "RuleUpkeep.h"
#include "SampleDatabase.h"
#include "UpkeepRules.h"
#include "Utf8.h"

using namespace ORKBASE;
using namespace store_test;

namespace {

using UpkeepRename = InEnglish;

UpkeepSettings Renames(const char* tables, const char* fields) {
  UpkeepSettings settings = SampleSettings();
  settings.tableRenames = U16(tables);
  settings.fieldRenames = U16(fields);
  return settings;
}

bool Holds(const UpkeepResult& result, UpkeepState state) {
  return Told(result.findings).find(NameOf(state)) != std::string::npos;
}

// clang-format off
struct RenameCase {
  const char* what;
  const char* tables;
  const char* fields;
  const char* rule;
  const char* renamed;
  const char* told;
};

constexpr RenameCase kRenames[] = {
    {"a table",                 "Orders:Sales", "",                  "Orders.Amount > 1",   "Sales.Amount > 1",   "well"},
    {"a field",                 "",             "Orders.Qty:Pieces", "Orders.Qty  *2",      "Orders.Pieces  *2",  "well"},
    {"a field in another case", "",             "Orders.Qty:Pieces", "Orders.QTY * 2 + Orders.Amount", "Orders.Pieces * 2 + Orders.Amount", "well"},
    {"both, the table as it is called today", "Orders:Sales", "Orders.Qty:Pieces", "Orders.Qty * 2", "Sales.Pieces * 2", "well"},
    {"both, the table by its new name",       "Orders:Sales", "Sales.Qty:Pieces",  "Orders.Qty * 2", "Sales.Pieces * 2", "well"},
    {"tables that exchange names",            "Orders:x,T:Orders,x:T", "", "Orders.Amount + T.a", "T.Amount + Orders.a", "well"},
    {"a field of a table that is exchanged, under its new name",
     "Orders:x,T:Orders,x:T", "T.Amount:Total", "Orders.Amount + T.a", "T.Total + Orders.a", "well"},
    {"another table",           "Orders:Sales", "Orders.Qty:Pieces", "T.a > 1",             "T.a > 1",            "well"},
    {"a refused rule",          "Orders:Sales", "",                  "Orders.Amout > 1",    "Sales.Amout > 1",    "refused 0+12"},
    {"another case of the table, which no database of the test finds",
     "Orders:Sales", "", "orders.Amount > 1", "orders.Amount > 1", "refused 0+13; notice 0+13"},
    {"both cases",              "T:U", "", "T.a + T.b > 1 and 'x' <> 'T.a'", "U.a + U.b > 1 and 'x' <> 'T.a'", "notice 26+3"},
    {"a name in a text",        "T:U", "", "T.s = 'of T alone'", "U.s = 'of T alone'", "notice 10+1"},
    {"a text that is renamed",  "T:U", "", "T.s = 'from [T]'",   "U.s = 'from [U]'",   "well"},
    {"a field in a text",       "", "T.a:b1", "T.s = 'T.a'",     "T.s = 'T.a'",        "notice 7+3"},
    {"a word that is no name",  "T:U", "", "T.s = 'This' and T.a > 1", "U.s = 'This' and U.a > 1", "well"},
    {"a name that leaves a word over", "", "T.a:b c", "T.a > 1 and T.b > 1", "T.b c > 1 and T.b > 1", "broken 4+1 after"},
    {"a name that no list can hold", "T:x y", "", "T.a > 1", "x y.a > 1", "broken 0+1 after"},
};
// clang-format on

TEST_F(UpkeepRename, GivesRulesTheNewNames) {
  for (const RenameCase& c : kRenames) {
    RuleUpkeep upkeep(Renames(c.tables, c.fields));
    for (const int round : {1, 2}) {
      const UpkeepResult result = upkeep.Rename(RuleOf(c.rule));
      EXPECT_EQ(Text(result.after.expression), c.renamed) << c.what << " in round " << round;
      EXPECT_EQ(Told(result.findings), c.told) << c.what << " in round " << round;
      EXPECT_EQ(result.changes, std::string(c.rule) != c.renamed) << c.what;
      EXPECT_EQ(result.mayWrite, std::string(c.told).find("broken") == std::string::npos) << c.what;
    }
  }
}

TEST_F(UpkeepRename, CountsWhatEachPairMet) {
  RuleUpkeep upkeep(Renames("Orders:Sales,T:U,Stock:Store", "Orders.Qty:Pieces,T.b:c"));
  for (const char* rule :
       {"Orders.Qty + Orders.Amount * Orders.Qty", "orders.Qty", "T.B + T.a", "t.b", "1 + 2"}) {
    upkeep.Rename(RuleOf(rule));
  }
  struct Row {
    const char* oldName;
    const char* newName;
    std::int64_t matched;
    std::int64_t differingInCase;
  };
  const Row rows[] = {
      {"Orders", "Sales", 3, 1},      {"T", "U", 2, 1},   {"Stock", "Store", 0, 0},
      {"Orders.Qty", "Pieces", 2, 0}, {"T.b", "c", 1, 0},
  };
  ASSERT_EQ(upkeep.Pairs().size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const RenamePair& pair = upkeep.Pairs()[i];
    EXPECT_EQ(U8(pair.oldName), rows[i].oldName);
    EXPECT_EQ(U8(pair.newName), rows[i].newName) << rows[i].oldName;
    EXPECT_EQ(pair.matched, rows[i].matched) << rows[i].oldName;
    EXPECT_EQ(pair.differingInCase, rows[i].differingInCase) << rows[i].oldName;
  }
}

TEST_F(UpkeepRename, MakesDocumentAndSqlOfTheNewText) {
  UpkeepSettings settings = Renames("Orders:Sales", "Orders.Qty:Pieces");
  settings.dialects = {kSqlServerDs, kOracleDs};
  RuleUpkeep upkeep(settings);
  StoredRule rule = RuleOf("Orders.Qty > 1", kLogicDataType);
  rule.document = DocumentOf("Orders.Qty > 1", "Orders", kLogicDataType);
  rule.sql = {std::nullopt, u"stored"};
  const UpkeepResult result = upkeep.Rename(rule);
  EXPECT_EQ(Told(result.findings), "well");
  // The old document with the words of the new names.
  std::string document = U8(*rule.document);
  for (std::size_t at = 0; (at = document.find("Orders.Qty")) != document.npos;) {
    document.replace(at, 10, "Sales.Pieces");
  }
  EXPECT_EQ(Text(result.after.document), document);
  ASSERT_EQ(result.after.sql.size(), 2U);
  EXPECT_FALSE(result.after.sql[0]);
  EXPECT_NE(Text(result.after.sql[1]).find("Sales"), std::string::npos)
      << Text(result.after.sql[1]);
  EXPECT_NE(Text(result.after.sql[1]).find("Pieces"), std::string::npos);
}

TEST_F(UpkeepRename, LeavesTheDocumentOfARuleThatItDoesNotRename) {
  for (const char* text : {"T.a > 1", "Orders.Amout > 1"}) {
    RuleUpkeep upkeep(Renames("Orders:Sales", ""));
    StoredRule rule = RuleOf(text);
    rule.document = u"stale";
    EXPECT_EQ(Text(upkeep.Rename(rule).after.document), "stale") << text;
  }
}

TEST_F(UpkeepRename, RenamesRulesThatHaveOnlyADocument) {
  RuleUpkeep upkeep(Renames("Orders:Sales", ""));
  StoredRule rule;
  rule.type = kLogicDataType;
  rule.document = DocumentOf("Orders.Qty > 1 and Orders.Memo = 'Orders'", "", kLogicDataType);
  const UpkeepResult result = upkeep.Rename(rule);
  EXPECT_EQ(Told(result.findings), "notice");
  EXPECT_TRUE(result.changes);
  EXPECT_FALSE(result.after.expression);
  EXPECT_NE(Text(result.after.document).find("\"Sales.Qty\""), std::string::npos);
  EXPECT_NE(Text(result.after.document).find("'Orders'"), std::string::npos);
}

TEST_F(UpkeepRename, VerifiesAgainstTheMetadataOfTheNewNames) {
  std::string sql = SourceText("examples/shop.sql");
  for (std::size_t at = 0; (at = sql.find("'Orders',", at)) != sql.npos;) {
    sql.replace(at, 9, "'Sales',");
  }
  const TempDatabase after(sql);
  struct Case {
    const char* tables;
    const char* rule;
    const char* told;
  };
  const Case cases[] = {
      {"Orders:Sales", "Orders.Amount > 1", "well"},
      {"Orders:Trade", "Orders.Amount > 1", "broken 0+12 after"},
      {"T:T", "Orders.Amount > 1", "broken 0+13 after"},
      {"Orders:Sales", "T.a > 1", "well"},
  };
  for (const Case& c : cases) {
    UpkeepSettings settings = Renames(c.tables, "");
    settings.metadataAfter = ConnectionTo(after);
    RuleUpkeep upkeep(settings);
    upkeep.Reach();
    EXPECT_EQ(Told(upkeep.Rename(RuleOf(c.rule)).findings), c.told) << c.tables << ' ' << c.rule;
  }
}

TEST_F(UpkeepRename, RenamesTheWordsOfATemplate) {
  UpkeepSettings settings = Renames("Header:Head", "Header.Total:Sum");
  settings.reportTemplate = u"7";
  RuleUpkeep upkeep(settings);
  const UpkeepResult result = upkeep.Rename(RuleOf("thisReport.Header.Total > Header.Total"));
  EXPECT_EQ(Text(result.after.expression), "thisReport.Head.Sum > Head.Sum");
  EXPECT_EQ(Told(result.findings), "well");
}

TEST_F(UpkeepRename, TakesLongRulesAndLongLists) {
  std::string tables = "T:U";
  for (int i = 0; i < 1000; ++i) tables += ",Old" + std::to_string(i) + ":New" + std::to_string(i);
  RuleUpkeep upkeep(Renames(tables.c_str(), ""));
  std::string sum = "T.a";
  std::string words = "'";
  for (int i = 0; i < 20000; ++i) {
    sum += " + T.b";
    words += "T.a [T] .T. Old" + std::to_string(i) + " [[";
  }
  const UpkeepResult result = upkeep.Rename(RuleOf(sum));
  EXPECT_EQ(Told(result.findings), "well");
  EXPECT_EQ(upkeep.Pairs()[0].matched, 20001);
  EXPECT_EQ(Text(result.after.expression).find("T."), std::string::npos);
  EXPECT_TRUE(Holds(upkeep.Rename(RuleOf(words + "'")), kNoticeState));
  upkeep.Rename(RuleOf(std::string(1000000, '[')));
  upkeep.Rename(RuleOf(std::string(1000000, '.')));
}

TEST_F(UpkeepRename, KeepsATextThatWouldBecomeTooLong) {
  std::string doubling;
  for (int i = 0; i < 26; ++i) doubling += (i == 0 ? "" : ",") + std::string("x:x][x");
  RuleUpkeep upkeep(Renames(doubling.c_str(), ""));
  const UpkeepResult result = upkeep.Rename(RuleOf("'[x]' = 'a'"));
  EXPECT_EQ(Text(result.after.expression), "'[x]' = 'a'");
  ASSERT_FALSE(result.findings.empty());
  EXPECT_EQ(result.findings[0].state, kBrokenState);
  EXPECT_FALSE(result.mayWrite);
}

// clang-format off
struct NameCase {
  const char* tables;
  const char* fields;
  const char* told;
};

constexpr NameCase kNames[] = {
    {"Orders:Sales",          "Orders.Qty:Pieces", "well"},
    {"Orders:x,T:Orders,x:T", "",                  "well"},
    {"Orders:T",              "",                  "broken"},  // taken
    {"Orders:X,T:X",          "",                  "broken"},  // given twice
    {"Orders:",               "",                  "broken"},
    {"Orders:a b",            "",                  "broken"},
    {"Orders:a.b",            "",                  "broken"},
    {"Orders:'a'",            "",                  "broken"},
    {"Orders:a+b",            "",                  "broken"},
    {"Orders:[a]",            "",                  "broken"},
    {"Orders:Input",          "",                  "notice"},  // Input.a[N] is a parameter
    {"Orders:Sms",            "",                  "notice"},  // and Sms.a[N] one of a message
    {"Orders:sum",            "",                  "notice"},  // a function, and sum.a is none
    {"Nowhere:Sales",         "",                  "notice"},
    {"",                      "Orders.Qty:Amount", "broken"},
    {"",                      "Orders.Qty:AMOUNT", "broken"},
    {"",                      "Orders.Qty:Amount,Orders.Amount:Qty", "well"},
    {"",                      "Orders.Qty:",       "broken"},
    {"",                      "Orders.Qty:a b",    "broken"},
    {"",                      "Orders.Qty:sum",    "well"},
    {"",                      "Orders.Quantity:n", "notice"},
    {"Orders:Sales",          "Sales.Quantity:n",  "notice"},
    {"Orders:Sales",          "Sales.Qty:Price",   "broken"},
    {"T:客单",                "T.a:数量",          "well"},
};
// clang-format on

TEST_F(UpkeepRename, TellsWhatSpeaksAgainstTheNames) {
  for (const NameCase& c : kNames) {
    RuleUpkeep upkeep(Renames(c.tables, c.fields));
    EXPECT_EQ(Told(upkeep.CheckRenames()), c.told) << c.tables << " | " << c.fields;
  }
}

TEST_F(UpkeepRename, NamesThePairThatIsAtFault) {
  RuleUpkeep upkeep(Renames("Orders:T", "Orders.Quantity:n"));
  const std::vector<UpkeepFinding> findings = upkeep.CheckRenames();
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_EQ(U8(findings[0].text), "\"Orders\": the new name \"T\" is taken already.");
  EXPECT_EQ(U8(findings[1].text),
            "\"Orders.Quantity\" is to become \"n\", and the metadata do not have it.");
}

}  // namespace
