// The engines of `RuleUpkeep`: templates, CAD documents, languages, and databases that are down.
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "CountedQueries.h"
#include "DataAccess.h"
#include "OrkPlatform.h"
#include "RuleUpkeep.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "UpkeepRules.h"
#include "Utf8.h"

using namespace ORKBASE;
using namespace store_test;

namespace {

using UpkeepEngines = InEnglish;
using UpkeepOutages = InEnglish;

constexpr const char16_t* kPart =
    u"<cax><dd><tabs><tab name=\"Part\" dispName=\"Part\"><flds><fld name=\"Mass\" "
    u"dispName=\"Mass\" dt=\"1\"/></flds></tab></tabs></dd></cax>";
constexpr const char16_t* kPlate =
    u"<cax><dd><tabs><tab name=\"Plate\" dispName=\"Plate\"><flds><fld name=\"Mass\" "
    u"dispName=\"Mass\" dt=\"1\"/></flds></tab></tabs></dd></cax>";
constexpr const char16_t* kUnknownType =
    u"<cax><dd><tabs><tab name=\"Part\" dispName=\"Part\"><flds><fld name=\"Mass\" "
    u"dispName=\"Mass\" dt=\"77\"/></flds></tab></tabs></dd></cax>";

TEST_F(UpkeepEngines, TakesTheTemplateOfTheRule) {
  struct Case {
    const char16_t* ofSettings;
    std::optional<std::u16string> ofRule;
    const char* told;
  };
  const Case cases[] = {
      {u"", std::nullopt, "refused 0+23"}, {u"", u"7", "well"},  {u"7", std::nullopt, "well"},
      {u"7", u"", "refused 0+23"},         {u"7", u"7", "well"}, {u"7", u"8", "unreadable"},
      {u"8", std::nullopt, "unreadable"},  {u"8", u"7", "well"},
  };
  for (const Case& c : cases) {
    UpkeepSettings settings = SampleSettings();
    settings.reportTemplate = c.ofSettings;
    RuleUpkeep upkeep(settings);
    StoredRule rule = RuleOf("thisReport.Header.Total > 1");
    rule.reportTemplate = c.ofRule;
    EXPECT_EQ(Told(upkeep.Check(rule).findings), c.told)
        << U8(c.ofSettings) << '/' << Text(c.ofRule);
  }
}

TEST_F(UpkeepEngines, TakesTheCadDocumentOfTheRule) {
  UpkeepSettings settings;
  settings.cax = {{u"part", 1, kPart}, {u"plate", 2, kPlate}};
  RuleUpkeep upkeep(settings);
  struct Case {
    const char* rule;
    std::optional<std::u16string> cax;
    const char* told;
  };
  const Case cases[] = {
      {"thisDoc.Part.Mass > 1", std::nullopt, "well"},
      {"thisDoc.Plate.Mass > 1", std::nullopt, "well"},
      {"thisDoc.Part.Mass > 1", u"part", "well"},
      {"thisDoc.Plate.Mass > 1", u"plate", "well"},
      {"thisDoc.Part.Mass > 1", u"none", "unreadable"},
  };
  for (const Case& c : cases) {
    StoredRule rule = RuleOf(c.rule);
    rule.cax = c.cax;
    EXPECT_EQ(Told(upkeep.Check(rule).findings), c.told) << c.rule << ' ' << Text(c.cax);
  }
}

TEST_F(UpkeepEngines, TellsOfABadCadDocumentInEachRuleThatNamesIt) {
  UpkeepSettings settings;
  settings.cax = {{u"bad", 1, kUnknownType}, {u"none", 1, u"no document"}};
  RuleUpkeep upkeep(settings);
  for (const int round : {1, 2}) {
    for (const char16_t* name : {u"bad", u"none"}) {
      StoredRule rule = RuleOf("1 > 2");
      rule.cax = name;
      const UpkeepResult result = upkeep.Check(rule);
      ASSERT_EQ(Told(result.findings), "unreadable") << U8(name) << " in round " << round;
      EXPECT_TRUE(U8(result.findings[0].text)
                      .starts_with("The CAD document \"" + U8(name) + "\" cannot be used: "))
          << U8(result.findings[0].text);
    }
    StoredRule other = RuleOf("1 > 2");
    other.cax = u"";
    EXPECT_EQ(Told(upkeep.Check(other).findings), "well");
  }
}

// clang-format off
struct LanguageCase {
  const char* caller;
  const char* language;
  const char* rule;
  const char* told;
};

constexpr LanguageCase kLanguages[] = {
    {"en", "",      "toUpper(Customer.Name)", "well"},
    {"en", "zh-CN", "转大写(Customer.Name)",  "well"},
    {"en", "",      "转大写(Customer.Name)",  "refused 0+3"},
    {"zh", "",      "转大写(Customer.Name)",  "well"},
    {"zh", "zh-CN", "转大写(Customer.Name)",  "well"},
    {"zh", "en",    "转大写(Customer.Name)",  "refused 0+3"},
};
// clang-format on

TEST_F(UpkeepEngines, SpeaksTheLanguageOfTheRuleAndAnswersInThatOfTheCaller) {
  RuleUpkeep upkeep(SampleSettings());
  for (const int round : {1, 2}) {
    for (const LanguageCase& c : kLanguages) {
      const ScopedLanguage caller(U16(c.caller));
      StoredRule rule = RuleOf(c.rule);
      if (*c.language != '\0') rule.language = U16(c.language);
      const UpkeepResult result = upkeep.Check(rule);
      EXPECT_EQ(Told(result.findings), c.told)
          << c.rule << " in " << c.language << " for " << c.caller << " in round " << round;
      EXPECT_EQ(U8(ThreadLanguage()), c.caller);
      if (result.findings.empty()) continue;
      const bool isEnglish = std::string(c.caller) == "en";
      EXPECT_EQ(U8(result.findings[0].text).find("is unknown") != std::string::npos, isEnglish)
          << U8(result.findings[0].text);
    }
  }
}

TEST_F(UpkeepEngines, LeavesAThreadWithoutALanguageWithout) {
  SetThreadLanguage(u"");
  const std::u16string before = ThreadLanguage();
  RuleUpkeep upkeep(SampleSettings());
  StoredRule rule = RuleOf("转大写(Customer.Name)");
  rule.language = u"zh-CN";
  EXPECT_EQ(Told(upkeep.Check(rule).findings), "well");
  EXPECT_EQ(U8(ThreadLanguage()), U8(before));
  EXPECT_EQ(Told(upkeep.Check(RuleOf("T.a > 1")).findings), "well");
}

TEST_F(UpkeepEngines, WritesDocumentsInTheLanguageOfTheRule) {
  UpkeepSettings settings = SampleSettings();
  settings.tableRenames = u"Customer:Client";
  RuleUpkeep upkeep(settings);
  StoredRule rule;
  rule.language = u"zh-CN";
  rule.document = DocumentOf("toUpper(Customer.Name)");
  EXPECT_EQ(Told(upkeep.Check(rule).findings), "well");
  const UpkeepResult result = upkeep.Rename(rule);
  EXPECT_NE(Text(result.after.document).find("content=\"&#x8F6C;&#x5927;&#x5199;\""),
            std::string::npos)
      << Text(result.after.document);
}

TEST_F(UpkeepEngines, LoadsTheWordsOfACombinationOnce) {
  CountedQueries counted;
  UpkeepSettings settings;
  settings.metadata.emplace();
  settings.metadata->server = CountedQueries::Server(SampleDatabase());
  RuleUpkeep upkeep(settings);
  const auto checkAll = [&] {
    for (const char16_t* id : {u"", u"7", u"8"}) {
      StoredRule rule = RuleOf("Orders.Amount > 1");
      rule.reportTemplate = id;
      upkeep.Check(rule);
    }
  };
  checkAll();
  EXPECT_GT(counted.Asked().queries, 0);
  counted.Forget();
  checkAll();
  EXPECT_EQ(counted.Asked().queries, 0);
}

TEST_F(UpkeepEngines, EndsTheEnginesThatWereNotUsedForTheLongestTime) {
  CountedQueries counted;
  UpkeepSettings settings;
  settings.metadata.emplace();
  settings.metadata->server = CountedQueries::Server(SampleDatabase());
  RuleUpkeep upkeep(settings);
  const auto queriesFor = [&](int id) {
    counted.Forget();
    StoredRule rule = RuleOf("1 > 2");
    rule.reportTemplate = U16(std::to_string(id));
    upkeep.Check(rule);
    return counted.Asked().queries;
  };
  EXPECT_GT(queriesFor(7), 0);
  for (int id = 100; id < 163; ++id) EXPECT_GT(queriesFor(id), 0);
  EXPECT_EQ(queriesFor(7), 0);    // 64 of them
  EXPECT_GT(queriesFor(163), 0);  // ends 100
  EXPECT_EQ(queriesFor(7), 0);
  EXPECT_GT(queriesFor(100), 0);
}

/// A database that answers as long as it is told to.
struct FailingDatabase {
  FailingDatabase() {
    creator.RegisterKind(u"failing:", [this](const ORKDB::AccessorRequest&) {
      return std::make_unique<Accessor>(*this);
    });
  }
  ~FailingDatabase() { creator.RegisterKind(u"failing:", {}); }

  struct Accessor : ORKDB::CDBAccessor {
    explicit Accessor(FailingDatabase& owner)
        : database(owner),
          inner(owner.creator.CreateAccessor(
              ORKDB::MxSvrInfo(SampleDatabase().Server(), 0, u"", u""), ORKDB::MxProxyInfo(), u"",
              kSqlServerDs, false, true, u"", u"")) {}
    std::unique_ptr<ORKDB::CDBRecordSet> QueryByStatement(const std::u16string& statement,
                                                          const ORKDB::MxParams& params,
                                                          const std::u16string&, std::int32_t,
                                                          std::int32_t) override {
      ResetError();
      if (!database.isDown) return inner->QueryByStatement(statement, params);
      SetError(database.number, u"the server is gone");
      return nullptr;
    }
    FailingDatabase& database;
    std::unique_ptr<ORKDB::CDBAccessor> inner;
  };

  UpkeepSettings Settings() const {
    UpkeepSettings settings;
    settings.metadata.emplace();
    settings.metadata->server = u"failing:";
    settings.tableRenames = u"Orders:Sales";
    settings.strippedTables = u"Orders";
    return settings;
  }

  ORKDB::CDBAccessorCreator& creator = *ORKDB::CDBAccessorCreator::instance();
  bool isDown = false;
  std::int32_t number = 1234;
};

/// What an operation throws, `number text`; or that it answered.
template <class Ask>
std::string OutageOf(Ask ask) {
  try {
    ask();
  } catch (const UpkeepOutage& outage) {
    return std::to_string(outage.Number()) + " " + outage.what();
  }
  return "answered";
}

TEST_F(UpkeepOutages, AreNoFaultOfARule) {
  FailingDatabase database;
  for (const std::int32_t number : {1234, -1}) {
    database.number = number;
    const std::string gone = std::to_string(number) + " the server is gone";
    for (const char* text : {"Orders.Amount > 1", "T.a + 1", "thisReport.Header.Total > 1"}) {
      database.isDown = false;
      RuleUpkeep upkeep(database.Settings());
      EXPECT_EQ(OutageOf([&] { upkeep.Reach(); }), "answered");
      StoredRule rule = RuleOf(text);
      rule.document = DocumentOf("T.a");
      if (std::string(text).starts_with("this")) rule.reportTemplate = u"7";
      StoredRule document = rule;
      document.expression.reset();
      std::vector<RuleUse> uses;
      database.isDown = true;
      for (const StoredRule& one : {rule, document}) {
        EXPECT_EQ(OutageOf([&] { upkeep.Check(one); }), gone) << text;
        EXPECT_EQ(OutageOf([&] { upkeep.Translate(one); }), gone) << text;
        EXPECT_EQ(OutageOf([&] { upkeep.Rename(one); }), gone) << text;
        EXPECT_EQ(OutageOf([&] { upkeep.Strip(one); }), gone) << text;
        EXPECT_EQ(OutageOf([&] { upkeep.Uses(one, uses); }), gone) << text;
      }
      EXPECT_EQ(OutageOf([&] { upkeep.Reach(); }), gone);
      EXPECT_EQ(OutageOf([&] { upkeep.CheckRenames(); }), gone);
      database.isDown = false;
      EXPECT_EQ(Told(upkeep.Check(RuleOf("Orders.Amount > 1")).findings), "well");
    }
  }
}

TEST_F(UpkeepOutages, AreFoundInTheMiddle) {
  FailingDatabase database;
  RuleUpkeep upkeep(database.Settings());
  EXPECT_EQ(Told(upkeep.Rename(RuleOf("Orders.Amount > 1")).findings), "well");
  database.isDown = true;
  EXPECT_EQ(Told(upkeep.Rename(RuleOf("Orders.Amount > 1")).findings), "well");  // all is loaded
  EXPECT_EQ(OutageOf([&] { upkeep.Rename(RuleOf("T.a > 1")); }), "1234 the server is gone");
}

TEST_F(UpkeepOutages, TellOfAFileThatIsNotThere) {
  UpkeepSettings settings;
  settings.metadata.emplace();
  settings.metadata->server = u"sqlite:/nowhere/shop.db";
  RuleUpkeep upkeep(settings);
  EXPECT_NE(OutageOf([&] { upkeep.Reach(); }), "answered");
  EXPECT_NE(OutageOf([&] { upkeep.Check(RuleOf("T.a > 1")); }), "answered");
  UpkeepSettings after = SampleSettings();
  after.metadataAfter = settings.metadata;
  EXPECT_NE(OutageOf([&] { RuleUpkeep(after).Reach(); }), "answered");
}

TEST_F(UpkeepOutages, AreNotWhatARuleWithoutADatabaseMeets) {
  RuleUpkeep upkeep(UpkeepSettings{});
  upkeep.Reach();
  EXPECT_EQ(Told(upkeep.Check(RuleOf("1 > 2")).findings), "well");
  EXPECT_EQ(Told(upkeep.Check(RuleOf("T.a > 2")).findings), "refused 0+3");
  StoredRule rule = RuleOf("1 > 2");
  rule.reportTemplate = u"7";
  EXPECT_EQ(Told(upkeep.Check(rule).findings), "unreadable");
}

}  // namespace
