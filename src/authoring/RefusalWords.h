// What is said of a refused rule where no remedy is sure: what is missing, and what stands instead.
#pragma once

#include <string>

#include "authoring/Aliases.h"
#include "authoring/Mending.h"

namespace ORKBASE {

/// A value where a condition is asked, or the reverse, and nothing else wrong with the rule: the
/// sentence that says so, else empty.
std::u16string MixUpText(Workbench& bench, const Draft& draft);

/// Whether the rule is refused at the closing bracket of a call that lacks an argument.
bool LacksArgument(const Draft& draft, std::size_t refused);

/// A call that the rule is refused in for an argument too few or too many: tells of it at the name
/// of the function. `refused` is a word, or the number of words at the end.
void TellOfArguments(Workbench& bench, const Draft& draft, std::size_t refused);

}  // namespace ORKBASE
