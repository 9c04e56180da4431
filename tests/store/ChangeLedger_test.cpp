// Runs that are interrupted and go on: every rule is changed exactly once.
#include "StoreChanges.h"

#include "FaultyStore.h"
#include "ScopedLanguage.h"
#include "StoreValues.h"
#include "SwappedRules.h"
#include "store/ChangeRun.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

using namespace ORKDB;

namespace {

ORKBASE::ConnectionSettings Writing(const ChangeSettings& settings) {
  ORKBASE::ConnectionSettings store = settings.store;
  store.readOnly = false;
  return store;
}

/// A whole run, from reading the rules on.
std::string RunOnce(const ChangeSettings& settings) {
  StoreChanges changes(settings);
  AddSwaps(changes, settings);
  return Shown(changes.Apply(Always));
}

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// In the table of the store, or in a file beside it.
class ChangeLedgers : public testing::TestWithParam<const char*> {
 protected:
  explicit ChangeLedgers(int count = 5) : file_(RulesTable(count)), ledger_(file_) {}

  ChangeSettings Settings(std::int64_t commitEvery) const {
    const bool isTable = std::string(GetParam()) == "table";
    return SwapSettings(file_.Server(), commitEvery,
                        isTable ? std::u16string(kLedgerTable) : ledger_.Text());
  }

  const ScopedLanguage english_{u"en"};
  const TempDatabase file_;
  const LedgerPath ledger_;
};

INSTANTIATE_TEST_SUITE_P(, ChangeLedgers, testing::Values("table", "file"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_P(ChangeLedgers, FinishedRunIsNotDoneAgainUnlessBegunAnew) {
  for (const std::int64_t commitEvery : {0, 2}) {
    const ChangeSettings settings = Settings(commitEvery);
    const std::string before = RulesIn(settings);
    EXPECT_EQ(RunOnce(settings), "5 written");
    const std::string after = RulesIn(settings);
    EXPECT_NE(after, before);
    {
      StoreChanges changes(settings);
      EXPECT_TRUE(changes.IsFinished());
      EXPECT_FALSE(changes.IsContinued());
      AddSwaps(changes, settings);
      EXPECT_EQ(Shown(changes.Apply(Always)), "0 written, 5 before");
    }
    EXPECT_EQ(RulesIn(settings), after);
    StoreChanges changes(settings);
    changes.BeginAnew();
    EXPECT_FALSE(changes.IsFinished());
    EXPECT_FALSE(changes.IsContinued());
    AddSwaps(changes, settings);
    EXPECT_EQ(Shown(changes.Apply(Always)), "5 written");
    EXPECT_EQ(RulesIn(settings), before);
    changes.BeginAnew();
  }
}

TEST_P(ChangeLedgers, AnotherTextIsAnotherRun) {
  ChangeSettings settings = Settings(2);
  EXPECT_EQ(RunOnce(settings), "5 written");
  settings.run = u"another";
  EXPECT_EQ(RunOnce(settings), "5 written");
  EXPECT_EQ(RunOnce(settings), "0 written, 5 before");
  settings.run = u"swap A:B";
  EXPECT_EQ(RunOnce(settings), "0 written, 5 before");
}

TEST_P(ChangeLedgers, InterruptedRunGoesOn) {
  const ChangeSettings settings = Settings(2);
  {
    StoreChanges changes(settings);
    EXPECT_FALSE(changes.IsContinued());
    AddSwaps(changes, settings);
    const auto goesOn = [](const ChangeReport& soFar) { return soFar.written < 3; };
    EXPECT_EQ(Shown(changes.Apply(goesOn)), "3 written; not complete");
  }
  StoreChanges changes(settings);
  EXPECT_FALSE(changes.IsFinished());
  EXPECT_TRUE(changes.IsContinued());
  AddSwaps(changes, settings);
  EXPECT_EQ(Shown(changes.Apply(Always)), "2 written, 3 before");
  EXPECT_EQ(RulesIn(settings), SwappedOnce(5));
}

TEST_P(ChangeLedgers, InterruptedRunMayGoOnWithAnotherSizeOfBatches) {
  for (const std::int64_t commitEvery : {0, 1, 3}) {
    file_.Run("drop table rules;" + RulesTable(5));
    {
      StoreChanges changes(Settings(2));
      changes.BeginAnew();
      AddSwaps(changes, Settings(2));
      changes.Apply([](const ChangeReport& soFar) { return soFar.written < 3; });
    }
    EXPECT_EQ(RunOnce(Settings(commitEvery)), "2 written, 3 before");
    EXPECT_EQ(RulesIn(Settings(0)), SwappedOnce(5));
    EXPECT_EQ(RunOnce(Settings(commitEvery)), "0 written, 5 before");
  }
}

TEST_P(ChangeLedgers, RulesThatWereLeftAreTakenUpByTheNextRun) {
  for (const std::int64_t commitEvery : {0, 2}) {
    const ChangeSettings settings = Settings(commitEvery);
    file_.Run("delete from rules");
    file_.Run("insert into rules values (1,'A.x1',''),(2,'B.x2',''),(3,'A.x3',''),(4,'B.x4','')");
    {
      StoreChanges changes(settings);
      changes.BeginAnew();
      AddSwaps(changes, settings);
      file_.Run("update rules set expression = 'A.y2' where id = 2");
      EXPECT_EQ(Shown(changes.Apply(Always)), "3 written; left 2 changed");
    }
    file_.Run("insert into rules values (5, 'B.new', '')");  // has the new names already
    {
      StoreChanges changes(settings);
      EXPECT_FALSE(changes.IsFinished());
      EXPECT_TRUE(changes.IsContinued());
      AddSwaps(changes, settings);
      EXPECT_EQ(Shown(changes.Apply(Always)), "1 written, 4 before");
    }
    EXPECT_EQ(RulesIn(settings), "1 B.x1;2 B.y2;3 B.x3;4 A.x4;5 B.new");
    EXPECT_TRUE(StoreChanges(settings).IsFinished());
  }
}

TEST_P(ChangeLedgers, NothingIsRememberedOfARunWithoutChanges) {
  const ChangeSettings settings = Settings(2);
  {
    StoreChanges changes(settings);
    EXPECT_EQ(Shown(changes.Apply(Always)), "0 written");
  }
  EXPECT_EQ(RunOnce(settings), "5 written");
}

TEST_P(ChangeLedgers, KeepsIdsOfEveryKindApart) {
  file_.Run(
      "drop table rules; create table rules (id, expression, note);"
      "insert into rules values (1, 'A', ''), ('1', 'A', ''), ('k', 'A', ''), ('K', 'A', ''),"
      "(x'31', 'A', ''), ('客户', 'A', ''), ('', 'A', ''), (1.5, 'A', '')");
  file_.Run(
      "insert into rules select substr(hex(zeroblob(400)), id) || 'x', 'A', '' from rules"
      " where id in (1, 1.5)");
  const ChangeSettings settings = Settings(3);
  StoreChanges changes(settings);
  AddSwaps(changes, settings);
  const auto goesOn = [](const ChangeReport& soFar) { return soFar.written < 5; };
  EXPECT_EQ(Shown(changes.Apply(goesOn)), "5 written; not complete");
  EXPECT_EQ(Shown(changes.Apply(Always)), "10 written");
  const auto store = OpenStore(settings.store);
  EXPECT_EQ(Selected(*store, u"select count(*), min(expression) from rules"), "int 10,text B");
}

// A failure of the k-th commit, before or behind it: whether it took place is not known to the run.
TEST_P(ChangeLedgers, FindsOutWhatBecameOfACommitThatFailed) {
  for (const bool isBehind : {false, true}) {
    for (const bool isSameObject : {false, true}) {
      int faultyCommit = 1;
      for (bool failed = true; failed; ++faultyCommit) {
        SCOPED_TRACE((isBehind ? "behind " : "before ") + std::to_string(faultyCommit));
        file_.Run("drop table rules; drop table if exists orkrule_ledger;" + RulesTable(5));
        unlink(ledger_.path.c_str());
        const ChangeSettings settings = Settings(2);
        Faults faults;
        int commits = 0;
        const auto fail = [&](const std::string& call) {
          if (call == "commit" && ++commits == faultyCommit) {
            throw StoreFailure(-1, u"connection lost", true);
          }
        };
        (isBehind ? faults.after : faults.before) = fail;
        {
          ChangeRun run(std::make_unique<FaultyStore>(OpenStore(Writing(settings)), faults),
                        settings);
          AddSwaps(run, settings);
          failed = FailureOf([&] { run.Apply(Always); }) == "outage connection lost";
          if (failed && isSameObject) run.Apply(Always);
        }
        RunOnce(settings);
        EXPECT_EQ(RulesIn(settings), SwappedOnce(5));
      }
      EXPECT_GE(faultyCommit, 4);
    }
  }
}

/// In a process of its own: a run that ends at its n-th call, as if killed. False if it came
/// through.
bool DiesAt(const ChangeSettings& settings, int calls) {
  const pid_t process = fork();
  if (process == 0) {
    Faults faults;
    const auto count = [&](const std::string&) {
      if (--calls < 0) _exit(9);
    };
    faults.before = count;
    faults.after = count;
    try {
      ChangeRun run(std::make_unique<FaultyStore>(OpenStore(Writing(settings)), faults), settings);
      AddSwaps(run, settings);
      run.Apply(Always);
    } catch (...) {
      _exit(1);
    }
    _exit(0);
  }
  int status = -1;
  waitpid(process, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 1);
  return WEXITSTATUS(status) != 0;
}

TEST_P(ChangeLedgers, ChangesEveryRuleOnceWhereverARunDies) {
  for (const std::int64_t commitEvery : {0, 2}) {
    bool died = true;
    int calls = 0;
    for (; died; ++calls) {
      file_.Run("drop table rules; drop table if exists orkrule_ledger;" + RulesTable(4));
      unlink(ledger_.path.c_str());
      const ChangeSettings settings = Settings(commitEvery);
      died = DiesAt(settings, calls);
      DiesAt(settings, calls / 2);
      RunOnce(settings);
      EXPECT_EQ(RulesIn(settings), SwappedOnce(4)) << "died at " << calls;
      EXPECT_TRUE(StoreChanges(settings).IsFinished());
    }
    EXPECT_GT(calls, 20);
  }
}

// Two runs at once: one of them is told.

TEST(TableLedger, TellsOfAnotherRun) {
  const ScopedLanguage english(u"en");
  constexpr const char* kInUse =
      "refusal Another run works with the ledger orkrule_ledger, or did so meanwhile.";
  const TempDatabase file(RulesTable(6));
  const ChangeSettings settings = SwapSettings(file.Server(), 2, std::u16string(kLedgerTable));
  const auto two = [](const ChangeReport& soFar) { return soFar.written < 2; };
  StoreChanges one(settings);
  StoreChanges other(settings);
  AddSwaps(one, settings);
  AddSwaps(other, settings);
  EXPECT_EQ(Shown(one.Apply(two)), "2 written; not complete");
  EXPECT_EQ(FailureOf([&] { other.Apply(Always); }), kInUse);
  EXPECT_EQ(Shown(one.Apply(Always)), "6 written");
  EXPECT_EQ(FailureOf([&] { other.Apply(Always); }), kInUse);
  EXPECT_EQ(RulesIn(settings), SwappedOnce(6));
}

TEST(TableLedger, TellsOfARunThatBeginsBetweenTwoBatches) {
  const ScopedLanguage english(u"en");
  for (const int batch : {1, 2, 3}) {
    const TempDatabase file(RulesTable(6));
    const ChangeSettings settings = SwapSettings(file.Server(), 2, std::u16string(kLedgerTable));
    RunOnce(SwapSettings(file.Server(), 0, std::u16string(kLedgerTable)));  // makes the table
    file.Run("delete from orkrule_ledger");
    Faults faults;
    ChangeRun run(std::make_unique<FaultyStore>(OpenStore(Writing(settings)), faults), settings);
    AddSwaps(run, settings);
    int begins = 0;
    faults.before = [&](const std::string& call) {
      if (call == "begin" && ++begins == batch) RunOnce(settings);
    };
    EXPECT_EQ(FailureOf([&] { run.Apply(Always); }),
              "refusal Another run works with the ledger orkrule_ledger, or did so meanwhile.");
    EXPECT_EQ(run.Report().written, 2 * (batch - 1));
    // Swapped once by the run that made the table, and once by the two together.
    EXPECT_EQ(RulesIn(settings), "1 A.x1;2 B.x2;3 A.x3;4 B.x4;5 A.x5;6 B.x6");
  }
}

TEST(FileLedger, KeepsOthersOut) {
  const ScopedLanguage english(u"en");
  const TempDatabase file(RulesTable(1));
  const LedgerPath ledger(file);
  const ChangeSettings settings = SwapSettings(file.Server(), 2, ledger.Text());
  const StoreChanges one(settings);
  EXPECT_EQ(FailureOf([&] { const StoreChanges other(settings); }),
            "refusal Another run works with the ledger " + ledger.path + ", or did so meanwhile.");
}

// A batch of three rules (1 A.x1, 2 B.x2, 3 A.x3) whose commit was not seen to end, and what others
// do before the next run.
struct OpenBatch {
  bool isCommitted;
  const char* sql;
  const char* report;  ///< of the next run
  const char* rules;
};
// clang-format off
const OpenBatch kOpenBatches[] = {
    {true,  "select 1",                                       "0 written, 3 before",             "1 B.x1;2 A.x2;3 B.x3"},
    {false, "select 1",                                       "3 written",                       "1 B.x1;2 A.x2;3 B.x3"},
    {true,  "update rules set expression = 'B.z' where id = 1", "0 written, 3 before",           "1 B.z;2 A.x2;3 B.x3"},
    {false, "update rules set expression = 'A.z' where id = 1", "3 written",                     "1 B.z;2 A.x2;3 B.x3"},
    // One row still is as the batch left it.
    {true,  "update rules set expression = 'B.z' where id < 3", "0 written, 3 before",           "1 B.z;2 B.z;3 B.x3"},
    {true,  "delete from rules where id < 3",                 "0 written, 1 before",             "3 B.x3"},
    {true,  "update rules set expression = 'A.x1' where id = 1", "0 written, 3 before",          "1 A.x1;2 A.x2;3 B.x3"},
    {true,  "update rules set note = 'z'",                    "0 written, 3 before",             "1 B.x1;2 A.x2;3 B.x3"},
    {false, "update rules set note = 'z'",                    "3 written",                       "1 B.x1;2 A.x2;3 B.x3"},
    // None is, nor as before it.
    {false, "update rules set expression = 'A.z'",            "0 written; left 1 changed, 2 changed, 3 changed", "1 A.z;2 A.z;3 A.z"},
    {true,  "update rules set expression = 'B.z'",            "0 written; left 1 changed, 2 changed, 3 changed", "1 B.z;2 B.z;3 B.z"},
};
// clang-format on

TEST(FileLedger, AsksTheRowsWhatBecameOfABatch) {
  for (const OpenBatch& row : kOpenBatches) {
    SCOPED_TRACE(std::string(row.isCommitted ? "committed, " : "not committed, ") + row.sql);
    const TempDatabase file(RulesTable(3));
    const LedgerPath ledger(file);
    const ChangeSettings settings = SwapSettings(file.Server(), 0, ledger.Text());
    Faults faults;
    const auto fail = [](const std::string& call) {
      if (call == "commit") throw StoreFailure(-1, u"connection lost", true);
    };
    (row.isCommitted ? faults.after : faults.before) = fail;
    {
      ChangeRun run(std::make_unique<FaultyStore>(OpenStore(Writing(settings)), faults), settings);
      AddSwaps(run, settings);
      EXPECT_EQ(FailureOf([&] { run.Apply(Always); }), "outage connection lost");
    }
    file.Run(row.sql);
    {
      StoreChanges changes(settings);
      EXPECT_TRUE(changes.IsContinued());
      AddSwaps(changes, settings);
      EXPECT_EQ(Shown(changes.Apply(Always)), row.report);
    }
    EXPECT_EQ(RulesIn(settings), row.rules);
    RunOnce(settings);  // and nothing more is done
    EXPECT_EQ(RulesIn(settings), row.rules);
  }
}

// Rows that look the same before and behind their update tell nothing; doing them again does no
// harm.
TEST(FileLedger, DoesAgainWhatLooksTheSame) {
  const TempDatabase file(RulesTable(2));
  const LedgerPath ledger(file);
  ChangeSettings settings = SwapSettings(file.Server(), 0, ledger.Text());
  settings.update = u"update rules set note = :sign where id = :id";
  Faults faults;
  faults.before = [](const std::string& call) {
    if (call == "commit") throw StoreFailure(-1, u"connection lost", true);
  };
  {
    ChangeRun run(std::make_unique<FaultyStore>(OpenStore(Writing(settings)), faults), settings);
    AddSwaps(run, settings);
    EXPECT_EQ(FailureOf([&] { run.Apply(Always); }), "outage connection lost");
  }
  EXPECT_EQ(RunOnce(settings), "2 written");
  const auto store = OpenStore(settings.store);
  EXPECT_EQ(Selected(*store, u"select note from rules"), "text B.x1;text A.x2");
}

/// A ledger of which three of five rules are done.
struct Interrupted {
  Interrupted() : file(RulesTable(5)), ledger(file) {
    StoreChanges changes(Settings());
    AddSwaps(changes, Settings());
    changes.Apply([](const ChangeReport& soFar) { return soFar.written < 3; });
  }
  ChangeSettings Settings() const { return SwapSettings(file.Server(), 2, ledger.Text()); }
  void Append(const std::string& text) const {
    std::ofstream(ledger.path, std::ios::app | std::ios::binary) << text;
  }

  const TempDatabase file;
  const LedgerPath ledger;
};

TEST(FileLedger, ToleratesATornEnd) {
  const std::string kEnds[] = {
      "",
      "{",
      "{\"run\":\"00",
      "{\"run\":\"0000000000000000\",\"id\":5,\"was\":\"0000000000000000\",\"is\":\"0000000000",
      "{\"run\":\"0000000000000000\",\"id\":5,\"was\":\"0000000000000000\",\"is\":\"00000000\"}\n",
      std::string(5000, '\0'),
      std::string(100'000, 'x'),
      "x\n\n\ny\n",
  };
  for (const std::string& end : kEnds) {
    const Interrupted run;
    const std::string whole = Content(run.ledger.path);
    run.Append(end);
    EXPECT_EQ(RunOnce(run.Settings()), "2 written, 3 before") << end.substr(0, 100);
    EXPECT_EQ(RulesIn(run.Settings()), SwappedOnce(5));
    EXPECT_TRUE(Content(run.ledger.path).starts_with(whole));
    EXPECT_EQ(RunOnce(run.Settings()), "0 written, 5 before");
  }
}

TEST(FileLedger, LeavesAFileAloneThatIsNoLedger) {
  const ScopedLanguage english(u"en");
  const TempDatabase file(RulesTable(1));
  const LedgerPath ledger(file);
  const struct {
    std::string content;
    bool isTaken;
  } kFiles[] = {
      {"", true},
      {"{\"run\"", true},
      {"{\"ru\n", false},
      {"hello", false},
      {"hello\n", false},
      {"{\"expression\":\"T.a > 1\"}\n", false},
      {std::string("SQLite format 3\0\n", 17), false},
      {std::string(100'000, '\0'), false},
  };
  for (const auto& row : kFiles) {
    std::ofstream(ledger.path, std::ios::binary | std::ios::trunc) << row.content;
    const std::string failure = FailureOf(
        [&] { const StoreChanges changes(SwapSettings(file.Server(), 2, ledger.Text())); });
    EXPECT_EQ(failure, row.isTaken ? "nothing"
                                   : "refusal The file " + ledger.path +
                                         " is no ledger, or is damaged: line 1.");
    if (!row.isTaken) EXPECT_EQ(Content(ledger.path), row.content);
  }
}

TEST(FileLedger, NamesTheLineThatIsDamaged) {
  const ScopedLanguage english(u"en");
  const Interrupted run;
  std::string content = Content(run.ledger.path);
  content[content.find("\"id\":2")] = '\0';
  std::ofstream(run.ledger.path, std::ios::binary | std::ios::trunc) << content;
  EXPECT_EQ(FailureOf([&] { const StoreChanges changes(run.Settings()); }),
            "refusal The file " + run.ledger.path + " is no ledger, or is damaged: line 2.");
  EXPECT_EQ(Content(run.ledger.path), content);
}

TEST(FileLedger, TellsThatItsFileCannotBeUsed) {
  const ScopedLanguage english(u"en");
  const TempDatabase file(RulesTable(1));
  for (const char* path : {"/no/such/folder/ledger", "/tmp", "/dev/null"}) {
    const std::string failure =
        FailureOf([&] { const StoreChanges changes(SwapSettings(file.Server(), 2, U16(path))); });
    EXPECT_TRUE(
        failure.starts_with("refusal The ledger " + std::string(path) + " cannot be used: "))
        << failure;
  }
}

}  // namespace
