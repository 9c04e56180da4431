#include "Translation.h"

#include "Mx_Exception.h"

namespace ORKTOOL {

Translation TranslateRule(ORKBASE::MxExpression& rules, const ORKBASE::RuleDialect& dialect,
                          const std::u16string& document, bool split) {
  Translation made;
  std::u16string translated;
  try {
    if (!rules.TranslateFor(dialect.number, document, translated, made.a, made.b, split)) {
      made.refusal = Refusal{rules.errNumber(), rules.errDescription()};
    }
  } catch (const ORKBASE::Mx_Exception& refused) {
    made.refusal = Refusal{-1, refused.message};
  }
  return made;
}

}  // namespace ORKTOOL
