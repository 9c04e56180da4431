// Runs that are killed at moments of chance, again and again, until one comes through: every rule
// is changed exactly once. Two names are swapped, so that a change that was made twice would show.
#include "StoreChanges.h"

#include "PostgresSuite.h"
#include "StoreValues.h"
#include "SwappedRules.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <random>

using namespace ORKDB;

namespace {

constexpr int kRules = 400;
constexpr int kMostRuns = 100;

enum class End { kKilled, kComplete, kFailed };

void KillThisProcess(int) {
  kill(getpid(), SIGKILL);
}

/// In a child: the run, which is killed a moment behind so many changes.
void RunToBeKilled(const ChangeSettings& settings, int changesToKill, int microseconds) {
  signal(SIGALRM, KillThisProcess);
  int looked = 0;
  const auto count = [&](const ChangeReport&) {
    if (++looked != changesToKill) return true;
    if (microseconds == 0) KillThisProcess(0);
    const itimerval moment = {{0, 0}, {0, microseconds}};
    setitimer(ITIMER_REAL, &moment, nullptr);
    return true;
  };
  try {
    StoreChanges changes(settings);
    AddSwaps(changes, settings);
    _exit(changes.Apply(count).isComplete ? 0 : 1);
  } catch (const StoreFailure& failure) {
    fprintf(stderr, "%s\n", failure.what());
  }
  _exit(1);
}

End RunAndKill(const ChangeSettings& settings, int changesToKill, int microseconds) {
  const pid_t process = fork();
  if (process == 0) RunToBeKilled(settings, changesToKill, microseconds);
  int status = 0;
  waitpid(process, &status, 0);
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) return End::kKilled;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? End::kComplete : End::kFailed;
}

/// How many were killed until one came through.
int KillUntilOneIsThrough(const ChangeSettings& settings) {
  std::mt19937 chance(20'240'229);
  int done = 0;  // a run looks at what was done before, and so has to be killed ever later
  for (int killed = 0; killed < kMostRuns; ++killed) {
    done += static_cast<int>(chance() % 60);
    const End end = RunAndKill(settings, done + 1, static_cast<int>(chance() % 3000));
    EXPECT_TRUE(end != End::kFailed);
    if (end != End::kKilled) return killed;
  }
  ADD_FAILURE() << "none came through";
  return kMostRuns;
}

void ExpectSwappedOnce(const ChangeSettings& settings) {
  EXPECT_GE(KillUntilOneIsThrough(settings), 3);
  EXPECT_TRUE(RulesIn(settings) == SwappedOnce(kRules));  // too long to be shown
  EXPECT_TRUE(StoreChanges(settings).IsFinished());
}

TEST(KilledChanges, AreMadeOnceWithTheLedgerInTheStore) {
  const TempDatabase file(RulesTable(kRules) + "create index rules_id on rules (id);");
  ExpectSwappedOnce(SwapSettings(file.Server(), 7, std::u16string(kLedgerTable)));
}

TEST(KilledChanges, AreMadeOnceWithTheLedgerInAFile) {
  const TempDatabase file(RulesTable(kRules) + "create index rules_id on rules (id);");
  const LedgerPath ledger(file.Path() + ".ledger");
  ExpectSwappedOnce(SwapSettings(file.Server(), 7, ledger.Text()));
}

TEST(KilledChanges, AreTakenBackWholeInOneTransaction) {
  const TempDatabase file(RulesTable(kRules) + "create index rules_id on rules (id);");
  const ChangeSettings settings = SwapSettings(file.Server(), 0, std::u16string(kLedgerTable));
  const std::string before = RulesIn(settings);
  for (const int changes : {1, 100, 350}) {
    EXPECT_TRUE(RunAndKill(settings, changes, 0) == End::kKilled);
    EXPECT_TRUE(RulesIn(settings) == before);
    EXPECT_FALSE(StoreChanges(settings).IsContinued());
  }
  EXPECT_TRUE(RunAndKill(settings, 0, 0) == End::kComplete);
  EXPECT_TRUE(RulesIn(settings) == SwappedOnce(kRules));
}

class KilledChangesInPostgres : public PostgresSuite {
 protected:
  static void SetUpTestSuite() { StartServer("select 1"); }

  static ChangeSettings Settings(std::int64_t commitEvery, const std::u16string& ledger) {
    const std::u16string server = U16("odbc:Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=" +
                                      std::to_string(server_->Port()) + ";Database=postgres");
    ChangeSettings settings = SwapSettings(server, commitEvery, ledger);
    settings.store.user = U16(PostgresServer::User());
    settings.store.password = U16(PostgresServer::Password());
    return settings;
  }

  static void MakeRules() {
    ASSERT_TRUE(server_->Run("drop table if exists rules;" + RulesTable(kRules) +
                             "create index rules_id on rules (id);"))
        << server_->Problem();
  }
};

TEST_F(KilledChangesInPostgres, AreMadeOnceWithTheLedgerInTheStore) {
  MakeRules();
  ExpectSwappedOnce(Settings(7, std::u16string(kLedgerTable)));
}

TEST_F(KilledChangesInPostgres, AreMadeOnceWithTheLedgerInAFile) {
  MakeRules();
  const TempDatabase beside("select 1");
  const LedgerPath ledger(beside.Path() + ".ledger");
  ExpectSwappedOnce(Settings(7, ledger.Text()));
}

}  // namespace
