// The call around a place of a rule.
#pragma once

#include <cstdint>
#include <string_view>

#include "RuleAuthoring.h"

namespace ORKBASE {

class AuthoringCall;

/// See `RuleAuthoring::Signature`; the offset is a place of the text.
RuleSignature SignatureAt(AuthoringCall& call, std::u16string_view text, std::int32_t offset);

}  // namespace ORKBASE
