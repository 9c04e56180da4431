// The tool at a terminal of its own, as somebody sits before it: what is typed, what is seen.
#pragma once

#include <string>
#include <vector>

/// A terminal of 80 columns. Its lines end with a carriage return and a line feed.
class Terminal {
 public:
  /// Starts the tool there. Its standard input and output are the terminal unless they are
  /// descriptors of the caller.
  explicit Terminal(const std::vector<std::string>& arguments, int in = -1, int out = -1);
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal();

  /// False on a machine that has no pseudo terminals.
  bool IsThere() const { return process_ > 0; }

  void Type(const std::string& text) const;
  /// Reads on until `text` is seen or, where it is not, for ten seconds. Returns all that was seen.
  const std::string& ReadUntil(const std::string& text);
  /// Reads to the end of the tool. Returns all that was seen.
  const std::string& ReadAll();
  /// Once, behind the end: the exit status as shells show it, 128 and the number of a signal.
  int Wait();

 private:
  bool Read(int milliseconds);

  int terminal_ = -1;
  int process_ = -1;
  std::string seen_;
};

/// Waits for the end of a process: its exit status, or 128 and the number of the signal.
int ShellStatusOf(int process);
