// Refused rules, for people: the message, the rule, a mark under the refused word, and what would
// mend it; and warnings about rules that are not refused.
//
//   orkrule: The word "Orders.Amout" is unknown.
//     1 + Orders.Amout
//         ^~~~~~~~~~~~
//     fix: Write Orders.Amount
#pragma once

#include "Output.h"
#include "RuleInput.h"

#include "MxErrorRecord.h"
#include "RuleAuthoring.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ORKTOOL {

/// Why a rule was refused, and where.
struct Refusal {
  std::int32_t number = 0;  ///< of the message
  std::u16string text;
  std::optional<std::size_t> at = std::nullopt;  ///< unit at which the refused word begins
  std::size_t length = 0;                        ///< of the refused word
  std::u16string hint = {};                      ///< why the table of the word is not known
  std::vector<ORKBASE::RuleFix> fixes = {};
};

/// The refusal that an error record tells. Throws `Outage` where the database failed, not the
/// rule.
Refusal RefusalOf(const ORKBASE::MxErrorRecord& error);

/// Adds what would mend a rule that was refused as one of a type.
void AddAdvice(Refusal& refusal, ORKBASE::RuleAuthoring& authoring, ORKBASE::MXRULE_DATATYPE type,
               const Rule& rule);

/// Writes a refusal to standard error.
void ReportRefusal(const Rule& rule, const Refusal& refusal);

/// What warnings about a rule depend on.
struct WarningsWanted {
  ORKBASE::MXRULE_DATATYPE type;
  std::span<const ORKBASE::ORKDB_DSType_ENUM> databases = {};
  bool twoParts = false;
};

/// Writes the warnings about a rule that verifies to standard error.
void ReportWarnings(const Rule& rule, ORKBASE::RuleAuthoring& authoring,
                    const WarningsWanted& wanted);

/// {"number", "text", "offset", "length", "unit", "position", "hint", "fixes"}. The number is that
/// of the message. Offset and length of the refused word count units of UTF-16, the position the
/// characters before it; these four and the hint are there where there are any.
Json RefusalJson(const std::u16string& rule, const Refusal& refusal);

}  // namespace ORKTOOL
