// Writing changed rules back to their store: what is written, what is left alone, what is refused.
#include "StoreChanges.h"

#include "FaultyStore.h"
#include "ScopedLanguage.h"
#include "StoreValues.h"
#include "SwappedRules.h"
#include "store/ChangeRun.h"

#include <gtest/gtest.h>

using namespace ORKDB;

namespace {

// What others do between the reading of three rules (1 A.x1, 2 B.x2, 3 A.x3) and their swap.
struct Meanwhile {
  const char* sql;
  const char* report;
  const char* rules;
};
// clang-format off
const Meanwhile kMeanwhiles[] = {
    {"select 1",                                        "3 written",                      "1 B.x1;2 A.x2;3 B.x3"},
    {"update rules set note = 'new' where id = 2",      "3 written",                      "1 B.x1;2 A.x2;3 B.x3"},
    {"update rules set expression = 'C' where id = 2",  "2 written; left 2 changed",      "1 B.x1;2 C;3 B.x3"},
    {"update rules set expression = 'B.x2 ' where id = 2",
                                                        "2 written; left 2 changed",      "1 B.x1;2 B.x2 ;3 B.x3"},
    {"update rules set expression = 'b.x2' where id = 2",
                                                        "2 written; left 2 changed",      "1 B.x1;2 b.x2;3 B.x3"},
    {"update rules set expression = null where id = 3", "2 written; left 3 changed",      "1 B.x1;2 A.x2;3 NULL"},
    {"update rules set expression = 'C'",               "0 written; left 1 changed, 2 changed, 3 changed",
                                                                                          "1 C;2 C;3 C"},
    {"delete from rules where id = 1",                  "2 written; left 1 gone",         "2 A.x2;3 B.x3"},
    {"delete from rules",                               "0 written; left 1 gone, 2 gone, 3 gone", ""},
    {"insert into rules values (1, 'A.x1', 'z')",       "2 written; left 1 not unique",   "1 A.x1;1 A.x1;2 A.x2;3 B.x3"},
    {"insert into rules values (4, 'A.x4', '')",        "3 written",                      "1 B.x1;2 A.x2;3 B.x3;4 A.x4"},
};
// clang-format on

TEST(StoreChanges, LeavesAloneWhatIsNotAsItWasRead) {
  for (const Meanwhile& row : kMeanwhiles) {
    for (const std::int64_t commitEvery : {0, 1, 2, 100}) {
      SCOPED_TRACE(std::string(row.sql) + " / " + std::to_string(commitEvery));
      const TempDatabase file(RulesTable(3));
      const ChangeSettings settings = SwapSettings(file.Server(), commitEvery);
      StoreChanges changes(settings);
      AddSwaps(changes, settings);
      file.Run(row.sql);
      const ChangeReport report = changes.Apply(Always);
      EXPECT_EQ(Shown(report), row.report);
      EXPECT_EQ(report.added, 3);
      EXPECT_EQ(Shown(changes.Report()), row.report);
      EXPECT_EQ(RulesIn(settings), row.rules);
    }
  }
}

TEST(StoreChanges, GuardsAndWritesValuesOfEveryKind) {
  const TempDatabase file("create table rules (id, expression, note);");
  const StoreValue kValues[] = {std::monostate(),
                                std::int64_t{7},
                                0.1,
                                std::u16string(u"客户\U0001F600 '?' :x"),
                                std::u16string(),
                                std::u16string(100'000, u'x'),
                                StoreBytes{std::byte{0}, std::byte{255}},
                                StoreBytes()};
  ChangeSettings settings = SwapSettings(file.Server());
  settings.store.readOnly = false;
  const auto store = OpenStore(settings.store);
  const auto insert = store->Prepare(u"insert into rules values (:id, :value, null)");
  std::int64_t id = 0;
  for (const StoreValue& value : kValues) insert->Run({++id, value});
  StoreChanges changes(settings);
  id = 0;
  for (const StoreValue& value : kValues) {
    ++id;
    changes.Add({id, {value}, {kValues[(static_cast<std::size_t>(id)) % 8], id}});
  }
  EXPECT_EQ(Shown(changes.Apply(Always)), "8 written");
  const auto rows = store->Select(u"select expression from rules order by id");
  StoreRow row;
  for (std::size_t i = 1; i <= 8; ++i) {
    ASSERT_TRUE(rows->Next(row));
    EXPECT_TRUE(IsSame(row[0], kValues[i % 8])) << i;
  }
}

TEST(StoreChanges, FindsRulesByIdsOfEveryKind) {
  const TempDatabase file(
      "create table rules (id, expression, note);"
      "insert into rules values (1, 'A', ''), ('1', 'A', ''), (1.5, 'A', ''), (x'31', 'A', ''),"
      "('客户''s', 'A', ''), ('', 'A', '');");
  const ChangeSettings settings = SwapSettings(file.Server());
  StoreChanges changes(settings);
  AddSwaps(changes, settings);
  EXPECT_EQ(Shown(changes.Apply(Always)), "6 written");
}

// Statements that cannot work are refused before the first rule is read.
struct Statements {
  std::string select;
  std::string update;
  std::string guarded;
  std::string failure;  ///< its beginning
};
const std::string kSelect = "select id, expression from rules";
const std::string kUpdate = "update rules set expression = :expression where id = :id";
// clang-format off
const Statements kStatements[] = {
    {kSelect,                                kUpdate, "expression", "nothing"},
    {"select id, expression from rules order by id ; \n", kUpdate, "EXPRESSION", "nothing"},
    {"select * from rules -- all of them",   kUpdate, "note", "nothing"},
    {"select * from rules where note <> ';:x' -- ;", kUpdate, "note", "nothing"},
    {"select ID, expression as \"Text\" from rules", kUpdate, "text", "nothing"},
    {kSelect + " where id = :id",            kUpdate, "expression", "refusal The query of the rules takes no value, and :id is one."},
    {kSelect + " where note = :n",           kUpdate, "expression", "refusal The query of the rules takes no value, and :n is one."},
    {"select id, expression from nowhere",   kUpdate, "expression", "refusal no such table: nowhere"},
    {"select expression from rules",         kUpdate, "expression", "refusal The query of the rules cannot stand within another one"},
    {"select id, expression from rules)",    kUpdate, "expression", "refusal near \")\""},
    {"select id from rules",                 kUpdate, "expression", "refusal The query of the rules has no column expression."},
    {"",                                     kUpdate, "expression", "refusal The statement is empty."},
    {kSelect, "update rules set expression = :expression",              "expression", "refusal The update has no :id"},
    {kSelect, "update rules set note = ':id', expression = :expression", "expression", "refusal The update has no :id"},
    {kSelect, "update rules set nothing = :expression where id = :id",  "expression", "refusal no such column: nothing"},
    {kSelect, "update rules set expression = ? where id = :id",         "expression", "refusal A value in a statement is written as a name"},
    {kSelect, "delete rules where id = :id",                            "expression", "refusal near \"rules\""},
};
// clang-format on

TEST(StoreChanges, RefusesStatementsThatCannotWork) {
  const ScopedLanguage english(u"en");
  const TempDatabase file(RulesTable(1));
  for (const Statements& row : kStatements) {
    ChangeSettings settings = SwapSettings(file.Server());
    settings.select = U16(row.select);
    settings.update = U16(row.update);
    settings.guarded = {U16(row.guarded)};
    const std::string failure = FailureOf([&] { const StoreChanges changes(settings); });
    EXPECT_TRUE(failure.starts_with(row.failure)) << row.select << " / " << row.update << "\n"
                                                  << failure;
  }
}

TEST(StoreChanges, TellsThatAStoreIsNotToBeReached) {
  const std::string failure = FailureOf(
      [] { const StoreChanges changes(SwapSettings(u"sqlite:/no/such/folder/rules.db")); });
  EXPECT_TRUE(failure.starts_with("outage ")) << failure;
}

TEST(StoreChanges, RefusesChangesThatDoNotFitTheStatements) {
  const TempDatabase file(RulesTable(1));
  StoreChanges changes(SwapSettings(file.Server()));
  const StoreValue id = std::int64_t{1};
  EXPECT_EQ(changes.Names(), (std::vector<std::u16string>{u"expression", u"id"}));
  EXPECT_NE(FailureOf([&] { changes.Add({id, {}, {id, id}}); }), "nothing");
  EXPECT_NE(FailureOf([&] { changes.Add({id, {id}, {id}}); }), "nothing");
  EXPECT_EQ(Shown(changes.Apply(Always)), "0 written");
}

TEST(StoreChanges, TakesBackTheRunningTransactionWhereTheDatabaseRefuses) {
  const ScopedLanguage english(u"en");
  const struct {
    std::int64_t commitEvery;
    const char* report;
    const char* rules;
  } kCases[] = {
      {0, "0 written; not complete", "1 A.x1;2 B.x2;3 A.x3;4 B.x4;5 A.x5"},
      {2, "2 written; not complete", "1 B.x1;2 A.x2;3 A.x3;4 B.x4;5 A.x5"},
      {3, "3 written; not complete", "1 B.x1;2 A.x2;3 B.x3;4 B.x4;5 A.x5"},
  };
  for (const auto& row : kCases) {
    const TempDatabase file(RulesTable(5) +
                            "create trigger refuse before update on rules when new.expression ="
                            " 'A.x4' begin select raise(abort, 'not this one'); end;");
    const ChangeSettings settings = SwapSettings(file.Server(), row.commitEvery);
    StoreChanges changes(settings);
    AddSwaps(changes, settings);
    EXPECT_EQ(FailureOf([&] { changes.Apply(Always); }),
              "refusal The rule 4 cannot be written: not this one");
    EXPECT_EQ(Shown(changes.Report()), row.report);
    EXPECT_EQ(RulesIn(settings), row.rules);
    // Once the cause is gone the same object goes on.
    file.Run("drop trigger refuse");
    EXPECT_EQ(Shown(changes.Apply(Always)), "5 written");
    EXPECT_EQ(RulesIn(settings), SwappedOnce(5));
  }
}

TEST(StoreChanges, StopsWhereItsCallerWishes) {
  const struct {
    std::int64_t commitEvery;
    std::int64_t most;  ///< changes until the caller has enough
    const char* report;
    const char* rules;
  } kCases[] = {
      {0, 2, "0 written; not complete", "1 A.x1;2 B.x2;3 A.x3;4 B.x4"},
      {2, 0, "0 written; not complete", "1 A.x1;2 B.x2;3 A.x3;4 B.x4"},
      {2, 1, "1 written; not complete", "1 B.x1;2 B.x2;3 A.x3;4 B.x4"},
      {2, 2, "2 written; not complete", "1 B.x1;2 A.x2;3 A.x3;4 B.x4"},
      {9, 3, "3 written; not complete", "1 B.x1;2 A.x2;3 B.x3;4 B.x4"},
      {2, 4, "4 written", "1 B.x1;2 A.x2;3 B.x3;4 A.x4"},
      {0, 4, "4 written", "1 B.x1;2 A.x2;3 B.x3;4 A.x4"},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(std::to_string(row.commitEvery) + "/" + std::to_string(row.most));
    const TempDatabase file(RulesTable(4));
    const ChangeSettings settings = SwapSettings(file.Server(), row.commitEvery);
    StoreChanges changes(settings);
    AddSwaps(changes, settings);
    const auto goesOn = [&](const ChangeReport& soFar) { return soFar.written < row.most; };
    EXPECT_EQ(Shown(changes.Apply(goesOn)), row.report);
    EXPECT_EQ(RulesIn(settings), row.rules);
    // A later call does the rest.
    EXPECT_EQ(Shown(changes.Apply(Always)), "4 written");
    EXPECT_EQ(RulesIn(settings), SwappedOnce(4));
  }
}

TEST(StoreChanges, TakesBackAChangeThatMeetsSeveralRules) {
  for (const std::int64_t commitEvery : {0, 1, 2}) {
    const TempDatabase file(RulesTable(4));
    ChangeSettings settings = SwapSettings(file.Server(), commitEvery);
    settings.update = u"update rules set expression = :expression where id >= :id";
    StoreChanges changes(settings);
    AddSwaps(changes, settings);
    EXPECT_EQ(Shown(changes.Apply(Always)),
              "1 written; left 1 not unique, 2 not unique, 3 not unique");
    EXPECT_EQ(RulesIn(settings), "1 A.x1;2 B.x2;3 A.x3;4 A.x4");
  }
}

TEST(StoreChanges, EndsWhereTheUpdateMeetsSeveralRulesAgainAndAgain) {
  const ScopedLanguage english(u"en");
  const TempDatabase file(RulesTable(150));
  ChangeSettings settings = SwapSettings(file.Server());
  settings.update = u"update rules set expression = :expression where :id = :id";
  const std::string before = RulesIn(settings);
  StoreChanges changes(settings);
  AddSwaps(changes, settings);
  const std::string failure = FailureOf([&] { changes.Apply(Always); });
  EXPECT_TRUE(failure.starts_with("refusal The update changes several rules for one id"));
  EXPECT_EQ(RulesIn(settings), before);
}

TEST(StoreChanges, TellsOfARuleThatTheUpdateDoesNotMeet) {
  const TempDatabase file(RulesTable(3));
  ChangeSettings settings = SwapSettings(file.Server());
  settings.update = u"update rules set expression = :expression where id = :id and note <> 'n2'";
  StoreChanges changes(settings);
  AddSwaps(changes, settings);
  EXPECT_EQ(Shown(changes.Apply(Always)), "2 written; left 2 gone");
  EXPECT_EQ(RulesIn(settings), "1 B.x1;2 B.x2;3 B.x3");
}

TEST(StoreChanges, KeepsTheFirstThousandThatWereLeft) {
  const TempDatabase file(RulesTable(1200));
  const ChangeSettings settings = SwapSettings(file.Server(), 500);
  StoreChanges changes(settings);
  AddSwaps(changes, settings);
  file.Run("delete from rules");
  const ChangeReport report = changes.Apply(Always);
  EXPECT_EQ(report.leftCount, 1200);
  EXPECT_EQ(report.left.size(), 1000U);
  EXPECT_TRUE(report.isComplete);
}

/// A run over a connection with faults.
struct FaultyRun {
  FaultyRun(const ChangeSettings& settings, const Faults& faults)
      : run(std::make_unique<FaultyStore>(OpenStore(Writing(settings)), faults), settings) {
    AddSwaps(run, settings);
  }

  static ORKBASE::ConnectionSettings Writing(const ChangeSettings& settings) {
    ORKBASE::ConnectionSettings store = settings.store;
    store.readOnly = false;
    return store;
  }

  ChangeRun run;
};

TEST(StoreChanges, BelievesADriverThatDoesNotTellWhatItChanged) {
  const TempDatabase file(RulesTable(3));
  const ChangeSettings settings = SwapSettings(file.Server());
  Faults faults;
  faults.count = [](std::int64_t) { return std::int64_t{-1}; };
  FaultyRun faulty(settings, faults);
  EXPECT_EQ(Shown(faulty.run.Apply(Always)), "3 written");
  EXPECT_EQ(RulesIn(settings), SwappedOnce(3));
}

// What a database says when another transaction stood in the way.
struct Interference {
  std::int32_t number;
  const char16_t* text;
  bool isOutage;
  bool isTriedAgain;
};
// clang-format off
const Interference kInterferences[] = {
    {1,     u"[40001] could not serialize access",         false, true},
    {1,     u"[40P01] deadlock detected",                  false, true},
    {8177,  u"[HY000] ORA-08177: can't serialize access",  false, true},
    {5,     u"database is locked",                         true,  true},
    {6,     u"database table is locked",                   true,  true},
    {19,    u"CHECK constraint failed",                    false, false},
    {1,     u"[23505] duplicate key [40001]",              false, false},
    {1,     u"[08S01] the server closed the connection",   true,  false},
};
// clang-format on

TEST(StoreChanges, TriesABatchAgainThatAnotherTransactionStoodInTheWayOf) {
  for (const Interference& row : kInterferences) {
    for (const char* const call : {"begin", "run", "commit"}) {
      SCOPED_TRACE(U8(row.text) + " at " + call);
      const TempDatabase file(RulesTable(5));
      const ChangeSettings settings = SwapSettings(file.Server(), 2);
      Faults faults;
      FaultyRun faulty(settings, faults);
      int calls = 0;
      faults.before = [&](const std::string& name) {
        if (name == call && ++calls >= 2 && calls <= 3) {
          throw StoreFailure(row.number, row.text, row.isOutage);
        }
      };
      const std::string failure = FailureOf([&] { faulty.run.Apply(Always); });
      EXPECT_EQ(failure == "nothing", row.isTriedAgain) << failure;
      EXPECT_EQ(RulesIn(settings) == SwappedOnce(5), row.isTriedAgain);
    }
  }
}

TEST(StoreChanges, DoesNotTryForEver) {
  const TempDatabase file(RulesTable(3));
  const ChangeSettings settings = SwapSettings(file.Server());
  const std::string before = RulesIn(settings);
  Faults faults;
  FaultyRun faulty(settings, faults);
  int commits = 0;
  faults.before = [&](const std::string& call) {
    if (call != "commit") return;
    ++commits;
    throw StoreFailure(1, u"[40001] could not serialize access", false);
  };
  EXPECT_EQ(FailureOf([&] { faulty.run.Apply(Always); }),
            "refusal [40001] could not serialize access");
  EXPECT_EQ(commits, 10);
  EXPECT_EQ(Shown(faulty.run.Report()), "0 written; not complete");
  EXPECT_EQ(RulesIn(settings), before);
}

}  // namespace
