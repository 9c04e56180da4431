// A rule of a store without what depends on some tables.
#pragma once

#include <string>

#include "RuleUpkeep.h"
#include "store/UpkeepWork.h"

namespace ORKBASE {

UpkeepResult StripRule(UpkeepWork& work, const std::u16string& tables);

}  // namespace ORKBASE
