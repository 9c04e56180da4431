#include "authoring/WordKinds.h"

#include "dictionary/VocabularyTables.h"
#include "foundation/KeyMap.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"

#include <span>

namespace ORKBASE {
namespace {

struct KindRow {
  MXRULE_SYMBOL_TYPE symbol;
  std::u16string_view item;
  std::u16string_view use;  ///< empty: a rule does not depend on it
};

struct TypeRow {
  MXRULE_DATATYPE dataType;
  std::u16string_view name;
  MessageNumber phrase;
};

// clang-format off
constexpr KindRow kKinds[] = {
    {kUnknownSymbol,    u"unknown",   u"unknown"},
    {kConstantSymbol,   u"constant",  u""},
    {kDataFieldSymbol,  u"field",     u"field"},
    {kSmsSymbol,        u"parameter", u"message"},
    {kInputSymbol,      u"parameter", u"input"},
    {kCAXFieldSymbol,   u"field",     u"cadField"},
    {kSysvarSymbol,     u"variable",  u"variable"},
    {kSysvarUserSymbol, u"variable",  u"variable"},
    {kSysvarCaseSymbol, u"variable",  u"variable"},
    {kFormFieldSymbol,  u"formField", u"formField"},
    {kDatePartSymbol,   u"part",      u""},
    {kOpSumSymbol,      u"operator",  u""},
    {kOpMultiSymbol,    u"operator",  u""},
    {kOpComposeSymbol,  u"operator",  u""},
    {kOpRelaSymbol,     u"operator",  u""},
    {kOpCondSymbol,     u"operator",  u""},
    {kOpNotSymbol,      u"operator",  u""},
    {kOpJoinSymbol,     u"operator",  u""},
    {kOpInSymbol,       u"operator",  u""},
    {kDelimiterSymbol,  u"bracket",   u""},
    {kOpIsNullSymbol,   u"operator",  u""},
    {kFunctionSymbol,   u"function",  u"function"},
    {kCAXEnumSymbol,    u"variable",  u"cadEnum"},
};

constexpr TypeRow kTypes[] = {
    {kNumDataType,   u"number",  kMsgANumber},
    {kStrDataType,   u"text",    kMsgAText},
    {kDateDataType,  u"date",    kMsgADate},
    {kLogicDataType, u"logic",   kMsgACondition},
    {kVarDataType,   u"any",     kMsgAnyValue},
    {kPicDataType,   u"picture", kMsgAPicture},
    {kLinkDataType,  u"link",    kMsgAnAttachment},
};
// clang-format on

const KindRow& RowOf(std::int32_t symbol) noexcept {
  for (const KindRow& row : kKinds) {
    if (row.symbol == symbol) return row;
  }
  return kKinds[0];
}

using InfoNumbers = KeyMap<std::int32_t>;

void AddInfos(InfoNumbers& infos, std::span<const VocabularyRow> rows) {
  for (const VocabularyRow& row : rows) {
    std::int32_t info = row.info;
    for (const std::u16string_view word : SplitText(row.primary, u"|")) {
      infos.emplace(ToLower(word), info++);
    }
  }
}

}  // namespace

std::u16string_view ItemKindOf(std::int32_t symbol) noexcept {
  return RowOf(symbol).item;
}

std::u16string_view UseKindOf(std::int32_t symbol) noexcept {
  return RowOf(symbol).use;
}

std::u16string_view TypeNameOf(std::int32_t dataType) noexcept {
  for (const TypeRow& row : kTypes) {
    if (row.dataType == dataType) return row.name;
  }
  return {};
}

MessageNumber PhraseOf(std::int32_t dataType) noexcept {
  for (const TypeRow& row : kTypes) {
    if (row.dataType == dataType) return row.phrase;
  }
  return kMsgAnyValue;
}

std::int32_t InfoNumberOf(std::u16string_view primary) {
  static const InfoNumbers infos = [] {
    InfoNumbers made;
    AddInfos(made, kOperatorRows);
    AddInfos(made, kFunctionRows);
    AddInfos(made, kOtherRows);
    return made;
  }();
  const auto found = infos.find(LookupKey(primary));
  return found == infos.end() ? 0 : found->second;
}

std::u16string InfoOf(std::u16string_view primary, Language language) {
  const std::int32_t number = InfoNumberOf(primary);
  return number == 0 ? std::u16string{} : LoadMessage(number, language);
}

}  // namespace ORKBASE
