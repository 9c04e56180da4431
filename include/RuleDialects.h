// The databases that rules are translated for, for programs that let their users choose one.
//
//   if (const ORKBASE::RuleDialect* dialect = ORKBASE::FindRuleDialect(u"plsql"))
//     rules.TranslateFor(dialect->number, document, translated, where, having, false);
#pragma once

#include <span>
#include <string_view>

#include "MxRuleEnums.h"
#include "OrkExport.h"

namespace ORKBASE {

/// One dialect. Its texts are literals: they live as long as the process.
struct RuleDialect {
  ORKDB_DSType_ENUM number;
  std::u16string_view name;        ///< small ASCII letters, such as u"oracle"
  std::u16string_view otherNames;  ///< what else it is called: `a,b`, empty for nothing
};

/// All of them, each once; the first is the one that serves a number that has none.
ORKRULE_EXPORT std::span<const RuleDialect> RuleDialects();

/// The dialect of a name or other name in any case, or null; blanks, hyphens, underscores and
/// slashes within it do not count. Never freed by the caller.
ORKRULE_EXPORT const RuleDialect* FindRuleDialect(std::u16string_view name);

}  // namespace ORKBASE
