// What each database makes of each function.
#pragma once

#include <vector>

#include "RuleAuthoring.h"

namespace ORKBASE {

class AuthoringCall;

/// See `RuleAuthoring::Capabilities`.
std::vector<RuleFunction> CapabilitiesOf(AuthoringCall& call);

}  // namespace ORKBASE
