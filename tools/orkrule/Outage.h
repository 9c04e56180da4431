// The metadata database does not answer. That is no fault of a rule, and each further rule would
// ask it again: the run ends, and says how far it came.
#pragma once

#include <string>

namespace ORKTOOL {

/// Thrown with what the database, its driver or this library said.
struct Outage {
  std::string text;
};

/// Told by whatever hands out rules: it is asked for the next one, so the one before is done.
void AskedForRule() noexcept;

/// The sentence for standard error, with the number of rules that are done where they had begun.
std::string OutageText(const Outage& outage);

}  // namespace ORKTOOL
