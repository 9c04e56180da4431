// Calls of functions that need no table: what a reference shows of a function.
#pragma once

#include <string>
#include <vector>

#include "MxRuleEnums.h"
#include "RuleAuthoring.h"
#include "authoring/CallForms.h"

namespace ORKBASE {

class AuthoringCall;

/// A rule that calls one function.
struct SampleCall {
  MXRULE_DATATYPE type = kNoDataType;  ///< that it verifies as
  std::u16string rule;                 ///< empty for a form that takes fields only
};

/// In the words of the call's language, with constants as arguments.
SampleCall SampleOf(AuthoringCall& call, const CallForm& form);

/// What each database makes of a sample, in the order of `RuleDialects()`.
std::vector<RuleSupport> SupportOf(AuthoringCall& call, const SampleCall& sample);

}  // namespace ORKBASE
