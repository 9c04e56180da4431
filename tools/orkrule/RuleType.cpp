#include "RuleType.h"

#include <limits>

namespace ORKTOOL {
namespace {

/// How far the last verification got; a rule that ends too early was read to its end.
std::int32_t Reached(const ORKBASE::MxExpression& rules) {
  const std::int32_t token = ORKBASE::RefusedToken(rules);
  return token < 0 ? std::numeric_limits<std::int32_t>::max() : token;
}

}  // namespace

std::optional<ORKBASE::MXRULE_DATATYPE> VerifyRule(ORKBASE::MxExpression& rules,
                                                   ORKBASE::MXRULE_DATATYPE type,
                                                   const std::u16string& text,
                                                   std::u16string& document) {
  const auto verifiesAs = [&](ORKBASE::MXRULE_DATATYPE asked) {
    return rules.Verify(asked, text, document);
  };
  if (type != kEitherType) {
    if (verifiesAs(type)) return type;
    if (rules.errNumber() == kOwnError) verifiesAs(type);
    return std::nullopt;
  }
  if (verifiesAs(ORKBASE::kVarDataType)) return ORKBASE::kVarDataType;
  const std::int32_t asValue = Reached(rules);
  if (verifiesAs(ORKBASE::kLogicDataType)) return ORKBASE::kLogicDataType;
  if (Reached(rules) <= asValue) verifiesAs(ORKBASE::kVarDataType);
  return std::nullopt;
}

}  // namespace ORKTOOL
