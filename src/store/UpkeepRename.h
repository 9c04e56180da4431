// A rule of a store under new names of tables and fields.
#pragma once

#include "RuleUpkeep.h"
#include "store/RuleRenames.h"
#include "store/UpkeepWork.h"

namespace ORKBASE {

UpkeepResult RenameRule(UpkeepWork& work, RuleRenames& renames);

}  // namespace ORKBASE
