#include "authoring/Spacing.h"

#include "MxRuleEnums.h"

namespace ORKBASE {

Spacing::Kind Spacing::KindOf(std::int32_t symbol, std::u16string_view primary) const noexcept {
  switch (symbol) {
    case kDelimiterSymbol:
      if (primary == u"(") return Kind::kOpening;
      return primary == u")" ? Kind::kClosing : Kind::kComma;
    case kOpSumSymbol:
      return primary == u"-" && AwaitsOperand() ? Kind::kSign : Kind::kOperator;
    case kOpMultiSymbol:
    case kOpComposeSymbol:
    case kOpRelaSymbol:
    case kOpCondSymbol:
    case kOpNotSymbol:
    case kOpJoinSymbol:
    case kOpInSymbol:
      return Kind::kOperator;
    case kOpIsNullSymbol:
      return Kind::kPostfix;
    case kFunctionSymbol:
    case kUnknownSymbol:
      return Kind::kCallee;
    default:
      return Kind::kOperand;
  }
}

bool Spacing::AwaitsOperand() const noexcept {
  return before_ == Kind::kOpening || before_ == Kind::kComma || before_ == Kind::kOperator ||
         before_ == Kind::kSign;
}

bool Spacing::BlankBefore(std::int32_t symbol, std::u16string_view primary) noexcept {
  const Kind kind = KindOf(symbol, primary);
  const bool joins = kind == Kind::kClosing || kind == Kind::kComma || before_ == Kind::kOpening ||
                     before_ == Kind::kSign || (kind == Kind::kOpening && before_ == Kind::kCallee);
  before_ = kind;
  return !joins;
}

}  // namespace ORKBASE
