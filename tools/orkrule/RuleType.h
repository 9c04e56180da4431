// Verifying a rule whose type the user need not name: the engine keeps values and conditions apart,
// a user who wants to see some SQL need not.
#pragma once

#include "RuleUpkeep.h"

#include <string>

namespace ORKTOOL {

using ORKBASE::kEitherType;
using Verification = ORKBASE::EitherVerification;

inline Verification VerifyRule(ORKBASE::MxExpression& rules, ORKBASE::MXRULE_DATATYPE type,
                               const std::u16string& text) {
  return ORKBASE::VerifyEither(rules, type, text);
}

}  // namespace ORKTOOL
