// Threads that may be left to themselves.
#include "database/Job.h"

#include "platform/SignalsBlocked.h"

#include <system_error>
#include <utility>

namespace ORKDB {

Job::Job(std::function<void()> work) {
  const auto shared = std::make_shared<std::function<void()>>(std::move(work));
  const ORKBASE::SignalsBlocked blocked;
  try {
    thread_ = std::thread([shared, progress = progress_] { Perform(*shared, *progress); });
  } catch (const std::system_error&) {
    // No thread is to be had: the work is then done here, with what limits the driver itself keeps.
    Perform(*shared, *progress_);
  }
}

Job::~Job() {
  if (!thread_.joinable()) return;
  std::unique_lock lock(progress_->mutex);
  const bool isDone = progress_->isDone;
  lock.unlock();
  if (isDone) {
    thread_.join();
  } else {
    thread_.detach();
  }
}

bool Job::IsDoneBy(Deadline end) {
  std::unique_lock lock(progress_->mutex);
  if (!progress_->changed.wait_until(lock, end, [this] { return progress_->isDone; })) return false;
  if (progress_->thrown) std::rethrow_exception(std::exchange(progress_->thrown, nullptr));
  return true;
}

void Job::Perform(std::function<void()>& work, Progress& progress) noexcept {
  std::exception_ptr thrown;
  try {
    work();
  } catch (...) {
    thrown = std::current_exception();
  }
  work = nullptr;  // frees what it held before it counts as done
  const std::lock_guard lock(progress.mutex);
  progress.thrown = std::move(thrown);
  progress.isDone = true;
  progress.changed.notify_all();
}

}  // namespace ORKDB
