// Metadata views in real SQLite files.
#include "database/SqliteAccessor.h"

#include "AccessorCalls.h"
#include "ScopedLanguage.h"
#include "SecondsOf.h"

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

using namespace ORKDB;

namespace {

namespace fs = std::filesystem;

/// A folder for the files of one test.
class SqliteAccessorFile : public testing::Test {
 protected:
  void SetUp() override {
    std::string folder = (fs::temp_directory_path() / "orkrule-sqlite-XXXXXX").string();
    ASSERT_NE(mkdtemp(folder.data()), nullptr);
    folder_ = folder;
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  std::u16string Server(const std::string& name) const { return U16("sqlite:" + Path(name)); }

  void Make(const std::string& name, const std::string& sql) const {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(Path(name).c_str(), &database), SQLITE_OK);
    char* message = nullptr;
    EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK)
        << (message != nullptr ? message : "");
    sqlite3_free(message);
    sqlite3_close(database);
  }

  void MakeShop(const std::string& name) const {
    std::ifstream file(ORKRULE_SOURCE_DIR "/examples/shop.sql");
    std::stringstream sql;
    sql << file.rdbuf();
    Make(name, sql.str());
  }

  fs::path folder_;
};

constexpr const char* kDataFieldTable =
    "create table mx_v_datafield (dtName, fldName, fldRealName, baseType, dtId, fldId,"
    " tabRealName, tabRefName, state);";

/// The views of a report template whose id column is written as told.
std::string TemplateViews(const std::string& idColumn) {
  return "create table tt (rttId integer, rtId integer, rtText text, dtName text);"
         "insert into tt values (1, 7, '7', 'Header'), (2, 8, '8', 'Other');"
         "create view Mx_v_Rtts as select rttId, " +
         idColumn +
         " as rtId, dtName, 1 as dtId, dtName as realName, '' as refName, 1 as style, 1 as state"
         " from tt;"
         "create table mx_v_rtfs (rttId, rtfId, fldName, realName, baseType, fldId);"
         "insert into mx_v_rtfs values (1, 1, 'Buyer', 'Buyer', 2, 1), (2, 2, 'X', 'X', 2, 2);";
}

}  // namespace

TEST_F(SqliteAccessorFile, ReadsTheSampleDatabase) {
  MakeShop("shop.db");
  const auto accessor = MakeAccessor(Server("shop.db"));
  EXPECT_EQ(FieldsOf(*accessor, u"Orders"),
            "Amount,Qty,Price,Discount,State,OrderDate,ShipDate,Memo,Photo,File");
  EXPECT_EQ(FieldsOf(*accessor, u"Customer"), "Name,City,Code");
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a,b,d,s");
  EXPECT_EQ(FieldsOf(*accessor, u"客户"), "名称,城市,金额,签约日期");
  EXPECT_EQ(Column(*accessor, SelectTable(*accessor, u"Orders"), u"baseType"),
            "1,1,1,1,1,3,3,8,6,7");
  EXPECT_EQ(Column(*accessor, SelectTable(*accessor, u"Stock"), u"FLDREALNAME"),
            "item_code,qty_left,counted_at");
  const auto rows = SelectTable(*accessor, u"Stock");
  ASSERT_NE(rows, nullptr);
  std::u16string text;
  EXPECT_EQ(U8(rows->TextColumn(text, u"tabRealName", u"")), "tbl_stock_2019");
  EXPECT_EQ(U8(rows->TextColumn(text, u"tabRefName", u"")), "");
  EXPECT_EQ(rows->IntColumn(u"fldId", 0), 401);
  EXPECT_EQ(rows->IntColumn(u"state", 0), 1);
}

TEST_F(SqliteAccessorFile, ReadsTheSampleTemplate) {
  MakeShop("shop.db");
  const auto accessor = MakeAccessor(Server("shop.db"));
  auto rows = SelectTemplate(*accessor, u"7");
  ASSERT_NE(rows, nullptr) << U8(accessor->ErrDescription());
  int mainFields = 0;
  int detailFields = 0;
  std::u16string table;
  std::u16string field;
  for (; !rows->EndOfRows(); rows->NextRow()) {
    const bool isMain = rows->IntColumn(u"style", 0) == 1;
    ++(isMain ? mainFields : detailFields);
    EXPECT_EQ(U8(rows->TextColumn(table, u"dtName", u"")), isMain ? "Header" : "Lines");
    EXPECT_EQ(rows->IntColumn(u"created", 0), 1);
    EXPECT_EQ(rows->IntColumn(u"rttId", 0), isMain ? 71 : 72);
    EXPECT_EQ(rows->IntColumn(u"rtfId", 0), 1000 + rows->IntColumn(u"fldId", 0));
  }
  EXPECT_EQ(mainFields, 5);
  EXPECT_EQ(detailFields, 4);
  for (const char16_t* name : {u"Header", u"Lines"}) {
    EXPECT_FALSE(SelectTable(*accessor, name)->EndOfRows());
  }
  EXPECT_TRUE(SelectTemplate(*accessor, u"8")->EndOfRows());
  EXPECT_EQ(accessor->errNumber, 0);
}

TEST_F(SqliteAccessorFile, FindsIntegerIdsByText) {
  // A column, a computed one without a type, one with a type again, texts, and a compound view.
  for (const char* column : {"rtId", "rtId + 0", "cast(rtId as integer)", "rtText", "abs(rtId)",
                             "cast(rtId as text)", "rtText || ''", "coalesce(rtId, 0)"}) {
    fs::remove(Path("ids.db"));
    Make("ids.db", TemplateViews(column));
    const auto accessor = MakeAccessor(Server("ids.db"));
    EXPECT_EQ(Column(*accessor, SelectTemplate(*accessor, u"7"), u"fldName"), "Buyer") << column;
    EXPECT_EQ(Column(*accessor, SelectTemplate(*accessor, u"9"), u"fldName"), "") << column;
    EXPECT_EQ(Column(*accessor, SelectTemplate(*accessor, u"x7"), u"fldName"), "") << column;
    EXPECT_EQ(Column(*accessor, SelectTemplate(*accessor, u""), u"fldName"), "") << column;
  }
}

TEST_F(SqliteAccessorFile, FindsIntegerIdsThroughACompoundView) {
  Make("ids.db",
       "create table a (rtId integer); insert into a values (7);"
       "create view mx_v_datafield as select rtId, 'A' as fldName from a union all "
       "select 7 as rtId, 'B' from a union all select 8, 'C' from a;");
  const auto accessor = MakeAccessor(Server("ids.db"));
  const auto rows = accessor->SelectByTable(u"mx_v_datafield", u"fldName", Equals(u"rtId", u"7"));
  EXPECT_NE(Column(*accessor, rows, u"fldName").find('A'), std::string::npos);
}

TEST_F(SqliteAccessorFile, ValuesAreBoundWhateverTheyHold) {
  const std::u16string names[] = {u"it's",  u"a\"b",       u"客户", u"100%",         u"_",   u"",
                                  u"a;b--", u"\U0001F600", u"?",    u"x' or '1'='1", u"007", u"\\"};
  std::string sql = kDataFieldTable;
  for (const std::u16string& name : names) {
    std::string quoted;
    for (const char c : U8(name)) quoted += c == '\'' ? std::string("''") : std::string(1, c);
    sql += "insert into mx_v_datafield (dtName, fldName) values ('" + quoted + "', 'of " + quoted +
           "');";
  }
  Make("names.db", sql);
  const auto accessor = MakeAccessor(Server("names.db"));
  for (const std::u16string& name : names) {
    EXPECT_EQ(FieldsOf(*accessor, name), "of " + U8(name));
  }
  for (const char16_t* name : {u"%", u"10_%", u"7", u"' or ''='"}) {
    EXPECT_EQ(FieldsOf(*accessor, name), "") << U8(name);
    EXPECT_EQ(accessor->errNumber, 0);
  }
}

TEST_F(SqliteAccessorFile, NullsReadAsTheDefault) {
  Make("null.db", std::string(kDataFieldTable) +
                      "insert into mx_v_datafield (dtName, baseType) values ('T', null);");
  const auto accessor = MakeAccessor(Server("null.db"));
  const auto rows = SelectTable(*accessor, u"T");
  ASSERT_NE(rows, nullptr);
  std::u16string text;
  EXPECT_EQ(U8(rows->TextColumn(text, u"fldName", u"default")), "default");
  EXPECT_EQ(rows->IntColumn(u"baseType", 42), 42);
}

TEST_F(SqliteAccessorFile, ColumnsComeInAnyOrderAndCase) {
  Make("order.db",
       "create table MX_V_DATAFIELD (STATE, TABREFNAME, TABREALNAME, FLDID, DTID, BASETYPE,"
       " FLDREALNAME, FLDNAME, DTNAME);"
       "insert into mx_v_datafield values (1, 'ref', 'real', 5, 4, 3, 'f_real', 'f', 'T');");
  const auto accessor = MakeAccessor(Server("order.db"));
  const auto rows = SelectTable(*accessor, u"T");
  ASSERT_NE(rows, nullptr) << U8(accessor->ErrDescription());
  std::u16string text;
  EXPECT_EQ(U8(rows->TextColumn(text, u"tabRefName", u"")), "ref");
  EXPECT_EQ(U8(rows->TextColumn(text, u"fldRealName", u"")), "f_real");
  EXPECT_EQ(rows->IntColumn(u"fldId", 0), 5);
}

TEST_F(SqliteAccessorFile, AMissingViewIsAnErrorAndTheNextQueryWorks) {
  Make("half.db", std::string(kDataFieldTable) +
                      "insert into mx_v_datafield (dtName, fldName) values ('T', 'a');");
  const auto accessor = MakeAccessor(Server("half.db"));
  EXPECT_EQ(SelectTemplate(*accessor, u"7"), nullptr);
  EXPECT_EQ(accessor->errNumber, SQLITE_ERROR);
  EXPECT_EQ(U8(accessor->ErrDescription()), "no such table: mx_v_rtfs");
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a");
  EXPECT_EQ(accessor->errNumber, 0);
  EXPECT_EQ(U8(accessor->ErrDescription()), "");
}

TEST_F(SqliteAccessorFile, AMissingFileIsAnErrorAtFirstUseAndIsNotCreated) {
  const auto accessor = MakeAccessor(Server("absent.db"));
  EXPECT_EQ(accessor->errNumber, 0);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr);
    EXPECT_EQ(accessor->errNumber, SQLITE_CANTOPEN);
    EXPECT_EQ(U8(accessor->ErrDescription()), "unable to open database file: " + Path("absent.db"));
  }
  EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(SqliteAccessorFile, AFileThatComesBackIsOpenedAnew) {
  MakeShop("shop.db");
  const auto accessor = MakeAccessor(Server("shop.db"));
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a,b,d,s");
  fs::remove(Path("shop.db"));
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "error 14");
  Make("shop.db", std::string(kDataFieldTable) +
                      "insert into mx_v_datafield (dtName, fldName) values ('T', 'new');");
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "new");
}

TEST_F(SqliteAccessorFile, OddTargetsFailAndMakeNothing) {
  std::ofstream(Path("text.db")) << "this is no database, however long one reads in it";
  const std::u16string targets[] = {u"sqlite:",
                                    u"sqlite::memory:",
                                    Server("text.db"),
                                    U16("sqlite:" + folder_.string()),
                                    U16("sqlite:file:" + Path("uri.db") + "?mode=rwc"),
                                    u"sqlite:/dev/null/x",
                                    u"sqlite:" + std::u16string(70000, u'x'),
                                    u"sqlite:\xD800"};
  for (const std::u16string& target : targets) {
    const auto accessor = MakeAccessor(target);
    EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr) << U8(target.substr(0, 80));
    EXPECT_GT(accessor->errNumber, 0) << U8(target.substr(0, 80));
    EXPECT_NE(U8(accessor->ErrDescription()), "");
  }
  EXPECT_FALSE(fs::exists(Path("uri.db")));
}

TEST_F(SqliteAccessorFile, OddStatementsFail) {
  MakeShop("shop.db");
  struct Row {
    const char16_t* statement;
    int values;
  };
  // clang-format off
  constexpr Row kRefused[] = {
      {u"",                                         0},
      {u"-- nothing",                               0},
      {u"selec",                                    0},
      {u"select 1",                                 1},
      {u"select ?",                                 0},
      {u"select ?, ?",                              1},
      {u"insert into data_tables values (9,'n','n',null,1)", 0},
      {u"drop table data_fields",                   0},
  };
  // clang-format on
  const auto accessor = MakeAccessor(Server("shop.db"));
  for (const Row& row : kRefused) {
    MxParams params(false);
    for (int i = 0; i < row.values; ++i) params.AddParam(0, u"n", u"1", false, false, u"=");
    EXPECT_EQ(accessor->QueryByStatement(row.statement, params), nullptr) << U8(row.statement);
    EXPECT_NE(accessor->errNumber, 0);
    EXPECT_NE(U8(accessor->ErrDescription()), "");
  }
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a,b,d,s");
}

TEST_F(SqliteAccessorFile, ReadsATableOfManyFieldsInItsOrder) {
  Make("many.db", std::string(kDataFieldTable) +
                      "with recursive n(i) as (select 1 union all select i + 1 from n limit 5000)"
                      " insert into mx_v_datafield select 'Big', 'f' || i, 'f' || i, 1, 1, i,"
                      " 'Big', 'Big', 1 from n;");
  const auto accessor = MakeAccessor(Server("many.db"));
  const auto rows = SelectTable(*accessor, u"Big");
  ASSERT_NE(rows, nullptr);
  std::int32_t count = 0;
  for (; !rows->EndOfRows(); rows->NextRow()) ASSERT_EQ(rows->IntColumn(u"fldId", 0), ++count);
  EXPECT_EQ(count, 5000);
}

TEST_F(SqliteAccessorFile, RowsOutliveTheirAccessor) {
  MakeShop("shop.db");
  auto accessor = MakeAccessor(Server("shop.db"));
  const auto rows = SelectTable(*accessor, u"Customer");
  accessor.reset();
  ASSERT_NE(rows, nullptr);
  std::u16string text;
  EXPECT_EQ(U8(rows->TextColumn(text, u"fldName", u"")), "Name");
}

TEST_F(SqliteAccessorFile, PathsMayBeRelativeAndChinese) {
  MakeShop("商店.db");
  const fs::path before = fs::current_path();
  fs::current_path(folder_);
  const auto accessor = MakeAccessor(u"SQLite:商店.db");
  EXPECT_EQ(FieldsOf(*accessor, u"Customer"), "Name,City,Code");
  fs::current_path(before);
}

// Opening a pipe waits for somebody to write into it.
TEST_F(SqliteAccessorFile, WhatIsNoFileFailsAtOnce) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  fs::create_symlink(Path("pipe"), Path("link"));
  for (const std::string& path : {Path("pipe"), Path("link"), std::string("/dev/zero")}) {
    const auto accessor = MakeAccessor(U16("sqlite:" + path));
    EXPECT_LT(SecondsOf([&] { EXPECT_EQ(SelectTable(*accessor, u"T"), nullptr); }), 5) << path;
    EXPECT_EQ(accessor->errNumber, SQLITE_CANTOPEN) << path;
    EXPECT_EQ(U8(accessor->ErrDescription()), "unable to open database file: " + path);
  }
}

TEST_F(SqliteAccessorFile, AFileThatBecomesAPipeAndComesBackIsOpenedAnew) {
  MakeShop("shop.db");
  const auto accessor = MakeAccessor(Server("shop.db"));
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a,b,d,s");
  fs::rename(Path("shop.db"), Path("kept.db"));
  ASSERT_EQ(mkfifo(Path("shop.db").c_str(), 0600), 0);
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "error 14");
  fs::rename(Path("kept.db"), Path("shop.db"));
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a,b,d,s");
}

namespace {

/// Holds a file against all readers.
class Lock {
 public:
  explicit Lock(const std::string& path) {
    EXPECT_EQ(sqlite3_open(path.c_str(), &database_), SQLITE_OK);
    Run("begin exclusive");
  }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  ~Lock() { Release(); }
  void Release() {
    if (database_ == nullptr) return;
    Run("commit");
    sqlite3_close(database_);
    database_ = nullptr;
  }

 private:
  void Run(const char* sql) const {
    EXPECT_EQ(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  }
  sqlite3* database_ = nullptr;
};

}  // namespace

TEST_F(SqliteAccessorFile, ALockedFileIsWaitedForOnceAndThenOnlyBriefly) {
  MakeShop("shop.db");
  const auto accessor = MakeAccessor(Server("shop.db"), u"", u"", 2);
  const auto secondsOfLoad = [&](const char* expected) {
    accessor->BeginLoad();
    return SecondsOf([&] { EXPECT_EQ(FieldsOf(*accessor, u"T"), expected); });
  };
  for (int round = 0; round < 2; ++round) {  // after a success the wait is whole again
    Lock lock(Path("shop.db"));
    EXPECT_GT(secondsOfLoad("error 5"), 1.9);
    EXPECT_EQ(U8(accessor->ErrDescription()), "database is locked");
    double later = 0;
    for (int load = 0; load < 5; ++load) later += secondsOfLoad("error 5");
    EXPECT_LT(later, 8);  // ten, with whole waits
    lock.Release();
    secondsOfLoad("a,b,d,s");
  }
}

TEST_F(SqliteAccessorFile, AFileThatIsUnlockedInTimeIsRead) {
  MakeShop("shop.db");
  const auto accessor = MakeAccessor(Server("shop.db"));
  Lock lock(Path("shop.db"));
  std::thread other([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    lock.Release();
  });
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a,b,d,s");
  other.join();
}

TEST_F(SqliteAccessorFile, AViewWithoutEndEndsWithTheLoad) {
  const ScopedLanguage language(u"en");
  Make("endless.db",
       "create view mx_v_datafield as with recursive n(i) as (select 1 union all select i + 1 from"
       " n) select 'T' || i as dtName, 'f' || i as fldName, '' as fldRealName, 1 as baseType, 1 as "
       "dtId,"
       " i as fldId, '' as tabRealName, '' as tabRefName, 1 as state from n;"
       "create table mx_v_rtfs (rttId, rtfId, fldName, realName, baseType, fldId);"
       "create table Mx_v_Rtts (rttId, rtId, dtName, dtId, realName, refName, style, state);");
  const auto accessor = MakeAccessor(Server("endless.db"), u"", u"", 1);
  accessor->BeginLoad();
  EXPECT_LT(SecondsOf([&] {
              for (int i = 0; i < 20; ++i) EXPECT_EQ(SelectTable(*accessor, u"None"), nullptr);
            }),
            10);
  EXPECT_EQ(accessor->errNumber, SQLITE_INTERRUPT);
  EXPECT_EQ(U8(accessor->ErrDescription()),
            "The database did not answer in time (limit in seconds: 1).");
  accessor->BeginLoad();
  EXPECT_TRUE(SelectTemplate(*accessor, u"7")->EndOfRows());
  EXPECT_EQ(accessor->errNumber, 0);
}

TEST_F(SqliteAccessorFile, TheLimitIsThatOfTheWholeLoad) {
  const ScopedLanguage language(u"en");
  MakeShop("shop.db");
  const auto accessor = MakeAccessor(Server("shop.db"), u"", u"", 1);
  accessor->BeginLoad();
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a,b,d,s");
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "error -1");
  EXPECT_EQ(U8(accessor->ErrDescription()),
            "The database did not answer in time (limit in seconds: 1).");
  accessor->BeginLoad();
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a,b,d,s");
}

TEST_F(SqliteAccessorFile, AFailedFileIsAskedAgainByTheNextLoad) {
  const auto accessor = MakeAccessor(Server("shop.db"));
  accessor->BeginLoad();
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "error 14");
  MakeShop("shop.db");
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "error 14");
  EXPECT_EQ(U8(accessor->ErrDescription()), "unable to open database file: " + Path("shop.db"));
  accessor->BeginLoad();
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a,b,d,s");
}

// A view that is missing says nothing of the others.
TEST_F(SqliteAccessorFile, AFailedQueryIsNoFailedFile) {
  MakeShop("shop.db");
  const auto accessor = MakeAccessor(Server("shop.db"));
  accessor->BeginLoad();
  EXPECT_EQ(accessor->QueryByStatement(u"select * from absent", MxParams(false)), nullptr);
  EXPECT_EQ(FieldsOf(*accessor, u"T"), "a,b,d,s");
}
