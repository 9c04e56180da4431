// What Oracle has no form for: sets, all that is fiscal, as it holds no fiscal calendar, and
// differences in quarters and in weeks.
#pragma once

#include "translator/ReplacementMap.h"

namespace ORKBASE {

inline constexpr std::u16string_view kOracleModule = u"mx_PLSql_translator";

// clang-format off
inline constexpr Refusal kQuarterDifferenceRefused = {kMsgQuarterDifference, kOracleModule, u"Fn_timeInterval", 776};
inline constexpr Refusal kWeekDifferenceRefused    = {kMsgWeekDifference,    kOracleModule, u"Fn_timeInterval", 800};
inline constexpr Refusal kSetRefused               = {kMsgThisSetRefused,    kOracleModule, u"Fn_thisSet",      802};
inline constexpr Refusal kFiscalBoundRefused       = {kMsgFiscalRefused,     kOracleModule, u"fStartOrEndTime", 437};
inline constexpr Refusal kFiscalPartRefused        = {kMsgFiscalRefused,     kOracleModule, u"fDatePart_acct",  437};
// clang-format on

/// Why `timeInterval` is refused in a unit of time such as u"qq", in any case; null where it is
/// not.
const Refusal* RefusedDifference(std::u16string_view part);

}  // namespace ORKBASE
