// Values of another type than the one that is asked for, where a conversion mends it.
#pragma once

#include "authoring/Aliases.h"
#include "authoring/Mending.h"

namespace ORKBASE {

/// Looks at the word that the text is refused at: a quoted number, a number among texts, `+`
/// between texts, a date plus days. Tells of what a remedy is found for, mends it and goes on.
void FindTypeSlips(Workbench& bench, const Lexicon& lexicon);

}  // namespace ORKBASE
