// Threads that work through a list from its beginning on, while one thread takes what is done in
// the order of the list.
#pragma once

#include "platform/ThreadSettings.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace ORKBASE {

/// Used by one thread, which is none of the crew. The crew speaks its language in its locale.
class Crew {
 public:
  /// Does one item of the list; returns how many bytes wait to be taken.
  using Work = std::function<std::size_t(std::size_t worker, std::size_t item)>;

  /// Throws `std::system_error` where there are no more threads.
  Crew(std::size_t workers, Work work);
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;
  ~Crew();

  /// Begins a list of so many items. The crew is at rest.
  void Start(std::size_t count);
  /// Waits until an item is done. False when it never will be. Items are asked for in their order.
  bool WaitFor(std::size_t item);
  /// So many bytes were taken.
  void Took(std::size_t bytes);
  /// Has no item begun that is not behind `item` by less than `ahead`. By any thread.
  void HaltBehind(std::size_t item, std::size_t ahead) noexcept;
  /// Ends the list where it stands, and waits until the crew is at rest. Returns a bound of the
  /// items that were begun.
  std::size_t Rest() noexcept;
  /// Throws what a worker has met in the list.
  void ThrowFault() const;

 private:
  static constexpr std::size_t kBlock = 16;  // items that a worker takes at once
  // Blocks that are waited for at once: who takes results has no core of his own, and each time he
  // wakes up a worker gives way.
  static constexpr std::size_t kLot = 16;

  /// The settings that a worker has taken over, and for which list.
  struct Manner {
    std::optional<ThreadSettings::Scope> scope;
    std::size_t list = 0;
  };

  void Run(std::size_t worker);
  /// The first item of a block that is now the worker's; nothing at the end of all work.
  std::optional<std::size_t> Claim(Manner& manner);
  void Do(std::size_t worker, std::size_t first, Manner& manner);
  void HandIn(std::size_t first, std::size_t bytes, std::exception_ptr fault);
  bool CanClaim() const noexcept;
  bool IsLotDone() const noexcept;
  void EndThreads() noexcept;

  const Work work_;
  std::atomic<std::size_t> halt_{0};  // no item from here on is begun

  mutable std::mutex mutex_;  // of what changes while the crew works
  std::condition_variable forWork_;
  std::condition_variable forResults_;
  ThreadSettings settings_;
  std::size_t list_ = 0;  // number of the list
  std::size_t count_ = 0;
  std::size_t next_ = 0;     // the first item that nobody has claimed
  std::size_t active_ = 0;   // workers with a block
  std::size_t held_ = 0;     // bytes that wait to be taken
  std::vector<bool> done_;   // blocks
  std::size_t whole_ = 0;    // blocks that are done, with all before them
  std::size_t awaited_ = 0;  // so many of these wake up who waits for results
  std::exception_ptr fault_;
  bool isOver_ = false;

  std::size_t known_ = 0;  // items that `WaitFor` has found done
  std::vector<std::thread> threads_;
};

}  // namespace ORKBASE
