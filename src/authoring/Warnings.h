// Warnings: rules that verify and still are not what their author thinks.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "RuleAuthoring.h"

namespace ORKBASE {

class AuthoringCall;

/// The warnings about a rule that verifies, in the order of their places. `document`: what `Verify`
/// gave.
std::vector<RuleProblem> WarningsOf(AuthoringCall& call, MXRULE_DATATYPE type,
                                    std::u16string_view rule, std::u16string_view document,
                                    std::span<const ORKDB_DSType_ENUM> dsTypes, bool twoParts);

}  // namespace ORKBASE
