#include "Output.h"

#include "Progress.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace ORKTOOL {
namespace {

[[noreturn]] void FailToWrite() {
  if (errno == EPIPE) throw ClosedPipe();
  throw Failure{kInputOutput, std::string("cannot write the output: ") + std::strerror(errno)};
}

}  // namespace

void Print(std::string_view text) {
  static const bool isTerminal = isatty(STDOUT_FILENO) != 0;
  if (isTerminal) Progress::Clear();
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) FailToWrite();
}

void PrintJson(const Json& value) {
  Print(value.dump() + "\n");
}

void FlushOutput() {
  if (std::fflush(stdout) != 0) FailToWrite();
}

void PrintError(std::string_view text) {
  FlushOutput();
  Progress::Clear();
  std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace ORKTOOL
