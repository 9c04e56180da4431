#include "service/Crew.h"

#include "platform/SignalsBlocked.h"

#include <algorithm>
#include <utility>

namespace ORKBASE {
namespace {

/// How much may wait to be taken before the crew waits too.
constexpr std::size_t kMostHeld = std::size_t{4} << 20;

}  // namespace

Crew::Crew(std::size_t workers, Work work) : work_(std::move(work)) {
  threads_.reserve(workers);
  const SignalsBlocked blocked;
  try {
    while (threads_.size() < workers) {
      threads_.emplace_back([this, worker = threads_.size()] { Run(worker); });
    }
  } catch (...) {
    EndThreads();
    throw;
  }
}

Crew::~Crew() {
  Rest();
  EndThreads();
}

void Crew::EndThreads() noexcept {
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }
  forWork_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void Crew::Start(std::size_t count) {
  {
    const std::lock_guard lock(mutex_);
    done_.assign((count + kBlock - 1) / kBlock, false);
    settings_ = ThreadSettings();
    ++list_;
    count_ = count;
    next_ = held_ = known_ = whole_ = awaited_ = 0;
    fault_ = nullptr;
    halt_ = count;
  }
  forWork_.notify_all();
}

bool Crew::WaitFor(std::size_t item) {
  if (item < known_) return true;
  const std::size_t block = item / kBlock;
  std::unique_lock lock(mutex_);
  awaited_ = std::min(block + kLot, done_.size());
  forResults_.wait(lock, [&] {
    const bool isIdle = active_ == 0 && std::min(halt_.load(), count_) <= next_;
    return isIdle || IsLotDone() || (whole_ > block && held_ > kMostHeld / 2);
  });
  known_ = whole_ * kBlock;
  return whole_ > block;
}

bool Crew::IsLotDone() const noexcept {
  return whole_ >= awaited_;
}

void Crew::Took(std::size_t bytes) {
  if (bytes == 0) return;
  const std::lock_guard lock(mutex_);
  const bool wasFull = held_ > kMostHeld;
  held_ -= std::min(bytes, held_);
  if (wasFull && held_ <= kMostHeld) forWork_.notify_all();
}

void Crew::HaltBehind(std::size_t item, std::size_t ahead) noexcept {
  const std::size_t wanted = item + 1 + ahead;
  std::size_t halt = halt_;
  while (wanted < halt && !halt_.compare_exchange_weak(halt, wanted)) {
  }
}

std::size_t Crew::Rest() noexcept {
  halt_ = 0;
  std::unique_lock lock(mutex_);
  forResults_.wait(lock, [this] { return active_ == 0; });
  known_ = 0;
  return std::min(next_, count_);
}

void Crew::ThrowFault() const {
  const std::lock_guard lock(mutex_);
  if (fault_) std::rethrow_exception(fault_);
}

void Crew::Run(std::size_t worker) {
  Manner manner;
  while (const std::optional<std::size_t> first = Claim(manner)) Do(worker, *first, manner);
}

bool Crew::CanClaim() const noexcept {
  return next_ < std::min(halt_.load(), count_) && held_ <= kMostHeld;
}

std::optional<std::size_t> Crew::Claim(Manner& manner) {
  std::unique_lock lock(mutex_);
  while (!isOver_ && !CanClaim()) {
    manner.scope.reset();
    forWork_.wait(lock);
  }
  if (isOver_) return std::nullopt;
  ++active_;
  const std::size_t first = next_;
  next_ += kBlock;
  return first;
}

void Crew::Do(std::size_t worker, std::size_t first, Manner& manner) {
  std::size_t bytes = 0;
  std::exception_ptr fault;
  try {
    if (manner.list != list_) manner.scope.reset();
    manner.list = list_;
    if (!manner.scope) manner.scope.emplace(settings_);
    const std::size_t end = std::min(first + kBlock, count_);
    for (std::size_t item = first; item < end && item < halt_; ++item) bytes += work_(worker, item);
  } catch (...) {
    fault = std::current_exception();
    halt_ = 0;
  }
  HandIn(first, bytes, std::move(fault));
}

void Crew::HandIn(std::size_t first, std::size_t bytes, std::exception_ptr fault) {
  bool isAwaited = false;
  {
    const std::lock_guard lock(mutex_);
    --active_;
    held_ += bytes;
    done_[first / kBlock] = true;
    while (whole_ < done_.size() && done_[whole_]) ++whole_;
    if (fault && !fault_) fault_ = std::move(fault);
    isAwaited = IsLotDone() || active_ == 0 || held_ > kMostHeld / 2;
  }
  if (isAwaited) forResults_.notify_one();
}

}  // namespace ORKBASE
