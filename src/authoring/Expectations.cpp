#include "authoring/Expectations.h"

#include "expression/ExpressionState.h"
#include "foundation/MessageNumbers.h"
#include "parser/NextWords.h"
#include "platform/DisplayNames.h"

#include <algorithm>
#include <span>

namespace ORKBASE {
namespace {

constexpr std::size_t kMostExpected = 10;

enum class Told : std::uint8_t { kType, kSymbol, kMessage };

/// A word that is tried, and what is told where it may stand.
struct Probe {
  std::u16string_view primary;
  MXRULE_SYMBOL_TYPE symbol;
  MXRULE_DATATYPE dataType;
  Told told;
  std::int32_t number;
};

// clang-format off
constexpr Probe kProbes[] = {
    {u"1",            kConstantSymbol,  kNumDataType,   Told::kType,    kNumDataType},
    {u"''",           kConstantSymbol,  kStrDataType,   Told::kType,    kStrDataType},
    {u"'2020-01-02'", kConstantSymbol,  kDateDataType,  Told::kType,    kDateDataType},
    {u"not",          kOpNotSymbol,     kLogicDataType, Told::kType,    kLogicDataType},
    {u"T.p",          kDataFieldSymbol, kPicDataType,   Told::kType,    kPicDataType},
    {u"T.f",          kDataFieldSymbol, kVarDataType,   Told::kMessage, kMsgExpectField},
    {u"dd",           kDatePartSymbol,  kNoDataType,    Told::kMessage, kMsgExpectDatePart},
    {u"'yyyymmdd'",   kDatePartSymbol,  kNoDataType,    Told::kMessage, kMsgExpectDateStyle},
    {u"thisYear",     kFunctionSymbol,  kDateDataType,  Told::kMessage, kMsgExpectPeriod},
    {u"thisSet",      kFunctionSymbol,  kVarDataType,   Told::kMessage, 0},
    {u")",            kDelimiterSymbol, kNoDataType,    Told::kMessage, kMsgExpectClosing},
    {u",",            kDelimiterSymbol, kNoDataType,    Told::kMessage, kMsgExpectComma},
    {u"+",            kOpSumSymbol,     kNumDataType,   Told::kMessage, kMsgExpectOperator},
    {u"&",            kOpComposeSymbol, kStrDataType,   Told::kMessage, kMsgExpectOperator},
    {u"=",            kOpRelaSymbol,    kVarDataType,   Told::kSymbol,  kOpRelaSymbol},
    {u"in",           kOpInSymbol,      kVarDataType,   Told::kSymbol,  kOpInSymbol},
    {u"null",         kOpIsNullSymbol,  kVarDataType,   Told::kSymbol,  kOpIsNullSymbol},
    {u"and",          kOpCondSymbol,    kLogicDataType, Told::kSymbol,  kOpCondSymbol},
};
// clang-format on

bool Takes(const NextWords& next, const Probe& probe) {
  return next.Takes(CompiledGrammar::Instance().LiteralOf(probe.primary), probe.symbol,
                    probe.dataType);
}

}  // namespace

std::vector<std::u16string> ExpectedAt(Workbench& bench, const Draft& draft, std::size_t word) {
  std::vector<std::u16string> expected;
  const Language language = bench.call.TextLanguage();
  NextWords next;
  bench.call.Engine().parser.FindNext(
      ParsedType(bench.type), std::span(draft.reading.words).first(std::min(word, draft.Size())),
      next);
  const auto add = [&](std::u16string text) {
    const bool isNew = std::find(expected.begin(), expected.end(), text) == expected.end();
    if (isNew && !text.empty() && expected.size() < kMostExpected) {
      expected.push_back(std::move(text));
    }
  };
  for (const Probe& probe : kProbes) {
    if (!Takes(next, probe)) continue;
    switch (probe.told) {
      case Told::kType:
        add(DataTypeName(probe.number, language));
        break;
      case Told::kSymbol:
        add(SymbolName(probe.number, language));
        break;
      case Told::kMessage:
        if (probe.number != 0) {
          add(bench.call.Text(probe.number));
        } else if (const MxWord* own = bench.call.Dictionaries().FindByPrimary(probe.primary)) {
          add(own->outDesc);
        }
        break;
    }
  }
  if (expected.empty()) {
    constexpr Probe opening{u"(", kDelimiterSymbol, kNoDataType, Told::kMessage, kMsgExpectOpening};
    if (Takes(next, opening)) add(bench.call.Text(kMsgExpectOpening));
  }
  if (word > 0 && next.HasEnd()) add(bench.call.Text(kMsgExpectEnd));
  return expected;
}

}  // namespace ORKBASE
