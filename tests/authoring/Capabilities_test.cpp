// What each database makes of each function, held against what the translators really do.
#include "RuleAuthoring.h"
#include "RuleDialects.h"

#include "Mx_Exception.h"
#include "OrkPlatform.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "authoring/AuthoringCall.h"
#include "authoring/CallForms.h"
#include "authoring/SampleCalls.h"
#include "dialects/Capabilities.h"
#include "dictionary/VocabularyTables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace ORKBASE {
namespace {

/// What the engine itself writes for a rule; false where the database refuses it.
bool Translates(MxExpression& rules, MXRULE_DATATYPE type, const std::u16string& rule,
                ORKDB_DSType_ENUM database, std::u16string& sql) {
  std::u16string document;
  std::u16string translated;
  std::u16string b;
  EXPECT_TRUE(rules.Verify(type, rule, document)) << U8(rule) << U8(rules.errDescription());
  try {
    return rules.TranslateFor(database, document, translated, sql, b, false);
  } catch (const Mx_Exception&) {
    return false;
  }
}

/// Names that stand in front of an opening bracket.
std::set<std::string> CallsOf(const std::u16string& sql) {
  std::set<std::string> names;
  const std::string text = U8(sql);
  for (std::size_t at = text.find('('); at != text.npos; at = text.find('(', at + 1)) {
    std::size_t begin = at;
    while (begin > 0 && (std::isalnum(static_cast<unsigned char>(text[begin - 1])) != 0 ||
                         text[begin - 1] == '_' || text[begin - 1] == '.')) {
      --begin;
    }
    if (begin < at) names.insert(U8(ToLower(U16(text.substr(begin, at - begin)))));
  }
  return names;
}

MXRULE_DATATYPE TypeOfSample(const VocabularyRow& row) {
  const CallForm& form = FormsOf(row.primary).front();
  return form.rule == u"<func_set>" ? kLogicDataType : form.dataType;
}

std::vector<RuleFunction> CapabilitiesIn(std::u16string_view tag, const MxExpression& rules) {
  RuleAuthoring authoring(rules);
  authoring.set_language(std::u16string(tag));
  return authoring.Capabilities();
}

class Capabilities : public testing::Test {
 protected:
  const RuleFunction& Of(std::u16string_view name) {
    if (all_.empty()) all_ = CapabilitiesIn(u"en", rules_);
    const auto found = std::find_if(all_.begin(), all_.end(),
                                    [&](const RuleFunction& each) { return each.name == name; });
    return found == all_.end() ? none_ : *found;
  }
  const RuleSupport& On(std::u16string_view name, std::u16string_view dialect) {
    for (const RuleSupport& each : Of(name).databases) {
      if (each.dialect == dialect) return each;
    }
    return nothing_;
  }

  ScopedLanguage language_{u"en"};
  MxExpression rules_;
  std::vector<RuleFunction> all_;
  RuleFunction none_;
  RuleSupport nothing_;
};

TEST_F(Capabilities, TellEveryFunctionInEveryLanguage) {
  for (const std::u16string_view tag : {u"en", u"zh-CN"}) {
    const std::vector<RuleFunction> all = CapabilitiesIn(tag, rules_);
    ASSERT_EQ(all.size(), std::size(kFunctionRows));
    const ScopedLanguage spoken(tag);
    MxExpression rules;
    for (std::size_t i = 0; i < all.size(); ++i) {
      const RuleFunction& function = all[i];
      SCOPED_TRACE(U8(tag) + " " + U8(kFunctionRows[i].primary) + " " + U8(function.sample));
      EXPECT_FALSE(function.dataType.empty());
      EXPECT_FALSE(function.info.empty());
      EXPECT_TRUE(function.signature.starts_with(function.name + u"("));
      EXPECT_NE(function.sample.find(function.name + u"("), std::u16string::npos);
      EXPECT_EQ(function.databases.size(), RuleDialects().size());
      std::u16string document;
      EXPECT_TRUE(rules.Verify(TypeOfSample(kFunctionRows[i]), function.sample, document))
          << U8(rules.errDescription());
    }
  }
}

TEST_F(Capabilities, AgreeWithWhatTheTranslatorsDo) {
  const std::vector<RuleFunction> all = CapabilitiesIn(u"en", rules_);
  for (std::size_t i = 0; i < all.size(); ++i) {
    for (std::size_t at = 0; at < RuleDialects().size(); ++at) {
      const RuleSupport& support = all[i].databases.at(at);
      SCOPED_TRACE(U8(all[i].sample) + " on " + U8(support.dialect));
      EXPECT_EQ(support.dialect, RuleDialects()[at].name);
      std::u16string sql;
      const bool translates = Translates(rules_, TypeOfSample(kFunctionRows[i]), all[i].sample,
                                         RuleDialects()[at].number, sql);
      EXPECT_EQ(support.state == u"refused", !translates);
      EXPECT_EQ(support.text.empty(), translates);
      EXPECT_EQ(support.state == u"user", !support.needs.empty());
      EXPECT_EQ(U8(support.sql), U8(sql));
      const std::set<std::string> calls = CallsOf(sql);
      for (const std::u16string& need : support.needs) {
        EXPECT_TRUE(calls.contains(U8(ToLower(need)))) << U8(need);
      }
    }
  }
}

/// Each function of the SQL of each form has its fact, and each fact is about SQL that there is.
TEST_F(Capabilities, HaveAFactForEachFunctionOfTheSqlAndNoOther) {
  AuthoringView view;
  view.Follow(EngineAccess::Of(rules_), nullptr);
  AuthoringCall call(view, CurrentLanguage());
  std::vector<std::set<std::string>> written(kDatabaseCount);
  for (const CallForm& form : AllForms()) {
    const SampleCall sample = SampleOf(call, form);
    if (sample.rule.empty()) continue;
    std::size_t at = 0;
    for (const RuleSupport& support : SupportOf(call, sample)) {
      written[at++].merge(CallsOf(support.sql));
    }
  }
  // What other arguments bring: places of a number, a unit of time, a missing number.
  const char16_t* const more[] = {u"ToNumber('42', 2)",
                                  u"timeInterval(mm, '2024-01-15', '2024-02-01')",
                                  u"year(dateAdd(yy, 1, '2024-01-15'))", u"log10(2)"};
  for (const char16_t* rule : more) {
    std::size_t at = 0;
    for (const RuleSupport& support : SupportOf(call, {kNumDataType, rule})) {
      written[at++].merge(CallsOf(support.sql));
    }
  }
  for (std::size_t at = 0; at < kDatabaseCount; ++at) {
    const RuleDialect& dialect = RuleDialects()[at];
    std::set<std::string> known;
    for (const FunctionFact& fact : FunctionFacts()) {
      if (fact.known[at] != Known::kUnwritten) known.insert(U8(ToLower(fact.function)));
    }
    std::set<std::string> found;
    for (std::string name : written[at]) {
      if (name.starts_with("dbo.")) name.erase(0, 4);
      if (name != "in" && name != "nvarchar") found.insert(name);
    }
    EXPECT_EQ(found, known) << U8(dialect.name);
  }
}

TEST_F(Capabilities, HaveEachFactOnce) {
  std::set<std::string> names;
  for (const FunctionFact& fact : FunctionFacts()) {
    EXPECT_TRUE(names.insert(U8(ToLower(fact.function))).second) << U8(fact.function);
  }
}

TEST_F(Capabilities, HaveEachTraitOnceAndOnSomeDatabase) {
  std::set<Trait> traits;
  for (const TraitFact& fact : TraitFacts()) {
    EXPECT_TRUE(traits.insert(fact.trait).second);
    EXPECT_TRUE(std::any_of(fact.known.begin(), fact.known.end(),
                            [](Known known) { return known != Known::kUnwritten; }));
  }
  EXPECT_EQ(traits.size(), static_cast<std::size_t>(Trait::kMonthStyle) + 1);
}

TEST_F(Capabilities, HaveAColumnForEachDatabase) {
  ASSERT_EQ(RuleDialects().size(), kDatabaseCount);
  const char* const names[] = {"SQL Server", "Oracle", "DM", "Kingbase", "openGauss"};
  for (std::size_t i = 0; i < kDatabaseCount; ++i) {
    EXPECT_EQ(U8(DatabaseName(RuleDialects()[i].number)), names[i]);
  }
}

struct StateRow {
  const char16_t* function;
  const char16_t* dialect;
  const char* state;
  const char* needs;
  const char* sql;
};

// clang-format off
constexpr StateRow kStates[] = {
    {u"ROUND",      u"default",   "native",  "",               "ROUND(1.5,0)"},
    {u"ROUND",      u"oracle",    "native",  "",               "ROUND(1.5,0)"},
    {u"average",    u"dm",        "native",  "",               "avg(1.5)"},
    {u"length",     u"default",   "native",  "",               "len(N'abc')"},
    {u"toLower",    u"oracle",    "bare",    "",               "toLower('abc')"},
    {u"toUpper",    u"oracle",    "native",  "",               "upper('abc')"},
    {u"CEILING",    u"oracle",    "bare",    "",               "CEILING(1.5)"},
    {u"RAND",       u"oracle",    "bare",    "",               "RAND()"},
    {u"RAND",       u"kingbase",  "native",  "",               "RANDOM()"},
    {u"CHARINDEX",  u"oracle",    "bare",    "",               "CHARINDEX('b','abc')"},
    {u"CHARINDEX",  u"dm",        "native",  "",               "locate('b','abc')"},
    {u"CHARINDEX",  u"opengauss", "user",    "fCHARINDEX",     "fCHARINDEX('b','abc')"},
    {u"fMd5",       u"default",   "user",    "dbo.fMd5",       "dbo.fMd5(N'abc')"},
    {u"fMd5",       u"oracle",    "user",    "fMd5",           "fMd5('abc')"},
    {u"fisYear",    u"default",   "user",    "dbo.fDatePart_acct",
                                  "dbo.fDatePart_acct('yy','2024-01-15')"},
    {u"fisYear",    u"oracle",    "refused", "",               ""},
    {u"thisSet",    u"oracle",    "refused", "",               ""},
    {u"thisSet",    u"kingbase",  "native",  "",
                                  "1.5 in (select  1.5  union  select  2)"},
    {u"thisFisMonth", u"oracle",  "refused", "",               ""},
    {u"thisMonth",  u"dm",        "user",    "fStartTime fEndTime",
                    "'2024-01-15' between fStartTime('mm',2024,0,1,0)  and  fEndTime('mm',2024,0,1,0)"},
    {u"timeInterval", u"opengauss", "user",  "fDateDiff",      "fDateDiff(dd,'2024-01-15','2024-02-01')"},
};
// clang-format on

TEST_F(Capabilities, TellStateNeedsAndSql) {
  for (const StateRow& row : kStates) {
    SCOPED_TRACE(U8(row.function) + " on " + U8(row.dialect));
    const RuleSupport& support = On(row.function, row.dialect);
    EXPECT_EQ(U8(support.state), row.state);
    EXPECT_EQ(U8(support.sql), row.sql);
    std::string needs;
    for (const std::u16string& need : support.needs) {
      needs += (needs.empty() ? "" : " ") + U8(need);
    }
    EXPECT_EQ(needs, row.needs);
  }
}

TEST_F(Capabilities, TellWhyInTheLanguageOfTheCall) {
  EXPECT_EQ(U8(On(u"fisYear", u"oracle").text), "This database does not support fiscal periods.");
  EXPECT_EQ(U8(On(u"thisSet", u"oracle").text), "This database does not support thisSet.");
  const std::vector<RuleFunction> chinese = CapabilitiesIn(u"zh-CN", rules_);
  const auto set = std::find_if(chinese.begin(), chinese.end(), [](const RuleFunction& each) {
    return each.databases[1].state == u"refused" && each.dataType == u"any";
  });
  ASSERT_NE(set, chinese.end());
  const ScopedLanguage spoken(u"zh-CN");
  EXPECT_EQ(U8(set->databases[1].text), U8(MessageText(6256)));
}

TEST_F(Capabilities, TellAllFormsOfAnOverloadedWord) {
  EXPECT_EQ(U8(Of(u"max").signature), "max(number) | max(text) | max(date)");
  EXPECT_EQ(U8(Of(u"ToNumber").signature), "ToNumber(text[, number][, number])");
  EXPECT_EQ(U8(Of(u"ROUND").sample), "ROUND(1.5, 0)");
  EXPECT_EQ(U8(Of(u"thisSet").sample), "1.5 in thisSet(1.5, 2)");
  EXPECT_EQ(U8(Of(u"lastMonth").sample), "'2024-01-15' between lastMonth(2024, 1)");
}

}  // namespace
}  // namespace ORKBASE
