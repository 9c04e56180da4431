// Refused rules, for people: the message, the rule, and a caret under the refused word.
//
//   orkrule: The word "Amout" is unknown.
//     1 + Amout
//         ^
#pragma once

#include "Output.h"
#include "RuleInput.h"

#include "MxErrorRecord.h"

#include <cstddef>
#include <optional>
#include <string>

namespace ORKTOOL {

/// Why a rule was refused, and where.
struct Refusal {
  std::int32_t number = 0;
  std::u16string text;
  std::optional<std::size_t> at = std::nullopt;  ///< unit at which the refused word begins
  std::u16string hint = {};                      ///< why the table of the word is not known
};

/// The refusal that an error record tells. Throws `Failure` where the database failed, not the
/// rule.
Refusal RefusalOf(const ORKBASE::MxErrorRecord& error);

/// The rule, indented, with a caret line below the line that holds unit `at`; the caret stands
/// behind the rule where `at` is its length. No caret line without `at`.
std::string MarkedRule(const std::u16string& rule, std::optional<std::size_t> at);

/// Writes a refusal to standard error.
void ReportRefusal(const Rule& rule, const Refusal& refusal);

/// {"number", "text", "position", "hint"}, the last two where there are any: the position counts
/// the characters before the refused word.
Json RefusalJson(const std::u16string& rule, const Refusal& refusal);

}  // namespace ORKTOOL
