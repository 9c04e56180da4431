// Verifying a rule whose type the user need not name.
#pragma once

#include "MxExpression.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ORKTOOL {

/// The type of a rule that may be a value of any type or a condition: the engine keeps the two
/// apart, a user who wants to see some SQL need not.
inline constexpr auto kEitherType = static_cast<ORKBASE::MXRULE_DATATYPE>(-1);

/// What became of the verification of a rule.
struct Verification {
  std::optional<ORKBASE::MXRULE_DATATYPE> type;  ///< what it was verified as, nothing if refused
  std::u16string document;
  ORKBASE::MxErrorRecord error;  ///< of two refusals the one that got further through the rule
  ORKBASE::MXRULE_DATATYPE tried = ORKBASE::kNoDataType;  ///< the type of that refusal
};

Verification VerifyRule(ORKBASE::MxExpression& rules, ORKBASE::MXRULE_DATATYPE type,
                        const std::u16string& text);

}  // namespace ORKTOOL
