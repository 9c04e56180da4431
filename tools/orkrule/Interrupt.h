// Ctrl-C and the other requests to end. A command that answers line by line takes note of them, so
// that it ends behind a whole line with all that it answered handed over.
#pragma once

namespace ORKTOOL {

/// While one lives, the first SIGINT, SIGTERM or SIGHUP is noted, and a second one ends the process
/// as by itself. A signal that is ignored stays ignored. Several may live at once, all of them in
/// the main thread.
class Interrupt {
 public:
  Interrupt();
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;
  ~Interrupt();

  /// Whether a signal was noted, also by one that lives no more. In any thread.
  static bool IsAsked() noexcept;

  /// Waits until a file can be read without waiting, has come to its end or cannot be read at all.
  /// False, at once, when the process was asked to end.
  static bool WaitForInput(int file) noexcept;

  /// Ends the process by the signal that was noted; returns where there was none.
  static void EndIfAsked() noexcept;
};

}  // namespace ORKTOOL
