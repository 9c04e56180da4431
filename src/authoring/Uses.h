// What a rule depends on.
#pragma once

#include <string_view>
#include <vector>

#include "RuleAuthoring.h"

namespace ORKBASE {

class AuthoringCall;

/// See `RuleAuthoring::Uses`.
std::vector<RuleUse> UsesOf(AuthoringCall& call, std::u16string_view text);

}  // namespace ORKBASE
