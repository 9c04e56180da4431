// What speaks against new names of tables and fields, whatever the rules are.
#pragma once

#include <vector>

#include "RuleUpkeep.h"
#include "store/RuleRenames.h"
#include "store/UpkeepEngine.h"

namespace ORKBASE {

/// Asks the database of an engine. Throws `UpkeepOutage`.
std::vector<UpkeepFinding> CheckRenames(UpkeepEngine& engine,
                                        const std::vector<ListedRename>& renames);

}  // namespace ORKBASE
