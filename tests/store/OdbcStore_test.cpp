// A store behind unixODBC: on a real PostgreSQL server, and in an SQLite file through a driver of
// narrow text. Without the server's or the driver's package these tests are skipped.
#include "RuleStore.h"

#include "PostgresSuite.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "SecondsOf.h"
#include "StoreValues.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace ORKDB;

namespace {

constexpr const char* kTables = R"sql(
create table rules (id int primary key, expression text, note text);
insert into rules values (1, 'T.a > 1', null), (2, '', '客户😀'), (3, null, 'n');
create table kept (v text);
create table kept_bytes (v bytea);
)sql";

class OdbcStoreServer : public PostgresSuite {
 protected:
  static void SetUpTestSuite() { StartServer(kTables); }

  static std::unique_ptr<StoreConnection> Open(bool readOnly, const std::string& more = "") {
    ORKBASE::ConnectionSettings settings;
    settings.server = U16("odbc:Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" +
                          std::to_string(server_->Port()) + ";Database=postgres;" + more);
    settings.user = U16(PostgresServer::User());
    settings.password = U16(PostgresServer::Password());
    settings.readOnly = readOnly;
    return OpenStore(settings);
  }
};

void Do(StoreConnection& store, const std::string& statement) {
  const auto prepared = store.Prepare(U16(statement));
  prepared->Run({});
}

/// Runs a statement with values.
std::int64_t Changed(StoreConnection& store, const std::string& statement, const StoreRow& values) {
  const auto prepared = store.Prepare(U16(statement));
  return prepared->Run(values);
}

StoreRow FirstRow(StoreConnection& store, const std::string& statement) {
  StoreRow row;
  EXPECT_TRUE(store.Select(U16(statement))->Next(row)) << statement;
  return row;
}

std::size_t ResidentKb() {
  std::ifstream file("/proc/self/statm");
  std::size_t all = 0;
  std::size_t resident = 0;
  file >> all >> resident;
  return resident * 4;
}

}  // namespace

TEST_F(OdbcStoreServer, AKeyOfAnyTypeFindsItsRowAgain) {
  struct {
    const char* type;
    const char* literal;
    const char* read;
  } const rows[] = {
      {"int", "5", "int 5"},
      {"smallint", "-5", "int -5"},
      {"bigint", "-9223372036854775808", "int -9223372036854775808"},
      {"bigint", "9223372036854775807", "int 9223372036854775807"},
      {"text", "'客 é''\\\n?'", "text 客 é'\\\n?"},
      {"text", "''", "text "},
      {"varchar", "'007'", "text 007"},
      {"varchar(10)", "'ab '", "text ab "},
      {"char(5)", "'ab'", "text ab   "},
      {"uuid", "'A0EEBC99-9c0b-4ef8-bb6d-6bb9bd380a11'",
       "text a0eebc99-9c0b-4ef8-bb6d-6bb9bd380a11"},
      {"numeric", "12345678901234567890.1230", "text 12345678901234567890.1230"},
      {"numeric(10, 2)", "1.5", "text 1.50"},
      {"timestamp", "'2020-01-02 03:04:05.123456'", "text 2020-01-02 03:04:05.123456"},
      {"timestamp", "'0044-03-15 BC'", "text 0044-03-15 00:00:00 BC"},
      {"date", "'2020-01-02'", "text 2020-01-02"},
      {"time", "'03:04:05'", "text 03:04:05"},
      {"bytea", "'\\x00ff27'", "bytes 00ff27"},
      {"bytea", "''", "bytes "},
      {"boolean", "true", "text 1"},
      {"boolean", "false", "text 0"},
      {"float8", "0.1::float8 + 0.2::float8", "real 0.30000000000000004"},
      {"real", "0.5", "real 0.5"},
      {"oid", "7", "int 7"},
      {"interval", "'1 day'", "text 1 day"},
      {"int[]", "'{1,2}'", "text {1,2}"},
      {"jsonb", "'{\"a\": 1}'", "text {\"a\": 1}"},
  };
  const auto store = Open(false);
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.type) + " " + row.literal);
    Do(*store, "drop table if exists keyed");
    Do(*store, std::string("create table keyed (id ") + row.type + ", expression text)");
    Do(*store, std::string("insert into keyed values (") + row.literal + ", 'old')");
    const StoreValue id = FirstRow(*store, "select id from keyed").at(0);
    EXPECT_EQ(Shown(id), row.read);
    EXPECT_EQ(Changed(*store, "update keyed set expression = :e where id = :id", {u"new", id}), 1);
    EXPECT_EQ(Changed(*store, "update keyed set id = :id", {id}), 1);
    const std::string same = std::string("select count(*) from keyed where id = ") + row.literal;
    EXPECT_EQ(Selected(*store, U16(same)), "int 1");
    EXPECT_EQ(Changed(*store, "update keyed set id = :id", {std::monostate()}), 1);
    EXPECT_EQ(Selected(*store, u"select * from keyed"), "NULL,text new");
  }
}

// Values come in pieces, and a piece may end between the halves of a character.
TEST_F(OdbcStoreServer, LongValuesComeBackWhole) {
  const auto store = Open(false);
  const auto text = store->Prepare(u"update kept set v = :v");
  const auto bytes = store->Prepare(u"update kept_bytes set v = :v");
  Do(*store, "insert into kept values ('')");
  Do(*store, "insert into kept_bytes values ('')");
  for (const std::size_t size :
       {0U, 1U, 2046U, 2047U, 2048U, 2049U, 4094U, 67'582U, 67'583U, 1'000'000U}) {
    std::u16string faces;
    for (std::size_t i = 0; i < size / 2; ++i) faces += u"\U0001F600";
    for (const std::u16string& value :
         {std::u16string(size, u'a'), std::u16string(size, u'客'), faces, u"b" + faces}) {
      ASSERT_EQ(text->Run({value}), 1);
      EXPECT_TRUE(IsSame(FirstRow(*store, "select v from kept").at(0), value))
          << size << " " << U8(value.substr(0, 2));
    }
    const StoreBytes some(size, std::byte{7});
    ASSERT_EQ(bytes->Run({some}), 1);
    EXPECT_TRUE(IsSame(FirstRow(*store, "select v from kept_bytes").at(0), some)) << size;
  }
}

TEST_F(OdbcStoreServer, WhatNoDriverKeepsIsRefused) {
  const ScopedLanguage language(u"en");
  const auto store = Open(false);
  const auto update = store->Prepare(u"update rules set note = :n where id = 3");
  EXPECT_EQ(FailureOf([&] { update->Run({std::u16string(u"a\0b", 3)}); }),
            "refusal The text holds the character zero, which the database cannot keep.");
  EXPECT_EQ(FailureOf([&] { update->Run({u"a\xD800"}); }),
            "refusal The text holds half a character, which the database cannot keep.");
  EXPECT_EQ(Selected(*store, u"select note from rules where id = 3"), "text n");
}

TEST_F(OdbcStoreServer, ReadsRowsWithTheirColumnsAndNulls) {
  const auto store = Open(true);
  const auto rows = store->Select(u"select *, '客?' as \"列\" from rules order by id -- 'all");
  ASSERT_EQ(rows->Columns().size(), 4U);
  EXPECT_EQ(U8(rows->Columns()[1]), "expression");
  EXPECT_EQ(U8(rows->Columns()[3]), "列");
  EXPECT_EQ(Shown(*rows),
            "int 1,text T.a > 1,NULL,text 客?;int 2,text ,text 客户😀,text 客?;"
            "int 3,NULL,text n,text 客?");
  StoreRow row;
  EXPECT_FALSE(rows->Next(row));
}

TEST_F(OdbcStoreServer, APreparedStatementRunsWithOtherKindsOfValues) {
  const auto store = Open(false);
  const auto query = store->Prepare(u"select :客 || 'ü' || :b || :客");
  ASSERT_EQ(query->Names().size(), 2U);
  EXPECT_EQ(U8(query->Names()[0]), "客");
  EXPECT_EQ(Shown(*query->Read({u"值", u"-"})), "text 值ü-值");
  EXPECT_EQ(Shown(*query->Read({std::int64_t{5}, u"long enough for another place in memory"})),
            "text 5ülong enough for another place in memory5");
  EXPECT_EQ(Shown(*query->Read({std::monostate(), u""})), "NULL");
  EXPECT_EQ(Shown(*query->Read({u"a", u"b"})), "text aüba");
}

TEST_F(OdbcStoreServer, CountsTheRowsThatAStatementChanged) {
  const auto store = Open(false);
  Do(*store, "create table counted as select i as id from generate_series(1, 5) as i");
  EXPECT_EQ(Changed(*store, "update counted set id = id where id > :n", {std::int64_t{2}}), 3);
  EXPECT_EQ(Changed(*store, "update counted set id = id where id > :n", {std::int64_t{9}}), 0);
  EXPECT_EQ(Changed(*store, "delete from counted", {}), 5);
}

TEST_F(OdbcStoreServer, ATransactionIsKeptOrTakenBackAsAWhole) {
  const auto writer = Open(false);
  const auto reader = Open(true);
  const std::u16string count = u"select count(*) from rules where id >= 10";
  const auto insert = writer->Prepare(u"insert into rules (id) values (:id)");
  writer->Begin();
  insert->Run({std::int64_t{10}});
  writer->Rollback();
  EXPECT_EQ(Selected(*reader, count), "int 0");
  writer->Rollback();  // there is none
  writer->Begin();
  insert->Run({std::int64_t{10}});
  EXPECT_EQ(Selected(*reader, count), "int 0");
  writer->Commit();
  EXPECT_EQ(Selected(*reader, count), "int 1");
  insert->Run({std::int64_t{11}});  // one of its own
  EXPECT_EQ(Selected(*reader, count), "int 2");
  {
    const auto other = Open(false);
    other->Begin();
    Do(*other, "delete from rules where id >= 10");
  }
  EXPECT_EQ(Selected(*reader, count), "int 2");
  Do(*writer, "delete from rules where id >= 10");
}

TEST_F(OdbcStoreServer, WhatWasReadInATransactionIsWhatIsReplacedOrItFails) {
  const auto one = Open(false);
  const auto other = Open(false);
  one->Begin();
  EXPECT_EQ(Selected(*one, u"select expression from rules where id = 1"), "text T.a > 1");
  Do(*other, "update rules set expression = 'other' where id = 1");
  EXPECT_EQ(Selected(*one, u"select expression from rules where id = 1"), "text T.a > 1");
  const std::string failure =
      FailureOf([&] { Do(*one, "update rules set expression = 'one' where id = 1"); });
  EXPECT_TRUE(failure.starts_with("refusal [40001]")) << failure;
  one->Rollback();
  EXPECT_EQ(Selected(*one, u"select expression from rules where id = 1"), "text other");
  Do(*one, "update rules set expression = 'T.a > 1' where id = 1");
}

TEST_F(OdbcStoreServer, OneConnectionReadsWhileAnotherWritesAndCommits) {
  const auto writer = Open(false);
  Do(*writer,
     "create table many as select i as id, 'old' || i as expression from "
     "generate_series(1, 20000) as i");
  Do(*writer, "alter table many add primary key (id)");
  const auto reader = Open(true, "UseDeclareFetch=1;Fetch=500;");
  const auto update = writer->Prepare(u"update many set expression = :e where id = :id");
  const auto rows = reader->Select(u"select id, expression from many order by id");
  std::int64_t count = 0;
  for (StoreRow row; rows->Next(row);) {
    ++count;
    ASSERT_EQ(Shown(row.at(1)), "text old" + std::to_string(count));
    if (count % 20 != 0) continue;
    writer->Begin();
    ASSERT_EQ(update->Run({u"new", row.at(0)}), 1);
    writer->Commit();
  }
  EXPECT_EQ(count, 20'000);
  EXPECT_EQ(Selected(*writer, u"select count(*) from many where expression = 'new'"), "int 1000");
}

TEST_F(OdbcStoreServer, ReadingWithACursorKeepsMemoryFlat) {
  const auto reader = Open(true, "UseDeclareFetch=1;Fetch=1000;");
  const auto rows = reader->Select(
      u"select i as id, repeat('x', 200) as expression from generate_series(1, 200000) as i");
  std::size_t early = 0;
  std::size_t count = 0;
  for (StoreRow row; rows->Next(row); ++count) {
    if (count == 10'000) early = ResidentKb();
  }
  EXPECT_EQ(count, 200'000U);
  EXPECT_LT(ResidentKb(), early + 8'000);  // the rows together take 40,000 and more
}

TEST_F(OdbcStoreServer, WrongStatementsAreRefusedAndTheNextOneRuns) {
  const ScopedLanguage language(u"en");
  const auto store = Open(false);
  struct {
    std::u16string statement;
    std::string failure;  ///< how it begins
  } const rows[] = {
      {u"", "refusal The statement is empty."},
      {u" \n", "refusal The statement is empty."},
      {std::u16string(u"select 1\0", 9), "refusal The statement holds the character zero."},
      {u"selec", "refusal [42601]"},
      {u"select a from nowhere", "refusal [42P01]"},
      {u"select '客' from 表", "refusal [42P01]"},
      {u"select 1 where 1 = ?", "refusal [07002]"},
      {u"delete from rules", "refusal The statement is no query: it gives no rows."},
      {u"select 1 / 0", "refusal [22012]"},
  };
  for (const auto& row : rows) {
    const std::string failure = FailureOf([&] { Selected(*store, row.statement); });
    EXPECT_TRUE(failure.starts_with(row.failure)) << U8(row.statement) << ": " << failure;
  }
  const auto query = store->Prepare(u"select :a");
  EXPECT_EQ(FailureOf([&] { query->Read({}); }),
            "refusal The statement does not take that number of values.");
  EXPECT_EQ(Selected(*store, u"select count(*) from rules"), "int 3");
}

TEST_F(OdbcStoreServer, AConnectionThatReadsDoesNotWrite) {
  const ScopedLanguage language(u"en");
  const auto store = Open(true);
  EXPECT_EQ(FailureOf([&] { Do(*store, "delete from rules"); }),
            "refusal The connection was opened for reading only.");
  EXPECT_EQ(Selected(*store, u"select count(*) from rules"), "int 3");
}

TEST_F(OdbcStoreServer, AHostGoesThroughTheDriverOfItsDatabaseType) {
  ORKBASE::ConnectionSettings settings;
  settings.server = u"127.0.0.1";
  settings.port = server_->Port();
  settings.user = U16(PostgresServer::User());
  settings.password = U16(PostgresServer::Password());
  settings.database = u"postgres";
  settings.dsType = ORKBASE::kOpenGaussDs;
  EXPECT_EQ(Selected(*OpenStore(settings), u"select note from rules where id = 2"), "text 客户😀");
  settings.password = u"wr0ng;{密码}";
  const std::string failure = FailureOf([&] { OpenStore(settings); });
  EXPECT_TRUE(failure.starts_with("outage [")) << failure;
  EXPECT_EQ(failure.find("wr0ng"), std::string::npos) << failure;
}

TEST_F(OdbcStoreServer, AServerThatGoesAwayIsAnOutage) {
  const auto store = Open(false);
  const auto query = store->Prepare(u"select expression from rules where id = :id");
  store->Begin();
  EXPECT_EQ(Shown(*query->Read({std::int64_t{1}})), "text T.a > 1");
  server_->Stop();
  std::string failure = FailureOf([&] { query->Read({std::int64_t{1}}); });
  EXPECT_TRUE(failure.starts_with("outage ")) << failure;
  store->Rollback();
  failure = FailureOf([&] { Open(true); });
  EXPECT_TRUE(failure.starts_with("outage [08001]")) << failure;
  ASSERT_TRUE(server_->Start()) << server_->Problem();
  EXPECT_EQ(Selected(*Open(true), u"select count(*) from rules"), "int 3");
}

TEST(OdbcStore, OddConnectionStringsAreOutages) {
  for (const char16_t* text : {u"odbc:", u"odbc:;;;", u"odbc:Driver={No Such};PWD=hidden-word",
                               u"odbc:DSN=absent;Password=hidden-word", u"ODBC:客户"}) {
    ORKBASE::ConnectionSettings settings;
    settings.server = text;
    const std::string failure = FailureOf([&] { OpenStore(settings); });
    EXPECT_TRUE(failure.starts_with("outage ")) << failure;
    EXPECT_EQ(failure.find("hidden-word"), std::string::npos) << failure;
  }
}

namespace {

/// An SQLite file through the ODBC driver for it, which has no functions for 16-bit text.
class OdbcStoreNarrow : public testing::Test {
 protected:
  void SetUp() override {
    try {
      Open(true);
    } catch (const StoreFailure& failure) {
      if (U8(failure.Text()).find("Can't open lib") == std::string::npos) throw;
      GTEST_SKIP() << "package libsqliteodbc is not installed";
    }
  }

  std::unique_ptr<StoreConnection> Open(bool readOnly) const {
    ORKBASE::ConnectionSettings settings;
    settings.server = U16("odbc:Driver={SQLite3};Database=" + file_.Path() + ";NoCreat=1");
    settings.readOnly = readOnly;
    return OpenStore(settings);
  }

  TempDatabase file_{R"sql(
create table rules (id integer primary key, expression text, "列" text);
insert into rules values (1, 'T.a > 1', null), (2, '', '客户😀');
create table kept (v);
create table whole (n bigint);
insert into whole values (9223372036854775807), ('18446744073709551615x'), ('abc'), (null), ('');
)sql"};
};

}  // namespace

TEST_F(OdbcStoreNarrow, ReadsRowsWithTheirColumnsAndNulls) {
  const auto store = Open(true);
  const auto rows = store->Select(u"select *, '客' from rules order by id");
  ASSERT_EQ(rows->Columns().size(), 4U);
  EXPECT_EQ(U8(rows->Columns()[2]), "列");
  EXPECT_EQ(Shown(*rows), "int 1,text T.a > 1,NULL,text 客;int 2,text ,text 客户😀,text 客");
}

// That database keeps anything in a column of whole numbers.
TEST_F(OdbcStoreNarrow, WhatIsNoWholeNumberStaysAsItIs) {
  EXPECT_EQ(Selected(*Open(true), u"select n from whole order by rowid"),
            "int 9223372036854775807;text 18446744073709551615x;text abc;NULL;text ");
}

TEST_F(OdbcStoreNarrow, ValuesComeBackAsTheyWereWritten) {
  const auto store = Open(false);
  const StoreValue values[] = {
      std::monostate(),
      std::int64_t{5},
      std::int64_t{-9223372036854775807},
      0.5,
      u"",
      u"T.a > '客户\U0001F600'",
      u"\r\n",
      std::u16string(2047, u'a'),
      std::u16string(67'583, u'客'),
      std::u16string(2046, u'a') + u"\U0001F600",
      std::u16string(1'000'000, u'客'),
      StoreBytes(),
      StoreBytes{std::byte{0}, std::byte{255}},
      StoreBytes(5000, std::byte{7}),
  };
  for (const StoreValue& value : values) {
    Do(*store, "delete from kept");
    EXPECT_EQ(Changed(*store, "insert into kept values (:v)", {value}), 1);
    const StoreValue read = FirstRow(*store, "select v from kept").at(0);
    EXPECT_TRUE(IsSame(read, value))
        << Shown(value).substr(0, 40) << " read as " << Shown(read).substr(0, 40);
  }
}

TEST_F(OdbcStoreNarrow, UpdatesByKeyWithinTransactions) {
  const auto store = Open(false);
  const auto update =
      store->Prepare(u"update rules set expression = 'ü' || :e where id = :id and \"列\" = :列");
  store->Begin();
  EXPECT_EQ(update->Run({u"值", std::int64_t{2}, u"客户\U0001F600"}), 1);
  EXPECT_EQ(update->Run({u"值", std::int64_t{9}, u"客户\U0001F600"}), 0);
  store->Rollback();
  EXPECT_EQ(Selected(*Open(true), u"select expression from rules where id = 2"), "text ");
  store->Begin();
  EXPECT_EQ(update->Run({u"值", std::int64_t{2}, u"客户\U0001F600"}), 1);
  store->Commit();
  EXPECT_EQ(Selected(*Open(true), u"select expression from rules where id = 2"), "text ü值");
}

TEST_F(OdbcStoreNarrow, RefusesWhatIsWrong) {
  const ScopedLanguage language(u"en");
  const auto store = Open(false);
  EXPECT_EQ(FailureOf([&] { Selected(*store, u"delete from rules"); }),
            "refusal The statement is no query: it gives no rows.");
  const std::string failure = FailureOf([&] { Selected(*store, u"select '客' from nowhere"); });
  EXPECT_TRUE(failure.starts_with("refusal [HY000]")) << failure;
  EXPECT_EQ(FailureOf([&] { Do(*Open(true), "delete from rules"); }),
            "refusal The connection was opened for reading only.");
  EXPECT_EQ(Selected(*store, u"select count(*) from rules"), "int 2");
}
