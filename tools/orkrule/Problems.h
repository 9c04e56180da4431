// Problems of rules, for people: what is wrong, where, and what would mend it.
//
//   rules.txt:3: error: The word "Orders.Amout" is unknown.
//     Orders.Amout == 5
//     ^~~~~~~~~~~~
//     fix: Write Orders.Amount
#pragma once

#include "Colour.h"
#include "Output.h"
#include "RuleInput.h"

#include "RuleAuthoring.h"

#include <string>
#include <vector>

namespace ORKTOOL {

using Problems = std::vector<ORKBASE::RuleProblem>;

/// The problems of an answer to `Check`.
Problems ProblemsOf(const Json& answer);

/// A problem as lines of text. `begin` is what its first line begins with.
std::string ProblemText(const std::string& begin, const Rule& rule,
                        const ORKBASE::RuleProblem& problem, const Style& style);

/// The fixes of a problem, one a line.
std::string FixesText(const std::vector<ORKBASE::RuleFix>& fixes);

/// The fixes as an answer to `Check` has them.
Json FixesJson(const std::vector<ORKBASE::RuleFix>& fixes);

bool HasErrors(const Problems& problems);
/// Whether the database failed, and not the rule.
bool HasOutage(const Problems& problems);

/// Whether a database refuses the rule, which its translation tells too.
bool IsRefusal(const ORKBASE::RuleProblem& problem);

/// A sentence for a rule whose words are those of another language, else nothing.
std::u16string LanguageHint(const Problems& problems);

}  // namespace ORKTOOL
