// Lines of any length from a file or a pipe. A pipe may be a conversation: who talks to the tool
// waits for an answer before he writes on. So the reader tells before it waits for more input, and
// the output is flushed then; a stream of input is answered in large blocks. Who asks the process
// to end (`Interrupt`) ends the reading: there is no next line then.
#pragma once

#include "Interrupt.h"

#include <cstddef>
#include <functional>
#include <string>

namespace ORKTOOL {

/// Reads one file line by line. It owns the descriptor of a file that it opened.
class LineReader {
 public:
  /// Opens a file; "-" is standard input. Throws `Failure` where it cannot be opened.
  explicit LineReader(const std::string& path);
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;
  ~LineReader();

  /// Is called before the reader waits for input that is not there yet.
  void set_beforeWait(std::function<void()> action) { beforeWait_ = std::move(action); }

  /// Reads the next line without its line feed; false at the end, and when the process was asked to
  /// end. Throws `Failure` where reading fails.
  bool Next(std::string& line);

  /// Number of the line that was read last, from 1.
  std::size_t Number() const noexcept { return number_; }
  const std::string& Name() const noexcept { return name_; }

 private:
  bool Fill();
  bool InputWaiting() const;
  [[noreturn]] void Fail(const char* what) const;

  Interrupt interrupt_;
  std::string name_;
  int file_ = 0;
  bool owned_ = false;
  std::string buffer_;
  std::size_t begin_ = 0;     // of the next line
  std::size_t searched_ = 0;  // no line feed between begin_ and here
  std::size_t number_ = 0;
  std::function<void()> beforeWait_;
};

/// The whole of a file, or the end of the process if it was asked to end. Throws `Failure` where it
/// cannot be read.
std::string ReadFile(const std::string& path);

}  // namespace ORKTOOL
