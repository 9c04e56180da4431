// Work that may be given up: what it owns, what it throws, and who frees it.
#include "database/Job.h"

#include <csignal>
#include <future>
#include <stdexcept>

#include <gtest/gtest.h>

using namespace ORKDB;

namespace {

Deadline In(std::chrono::milliseconds time) {
  return Clock::now() + time;
}

constexpr std::chrono::seconds kLong(60);

}  // namespace

TEST(Job, IsDoneWhenItsWorkIsAndFreesWhatItHeld) {
  const auto held = std::make_shared<int>(1);
  Job job([held] { *held = 2; });
  EXPECT_TRUE(job.IsDoneBy(In(kLong)));
  EXPECT_EQ(*held, 2);
  EXPECT_EQ(held.use_count(), 1);
  EXPECT_TRUE(job.IsDoneBy(In(kLong)));
}

TEST(Job, WorkThatIsGivenUpFreesWhatItHeldWhenItReturns) {
  auto held = std::make_shared<std::promise<void>>();
  const std::weak_ptr<std::promise<void>> watched = held;
  {
    Job job(
        [held, wait = std::make_shared<std::future<void>>(held->get_future())] { wait->wait(); });
    EXPECT_FALSE(job.IsDoneBy(In(std::chrono::milliseconds(20))));
  }
  held->set_value();
  held.reset();
  for (const Deadline end = In(kLong); !watched.expired() && Clock::now() < end;) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_TRUE(watched.expired());
}

TEST(Job, ADeadlineInThePastOnlyLooks) {
  std::promise<void> promise;
  Job job([wait = std::make_shared<std::future<void>>(promise.get_future())] { wait->wait(); });
  EXPECT_FALSE(job.IsDoneBy(Clock::now() - kLong));
  promise.set_value();
  EXPECT_TRUE(job.IsDoneBy(In(kLong)));
}

TEST(Job, ThrowsWhatItsWorkThrew) {
  Job job([] { throw std::runtime_error("full"); });
  EXPECT_THROW(job.IsDoneBy(In(kLong)), std::runtime_error);
}

// Handlers of a host expect to run on a thread of the host.
TEST(Job, TakesNoSignalOfTheProcess) {
  sigset_t seen;
  sigemptyset(&seen);
  Job job([&seen] { pthread_sigmask(SIG_SETMASK, nullptr, &seen); });
  ASSERT_TRUE(job.IsDoneBy(In(kLong)));
  EXPECT_EQ(sigismember(&seen, SIGTERM), 1);
  EXPECT_EQ(sigismember(&seen, SIGALRM), 1);
  EXPECT_EQ(sigismember(&seen, SIGSEGV), 0);
  sigset_t own;
  pthread_sigmask(SIG_SETMASK, nullptr, &own);
  EXPECT_EQ(sigismember(&own, SIGTERM), 0);
}
