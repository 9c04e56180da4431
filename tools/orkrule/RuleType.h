// Verifying a rule whose type the user need not name.
#pragma once

#include "MxExpression.h"

#include <cstdint>
#include <optional>
#include <string>

namespace ORKTOOL {

/// The number of the engine's own errors; any other is the database's.
inline constexpr std::int32_t kOwnError = -1;

/// The type of a rule that may be a value of any type or a condition: the engine keeps the two
/// apart, a user who wants to see some SQL need not.
inline constexpr auto kEitherType = static_cast<ORKBASE::MXRULE_DATATYPE>(-1);

/// Verifies a rule and returns the type that it was verified as, nothing when it was refused. Of
/// two refusals the one that got further through the rule is left in `rules`. A refused rule is
/// verified again: the first time its message has no word for a field whose table it loaded.
std::optional<ORKBASE::MXRULE_DATATYPE> VerifyRule(ORKBASE::MxExpression& rules,
                                                   ORKBASE::MXRULE_DATATYPE type,
                                                   const std::u16string& text,
                                                   std::u16string& document);

}  // namespace ORKTOOL
