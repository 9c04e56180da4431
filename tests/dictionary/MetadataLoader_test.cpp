// Loading report templates and data tables from real database files.
#include "dictionary/MxDictionarys.h"

#include "OrkPlatform.h"
#include "foundation/Text.h"

#include "CpuSeconds.h"
#include "DictionaryWords.h"
#include "MetadataViews.h"
#include "SampleDatabase.h"

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <string>

using namespace ORKBASE;

namespace {

class MetadataLoader : public testing::Test {
 protected:
  void SetUp() override { SetThreadLanguage(u"en"); }
  void TearDown() override { SetThreadLanguage(u""); }

  static void Connect(MxDictionarys& set, const TempDatabase& database) {
    set.Connect(database.Server(), 0, ORKDB::MxProxyInfo(), u"", u"", kSqlServerDs, false, true,
                u"");
  }
};

}  // namespace

TEST_F(MetadataLoader, ReadsEveryColumnOfADataTable) {
  const TempDatabase database(std::string(kViews) +
                              "insert into mx_v_datafield values ('Tbl', 'Fld', 'real_fld', 3, 11, "
                              "22, 'real_tab', 'ref', 5);");
  MxDictionarys set;
  Connect(set, database);
  ASSERT_EQ(set.LoadDataTable(u"Tbl"), 0);
  const MxWord word = Word(set, u"tbl.fld");
  EXPECT_EQ(U8(word.primary), "Tbl.Fld");
  EXPECT_EQ(U8(word.outDesc), "Tbl.Fld");
  EXPECT_EQ(word.symbol, kDataFieldSymbol);
  EXPECT_EQ(word.dataType, 3);
  EXPECT_EQ(word.postfixCheck, 0);
  EXPECT_EQ(U8(word.content), "");
  EXPECT_EQ(U8(word.dtName), "Tbl");
  EXPECT_EQ(U8(word.tabRealName), "real_tab");
  EXPECT_EQ(U8(word.tabRefName), "ref");
  EXPECT_EQ(U8(word.fldName), "Fld");
  EXPECT_EQ(U8(word.fldRealName), "real_fld");
  EXPECT_EQ(word.baseType, 3);
  EXPECT_EQ(word.dtId, 11);
  EXPECT_EQ(word.fldId, 22);
  EXPECT_TRUE(word.created);
  EXPECT_FALSE(word.detailTable);
  EXPECT_EQ(word.rttId, 0);
  EXPECT_EQ(word.rtfId, 0);
  EXPECT_EQ(U8(set.Find(u"dt:Tbl")->name), "dt:Tbl");
  EXPECT_FALSE(set.Find(u"dt:Tbl")->isCax());
}

TEST_F(MetadataLoader, ReadsEveryColumnOfAReportTemplate) {
  const TempDatabase database(
      std::string(kViews) +
      "insert into Mx_v_Rtts values (71, 7, 'Tbl', 11, 'real_tab', 'ref', 1, 1);"
      "insert into mx_v_rtfs values (71, 99, 'Fld', 'real_fld', 2, 22);"
      "insert into mx_v_rtfs values (72, 98, 'Other', 'x', 2, 23);");
  MxDictionarys set;
  Connect(set, database);
  ASSERT_EQ(set.LoadReportTemplate(u"7"), 0);
  EXPECT_EQ(WordsOf(set, u"rt:7"), "thisReport.Tbl.Fld");
  const MxWord word = Word(set, u"thisReport.Tbl.Fld");
  EXPECT_EQ(word.symbol, kFormFieldSymbol);
  EXPECT_EQ(word.dataType, 2);
  EXPECT_EQ(U8(word.dtName), "Tbl");
  EXPECT_EQ(U8(word.tabRealName), "real_tab");
  EXPECT_EQ(U8(word.tabRefName), "ref");
  EXPECT_EQ(U8(word.fldName), "Fld");
  EXPECT_EQ(U8(word.fldRealName), "real_fld");
  EXPECT_EQ(word.rttId, 71);
  EXPECT_EQ(word.rtfId, 99);
  EXPECT_EQ(word.dtId, 11);
  EXPECT_EQ(word.fldId, 22);
  EXPECT_FALSE(word.detailTable);
  EXPECT_TRUE(word.created);
  EXPECT_EQ(U8(set.Find(u"rt:7")->name), "rt:7");
}

TEST_F(MetadataLoader, ShowsFormFieldsInTheLanguageOfTheLoad) {
  MxDictionarys set;
  Connect(set, SampleDatabase());
  SetThreadLanguage(u"zh-CN");
  ASSERT_EQ(set.LoadReportTemplate(u"7"), 0);
  EXPECT_EQ(U8(Word(set, u"thisReport.Header.Buyer").outDesc), "本报表.Header.Buyer");
  SetThreadLanguage(u"en");
  EXPECT_EQ(U8(Word(set, u"thisReport.Header.Buyer").outDesc), "本报表.Header.Buyer");
}

TEST_F(MetadataLoader, FoldsBaseType8To2) {
  const TempDatabase database(
      std::string(kViews) +
      "insert into Mx_v_Rtts values (1, 7, 'T', 1, 'T', '', 1, 1);"
      "insert into mx_v_rtfs values (1, 1, 'memo', 'memo', 8, 1);"
      "insert into mx_v_datafield values ('T', 'memo', 'memo', 8, 1, 1, 'T', '', 1),"
      " ('T', 'nine', 'nine', 9, 1, 2, 'T', '', 1);");
  MxDictionarys set;
  Connect(set, database);
  ASSERT_EQ(set.LoadReportTemplate(u"7"), 0);
  for (const char16_t* primary : {u"T.memo", u"thisReport.T.memo"}) {
    EXPECT_EQ(Word(set, primary).dataType, 2);
    EXPECT_EQ(Word(set, primary).baseType, 2);
  }
  EXPECT_EQ(Word(set, u"T.nine").dataType, 9);
}

TEST_F(MetadataLoader, TakesMainAndDetailAndExistingTablesByTheirOwnRules) {
  struct Case {
    const char* style;
    const char* state;
    bool detail;
    bool created;
  };
  const Case cases[] = {
      {"1", "1", false, true},   {"0", "0", true, false},       {"2", "2", true, false},
      {"-1", "-1", true, false}, {"null", "null", true, false},
  };
  std::string sql = kViews;
  int id = 0;
  for (const Case& c : cases) {
    const std::string n = std::to_string(++id);
    sql += "insert into Mx_v_Rtts values (" + n + ", 7, 'T" + n + "', 1, 'T', '', " + c.style +
           ", " + c.state + "); insert into mx_v_rtfs values (" + n + ", 1, 'f', 'f', 1, 1);" +
           "insert into mx_v_datafield values ('T" + n + "', 'f', 'f', 1, 1, 1, 'T', '', " +
           c.state + ");";
  }
  const TempDatabase database(sql);
  MxDictionarys set;
  Connect(set, database);
  ASSERT_EQ(set.LoadReportTemplate(u"7"), 0);
  id = 0;
  for (const Case& c : cases) {
    const std::u16string name = u"T" + U16(std::to_string(++id)) + u".f";
    const MxWord form = Word(set, u"thisReport." + name);
    EXPECT_EQ(form.detailTable, c.detail) << U8(name);
    EXPECT_EQ(form.created, c.created) << U8(name);  // of a template: exactly 1
    const bool notZero = std::string(c.state) != "0" && std::string(c.state) != "null";
    EXPECT_EQ(Word(set, name).created, notZero) << U8(name);  // of a data table: anything but 0
    EXPECT_FALSE(Word(set, name).detailTable) << U8(name);
  }
}

TEST_F(MetadataLoader, TemplateBringsItsDataTablesWhichStay) {
  MxDictionarys set;
  Connect(set, SampleDatabase());
  ASSERT_EQ(set.LoadReportTemplate(u"7"), 0);
  EXPECT_EQ(KeysOf(set), "dt:Header dt:Lines rt:7");
  EXPECT_EQ(WordsOf(set, u"dt:Lines"), "Lines.Due Lines.Item Lines.Price Lines.Qty");
  EXPECT_EQ(set.LoadReportTemplate(u"8"), -1);
  EXPECT_EQ(KeysOf(set), "dt:Header dt:Lines rt:7");
}

TEST_F(MetadataLoader, ReportsATemplateWithoutRows) {
  MxDictionarys set;
  Connect(set, SampleDatabase());
  EXPECT_EQ(set.LoadReportTemplate(u"8"), -1);
  EXPECT_EQ(set.ErrNumber(), -1);
  EXPECT_EQ(U8(set.ErrDescription()), "The report template 8 does not exist or has no fields.");
  EXPECT_EQ(set.Find(u"rt:8"), nullptr);
}

TEST_F(MetadataLoader, ReportsADataTableWithoutRowsAndTriesAgainLater) {
  const TempDatabase database(kViews);
  MxDictionarys set;
  Connect(set, database);
  EXPECT_EQ(set.LoadDataTable(u"T"), -1);
  EXPECT_EQ(U8(set.ErrDescription()), "The data table \"T\" does not exist or has no fields.");
  EXPECT_EQ(set.Find(u"dt:T"), nullptr);
  database.Run("insert into mx_v_datafield values ('T', 'a', 'a', 1, 1, 1, 'T', '', 1);");
  EXPECT_EQ(set.LoadDataTable(u"T"), 0);
  EXPECT_EQ(WordsOf(set, u"dt:T"), "T.a");
}

TEST_F(MetadataLoader, ReplacesATemplateButReadsADataTableOnce) {
  const TempDatabase database(
      std::string(kViews) +
      "insert into Mx_v_Rtts values (1, 7, 'T', 1, 'T', '', 1, 1);"
      "insert into mx_v_rtfs values (1, 1, 'a', 'a', 1, 1);"
      "insert into mx_v_datafield values ('T', 'a', 'a', 1, 1, 1, 'T', '', 1);");
  MxDictionarys set;
  Connect(set, database);
  ASSERT_EQ(set.LoadReportTemplate(u"7"), 0);
  database.Run("update mx_v_rtfs set fldName = 'b'; update mx_v_datafield set fldName = 'b';");
  ASSERT_EQ(set.LoadReportTemplate(u"7"), 0);
  ASSERT_EQ(set.LoadDataTable(u"T"), 0);
  EXPECT_EQ(WordsOf(set, u"rt:7"), "thisReport.T.b");
  EXPECT_EQ(WordsOf(set, u"dt:T"), "T.a");
  database.Run("delete from mx_v_rtfs;");
  EXPECT_EQ(set.LoadReportTemplate(u"7"), -1);  // the old one is gone before the new one fails
  EXPECT_EQ(set.Find(u"rt:7"), nullptr);
  EXPECT_NE(set.Find(u"dt:T"), nullptr);
}

TEST_F(MetadataLoader, StopsAListAtTheFirstFailure) {
  MxDictionarys set;
  Connect(set, SampleDatabase());
  EXPECT_EQ(set.LoadDataTables(u"T,NoSuch,Orders"), -1);
  EXPECT_EQ(KeysOf(set), "dt:T");
  EXPECT_EQ(U8(set.ErrDescription()), "The data table \"NoSuch\" does not exist or has no fields.");
  EXPECT_EQ(set.LoadDataTables(u""), 0);
  EXPECT_EQ(set.LoadDataTables(u"Orders,"), 0);
  EXPECT_EQ(KeysOf(set), "dt:Orders dt:T");
  EXPECT_EQ(set.LoadDataTables(u"Customer,,T"), -1);  // the empty name is asked for like any other
  EXPECT_EQ(set.LoadDataTables(u" T"), -1);           // and so is a name with a blank
}

TEST_F(MetadataLoader, HidesTheErrorOfATemplatesTable) {
  const TempDatabase database(
      std::string(kViews) +
      "insert into Mx_v_Rtts values (1, 7, 'Missing', 1, 'M', '', 1, 1),"
      " (2, 7, 'T', 2, 'T', '', 1, 1);"
      "insert into mx_v_rtfs values (1, 1, 'a', 'a', 1, 1), (2, 2, 'b', 'b', 1, 2);"
      "insert into mx_v_datafield values ('T', 'b', 'b', 1, 1, 1, 'T', '', 1);");
  MxDictionarys set;
  Connect(set, database);
  EXPECT_EQ(set.LoadReportTemplate(u"7"), 0);
  EXPECT_EQ(set.ErrNumber(), -1);
  EXPECT_EQ(U8(set.ErrDescription()),
            "The data table \"Missing\" does not exist or has no fields.");
  EXPECT_EQ(KeysOf(set), "rt:7");  // the list of tables ended at the first failure
}

TEST_F(MetadataLoader, NamesEachTableOfATemplateOnce) {
  const TempDatabase database(
      std::string(kViews) +
      "insert into Mx_v_Rtts values (1, 7, 'T', 1, 'T', '', 1, 1),"
      " (2, 7, 'T1', 2, 'T1', '', 1, 1), (3, 7, '', 3, '', '', 1, 1);"
      "insert into mx_v_rtfs values (1, 1, 'a', 'a', 1, 1), (1, 2, 'b', 'b', 1, 2),"
      " (2, 3, 'c', 'c', 1, 3), (3, 4, 'd', 'd', 1, 4);"
      "insert into mx_v_datafield values ('T', 'a', 'a', 1, 1, 1, 'T', '', 1),"
      " ('T1', 'c', 'c', 1, 1, 1, 'T1', '', 1);");
  MxDictionarys set;
  Connect(set, database);
  EXPECT_EQ(set.LoadReportTemplate(u"7"), 0);
  EXPECT_EQ(set.ErrNumber(), 0);
  EXPECT_EQ(KeysOf(set), "dt:T dt:T1 rt:7");
  EXPECT_EQ(WordsOf(set, u"rt:7"), "thisReport..d thisReport.T.a thisReport.T.b thisReport.T1.c");
}

TEST_F(MetadataLoader, TakesAListOfTablesForTheTablesOfATemplate) {
  const TempDatabase database(
      std::string(kViews) +
      "insert into Mx_v_Rtts values (1, 7, 'A,B', 1, '', '', 1, 1), (2, 7, 'B', 2, '', '', 1, 1),"
      " (3, 7, 'A,B', 3, '', '', 1, 1), (4, 7, 'C', 4, '', '', 1, 1);"
      "insert into mx_v_rtfs values (1, 1, 'a', 'a', 1, 1), (2, 2, 'b', 'b', 1, 2),"
      " (3, 3, 'c', 'c', 1, 3), (4, 4, 'd', 'd', 1, 4);"
      "insert into mx_v_datafield values ('A', 'a', 'a', 1, 1, 1, '', '', 1),"
      " ('B', 'b', 'b', 1, 1, 1, '', '', 1), ('C', 'c', 'c', 1, 1, 1, '', '', 1);");
  MxDictionarys set;
  Connect(set, database);
  EXPECT_EQ(set.LoadReportTemplate(u"7"), 0);
  EXPECT_EQ(set.ErrNumber(), 0);
  EXPECT_EQ(KeysOf(set), "dt:A dt:B dt:C rt:7");
}

// Each name was once compared with all names before it.
TEST_F(MetadataLoader, ListsManyTablesOfATemplateInLinearTime) {
  const TempDatabase database(
      std::string(kViews) +
      "with recursive n(i) as (select 1 union all select i + 1 from n where i < 40000)"
      " insert into Mx_v_Rtts select i, 7, 'Table' || i, i, '', '', 1, 1 from n;"
      "insert into mx_v_rtfs select rttId, rttId, 'a', 'a', 1, 1 from Mx_v_Rtts;"
      "insert into mx_v_datafield values ('Table1', 'a', 'a', 1, 1, 1, '', '', 1);");
  MxDictionarys set;
  Connect(set, database);
  const CpuSeconds time;
  EXPECT_EQ(set.LoadReportTemplate(u"7"), 0);
  EXPECT_LT(time.Used(), 3);
  EXPECT_EQ(KeysOf(set), "dt:Table1 rt:7");  // the second table does not exist
}

TEST_F(MetadataLoader, TakesAPercentSignInAFormFieldAsADirective) {
  const TempDatabase database(
      std::string(kViews) +
      "insert into Mx_v_Rtts values (1, 7, 'T', 1, 'T', '', 1, 1);"
      "insert into mx_v_rtfs values (1, 1, 'a%%b', 'a', 1, 1), (1, 2, '50% off', 'b', 1, 2),"
      " (1, 3, 'c%s', 'c', 1, 3), (1, 4, 'd%', 'd', 1, 4);"
      "insert into mx_v_datafield values ('T', '50% off', 'a', 1, 1, 1, 'T', '', 1);");
  MxDictionarys set;
  Connect(set, database);
  ASSERT_EQ(set.LoadReportTemplate(u"7"), 0);
  EXPECT_EQ(U8(Word(set, u"thisReport.T.a%%b").outDesc), "thisReport.T.a%b");
  EXPECT_EQ(U8(Word(set, u"thisReport.T.50% off").outDesc), "");
  EXPECT_EQ(U8(Word(set, u"thisReport.T.c%s").outDesc), "");
  EXPECT_EQ(U8(Word(set, u"thisReport.T.d%").outDesc), "");
  EXPECT_EQ(U8(Word(set, u"T.50% off").outDesc), "T.50% off");  // a data field's is no template
}

TEST_F(MetadataLoader, TakesAnyNameAsItIs) {
  const TempDatabase database(
      std::string(kViews) +
      "insert into mx_v_datafield values ('it''s', 'a\"b', 'x', 1, 1, 1, 't', '', 1),"
      " ('客户', '名称', '名称', 2, 1, 1, '客户', '', 1), ('50%', 'a', 'a', 1, 1, 1, 't', '', 1),"
      " ('x; drop table t', 'a', 'a', 1, 1, 1, 't', '', 1);");
  MxDictionarys set;
  Connect(set, database);
  EXPECT_EQ(set.LoadDataTables(u"it's,客户,50%,x; drop table t"), 0);
  EXPECT_EQ(WordsOf(set, u"dt:it's"), "it's.a\"b");
  EXPECT_EQ(WordsOf(set, u"dt:客户"), "客户.名称");
  EXPECT_EQ(WordsOf(set, u"dt:50%"), "50%.a");
  EXPECT_EQ(set.LoadDataTable(u"' or ''='"), -1);
  EXPECT_EQ(set.LoadDataTable(u"5_%"), -1);
}

TEST_F(MetadataLoader, TakesAnyTemplateIdAsItIs) {
  const std::u16string ids[] = {u"it's", u"客户", u"50%", u"5_%", u"\"", u"a b", u"'"};
  std::string sql = kViews;
  for (std::size_t i = 0; i < std::size(ids); ++i) {
    const std::string number = std::to_string(i);
    const std::string quoted = U8(ReplaceAll(ids[i], u"'", u"''"));
    sql += "insert into Mx_v_Rtts values (" + number + ", '" + quoted + "', 'T" + number +
           "', 1, 'T', '', 1, 1); insert into mx_v_rtfs values (" + number +
           ", 1, 'f', 'f', 1, 1);" + "insert into mx_v_datafield values ('T" + number +
           "', 'f', 'f', 1, 1, 1, 'T', '', 1);";
  }
  const TempDatabase database(sql);
  for (std::size_t i = 0; i < std::size(ids); ++i) {
    MxDictionarys set;
    Connect(set, database);
    EXPECT_EQ(set.LoadReportTemplate(ids[i]), 0) << U8(ids[i]);
    EXPECT_EQ(WordsOf(set, u"rt:" + ids[i]), "thisReport.T" + std::to_string(i) + ".f");
  }
  MxDictionarys set;
  Connect(set, database);
  EXPECT_EQ(set.LoadReportTemplate(u"' or '1'='1"), -1);
}

TEST_F(MetadataLoader, ReadsMissingValuesAsEmptyAndZero) {
  const TempDatabase database(std::string(kViews) +
                              "insert into mx_v_datafield (dtName) values ('T');");
  MxDictionarys set;
  Connect(set, database);
  ASSERT_EQ(set.LoadDataTable(u"T"), 0);
  const MxWord word = Word(set, u"T.");
  EXPECT_EQ(word.dataType, 0);
  EXPECT_FALSE(word.created);
  EXPECT_EQ(U8(word.tabRealName), "");
}

TEST_F(MetadataLoader, KeepsTheFirstOfTwoFieldsWithOneName) {
  const TempDatabase database(
      std::string(kViews) +
      "insert into mx_v_datafield values ('T', 'a', 'first', 1, 1, 1, 'T', '', 1),"
      " ('T', 'A', 'second', 2, 1, 2, 'T', '', 1);");
  MxDictionarys set;
  Connect(set, database);
  ASSERT_EQ(set.LoadDataTable(u"T"), 0);
  EXPECT_EQ(U8(Word(set, u"T.A").fldRealName), "first");
}

TEST_F(MetadataLoader, HoldsALargeTable) {
  std::string sql = std::string(kViews) + "begin;";
  for (int i = 0; i < 5000; ++i) {
    sql += "insert into mx_v_datafield values ('T', 'f" + std::to_string(i) +
           "', 'f', 1, 1, 1, 'T', '', 1);";
  }
  const TempDatabase database(sql + "commit;");
  MxDictionarys set;
  Connect(set, database);
  ASSERT_EQ(set.LoadDataTable(u"T"), 0);
  EXPECT_EQ(set.Find(u"dt:T")->SortedWords().size(), 5000u);
  EXPECT_EQ(ByDesc(set, u"t.F4999"), "T.f4999");
}

TEST_F(MetadataLoader, ReportsALoadWithoutAConnection) {
  MxDictionarys set;
  EXPECT_EQ(set.LoadDataTable(u"T"), -1);
  EXPECT_EQ(U8(set.ErrDescription()), U8(MessageText(6700)));
  EXPECT_NE(U8(set.ErrDescription()), "");
  EXPECT_EQ(set.LoadReportTemplate(u"7"), -1);
  EXPECT_EQ(U8(set.ErrDescription()), U8(MessageText(6700)));
  EXPECT_EQ(set.LoadDataTables(u"T"), -1);
  EXPECT_EQ(set.LoadDataTables(u""), 0);
  EXPECT_EQ(KeysOf(set), "");
}

TEST_F(MetadataLoader, ConnectionTakesTheErrorAway) {  // the other side of 6700
  MxDictionarys set;
  EXPECT_EQ(set.LoadDataTable(u"T"), -1);
  Connect(set, SampleDatabase());
  EXPECT_EQ(set.LoadDataTable(u"T"), 0);
}

TEST_F(MetadataLoader, PassesTheNumberOfAFailedQueryOn) {
  const TempDatabase database("create table x (a);");
  MxDictionarys set;
  Connect(set, database);
  const std::int32_t number = set.LoadDataTable(u"T");
  EXPECT_NE(number, 0);
  EXPECT_EQ(set.ErrNumber(), number);
  EXPECT_NE(U8(set.ErrDescription()).find("mx_v_datafield"), std::string::npos)
      << U8(set.ErrDescription());
  EXPECT_NE(set.LoadReportTemplate(u"7"), 0);
  EXPECT_EQ(KeysOf(set), "");

  MxDictionarys missing;
  missing.Connect(u"sqlite:/nosuch/file.db", 0, ORKDB::MxProxyInfo(), u"", u"", kSqlServerDs, false,
                  true, u"");
  EXPECT_NE(missing.LoadDataTable(u"T"), 0);
  EXPECT_NE(U8(missing.ErrDescription()), "");
}

TEST_F(MetadataLoader, NullAccessorIsALoadWithoutAConnection) {
  ORKDB::CDBAccessorCreator::instance()->RegisterKind(
      u"null:", [](const ORKDB::AccessorRequest& /*request*/) {
        return std::unique_ptr<ORKDB::CDBAccessor>();
      });
  MxDictionarys set;
  set.Connect(u"null:", 0, ORKDB::MxProxyInfo(), u"", u"", kSqlServerDs, false, true, u"");
  EXPECT_NE(set.LoadDataTable(u"T"), 0);
  EXPECT_NE(set.LoadReportTemplate(u"7"), 0);
  EXPECT_NE(U8(set.ErrDescription()), "");
  ORKDB::CDBAccessorCreator::instance()->RegisterKind(u"null:", {});
}
