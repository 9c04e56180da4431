// What the word at a place of a rule is.
#pragma once

#include <cstdint>
#include <string_view>

#include "RuleAuthoring.h"

namespace ORKBASE {

class AuthoringCall;

/// See `RuleAuthoring::Explain`; the offset is a place of the text.
RuleExplanation ExplainAt(AuthoringCall& call, std::u16string_view text, std::int32_t offset);

}  // namespace ORKBASE
