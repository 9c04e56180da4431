// Brackets without a partner.
#pragma once

#include "authoring/Mending.h"

namespace ORKBASE {

/// Tells of each bracket without a partner, and mends the text as it goes.
void FindLoneBrackets(Workbench& bench);

}  // namespace ORKBASE
