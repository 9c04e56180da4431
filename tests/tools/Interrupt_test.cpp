// How requests to end the process are noted.
#include "Interrupt.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace ORKTOOL {
namespace {

/// Ends the process with 7 where a thing holds.
void TellBy(bool holds) {
  std::_Exit(holds ? 7 : 8);
}

using testing::ExitedWithCode;
using testing::KilledBySignal;

TEST(InterruptDeathTest, NotesTheFirstSignal) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EXIT(
        {
          const Interrupt interrupt;
          const bool before = Interrupt::IsAsked();
          raise(signal);
          TellBy(!before && Interrupt::IsAsked());
        },
        ExitedWithCode(7), "");
  }
}

TEST(InterruptDeathTest, LetsTheSecondSignalEndTheProcess) {
  EXPECT_EXIT(
      {
        const Interrupt interrupt;
        raise(SIGINT);
        raise(SIGINT);
        TellBy(true);
      },
      KilledBySignal(SIGINT), "");
  EXPECT_EXIT(
      {
        const Interrupt interrupt;
        raise(SIGINT);
        raise(SIGTERM);
        TellBy(true);
      },
      KilledBySignal(SIGTERM), "");
}

TEST(InterruptDeathTest, EndsByTheSignalThatWasNoted) {
  EXPECT_EXIT(
      {
        {
          const Interrupt interrupt;
          Interrupt::EndIfAsked();  // nobody asked yet
          raise(SIGTERM);
        }
        Interrupt::EndIfAsked();
        TellBy(true);
      },
      KilledBySignal(SIGTERM), "");
}

TEST(InterruptDeathTest, LeavesSignalsAloneBehindItsEnd) {
  EXPECT_EXIT(
      {
        {
          const Interrupt outer;
          { const Interrupt inner; }
          raise(SIGINT);
        }
        raise(SIGINT);
        TellBy(true);
      },
      KilledBySignal(SIGINT), "");
}

TEST(InterruptDeathTest, KeepsIgnoredSignalsIgnored) {
  EXPECT_EXIT(
      {
        signal(SIGHUP, SIG_IGN);
        const Interrupt interrupt;
        raise(SIGHUP);
        raise(SIGHUP);
        TellBy(!Interrupt::IsAsked());
      },
      ExitedWithCode(7), "");
}

TEST(InterruptDeathTest, EndsTheWaitForInput) {
  EXPECT_EXIT(
      {
        alarm(20);
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) TellBy(false);
        const Interrupt interrupt;
        std::thread([] {
          std::this_thread::sleep_for(std::chrono::milliseconds(50));
          kill(getpid(), SIGINT);
        }).detach();
        const bool before = Interrupt::WaitForInput(ends[0]);
        TellBy(!before && !Interrupt::WaitForInput(ends[0]));
      },
      ExitedWithCode(7), "");
}

TEST(InterruptDeathTest, TellsOfInputAndOfItsEnd) {
  EXPECT_EXIT(
      {
        alarm(20);
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0 || write(ends[1], "x", 1) != 1) TellBy(false);
        const bool withoutOne = Interrupt::WaitForInput(ends[0]);
        const Interrupt interrupt;
        const bool withInput = Interrupt::WaitForInput(ends[0]);
        char c = 0;
        close(ends[1]);
        const bool atEnd = read(ends[0], &c, 1) == 1 && Interrupt::WaitForInput(ends[0]);
        close(ends[0]);
        TellBy(withoutOne && withInput && atEnd && Interrupt::WaitForInput(ends[0]));
      },
      ExitedWithCode(7), "");
}

}  // namespace
}  // namespace ORKTOOL
