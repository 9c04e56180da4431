// The line that tells how far a run is.
#include "Progress.h"

#include <gtest/gtest.h>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <thread>

namespace ORKTOOL {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

TEST(Progress, TellsCountRateAndTimeLeft) {
  struct Row {
    std::int64_t done;
    std::optional<std::int64_t> total;
    std::optional<double> aSecond;
    std::string text;
  };
  const std::optional<std::int64_t> unknown;
  const Row rows[] = {
      // clang-format off
      {0,      unknown, {},      "0 rules"},
      {999,    unknown, {},      "999 rules"},
      {1000,   unknown, 7.4,     "1,000 rules, 7 a second"},
      {12345,  100000,  23000.0, "12,345 of 100,000 rules (12 %), 23,000 a second, 4 s left"},
      {12345,  100000,  23456.0, "12,345 of 100,000 rules (12 %), 23,000 a second, 4 s left"},
      {29,     100,     {},      "29 of 100 rules (29 %)"},
      {99999,  100000,  10.0,    "99,999 of 100,000 rules (99 %), 10 a second, 1 s left"},
      {100000, 100000,  10.0,    "100,000 of 100,000 rules (100 %), 10 a second, 0 s left"},
      {100007, 100000,  10.0,    "100,007 of 100,000 rules (100 %), 10 a second, 0 s left"},
      {0,      0,       10.0,    "0 of 0 rules, 10 a second, 0 s left"},
      {0,      1000,    0.0,     "0 of 1,000 rules (0 %), 0 a second"},
      {0,      590,     10.0,    "0 of 590 rules (0 %), 10 a second, 59 s left"},
      {0,      600,     10.0,    "0 of 600 rules (0 %), 10 a second, 1 min left"},
      {0,      1500,    10.0,    "0 of 1,500 rules (0 %), 10 a second, 3 min left"},
      {0,      39000,   10.0,    "0 of 39,000 rules (0 %), 10 a second, 1 h 5 min left"},
      {0,      kMost,   1.0,     "0 of 9,223,372,036,854,775,807 rules (0 %), 1 a second"},
      {kMost,  kMost,   1e300,   "9,223,372,036,854,775,807 of 9,223,372,036,854,775,807 rules (100 %)"},
      // clang-format on
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ProgressText("rules", {row.done, row.total, row.aSecond}, 79), row.text);
  }
}

TEST(Progress, LeavesOutWhatDoesNotFit) {
  struct Row {
    std::size_t columns;
    std::string text;
  };
  const Row rows[] = {
      {57, "12,345 of 100,000 rules (12 %), 23,000 a second, 4 s left"},
      {56, "12,345 of 100,000 rules (12 %), 23,000 a second"},
      {46, "12,345 of 100,000 rules (12 %)"},
      {10, "12,345 of "},
      {0, ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ProgressText("rules", {12345, 100000, 23000.0}, row.columns), row.text);
  }
}

/// What a terminal gets to see of a run of 500 rules that takes half a second. Nothing where the
/// machine has no pseudo terminals.
std::optional<std::string> SeenAtTerminal(const char* name, bool isOnTheTerminal) {
  winsize size{};
  size.ws_col = 80;
  int terminal = -1;
  const pid_t process = forkpty(&terminal, nullptr, nullptr, &size);
  if (process < 0) return std::nullopt;
  if (process == 0) {
    setenv("TERM", name, 1);
    if (!isOnTheTerminal) close(STDERR_FILENO);
    {
      Progress progress("rules", 500);
      for (int done = 1; done <= 500; ++done) {
        progress.Show(done);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
    }
    if (write(STDOUT_FILENO, "end", 3) != 3) _exit(1);
    _exit(0);
  }
  std::string seen;
  char block[4096];
  for (ssize_t count = 0; (count = read(terminal, block, sizeof block)) > 0;) {
    seen.append(block, static_cast<std::size_t>(count));
  }
  close(terminal);
  EXPECT_EQ(waitpid(process, nullptr, 0), process);
  return seen;
}

TEST(Progress, WritesOneLineOverAndOverAndTakesItAway) {
  const std::optional<std::string> seen = SeenAtTerminal("xterm", true);
  if (!seen) GTEST_SKIP() << "no pseudo terminal on this machine";
  const std::string clear = "\r\x1B[K";
  EXPECT_TRUE(seen->ends_with(clear + "end")) << *seen;
  EXPECT_EQ(seen->find('\n'), seen->npos);
  const auto lines = std::count(seen->begin(), seen->end(), '\r') - 1;
  EXPECT_GE(lines, 1);
  EXPECT_NE(seen->find(" of 500 rules ("), seen->npos) << *seen;
  for (std::size_t at = 0; at != seen->npos; at = seen->find('\r', at + 1)) {
    EXPECT_LT(seen->find("\x1B[K", at) - at, 81u) << *seen;
  }
}

TEST(Progress, IsSilentElsewhere) {
  const std::optional<std::string> dumb = SeenAtTerminal("dumb", true);
  if (!dumb) GTEST_SKIP() << "no pseudo terminal on this machine";
  EXPECT_EQ(*dumb, "end");
  EXPECT_EQ(SeenAtTerminal("", true), "end");
  EXPECT_EQ(SeenAtTerminal("xterm", false), "end");
}

}  // namespace
}  // namespace ORKTOOL
