// Runs that are killed at moments of chance, again and again, until one comes through: every rule
// is changed exactly once. Two names are swapped, so that a change that was made twice would show.
#include "StoreChanges.h"

#include "PostgresSuite.h"
#include "StoreValues.h"
#include "SwappedRules.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <random>
#include <thread>

using namespace ORKDB;

namespace {

constexpr int kRules = 400;
constexpr int kMostRuns = 100;

/// A number that a process and its child both see.
class SharedCounter {
 public:
  SharedCounter()
      : memory_(mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE,
                     MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    if (memory_ == MAP_FAILED) throw std::runtime_error("no shared memory");
    counter_ = new (memory_) std::atomic<int>(0);
  }
  ~SharedCounter() { munmap(memory_, sizeof(std::atomic<int>)); }
  SharedCounter(const SharedCounter&) = delete;
  SharedCounter& operator=(const SharedCounter&) = delete;

  std::atomic<int>& Count() { return *counter_; }

 private:
  void* memory_;
  std::atomic<int>* counter_;
};

enum class End { kKilled, kComplete, kFailed };

/// A run in a process of its own, which is killed a little behind so many changes.
End RunAndKill(const ChangeSettings& settings, int changesToKill, std::chrono::microseconds pause) {
  SharedCounter looked;
  const pid_t process = fork();
  if (process == 0) {
    try {
      StoreChanges changes(settings);
      AddSwaps(changes, settings);
      const auto count = [&](const ChangeReport&) { return ++looked.Count() > 0; };
      _exit(changes.Apply(count).isComplete ? 0 : 1);
    } catch (const StoreFailure& failure) {
      fprintf(stderr, "%s\n", failure.what());
    }
    _exit(1);
  }
  int status = 0;
  while (waitpid(process, &status, WNOHANG) == 0) {
    if (looked.Count() >= changesToKill) {
      std::this_thread::sleep_for(pause);
      kill(process, SIGKILL);
      waitpid(process, &status, 0);
      break;
    }
    std::this_thread::sleep_for(std::chrono::microseconds(50));
  }
  if (WIFSIGNALED(status)) return End::kKilled;
  return WEXITSTATUS(status) == 0 ? End::kComplete : End::kFailed;
}

/// How many were killed until one came through.
int KillUntilOneIsThrough(const ChangeSettings& settings) {
  std::mt19937 chance(20'240'229);
  int done = 0;  // a run looks at what was done before, and so has to be killed ever later
  for (int killed = 0; killed < kMostRuns; ++killed) {
    done += static_cast<int>(chance() % 60);
    const std::chrono::microseconds pause(chance() % 3000);
    const End end = RunAndKill(settings, done, pause);
    EXPECT_NE(end, End::kFailed);
    if (end != End::kKilled) return killed;
  }
  ADD_FAILURE() << "none came through";
  return kMostRuns;
}

void ExpectSwappedOnce(const ChangeSettings& settings) {
  EXPECT_GE(KillUntilOneIsThrough(settings), 3);
  EXPECT_EQ(RulesIn(settings), SwappedOnce(kRules));
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
    if (RunAndKill(settings, changes, std::chrono::microseconds(0)) == End::kComplete) break;
    EXPECT_EQ(RulesIn(settings), before);
    EXPECT_FALSE(StoreChanges(settings).IsContinued());
  }
  ExpectSwappedOnce(settings);
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
