// Connecting an engine: what reaches the data access, when its loads begin, and loads that end in
// time.
#include "MxExpression.h"

#include "DataAccess.h"

#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "SecondsOf.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>

using namespace ORKBASE;

namespace {

/// What an accessor of the kind `noted:` was told: "L" for the begin of a load, "q" for a query.
std::string calls;

/// What the factory of the kind was asked for last.
std::string request;

std::string Written(const ORKDB::AccessorRequest& asked) {
  const auto line = [](const char* name, const std::u16string& text) {
    return std::string(name) + "=" + U8(text) + "\n";
  };
  const ORKDB::MxProxyInfo& proxy = asked.proxy;
  return line("server", asked.server.Server()) + line("location", asked.location) +
         "port=" + std::to_string(asked.server.Port()) + "\n" + line("user", asked.server.User()) +
         line("password", asked.password) + line("database", asked.database) +
         "dsType=" + std::to_string(asked.dsType) +
         " encrypted=" + std::to_string(asked.encrypted) +
         " readOnly=" + std::to_string(asked.readOnly) +
         " loadSeconds=" + std::to_string(asked.loadSeconds) + "\n" +
         line("proxy", proxy.Host() + u"|" + proxy.TextA() + u"|" + proxy.TextB()) +
         "proxy type=" + std::to_string(proxy.Type()) + " port=" + std::to_string(proxy.Port());
}

/// Fails every query.
struct NotingAccessor : ORKDB::CDBAccessor {
  std::unique_ptr<ORKDB::CDBRecordSet> QueryByStatement(const std::u16string&,
                                                        const ORKDB::MxParams&,
                                                        const std::u16string&, std::int32_t,
                                                        std::int32_t) override {
    calls += 'q';
    SetError(-1, u"nothing here");
    return nullptr;
  }
  void BeginLoad() override { calls += 'L'; }
};

class Connecting : public testing::Test {
 protected:
  void SetUp() override {
    calls.clear();
    request.clear();
    ORKDB::CDBAccessorCreator::instance()->RegisterKind(u"noted:",
                                                        [](const ORKDB::AccessorRequest& asked) {
                                                          request = Written(asked);
                                                          return std::make_unique<NotingAccessor>();
                                                        });
  }
  void TearDown() override { ORKDB::CDBAccessorCreator::instance()->RegisterKind(u"noted:", {}); }

  ScopedLanguage language_{u"en"};
};

std::string Error(const MxExpression& rules) {
  return std::to_string(rules.errNumber()) + " " + U8(rules.errDescription());
}

constexpr const char16_t* kProxy = u"2||~~||proxy.example||~~||8080||~~||a||~~||b";

/// The data table None is looked for without end.
constexpr const char* kEndless =
    "create table first (i); insert into first values (1);"
    "create view mx_v_datafield as with recursive n(i) as (select i from first union all select i "
    "+ "
    "1 from n)"
    " select 'T' || i as dtName, 'a' as fldName, 'a' as fldRealName, 1 as baseType, 1 as dtId,"
    " i as fldId, 'T' as tabRealName, '' as tabRefName, 1 as state from n;"
    "create table mx_v_rtfs (rttId, rtfId, fldName, realName, baseType, fldId);"
    "create table Mx_v_Rtts (rttId, rtId, dtName, dtId, realName, refName, style, state);"
    "insert into Mx_v_Rtts values (1, 7, 'None', 1, 'None', '', 1, 1);"
    "insert into mx_v_rtfs values (1, 1, 'a', 'a', 1, 1);";

constexpr const char* kMended =
    "drop view mx_v_datafield; create table mx_v_datafield (dtName, fldName, fldRealName, baseType,"
    " dtId, fldId, tabRealName, tabRefName, state);"
    "insert into mx_v_datafield values ('None', 'a', 'a', 1, 1, 1, 'None', '', 1);";

}  // namespace

TEST_F(Connecting, EachCallThatLoadsBeginsALoad) {
  MxExpression rules;
  rules.Connect(u"noted:", 0, u"", u"", u"", kSqlServerDs, false, true, u"");
  EXPECT_EQ(calls, "");
  std::u16string document;
  EXPECT_TRUE(rules.Verify(kNumDataType, u"1 + 2", document));
  EXPECT_EQ(calls, "");
  EXPECT_FALSE(rules.Verify(kNumDataType, u"T.a + 1", document));
  EXPECT_EQ(calls, "Lq");
  rules.SetDts(u"T");
  EXPECT_EQ(calls, "LqLq");
  rules.SetRt(u"7");
  EXPECT_EQ(calls, "LqLqLq");
}

TEST_F(Connecting, EverySettingReachesTheDataAccess) {
  ConnectionSettings settings;
  settings.server = u"noted:here";
  settings.port = 4711;
  settings.user = u"me";
  settings.password = u"secret";
  settings.database = u"shop";
  settings.dsType = kOracleDs;
  settings.encrypted = true;
  settings.readOnly = false;
  settings.proxy = kProxy;
  settings.loadSeconds = 3;
  MxExpression rules;
  rules.Connect(settings);
  EXPECT_EQ(request,
            "server=noted:here\nlocation=here\nport=4711\nuser=me\npassword=secret\ndatabase=shop\n"
            "dsType=3 encrypted=1 readOnly=0 loadSeconds=3\nproxy=proxy.example|a|b\n"
            "proxy type=2 port=8080");
  EXPECT_EQ(calls, "");  // nothing is asked yet
}

TEST_F(Connecting, SettingsLeftAloneAskForNothing) {
  ConnectionSettings settings;
  settings.server = u"noted:";
  MxExpression rules;
  rules.Connect(settings);
  EXPECT_EQ(request,
            "server=noted:\nlocation=\nport=0\nuser=\npassword=\ndatabase=\n"
            "dsType=0 encrypted=0 readOnly=1 loadSeconds=10\nproxy=||\nproxy type=0 port=0");
}

TEST_F(Connecting, TheArgumentsAreTheSettings) {
  MxExpression rules;
  rules.Connect(u"noted:here", 4711, kProxy, u"me", u"shop", kOracleDs, true, false, u"secret");
  EXPECT_EQ(request,
            "server=noted:here\nlocation=here\nport=4711\nuser=me\npassword=secret\ndatabase=shop\n"
            "dsType=3 encrypted=1 readOnly=0 loadSeconds=10\nproxy=proxy.example|a|b\n"
            "proxy type=2 port=8080");
}

TEST_F(Connecting, SettingsDecideTheDatabaseOfTheSql) {
  ConnectionSettings settings;
  settings.server = SampleDatabase().Server();
  settings.dsType = kOpenGaussDs;
  MxExpression rules;
  rules.Connect(settings);
  std::u16string document, translated, a, b;
  ASSERT_TRUE(rules.Verify(kLogicDataType, u"T.a > 1", document)) << Error(rules);
  ASSERT_TRUE(rules.GetSpec(document, kSqlServerDs, translated, a, b, false)) << Error(rules);
  EXPECT_EQ(U8(a), "COALESCE(\"T\".a,0) > 1");
}

TEST_F(Connecting, ALoadWithoutEndEndsInTimeAndTheEngineWorksOn) {
  const TempDatabase database(kEndless);
  ConnectionSettings settings;
  settings.server = database.Server();
  settings.loadSeconds = 1;
  MxExpression rules;
  rules.Connect(settings);
  std::u16string document;
  EXPECT_LT(SecondsOf([&] { rules.SetDts(u"None"); }), 5);
  EXPECT_EQ(Error(rules), "9 The database did not answer in time (limit in seconds: 1).");
  EXPECT_LT(SecondsOf([&] { rules.Verify(kLogicDataType, u"None.a > None.b", document); }), 5);
  EXPECT_NE(rules.errNumber(), 0);
  EXPECT_LT(SecondsOf([&] { rules.SetRt(u"7"); }), 5);
  EXPECT_EQ(rules.errNumber(), 0);  // the template is there; a table of it is asked for again later
  database.Run(kMended);
  EXPECT_TRUE(rules.Verify(kLogicDataType, u"None.a > 1", document)) << Error(rules);
}

TEST_F(Connecting, AFileThatWaitsForAWriterHoldsUpNothing) {
  const TempDatabase database("create table t (a);");
  ASSERT_EQ(unlink(database.Path().c_str()), 0);
  ASSERT_EQ(mkfifo(database.Path().c_str(), 0600), 0);
  MxExpression rules;
  ConnectTo(rules, database);
  std::u16string document;
  EXPECT_FALSE(rules.Verify(kLogicDataType, u"T.a > 1", document));
  rules.SetDts(u"T");
  EXPECT_EQ(Error(rules), "14 unable to open database file: " + database.Path());
}
