// From a document back to a rule in words.
#pragma once

#include <string>
#include <string_view>

#include "RuleAuthoring.h"

namespace ORKBASE {

class AuthoringCall;

/// See `RuleAuthoring::Write`. False with the error, and `rule` as it was.
bool WriteRule(AuthoringCall& call, std::u16string_view document, std::u16string& rule,
               MxErrorRecord& error);

}  // namespace ORKBASE
