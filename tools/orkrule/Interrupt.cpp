#include "Interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <iterator>

namespace ORKTOOL {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

std::atomic<int> asked = 0;  // the signal that was noted
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler sets it");

// Readable from the first signal on: a signal between the look at `asked` and the wait for input
// would else wait for the next line.
int wakeUp[2] = {-1, -1};

int living = 0;
struct sigaction before[std::size(kSignals)];

/// Makes the pipe. Where a standard stream is closed its number stays free, so that reading it
/// fails as it ought to. Without the pipe a signal in a bad moment waits for the next line.
void OpenWakeUp() {
  int ends[2];
  if (wakeUp[0] >= 0 || pipe2(ends, O_CLOEXEC) != 0) return;
  for (std::size_t i = 0; i < std::size(ends); ++i) {
    wakeUp[i] = fcntl(ends[i], F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(ends[i]);
  }
}

extern "C" void NoteSignal(int signal) {
  const int error = errno;
  if (asked.exchange(signal) != 0) {
    std::signal(signal, SIG_DFL);
    raise(signal);  // comes in when this handler returns
  } else {
    const ssize_t written = write(wakeUp[1], "", 1);
    static_cast<void>(written);
  }
  errno = error;
}

}  // namespace

Interrupt::Interrupt() {
  if (living++ > 0) return;
  OpenWakeUp();
  struct sigaction note = {};
  note.sa_handler = NoteSignal;
  note.sa_flags = SA_RESTART;  // output that is on its way must not be broken off
  sigemptyset(&note.sa_mask);
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], nullptr, &before[i]);
    if (before[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &note, nullptr);
  }
}

Interrupt::~Interrupt() {
  if (--living > 0) return;
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    sigaction(kSignals[i], &before[i], nullptr);
  }
}

bool Interrupt::IsAsked() noexcept {
  return asked != 0;
}

bool Interrupt::WaitForInput(int file) noexcept {
  pollfd files[] = {{file, POLLIN, 0}, {wakeUp[0], POLLIN, 0}};
  while (!IsAsked()) {
    if (poll(files, std::size(files), -1) < 0) {
      if (errno == EINTR) continue;
      return true;  // reading will tell
    }
    if (files[0].revents != 0) return !IsAsked();
  }
  return false;
}

void Interrupt::EndIfAsked() noexcept {
  const int signal = asked;
  if (signal == 0) return;
  std::signal(signal, SIG_DFL);
  sigset_t open;
  sigemptyset(&open);
  sigaddset(&open, signal);
  pthread_sigmask(SIG_UNBLOCK, &open, nullptr);
  raise(signal);
}

}  // namespace ORKTOOL
