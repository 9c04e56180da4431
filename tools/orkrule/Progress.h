// How far a long run is, in one line of the terminal that is written over and over.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

namespace ORKTOOL {

struct ProgressFigures {
  std::int64_t done = 0;
  std::optional<std::int64_t> total;
  std::optional<double> aSecond;  ///< how many are done a second; nothing while that is not known
};

/// `12,345 of 100,000 rules (12 %), 23,000 a second, 4 s left`, without its last parts where they
/// would not fit into so many columns.
std::string ProgressText(const std::string& what, const ProgressFigures& figures,
                         std::size_t columns);

/// Writes to standard error, only where that is a terminal that can go back in a line, and not
/// before a fifth of a second has gone by. One at a time, in one thread.
class Progress {
 public:
  /// `what` is counted: "rules".
  Progress(std::string what, std::optional<std::int64_t> total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { End(); }

  /// So many are done. May be called for each: it writes about five times a second.
  void Show(std::int64_t done);
  /// Takes the line away for good.
  void End();

  /// Takes the line away for the output that comes; the next `Show` may bring it back.
  static void Clear();

 private:
  using Clock = std::chrono::steady_clock;
  struct Sample {
    Clock::time_point time;
    std::int64_t done;
  };

  std::optional<double> Rate() const;

  std::string what_;
  std::optional<std::int64_t> total_;
  bool isWanted_ = false;
  Clock::time_point next_;      // time to write
  std::deque<Sample> samples_;  // of the last seconds
};

}  // namespace ORKTOOL
