// Standard output with its failures noticed, the exit statuses, and how a command gives up.
#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace ORKTOOL {

enum ExitStatus : int {
  kDone = 0,
  kRefused = 1,      ///< a rule was refused
  kBadUsage = 2,     ///< the command line is wrong
  kInputOutput = 3,  ///< input, output or the database failed
};

/// Thrown to end the run with a status and a message on standard error.
struct Failure {
  ExitStatus status;
  std::string message;
};

/// Thrown where nobody reads the output any more, as behind `| head`: no failure of the run.
struct ClosedPipe {};

/// JSON whose members keep the order in which they were set.
using Json = nlohmann::ordered_json;

/// Writes to standard output. Throws `Failure` where that is not possible, and `ClosedPipe`.
void Print(std::string_view text);
/// Writes one JSON value as one line.
void PrintJson(const Json& value);
/// Hands over what is still buffered.
void FlushOutput();

/// Writes to standard error, behind all that was printed so far.
void PrintError(std::string_view text);

}  // namespace ORKTOOL
