// A store in an SQLite file.
#include "RuleStore.h"

#include "DataAccess.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "SecondsOf.h"
#include "StoreValues.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>

using namespace ORKDB;

namespace {

std::unique_ptr<StoreConnection> Open(const TempDatabase& file, bool readOnly = true) {
  ORKBASE::ConnectionSettings settings;
  settings.server = file.Server();
  settings.readOnly = readOnly;
  settings.loadSeconds = 1;
  return OpenStore(settings);
}

std::string FailureToOpen(const std::string& server, bool readOnly = true) {
  ORKBASE::ConnectionSettings settings;
  settings.server = U16(server);
  settings.readOnly = readOnly;
  settings.loadSeconds = 1;
  return FailureOf([&] { OpenStore(settings); });
}

constexpr const char* kRules = R"sql(
create table rules (id integer primary key, expression text, note);
insert into rules values (1, 'T.a > 1', null), (2, '', 2.5), (3, '客户😀', x'00ff'), (4, null, 'n');
)sql";

std::string FileText(const std::string& path) {
  std::stringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

/// Writes the value into a column without a type and reads it back.
StoreValue ThereAndBack(StoreConnection& store, const StoreValue& value) {
  store.Prepare(u"delete from kept")->Run({});
  store.Prepare(u"insert into kept values (:v)")->Run({value});
  StoreRow row;
  EXPECT_TRUE(store.Select(u"select v from kept")->Next(row));
  return row.at(0);
}

const StoreValue kValues[] = {
    std::monostate(),
    std::int64_t{0},
    std::numeric_limits<std::int64_t>::min(),
    std::numeric_limits<std::int64_t>::max(),
    0.5,
    -0.0,
    0.1 + 0.2,
    1e300,
    std::numeric_limits<double>::infinity(),
    u"",
    u"T.a > 'x'",
    u"12",
    u"客户\U0001F600",
    std::u16string(u"a\0b\0", 4),
    u"\xFEFF mark",
    u"\xFEFF\xFEFF marks",
    u"\r\n\t ",
    std::u16string(1'000'000, u'客'),
    StoreBytes(),
    StoreBytes{std::byte{0}, std::byte{255}},
    StoreBytes(1'000'000, std::byte{7}),
};

}  // namespace

TEST(SqliteStore, ValuesComeBackAsTheyWereWritten) {
  for (const char* encoding : {"UTF-8", "UTF-16le", "UTF-16be"}) {
    const TempDatabase file("pragma encoding = '" + std::string(encoding) +
                            "'; create table kept (v);");
    const auto store = Open(file, false);
    for (const StoreValue& value : kValues) {
      const StoreValue read = ThereAndBack(*store, value);
      EXPECT_TRUE(IsSame(read, value)) << encoding << ": " << Shown(value).substr(0, 60)
                                       << " read as " << Shown(read).substr(0, 60);
    }
  }
}

TEST(SqliteStore, HalfACharacterIsKeptWhereTheFileCanAndElseRefused) {
  const ScopedLanguage language(u"en");
  const std::u16string halves[] = {u"\xD800", u"\xFFFE\xD800 turned", u"a\xDC00",
                                   u"\xD83D and more", u"\xD83D\xD83D\xDE00"};
  const TempDatabase wide("pragma encoding = 'UTF-16le'; create table kept (v);");
  const TempDatabase narrow("create table kept (v);");
  const auto wideStore = Open(wide, false);
  const auto narrowStore = Open(narrow, false);
  for (const std::u16string& half : halves) {
    EXPECT_TRUE(IsSame(ThereAndBack(*wideStore, half), half)) << U8(half);
    EXPECT_EQ(FailureOf([&] { ThereAndBack(*narrowStore, half); }),
              "refusal The text holds half a character, which the database cannot keep.");
  }
  EXPECT_EQ(Selected(*narrowStore, u"select count(*) from kept"), "int 0");
}

TEST(SqliteStore, ReadsEachValueByItsOwnKind) {
  const TempDatabase file(kRules);
  const auto store = Open(file);
  EXPECT_EQ(Selected(*store, u"select * from rules order by id"),
            "int 1,text T.a > 1,NULL;int 2,text ,real 2.5;int 3,text 客户😀,bytes 00ff;"
            "int 4,NULL,text n");
}

TEST(SqliteStore, ColumnsHaveTheirNamesBeforeTheFirstRowAndWithoutOne) {
  const TempDatabase file(kRules);
  const auto store = Open(file);
  const auto rows =
      store->Select(u"select id, Note as \"客 户\", 1+1 from rules where id > 9 -- end");
  ASSERT_EQ(rows->Columns().size(), 3U);
  EXPECT_EQ(U8(rows->Columns()[0]), "id");
  EXPECT_EQ(U8(rows->Columns()[1]), "客 户");
  EXPECT_EQ(U8(rows->Columns()[2]), "1+1");
  StoreRow row;
  EXPECT_FALSE(rows->Next(row));
  EXPECT_FALSE(rows->Next(row));
}

TEST(SqliteStore, NamedValuesAreBoundByTheirNames) {
  const TempDatabase file(kRules);
  const auto store = Open(file, false);
  const auto update =
      store->Prepare(u"update rules set expression = :e, note = :e where id = :id /* :x */;");
  ASSERT_EQ(update->Names().size(), 2U);
  EXPECT_EQ(U8(update->Names()[0]), "e");
  EXPECT_EQ(U8(update->Names()[1]), "id");
  EXPECT_EQ(update->Run({u"'; drop table rules; --", std::int64_t{1}}), 1);
  EXPECT_EQ(update->Run({u"x", std::int64_t{9}}), 0);
  EXPECT_EQ(update->Run({u"x", std::monostate()}), 0);
  EXPECT_EQ(Selected(*store, u"select * from rules where id = 1"),
            "int 1,text '; drop table rules; --,text '; drop table rules; --");
}

TEST(SqliteStore, CountsTheRowsThatAStatementChanged) {
  const TempDatabase file(kRules);
  const auto store = Open(file, false);
  EXPECT_EQ(store->Prepare(u"update rules set note = 1")->Run({}), 4);
  EXPECT_EQ(store->Prepare(u"create table other (a)")->Run({}), 0);
  EXPECT_EQ(store->Prepare(u"select * from rules")->Run({}), 0);
  EXPECT_EQ(store->Prepare(u"update rules set note = 2 where id < 3 returning id")->Run({}), 2);
  EXPECT_EQ(store->Prepare(u"delete from rules")->Run({}), 4);
}

TEST(SqliteStore, APreparedQueryIsReadAgainAndAgain) {
  const TempDatabase file(kRules);
  const auto store = Open(file);
  const auto query = store->Prepare(u"select id from rules where id >= :least order by id");
  for (const char* expected : {"int 3;int 4", "int 3;int 4"}) {
    EXPECT_EQ(Shown(*query->Read({std::int64_t{3}})), expected);
  }
  {
    const auto rows = query->Read({std::int64_t{1}});
    StoreRow row;
    ASSERT_TRUE(rows->Next(row));  // and the rest is left
  }
  EXPECT_EQ(Shown(*query->Read({std::int64_t{4}})), "int 4");
  EXPECT_EQ(Shown(*query->Read({std::int64_t{5}})), "");
}

TEST(SqliteStore, RowsComeOneByOne) {
  const TempDatabase file("create table one (a)");
  const auto store = Open(file);
  // Would never end, and fill all memory, if it were read to its end.
  const auto rows = store->Select(
      u"with recursive n(i) as (select 1 union all select i + 1 from n) select i from n");
  StoreRow row;
  for (std::int64_t i = 1; i <= 1000; ++i) {
    ASSERT_TRUE(rows->Next(row));
    ASSERT_TRUE(IsSame(row.at(0), i));
  }
}

TEST(SqliteStore, AFailureBetweenTwoRowsIsThrownOnceAndEndsThem) {
  const TempDatabase file("create table t (a); insert into t values (1), (-9223372036854775808);");
  const auto store = Open(file);
  const auto rows = store->Select(u"select abs(a) from t order by rowid");
  StoreRow row;
  ASSERT_TRUE(rows->Next(row));
  EXPECT_EQ(FailureOf([&] { rows->Next(row); }), "refusal integer overflow");
  EXPECT_FALSE(rows->Next(row));
}

TEST(SqliteStore, ATransactionIsKeptOrTakenBackAsAWhole) {
  const TempDatabase file(kRules);
  const auto writer = Open(file, false);
  const auto reader = Open(file);
  const auto insert = writer->Prepare(u"insert into rules (id) values (:id)");
  writer->Begin();
  insert->Run({std::int64_t{10}});
  EXPECT_EQ(Selected(*reader, u"select count(*) from rules"), "int 4");
  writer->Rollback();
  EXPECT_EQ(Selected(*reader, u"select count(*) from rules"), "int 4");
  writer->Rollback();  // there is none
  writer->Begin();
  insert->Run({std::int64_t{10}});
  writer->Commit();
  EXPECT_EQ(Selected(*reader, u"select count(*) from rules"), "int 5");
  insert->Run({std::int64_t{11}});  // one of its own
  EXPECT_EQ(Selected(*reader, u"select count(*) from rules"), "int 6");
}

TEST(SqliteStore, ATransactionThatWasLeftOpenIsTakenBack) {
  const TempDatabase file(kRules);
  {
    const auto writer = Open(file, false);
    writer->Begin();
    writer->Prepare(u"delete from rules")->Run({});
  }
  EXPECT_EQ(Selected(*Open(file), u"select count(*) from rules"), "int 4");
}

TEST(SqliteStore, AWriterThatBeganKeepsOthersFromWriting) {
  const ScopedLanguage language(u"en");
  const TempDatabase file(kRules);
  const auto one = Open(file, false);
  const auto other = Open(file, false);
  one->Begin();
  std::string failure;
  const double seconds = SecondsOf([&] { failure = FailureOf([&] { other->Begin(); }); });
  EXPECT_EQ(failure, "outage database is locked");
  EXPECT_GT(seconds, 0.9);  // the time that a load may take
  EXPECT_LT(seconds, 5);
  one->Commit();
  EXPECT_EQ(FailureOf([&] { other->Begin(); }), "nothing");
}

TEST(SqliteStore, WhatIsReadInATransactionStaysAsItIs) {
  const TempDatabase file(std::string("pragma journal_mode = wal;") + kRules);
  const auto reader = Open(file);
  reader->Begin();
  EXPECT_EQ(Selected(*reader, u"select count(*) from rules"), "int 4");
  Open(file, false)->Prepare(u"delete from rules")->Run({});
  EXPECT_EQ(Selected(*reader, u"select count(*) from rules"), "int 4");
  reader->Commit();
  EXPECT_EQ(Selected(*reader, u"select count(*) from rules"), "int 0");
}

// As a process leaves it that is killed within a transaction: pages of it are in the file already,
// and the journal beside it has what stood there.
TEST(SqliteStore, TakesBackWhatAKilledWriterLeft) {
  const TempDatabase file(
      "create table rules (id integer primary key, e text);"
      "with recursive n(i) as (select 1 union all select i + 1 from n limit "
      "2000) insert into rules select i, printf('%.1000c', 'a') from n;");
  const TempDatabase copy("");
  {
    const auto writer = Open(file, false);
    writer->Prepare(u"pragma cache_size = 10")->Run({});
    writer->Begin();
    writer->Prepare(u"update rules set e = printf('%.1000c', 'b')")->Run({});
    using std::filesystem::copy_file;
    copy_file(file.Path(), copy.Path(), std::filesystem::copy_options::overwrite_existing);
    copy_file(file.Path() + "-journal", copy.Path() + "-journal");
  }
  ASSERT_NE(FileText(copy.Path()).find("bbbbbbbbbb"), std::string::npos);
  const auto store = Open(copy);
  EXPECT_EQ(Selected(*store, u"select count(*) from rules where e like 'aaa%'"), "int 2000");
  EXPECT_FALSE(std::filesystem::exists(copy.Path() + "-journal"));
}

TEST(SqliteStore, AConnectionThatReadsDoesNotWrite) {
  const TempDatabase file(kRules);
  const auto store = Open(file);
  EXPECT_EQ(FailureOf([&] { store->Prepare(u"delete from rules")->Run({}); }),
            "refusal attempt to write a readonly database");
  EXPECT_EQ(Selected(*store, u"select count(*) from rules"), "int 4");
}

TEST(SqliteStore, WrongStatementsAreRefused) {
  const ScopedLanguage language(u"en");
  const TempDatabase file(kRules);
  const auto store = Open(file, false);
  struct {
    std::u16string statement;
    std::string failure;
  } const rows[] = {
      {u"", "refusal The statement is empty."},
      {u" \r\n\t", "refusal The statement is empty."},
      {u"-- nothing", "refusal The statement is empty."},
      {std::u16string(u"select 1\0", 9), "refusal The statement holds the character zero."},
      {u"selec", "refusal near \"selec\": syntax error"},
      {u"select a from nowhere", "refusal no such table: nowhere"},
      {u"select 1; delete from rules", "refusal More than one statement stands there."},
      {u"select 1; nonsense", "refusal More than one statement stands there."},
      {u"delete from rules", "refusal The statement is no query: it gives no rows."},
      {u"select :id", "refusal The statement does not take that number of values."},
      {u"select ?", "refusal The statement does not take that number of values."},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FailureOf([&] { store->Select(row.statement); }), row.failure) << U8(row.statement);
  }
  EXPECT_EQ(Selected(*store, u"select count(*) from rules; -- all of them"), "int 4");
}

TEST(SqliteStore, ValuesThatDoNotFitTheirStatementAreRefused) {
  const ScopedLanguage language(u"en");
  const TempDatabase file(kRules);
  const auto store = Open(file, false);
  const std::string wrong = "refusal The statement does not take that number of values.";
  EXPECT_EQ(FailureOf([&] { store->Prepare(u"select @a, :b"); }), wrong);
  const auto query = store->Prepare(u"select :a, :b, :a");
  EXPECT_EQ(FailureOf([&] { query->Read({}); }), wrong);
  EXPECT_EQ(FailureOf([&] { query->Read({u"1", u"2", u"1"}); }), wrong);
  EXPECT_EQ(Shown(*query->Read({u"1", u"2"})), "text 1,text 2,text 1");
  EXPECT_EQ(FailureOf([&] { store->Prepare(u"delete from rules")->Read({}); }),
            "refusal The statement is no query: it gives no rows.");
  EXPECT_EQ(Selected(*store, u"select count(*) from rules"), "int 4");
}

TEST(SqliteStore, AnUpdateThatBreaksARuleOfTheTableIsRefusedAndTheNextOneRuns) {
  const TempDatabase file(kRules);
  const auto store = Open(file, false);
  const auto insert = store->Prepare(u"insert into rules (id) values (:id)");
  EXPECT_EQ(FailureOf([&] { insert->Run({std::int64_t{1}}); }),
            "refusal UNIQUE constraint failed: rules.id");
  EXPECT_EQ(insert->Run({std::int64_t{5}}), 1);
}

TEST(SqliteStore, AFileThatIsNotThereIsAnOutageAndNotMade) {
  const TempDatabase file("");
  const std::string missing = file.Path() + "-missing";
  for (const bool readOnly : {true, false}) {
    EXPECT_EQ(FailureToOpen("sqlite:" + missing, readOnly),
              "outage unable to open database file: " + missing);
    EXPECT_FALSE(std::filesystem::exists(missing));
  }
  EXPECT_TRUE(FailureToOpen("sqlite:").starts_with("outage "));
  EXPECT_TRUE(FailureToOpen("sqlite:/tmp").starts_with("outage "));
  EXPECT_EQ(FailureToOpen("sqlite::memory:"), "outage unable to open database file: :memory:");
}

TEST(SqliteStore, WhatIsNoDatabaseIsAnOutage) {
  const std::string readme = ORKRULE_SOURCE_DIR "/README.md";
  EXPECT_EQ(FailureToOpen("sqlite:" + readme), "outage file is not a database: " + readme);
  const TempDatabase file("");
  const std::string pipe = file.Path() + "-pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(FailureToOpen("sqlite:" + pipe), "outage unable to open database file: " + pipe);
  std::filesystem::remove(pipe);
}

TEST(OpenStore, AKindOfTheCallersOwnIsNoStore) {
  const ScopedLanguage language(u"en");
  CDBAccessorCreator* const kinds = CDBAccessorCreator::instance();
  kinds->RegisterKind(u"memory:", [](const AccessorRequest&) { return nullptr; });
  EXPECT_EQ(FailureToOpen("memory:x"), "outage No kind of database serves this server text.");
  class OwnAccessor final : public CDBAccessor {
    std::unique_ptr<CDBRecordSet> QueryByStatement(const std::u16string&, const MxParams&,
                                                   const std::u16string&, std::int32_t,
                                                   std::int32_t) override {
      ADD_FAILURE() << "it was asked";
      return nullptr;
    }
  };
  kinds->RegisterKind(u"memory:",
                      [](const AccessorRequest&) { return std::make_unique<OwnAccessor>(); });
  EXPECT_EQ(FailureToOpen("memory:x"),
            "refusal A kind of database that the program brought itself keeps no rules.");
  kinds->RegisterKind(u"memory:", nullptr);
}

TEST(OpenStore, AProxyIsRefusedAsWhereMetadataIsRead) {
  const ScopedLanguage language(u"en");
  const TempDatabase file(kRules);
  ORKBASE::ConnectionSettings settings;
  settings.server = file.Server();
  settings.proxy = u"3||~~||host||~~||80||~~||||~~||";
  EXPECT_EQ(FailureOf([&] { OpenStore(settings); }),
            "outage A proxy was given, but connections of this kind cannot use one.");
  settings.proxy = u"0||~~||||~~||0||~~||||~~||";
  EXPECT_EQ(FailureOf([&] { OpenStore(settings); }), "nothing");
}

TEST(OpenStore, KindsAreFoundInAnyCaseAndTextsEndAtTheirFirstZero) {
  const TempDatabase file(kRules);
  EXPECT_EQ(FailureToOpen("SQLite:" + file.Path()), "nothing");
  EXPECT_EQ(FailureToOpen("sqlite:" + file.Path() + std::string("\0x", 2)), "nothing");
}

TEST(StoreValue, IsTheSameToTheBitAndInItsKind) {
  for (const StoreValue& one : kValues) {
    for (const StoreValue& other : kValues) {
      EXPECT_EQ(IsSame(one, other), &one == &other)
          << Shown(one).substr(0, 40) << " and " << Shown(other).substr(0, 40);
    }
  }
  const double nothing = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(IsSame(nothing, nothing));
  EXPECT_FALSE(IsSame(0.0, -0.0));
  EXPECT_FALSE(IsSame(std::int64_t{1}, 1.0));
  EXPECT_FALSE(IsSame(u"1", std::int64_t{1}));
  EXPECT_FALSE(IsSame(std::monostate(), u""));
}
