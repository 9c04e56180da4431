#include "RuleType.h"

#include <initializer_list>
#include <utility>

namespace ORKTOOL {

Verification VerifyRule(ORKBASE::MxExpression& rules, ORKBASE::MXRULE_DATATYPE type,
                        const std::u16string& text) {
  Verification made;
  const auto verifiesAs = [&](ORKBASE::MXRULE_DATATYPE asked) {
    if (rules.Verify(asked, text, made.document)) made.type = asked;
    return made.type.has_value();
  };
  if (type != kEitherType) {
    made.tried = type;
    if (!verifiesAs(type)) made.error = rules.errRecord();
    return made;
  }
  for (const ORKBASE::MXRULE_DATATYPE asked : {ORKBASE::kVarDataType, ORKBASE::kLogicDataType}) {
    if (verifiesAs(asked)) return made;
    // A rule that ends too early was read to its end, which lies behind every word.
    if (rules.errRecord().offset <= made.error.offset) continue;
    made.error = rules.errRecord();
    made.tried = asked;
  }
  return made;
}

}  // namespace ORKTOOL
