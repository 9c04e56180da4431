// `RuleUpkeep::Strip`, `Translate` and `Uses`.
#include <gtest/gtest.h>

#include "RuleUpkeep.h"
#include "SampleDatabase.h"
#include "UpkeepRules.h"
#include "Utf8.h"

using namespace ORKBASE;
using namespace store_test;

namespace {

using UpkeepStrip = InEnglish;
using UpkeepTranslate = InEnglish;
using UpkeepUses = InEnglish;

// clang-format off
struct StripCase {
  const char* tables;
  const char* rule;
  const char* left;
  const char* told;
};

constexpr StripCase kStrips[] = {
    {"Orders",   "Orders.Amount > 1 and T.a > 2", "T.a > 2",            "well"},
    {"Orders",   "T.a>2",                         "T.a>2",              "well"},  // as it was written
    {"Orders,T", "Orders.Amount > 1 and T.a > 2", "",                   "notice"},
    {"Orders",   "Orders.Amount + T.a",           "T.a",                "well"},
    {"T",        "Orders.Memo & T.s",             "Orders.Memo",        "well"},
    {"Orders",   "Orders.Amout > 1",              "Orders.Amout > 1",   "refused 0+12"},
    {"orders",   "Orders.Amount>1",               "Orders.Amount>1",    "notice"},  // another case
    {"Nowhere",  "Orders.Amount>1",               "Orders.Amount>1",    "well"},
    {"",         "Orders.Amount>1",               "Orders.Amount>1",    "well"},
};
// clang-format on

TEST_F(UpkeepStrip, CutsTablesOut) {
  for (const StripCase& c : kStrips) {
    UpkeepSettings settings = SampleSettings();
    settings.strippedTables = U16(c.tables);
    RuleUpkeep upkeep(settings);
    const UpkeepResult result = upkeep.Strip(RuleOf(c.rule));
    EXPECT_EQ(Text(result.after.expression), c.left) << c.tables << " of " << c.rule;
    EXPECT_EQ(Told(result.findings), c.told) << c.tables << " of " << c.rule;
    EXPECT_EQ(result.changes, std::string(c.rule) != c.left) << c.rule;
    EXPECT_EQ(result.mayWrite, std::string(c.told).find("refused") == std::string::npos) << c.rule;
  }
}

TEST_F(UpkeepStrip, MakesDocumentAndSqlOfWhatIsLeft) {
  UpkeepSettings settings = SampleSettings();
  settings.strippedTables = u"Orders";
  settings.dialects = {kSqlServerDs};
  RuleUpkeep upkeep(settings);
  StoredRule rule = RuleOf("Orders.Amount > 1 and T.a > 2", kLogicDataType);
  rule.document = u"stored";
  rule.sql = {u"stored"};
  const UpkeepResult some = upkeep.Strip(rule);
  EXPECT_EQ(Text(some.after.document), U8(DocumentOf("T.a > 2", "T", kLogicDataType)));
  ASSERT_EQ(some.after.sql.size(), 1U);
  EXPECT_EQ(some.after.sql[0], upkeep.Translate(RuleOf("T.a > 2", kLogicDataType)).after.sql[0]);
  rule.expression = u"Orders.Amount > 1";
  const UpkeepResult none = upkeep.Strip(rule);
  EXPECT_EQ(Text(none.after.expression), "");
  EXPECT_EQ(Text(none.after.document), "");
  EXPECT_EQ(Text(none.after.sql[0]), "");
}

TEST_F(UpkeepStrip, StripsRulesThatHaveOnlyADocument) {
  UpkeepSettings settings = SampleSettings();
  settings.strippedTables = u"Orders";
  RuleUpkeep upkeep(settings);
  StoredRule rule;
  rule.document = DocumentOf("Orders.Amount > 1 and T.a > 2", "", kLogicDataType);
  const UpkeepResult result = upkeep.Strip(rule);
  EXPECT_EQ(Told(result.findings), "well");
  EXPECT_FALSE(result.after.expression);
  EXPECT_EQ(Text(result.after.document), U8(DocumentOf("T.a > 2", "T", kLogicDataType)));
}

TEST_F(UpkeepTranslate, GivesTheSqlOfEveryDialect) {
  UpkeepSettings settings = SampleSettings();
  settings.dialects = {kSqlServerDs, kOracleDs, kDMDs, kKingbaseDs, kOpenGaussDs};
  RuleUpkeep upkeep(settings);
  StoredRule rule = RuleOf("Orders.Amount > 1", kLogicDataType);
  rule.document = u"stale";
  const UpkeepResult result = upkeep.Translate(rule);
  EXPECT_EQ(Told(result.findings), "well");
  EXPECT_TRUE(result.mayWrite);
  EXPECT_TRUE(result.changes);
  const std::u16string document = DocumentOf("Orders.Amount > 1", "Orders", kLogicDataType);
  EXPECT_EQ(Text(result.after.document), U8(document));
  SampleExpression rules;
  rules.SetDts(u"Orders");
  ASSERT_EQ(result.after.sql.size(), settings.dialects.size());
  for (std::size_t i = 0; i < settings.dialects.size(); ++i) {
    std::u16string translated, sql, having;
    rules.TranslateFor(settings.dialects[i], document, translated, sql, having, false);
    EXPECT_EQ(Text(result.after.sql[i]), U8(sql)) << i;
  }
}

TEST_F(UpkeepTranslate, KeepsWhatIsStoredWhereADatabaseHasNoForm) {
  UpkeepSettings settings = SampleSettings();
  settings.dialects = {kOracleDs, kSqlServerDs};
  RuleUpkeep upkeep(settings);
  StoredRule rule = RuleOf("timeInterval(qq, T.d, T.d)", kNumDataType);
  rule.sql = {u"stored", u"stale"};
  const UpkeepResult result = upkeep.Translate(rule);
  EXPECT_EQ(Told(result.findings), "not translatable oracle");
  EXPECT_EQ(Text(result.after.sql[0]), "stored");
  EXPECT_NE(Text(result.after.sql[1]), "stale");
  EXPECT_EQ(Told(upkeep.Translate(RuleOf("1 + foo")).findings), "refused 4+3");
}

/// `field Orders.Amount@0+13` for each use.
std::string UsedBy(RuleUpkeep& upkeep, const StoredRule& rule) {
  std::vector<RuleUse> uses;
  upkeep.Uses(rule, uses);
  std::string text;
  for (const RuleUse& use : uses) {
    text += (text.empty() ? "" : "; ") + U8(use.kind) + " " + U8(use.name) + "@" +
            std::to_string(use.offset) + "+" + std::to_string(use.length);
  }
  return text;
}

TEST_F(UpkeepUses, ListsWhatARuleDependsOn) {
  RuleUpkeep upkeep(SampleSettings());
  EXPECT_EQ(UsedBy(upkeep, RuleOf("ROUND(T.a, 2) > Input.x[N]")),
            "function ROUND@0+5; field T.a@6+3; input Input.x[N]@16+10");
  EXPECT_EQ(UsedBy(upkeep, RuleOf("1 + foo + T.a")), "unknown foo@4+3; field T.a@10+3");
  StoredRule written;
  written.document = DocumentOf("T.a * 2");
  EXPECT_EQ(UsedBy(upkeep, written), "field T.a@-1+3");
  EXPECT_EQ(UsedBy(upkeep, StoredRule{}), "");
  std::vector<RuleUse> uses;
  EXPECT_EQ(Told(upkeep.Uses(RuleOf("1 + foo"), uses).findings), "refused 4+3");
}

}  // namespace
