// Work on many items by several threads whose results come out in the order of the items. The one
// thread that owns it puts and takes; memory is bounded, since only so many items may be on the
// way.
//
//   OrderedWork<Line, Answer> work(workers, [&](std::size_t worker, Line& line) { ... });
//   while (Read(line)) {
//     if (work.Room() == 0) Print(work.Take());
//     work.Put(line);
//   }
//   while (work.Pending() > 0) Print(work.Take());
#pragma once

#include <condition_variable>
#include <csignal>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace ORKTOOL {

/// Keeps signals away from threads that are started while it lives, so that they meet the thread
/// that waits for input.
class SignalsKeptAway {
 public:
  SignalsKeptAway() {
    sigset_t away;
    sigemptyset(&away);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&away, signal);
    pthread_sigmask(SIG_BLOCK, &away, &before_);
  }
  SignalsKeptAway(const SignalsKeptAway&) = delete;
  SignalsKeptAway& operator=(const SignalsKeptAway&) = delete;
  ~SignalsKeptAway() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

/// One worker works on the calling thread, within `Put`; more are threads of their own.
template <typename Item, typename Result>
class OrderedWork {
 public:
  /// `worker` is below the number of workers; no two calls at once have the same one. What it
  /// throws is the result of its item.
  using Work = std::function<Result(std::size_t worker, Item& item)>;

  OrderedWork(std::size_t workers, Work work) : work_(std::move(work)) {
    if (workers < 2) return;
    capacity_ = workers * kItemsAWorker;
    const SignalsKeptAway quiet;
    try {
      for (std::size_t i = 0; i < workers; ++i) threads_.emplace_back([this, i] { Serve(i); });
    } catch (...) {
      End();
      throw;
    }
  }
  OrderedWork(const OrderedWork&) = delete;
  OrderedWork& operator=(const OrderedWork&) = delete;
  /// Waits for the items that are worked on; those that nobody began are left.
  ~OrderedWork() { End(); }

  /// How many items may be put before a result has to be taken.
  std::size_t Room() const { return capacity_ - slots_.size(); }
  /// How many results there are to take.
  std::size_t Pending() const { return slots_.size(); }

  /// There has to be room.
  void Put(Item item) {
    if (threads_.empty()) {
      Do(0, slots_.emplace_back(std::move(item)));
      return;
    }
    const std::lock_guard lock(mutex_);
    slots_.emplace_back(std::move(item));
    if (idle_ > 0) itemCame_.notify_one();
  }

  /// The result of the oldest item; waits for it, and throws what its work threw. One has to be
  /// pending.
  Result Take() {
    Slot slot = TakeOldest();
    if (slot.failure) std::rethrow_exception(slot.failure);
    return *std::move(slot.result);
  }

 private:
  struct Slot {
    explicit Slot(Item value) : item(std::move(value)) {}
    Item item;
    std::optional<Result> result = std::nullopt;
    std::exception_ptr failure = nullptr;
    bool done = false;
  };

  static constexpr std::size_t kItemsAWorker = 64;

  void Do(std::size_t worker, Slot& slot) noexcept {
    try {
      slot.result.emplace(work_(worker, slot.item));
    } catch (...) {
      slot.failure = std::current_exception();
    }
  }

  /// Being woken costs about as much as a short item, so the owner sleeps until half of what is on
  /// the way is done, not just the oldest.
  Slot TakeOldest() {
    std::unique_lock lock(mutex_);
    if (!threads_.empty() && !slots_.front().done) {
      wanted_ = (slots_.size() + 1) / 2;
      resultCame_.wait(lock, [this] { return slots_.front().done && done_ >= wanted_; });
      wanted_ = 0;
    }
    Slot oldest = std::move(slots_.front());
    slots_.pop_front();
    if (!threads_.empty()) {
      --done_;
      --begun_;
    }
    return oldest;
  }

  void Serve(std::size_t worker) {
    std::unique_lock lock(mutex_);
    while (true) {
      ++idle_;
      itemCame_.wait(lock, [this] { return isEnding_ || begun_ < slots_.size(); });
      --idle_;
      if (isEnding_) return;
      Slot& slot = slots_[begun_++];
      lock.unlock();
      Do(worker, slot);
      lock.lock();
      slot.done = true;
      ++done_;
      if (wanted_ > 0 && done_ >= wanted_) resultCame_.notify_one();
    }
  }

  void End() {
    {
      const std::lock_guard lock(mutex_);
      isEnding_ = true;
    }
    itemCame_.notify_all();
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
  }

  Work work_;
  std::size_t capacity_ = 1;
  std::mutex mutex_;
  std::condition_variable itemCame_;
  std::condition_variable resultCame_;
  std::deque<Slot>
      slots_;  // oldest first; a deque, since they stay in place while others come and go
  std::size_t begun_ = 0;   // of the slots, the first ones
  std::size_t done_ = 0;    // of those
  std::size_t wanted_ = 0;  // done slots that the sleeping owner waits for
  std::size_t idle_ = 0;    // workers that sleep
  bool isEnding_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace ORKTOOL
