// What one database makes of a verified rule.
#pragma once

#include "Report.h"

#include "MxExpression.h"
#include "RuleDialects.h"

#include <cstddef>
#include <optional>
#include <string>

namespace ORKTOOL {

/// Columns of the names in front of several translations, and of the two texts of one.
inline constexpr std::size_t kDialectColumn = 11;
inline constexpr std::size_t kPartColumn = 8;

struct Translation {
  std::optional<Refusal> refusal;
  std::u16string a;
  std::u16string b;  ///< of two texts the one that depends on groups
};

/// Translates a document; `split` asks for two texts.
Translation TranslateRule(ORKBASE::MxExpression& rules, const ORKBASE::RuleDialect& dialect,
                          const std::u16string& document, bool split);

}  // namespace ORKTOOL
