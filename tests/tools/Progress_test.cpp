// The line that tells how far a run is.
#include "Progress.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

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

}  // namespace
}  // namespace ORKTOOL
