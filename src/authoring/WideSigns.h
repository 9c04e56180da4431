// Signs of other widths outside texts: full-width signs, digits and quotes, and blanks that the
// language does not know.
#pragma once

#include "authoring/Mending.h"

namespace ORKBASE {

/// Tells of each run of such signs in words that the lexer refuses, and mends all of them.
void FindWideSigns(Workbench& bench);

}  // namespace ORKBASE
