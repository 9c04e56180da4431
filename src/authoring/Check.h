// The problems of a rule: what refuses it, what else is wrong, and what it does not mean.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "RuleAuthoring.h"

namespace ORKBASE {

class AuthoringCall;

/// See `RuleAuthoring::Check`.
std::vector<RuleProblem> CheckRule(AuthoringCall& call, MXRULE_DATATYPE type,
                                   std::u16string_view rule,
                                   std::span<const ORKDB_DSType_ENUM> dsTypes, bool twoParts);

}  // namespace ORKBASE
