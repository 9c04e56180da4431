// `RuleUpkeep::Check`: which rules of a store are well, and what is told of the others.
#include <gtest/gtest.h>

#include <algorithm>

#include "OrkPlatform.h"
#include "RuleUpkeep.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "UpkeepRules.h"
#include "Utf8.h"

using namespace ORKBASE;
using namespace store_test;

namespace {

// clang-format off
struct VerifiedCase {
  MXRULE_DATATYPE type;
  const char* rule;
  const char* told;
};

constexpr VerifiedCase kVerified[] = {
    {kLogicDataType, "Orders.Amount > 1",           "well"},
    {kEitherType,    "Orders.Amount > 1",           "well"},
    {kEitherType,    "Orders.Amount + 1",           "well"},
    {kNumDataType,   "Orders.Amount + T.a",         "well"},
    {kNumDataType,   "Orders.Amount > 1",           "refused 14+1"},
    {kLogicDataType, "Orders.Amout > 1",            "refused 0+12"},
    {kEitherType,    "1 + foo",                     "refused 4+3"},
    {kLogicDataType, "Orders.Amount > ",            "refused 16+0"},
    {kLogicDataType, "客户.金额 > 1",               "well"},
    {kLogicDataType, "Nowhere.x = 1",               "refused 0+9"},
    {kLogicDataType, "thisReport.Header.Total > 1", "refused 0+23"},
    {kEitherType,    "",                            "unreadable"},
    {kEitherType,    " \n ",                        "unreadable"},
    {kEitherType,    "'",                           "refused 0+1"},
};
// clang-format on

TEST(UpkeepCheck, VerifiesEachRuleAsItsType) {
  RuleUpkeep upkeep(SampleSettings());
  for (const int round : {1, 2}) {
    for (const VerifiedCase& c : kVerified) {
      const UpkeepResult result = upkeep.Check(RuleOf(c.rule, c.type));
      EXPECT_EQ(Told(result.findings), c.told) << c.rule << " in round " << round;
      EXPECT_EQ(result.mayWrite, std::string(c.told) == "well") << c.rule;
      EXPECT_FALSE(result.changes) << c.rule;
    }
  }
}

TEST(UpkeepCheck, TellsTheErrorOfVerifyWithItsFixes) {
  const ScopedLanguage english(u"en");
  RuleUpkeep upkeep(SampleSettings());
  const UpkeepResult result = upkeep.Check(RuleOf("1 < Orders.Amout"));
  ASSERT_EQ(result.findings.size(), 1U);
  const UpkeepFinding& finding = result.findings[0];
  EXPECT_EQ(U8(finding.text), "The word \"Orders.Amout\" is unknown.");
  ASSERT_FALSE(finding.fixes.empty());
  ASSERT_EQ(finding.fixes[0].edits.size(), 1U);
  EXPECT_EQ(finding.fixes[0].edits[0].offset, 4);
  EXPECT_EQ(U8(finding.fixes[0].edits[0].text), "Orders.Amount");
}

TEST(UpkeepCheck, ComparesDocumentsWithoutTheSpellingOfWords) {
  const std::string rule = "Orders.Amount > 1";
  const std::u16string whole = DocumentOf(rule, "Orders", kLogicDataType);
  const std::u16string atFirstSight =
      DocumentOf(rule, "", kLogicDataType);  // without the content of fields
  ASSERT_NE(whole, atFirstSight);
  const std::u16string other = DocumentOf("Orders.Amount > 2", "Orders", kLogicDataType);
  struct Case {
    const char* what;
    std::u16string stored;
    const char* told;
    bool changes;
  };
  const Case cases[] = {
      {"the same", whole, "well", false},
      {"of an engine that had not read the table", atFirstSight, "well", false},
      {"another rule's", other, "changed", true},
      {"another operand", U16("<tag/>"), "changed", true},
      {"no document", u"Orders.Amount > 1", "unreadable", true},
      {"an empty text", u"", "unreadable", true},
      {"half a document", whole.substr(0, whole.size() / 2), "unreadable", true},
      {"a lone surrogate", u"<tag a=\"\xD800", "unreadable", true},
  };
  RuleUpkeep upkeep(SampleSettings());
  for (const Case& c : cases) {
    StoredRule stored = RuleOf(rule, kLogicDataType);
    stored.document = c.stored;
    const UpkeepResult result = upkeep.Check(stored);
    EXPECT_EQ(Told(result.findings), c.told) << c.what;
    EXPECT_EQ(result.changes, c.changes) << c.what;
    EXPECT_TRUE(result.mayWrite) << c.what;
    EXPECT_EQ(Text(result.after.document), U8(c.changes ? whole : c.stored)) << c.what;
    EXPECT_EQ(Text(result.after.expression), rule) << c.what;
  }
}

TEST(UpkeepCheck, LooksAtTheDocumentOfARefusedRule) {
  RuleUpkeep upkeep(SampleSettings());
  StoredRule rule = RuleOf("Orders.Amout > 1");
  rule.document = u"no document";
  const UpkeepResult result = upkeep.Check(rule);
  EXPECT_EQ(Told(result.findings), "refused 0+12; unreadable");
  EXPECT_EQ(Text(result.after.document), "no document");
  EXPECT_FALSE(result.mayWrite);
}

TEST(UpkeepCheck, WritesRulesThatHaveOnlyADocument) {
  RuleUpkeep upkeep(SampleSettings());
  struct Case {
    const char* what;
    std::u16string document;
    MXRULE_DATATYPE type;
    const char* told;
  };
  const Case cases[] = {
      {"a condition", DocumentOf("Orders.Amount > 1", "", kLogicDataType), kEitherType, "well"},
      {"a value", DocumentOf("Orders.Amount * 2", "Orders"), kNumDataType, "well"},
      {"a value where a condition is to be", DocumentOf("T.a"), kLogicDataType, "refused"},
      {"no document", u"T.a", kEitherType, "unreadable"},
      {"an empty one", u"", kEitherType, "unreadable"},
      {"a tag that is no rule", u"<tag/>", kEitherType, "unreadable"},
  };
  for (const Case& c : cases) {
    StoredRule rule;
    rule.type = c.type;
    rule.document = c.document;
    const UpkeepResult result = upkeep.Check(rule);
    EXPECT_EQ(Told(result.findings), c.told) << c.what;
    EXPECT_FALSE(result.after.expression) << c.what;
    EXPECT_EQ(Text(result.after.document), U8(c.document)) << c.what;
  }
}

TEST(UpkeepCheck, TellsOfARowWithoutARule) {
  const ScopedLanguage english(u"en");
  RuleUpkeep upkeep(SampleSettings());
  const UpkeepResult result = upkeep.Check(StoredRule{});
  ASSERT_EQ(Told(result.findings), "unreadable");
  EXPECT_EQ(U8(result.findings[0].text), "There is no rule here: neither a text nor a document.");
}

TEST(UpkeepCheck, ComparesTheSqlOfEachDialect) {
  UpkeepSettings settings = SampleSettings();
  settings.dialects = {kSqlServerDs, kOracleDs};
  RuleUpkeep upkeep(settings);
  StoredRule rule = RuleOf("T.a > 1", kLogicDataType);
  EXPECT_EQ(Told(upkeep.Check(rule).findings), "well");  // no column for it
  std::vector<std::optional<std::u16string>> sql = upkeep.Translate(rule).after.sql;
  ASSERT_EQ(sql.size(), 2U);
  rule.sql = sql;
  EXPECT_EQ(Told(upkeep.Check(rule).findings), "well");
  rule.sql = {std::nullopt, u"stale"};
  const UpkeepResult result = upkeep.Check(rule);
  EXPECT_EQ(Told(result.findings), "changed oracle");
  EXPECT_FALSE(result.after.sql[0]);
  EXPECT_EQ(result.after.sql[1], sql[1]);
  EXPECT_TRUE(result.changes);
}

TEST(UpkeepCheck, TellsWhichDatabaseHasNoForm) {
  const ScopedLanguage english(u"en");
  UpkeepSettings settings = SampleSettings();
  settings.dialects = {kSqlServerDs, kOracleDs};
  RuleUpkeep upkeep(settings);
  const UpkeepResult result = upkeep.Check(RuleOf("timeInterval(qq, T.d, T.d)"));
  EXPECT_EQ(Told(result.findings), "not translatable oracle");
}

TEST(UpkeepCheck, TakesTextsWithZerosAndLoneSurrogates) {
  UpkeepSettings settings = SampleSettings();
  settings.dialects = {kSqlServerDs};
  RuleUpkeep upkeep(settings);
  const std::u16string texts[] = {
      std::u16string(u"T.a > 1\0 and", 12),
      std::u16string(1, u'\0'),
      u"\xD800",
      u"'\xDC00' = T.s",
      std::u16string(3, u'\0'),
      u"T.\xD800 > 1",
  };
  for (const std::u16string& text : texts) {
    StoredRule rule;
    rule.expression = text;
    rule.document = text;
    rule.reportTemplate = u"";
    EXPECT_FALSE(upkeep.Check(rule).findings.empty()) << U8(text);
    rule.reportTemplate = text;
    upkeep.Check(rule);
    rule.cax = text;
    rule.language = text;
    upkeep.Check(rule);
  }
}

}  // namespace
