// How often the metadata database is asked, and for what.
#include "dictionary/MxDictionarys.h"

#include "foundation/MessageNumbers.h"

#include "CountedQueries.h"
#include "DictionaryWords.h"
#include "MetadataViews.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace ORKBASE;

namespace {

void Connect(MxDictionarys& set, const TempDatabase& database) {
  set.Connect(CountedQueries::Server(database), 0, ORKDB::MxProxyInfo(), u"", u"", kSqlServerDs,
              false, true, u"");
}

}  // namespace

TEST(MetadataQueries, IssuesNoSecondQueryForADataTable) {
  CountedQueries counted;
  MxDictionarys set;
  Connect(set, SampleDatabase());
  EXPECT_EQ(set.LoadDataTables(u"T,Orders,T,Orders"), 0);
  EXPECT_EQ(set.LoadDataTable(u"T"), 0);
  EXPECT_EQ(counted.Asked().queries, 2);
  MxDictionarys copy(set);  // a copy does not read again either
  EXPECT_EQ(copy.LoadDataTable(u"Orders"), 0);
  EXPECT_EQ(counted.Asked().queries, 2);
  counted.Forget();
  EXPECT_EQ(set.LoadReportTemplate(u"7"), 0);
  EXPECT_EQ(counted.Asked().queries, 3);  // the template and its two tables, each once
  ASSERT_FALSE(counted.Asked().statements.empty());
  EXPECT_EQ(counted.Asked().statements.front(),
            "select t.rttId, f.rtfId, t.dtName, f.fldName, f.realName as fldRealName, f.baseType,  "
            "t.dtId, f.fldId, t.realName as tabRealName, t.refName as tabRefName, t.style,  "
            "t.state as created  from mx_v_rtfs f,Mx_v_Rtts t  where t.rtId=? and f.rttId=t.rttId");
  const std::vector<std::string> expected = {"rtId=7", "dtName=Header", "dtName=Lines"};
  EXPECT_EQ(counted.Asked().parameters, expected);
}

TEST(MetadataQueries, AsksForAnUnknownTableOnceInACall) {
  const CountedQueries counted;
  const TempDatabase database(kViews);
  MxDictionarys set;
  Connect(set, database);
  MxErrorRecord error;
  EXPECT_FALSE(set.BindTable(u"T", error));
  EXPECT_EQ(error.message, kMsgNoDataTable);
  error = {};
  EXPECT_FALSE(set.BindTable(u"T", error));
  EXPECT_EQ(error.message, kMsgNoDataTable);  // the same error without a query
  EXPECT_EQ(counted.Asked().queries, 1);
  EXPECT_FALSE(set.BindTable(u"t", error));  // asked for as it is written
  EXPECT_EQ(counted.Asked().queries, 2);
  database.Run("insert into mx_v_datafield values ('T', 'a', 'a', 1, 1, 1, 'T', '', 1);");
  EXPECT_FALSE(set.BindTable(u"T", error));
  set.BeginCall();
  EXPECT_TRUE(set.BindTable(u"T", error));
  EXPECT_TRUE(set.BindTable(u"T", error));
  EXPECT_EQ(counted.Asked().queries, 3);
}

TEST(MetadataQueries, AsksAServerThatFailedOnceInACall) {
  const CountedQueries counted;
  const TempDatabase database("create table x (a);");
  MxDictionarys set;
  Connect(set, database);
  MxErrorRecord error;
  for (int i = 0; i < 3; ++i) {
    EXPECT_FALSE(set.BindTable(u"T", error));
    EXPECT_EQ(error.cause, kDatabaseCause);
  }
  EXPECT_EQ(counted.Asked().queries, 1);
  database.Run(kViews);
  set.BeginCall();
  EXPECT_FALSE(set.BindTable(u"T", error));
  EXPECT_EQ(error.cause, kRequestCause);
}

TEST(MetadataQueries, LoadsOfCopiesThatTakeTurnsDoNotShareALimitOfTime) {
  const CountedQueries counted;
  MxDictionarys set;
  Connect(set, SampleDatabase());
  MxDictionarys copy(set);
  set.BeginCall();
  EXPECT_EQ(set.LoadDataTables(u"T,Orders"), 0);
  EXPECT_EQ(counted.Asked().loads, 1);  // both tables are of one load
  copy.BeginCall();
  EXPECT_EQ(counted.Asked().loads, 1);  // a call that asks for nothing begins none
  EXPECT_EQ(copy.LoadDataTable(u"T"), 0);
  EXPECT_EQ(counted.Asked().loads, 2);
  EXPECT_EQ(set.LoadDataTable(u"Customer"), 0);
  EXPECT_EQ(counted.Asked().loads, 3);  // not what the other has left of its time
  set.BeginCall();
  EXPECT_EQ(set.LoadDataTable(u"Stock"), 0);
  EXPECT_EQ(counted.Asked().loads, 4);
}

TEST(MetadataQueries, ReadsATemplateAndItsTablesAnewWithOneQueryEach) {
  CountedQueries counted;
  MxDictionarys set;
  Connect(set, SampleDatabase());
  ASSERT_EQ(set.LoadReportTemplate(u"7"), 0);
  counted.Forget();
  EXPECT_EQ(set.Refresh(), 0);
  const std::vector<std::string> expected = {"dtName=Header", "dtName=Lines", "rtId=7"};
  EXPECT_EQ(counted.Asked().parameters, expected);
  EXPECT_EQ(KeysOf(set), "dt:Header dt:Lines rt:7");
}
