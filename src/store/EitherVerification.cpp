// Verifying a rule whose type need not be known.
#include <initializer_list>

#include "RuleUpkeep.h"

namespace ORKBASE {

EitherVerification VerifyEither(MxExpression& rules, MXRULE_DATATYPE type,
                                const std::u16string& expression) {
  EitherVerification made;
  const auto verifiesAs = [&](MXRULE_DATATYPE asked) {
    if (rules.Verify(asked, expression, made.document)) made.type = asked;
    return made.type.has_value();
  };
  if (type != kEitherType) {
    made.tried = type;
    if (!verifiesAs(type)) made.error = rules.errRecord();
    return made;
  }
  for (const MXRULE_DATATYPE asked : {kVarDataType, kLogicDataType}) {
    if (verifiesAs(asked)) return made;
    // A rule that ends too early was read to its end, which lies behind every word.
    if (rules.errRecord().offset <= made.error.offset) continue;
    made.error = rules.errRecord();
    made.tried = asked;
  }
  return made;
}

}  // namespace ORKBASE
