// Work of several threads whose results come in the order of the items.
#include "OrderedWork.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace ORKTOOL {
namespace {

using Squares = OrderedWork<int, long>;

constexpr std::size_t kWorkers[] = {0, 1, 2, 3, 8};

/// Puts and takes as a command does that reads lines: takes only where there is no more room.
template <typename Taken>
void PassThrough(Squares& work, int items, Taken taken) {
  for (int i = 0; i < items; ++i) {
    if (work.Room() == 0) taken(work);
    work.Put(i);
  }
  while (work.Pending() > 0) taken(work);
}

TEST(OrderedWork, GivesResultsInTheOrderOfTheItems) {
  for (const std::size_t workers : kWorkers) {
    Squares work(workers, [](std::size_t, int& item) {
      if (item % 7 == 0) std::this_thread::sleep_for(std::chrono::microseconds(50));
      return static_cast<long>(item) * item;
    });
    std::vector<long> results;
    PassThrough(work, 5000, [&](Squares& from) { results.push_back(from.Take()); });
    ASSERT_EQ(results.size(), 5000u);
    for (std::size_t i = 0; i < results.size(); ++i) ASSERT_EQ(results[i], long(i) * long(i));
  }
}

TEST(OrderedWork, GivesEachAnswerOfAConversationAtOnce) {
  for (const std::size_t workers : kWorkers) {
    Squares work(workers, [](std::size_t, int& item) { return item + 1L; });
    for (int i = 0; i < 2000; ++i) {
      work.Put(i);
      ASSERT_EQ(work.Take(), i + 1);
    }
  }
}

TEST(OrderedWork, ThrowsWhatTheWorkThrewInItsPlaceAndGoesOn) {
  for (const std::size_t workers : kWorkers) {
    Squares work(workers, [](std::size_t, int& item) -> long {
      if (item % 3 == 1) throw std::runtime_error(std::to_string(item));
      return item;
    });
    int at = 0;
    PassThrough(work, 1000, [&](Squares& from) {
      if (at % 3 == 1) {
        try {
          from.Take();
          ADD_FAILURE() << at;
        } catch (const std::runtime_error& error) {
          EXPECT_EQ(error.what(), std::to_string(at));
        }
      } else {
        EXPECT_EQ(from.Take(), at);
      }
      ++at;
    });
    EXPECT_EQ(at, 1000);
  }
}

TEST(OrderedWork, EndsWithWorkUndoneAndResultsUntaken) {
  for (const std::size_t workers : kWorkers) {
    std::atomic<int> living = 0;
    struct Counted {
      explicit Counted(std::atomic<int>& count) : living(&count) { ++count; }
      Counted(const Counted&) = delete;
      Counted& operator=(const Counted&) = delete;
      ~Counted() { --*living; }
      std::atomic<int>* living;
    };
    for (int round = 0; round < 20; ++round) {
      OrderedWork<std::unique_ptr<Counted>, std::unique_ptr<Counted>> work(
          workers, [round](std::size_t, std::unique_ptr<Counted>& item) {
            std::this_thread::sleep_for(std::chrono::microseconds(100));
            if (round % 2 == 1) throw std::runtime_error("no");
            return std::move(item);
          });
      while (work.Room() > 0) work.Put(std::make_unique<Counted>(living));
      if (round % 4 == 0) {
        EXPECT_NE(work.Take(), nullptr);
      } else if (round % 4 == 1) {
        EXPECT_THROW(work.Take(), std::runtime_error);
      }
    }
    EXPECT_EQ(living, 0);
  }
}

TEST(OrderedWork, GivesNoTwoThreadsTheSameWorker) {
  for (const std::size_t workers : {1u, 2u, 5u}) {
    std::vector<int> calls(workers);  // unguarded: the worker is the only one to touch its own
    Squares work(workers, [&](std::size_t worker, int&) { return long(++calls.at(worker)); });
    PassThrough(work, 3000, [](Squares& from) { from.Take(); });
    int all = 0;
    for (const int count : calls) all += count;
    EXPECT_EQ(all, 3000);
  }
}

TEST(OrderedWork, OfOneWorkerIsDoneByTheCaller) {
  Squares work(1, [caller = std::this_thread::get_id()](std::size_t worker, int&) {
    EXPECT_EQ(std::this_thread::get_id(), caller);
    return static_cast<long>(worker);
  });
  EXPECT_EQ(work.Room(), 1u);
  work.Put(5);
  EXPECT_EQ(work.Room(), 0u);
  EXPECT_EQ(work.Pending(), 1u);
  EXPECT_EQ(work.Take(), 0);
}

TEST(OrderedWork, OfSeveralWorkersIsDoneAtTheSameTime) {
  std::atomic<int> inside = 0;
  Squares work(2, [&](std::size_t, int&) {  // each waits for the other to be there too
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (++inside; inside < 2 && std::chrono::steady_clock::now() < end;) std::this_thread::yield();
    return long(inside);
  });
  work.Put(1);
  work.Put(2);
  EXPECT_EQ(work.Take(), 2);
  EXPECT_EQ(work.Take(), 2);
}

TEST(OrderedWork, KeepsOnlySoMuchOnTheWay) {
  Squares work(4, [](std::size_t, int&) { return 0L; });
  const std::size_t room = work.Room();
  EXPECT_GE(room, 4u);
  EXPECT_LE(room, 1024u);
  while (work.Room() > 0) work.Put(1);
  EXPECT_EQ(work.Pending(), room);
  work.Take();
  EXPECT_EQ(work.Room(), 1u);
}

}  // namespace
}  // namespace ORKTOOL
