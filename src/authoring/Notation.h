// How other languages write things: `==`, `"text"`, `[table].[field]`, `1,000.50`, `-- comment`.
#pragma once

#include "authoring/Mending.h"

namespace ORKBASE {

/// Tells of each piece of the text that is written as elsewhere, and mends it. `refused`: the place
/// in the present text at which the rule is refused, which settles what could be meant both ways
/// (`2024-05-01` is a difference, too).
void FindNotation(Workbench& bench, std::int32_t refused);

}  // namespace ORKBASE
