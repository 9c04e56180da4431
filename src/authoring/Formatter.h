// A rule text with regular spacing and the display forms of its words.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "RuleAuthoring.h"

namespace ORKBASE {

class AuthoringCall;

/// See `RuleAuthoring::Format`.
std::u16string FormatRule(AuthoringCall& call, std::u16string_view text, std::int32_t width);

}  // namespace ORKBASE
