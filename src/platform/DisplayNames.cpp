// The names of value types and kinds of words, by message.
#include "platform/DisplayNames.h"

#include "MxRuleEnums.h"
#include "foundation/MessageNumbers.h"
#include "platform/MessageTexts.h"

#include <span>

namespace ORKBASE {
namespace {

struct NamedNumber {
  std::int32_t number;
  MessageNumber message;
};

// clang-format off
constexpr NamedNumber kDataTypeNames[] = {
    {kNoDataType,         kMsgTypeNone},
    {kNumDataType,        kMsgTypeNumber},
    {kStrDataType,        kMsgTypeText},
    {kDateDataType,       kMsgTypeDate},
    {kLogicDataType,      kMsgTypeCondition},
    {kVarDataType,        kMsgTypeAny},
    {kPicDataType,        kMsgTypePicture},
    {kLinkDataType,       kMsgTypeLink},
    {kMemoDataType,       kMsgTypeMemo},
    {kReserved9DataType,  kMsgTypeReserved9},
    {kReserved10DataType, kMsgTypeReserved10},
};

constexpr NamedNumber kSymbolNames[] = {
    {kConstantSymbol,    kMsgSymbolConstant},
    {kDataFieldSymbol,   kMsgSymbolDataField},
    {kSmsSymbol,         kMsgSymbolSms},
    {kInputSymbol,       kMsgSymbolInput},
    {kCAXFieldSymbol,    kMsgSymbolCAXField},
    {kSysvarSymbol,      kMsgSymbolSysvar},
    {kSysvarUserSymbol,  kMsgSymbolSysvarUser},
    {kSysvarCaseSymbol,  kMsgSymbolSysvarCase},
    {kFormFieldSymbol,   kMsgSymbolFormField},
    {kDatePartSymbol,    kMsgSymbolDatePart},
    {kReportFieldSymbol, kMsgSymbolReportField},
    {kOpSumSymbol,       kMsgSymbolOpSum},
    {kOpMultiSymbol,     kMsgSymbolOpMulti},
    {kOpComposeSymbol,   kMsgSymbolOpCompose},
    {kOpRelaSymbol,      kMsgSymbolOpRela},
    {kOpCondSymbol,      kMsgSymbolOpCond},
    {kOpNotSymbol,       kMsgSymbolOpNot},
    {kOpJoinSymbol,      kMsgSymbolOpJoin},
    {kOpInSymbol,        kMsgSymbolOpIn},
    {kDelimiterSymbol,   kMsgSymbolDelimiter},
    {kReserved25Symbol,  kMsgSymbolReserved25},
    {kOpIsNullSymbol,    kMsgSymbolOpIsNull},
    {kFunctionSymbol,    kMsgSymbolFunction},
    {kCAXEnumSymbol,     kMsgSymbolCAXEnum},
};
// clang-format on

/// 0 for a number without a row.
std::int32_t MessageOf(std::span<const NamedNumber> rows, std::int32_t number) noexcept {
  for (const NamedNumber& row : rows) {
    if (row.number == number) return row.message;
  }
  return 0;
}

}  // namespace

std::u16string DataTypeName(std::int32_t dataType, Language language) {
  const std::int32_t message = MessageOf(kDataTypeNames, dataType);
  return LoadMessage(message != 0 ? message : std::int32_t{kMsgTypeOther}, language);
}

std::u16string SymbolName(std::int32_t symbol, Language language) {
  const std::int32_t message = MessageOf(kSymbolNames, symbol);
  return message != 0 ? LoadMessage(message, language) : std::u16string{};
}

}  // namespace ORKBASE
