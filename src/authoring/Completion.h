// Completion: what may stand at the cursor.
#pragma once

#include <cstdint>
#include <string_view>

#include "RuleAuthoring.h"

namespace ORKBASE {

class AuthoringCall;

/// See `RuleAuthoring::Complete`; the offset is a place of the text.
RuleCompletion CompleteAt(AuthoringCall& call, MXRULE_DATATYPE type, std::u16string_view text,
                          std::int32_t offset, std::int32_t limit, bool all);

}  // namespace ORKBASE
