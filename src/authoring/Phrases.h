// Conditions of several words that the language writes with one: `is null`, `not in (1, 2)`,
// `between 1 and 10`, `case when ... end`.
#pragma once

#include "authoring/Aliases.h"
#include "authoring/Mending.h"

namespace ORKBASE {

/// Tells of each such condition and mends it. Leaves alone a `between` over words that are unknown;
/// it is found once they are mended.
void FindPhrases(Workbench& bench, const Lexicon& lexicon);

}  // namespace ORKBASE
