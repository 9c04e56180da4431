// Work that may be given up. A driver that waits for its server cannot be interrupted from outside,
// so it works on a thread of its own, and who asked goes on without it when the time is over.
#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace ORKDB {

using Clock = std::chrono::steady_clock;
using Deadline = Clock::time_point;

/// Runs `work` from construction on. `work` owns (shares) all that it touches: given up, it lives
/// on until it returns by itself and then frees what it holds, on its thread.
class Job {
 public:
  explicit Job(std::function<void()> work);
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;
  /// Gives the work up unless it is done.
  ~Job();

  /// Waits. True when the work is done, and everything freed that it alone held. Throws what the
  /// work threw.
  bool IsDoneBy(Deadline end);

 private:
  struct Progress {
    std::mutex mutex;
    std::condition_variable changed;
    bool isDone = false;
    std::exception_ptr thrown;
  };
  static void Perform(std::function<void()>& work, Progress& progress) noexcept;

  std::shared_ptr<Progress> progress_ = std::make_shared<Progress>();
  std::thread thread_;
};

}  // namespace ORKDB
