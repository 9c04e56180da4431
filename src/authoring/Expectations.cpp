#include "authoring/Expectations.h"

#include "expression/ExpressionState.h"
#include "foundation/MessageNumbers.h"
#include "platform/DisplayNames.h"

#include <algorithm>

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

class Prober {
 public:
  Prober(Workbench& bench, const Draft& draft, std::size_t word)
      : bench_(bench),
        at_(word),
        words_(draft.reading.words.begin(),
               draft.reading.words.begin() + static_cast<std::ptrdiff_t>(word)) {}

  bool IsTaken(const Probe& probe) {
    WordView word;
    word.primary = word.outDesc = word.content = word.written = probe.primary;
    word.symbol = probe.symbol;
    word.dataType = probe.dataType;
    return IsTaken(word);
  }
  bool IsTaken(const WordView& word) {
    words_.push_back(word);
    std::int32_t refused = -1;
    const bool parses = Parse(refused);
    words_.pop_back();
    return parses || refused == static_cast<std::int32_t>(at_ + 1);
  }
  bool IsWhole() {
    std::int32_t refused = -1;
    return at_ > 0 && Parse(refused);
  }

 private:
  bool Parse(std::int32_t& refused) {
    std::u16string document;
    MxErrorRecord error;
    return bench_.call.Engine().parser.ParseExpr(ParsedType(bench_.type), words_, document, error,
                                                 refused);
  }

  Workbench& bench_;
  std::size_t at_;
  std::vector<WordView> words_;
};

}  // namespace

std::vector<std::u16string> ExpectedAt(Workbench& bench, const Draft& draft, std::size_t word) {
  constexpr std::size_t kFarthest = 2'000;  // words; behind them it would take too long
  std::vector<std::u16string> expected;
  if (word > kFarthest) return expected;
  const Language language = bench.call.TextLanguage();
  Prober prober(bench, draft, std::min(word, draft.Size()));
  const auto add = [&](std::u16string text) {
    const bool isNew = std::find(expected.begin(), expected.end(), text) == expected.end();
    if (isNew && !text.empty() && expected.size() < kMostExpected) {
      expected.push_back(std::move(text));
    }
  };
  for (const Probe& probe : kProbes) {
    if (!prober.IsTaken(probe)) continue;
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
    Probe opening{u"(", kDelimiterSymbol, kNoDataType, Told::kMessage, kMsgExpectOpening};
    if (prober.IsTaken(opening)) add(bench.call.Text(kMsgExpectOpening));
  }
  if (prober.IsWhole()) add(bench.call.Text(kMsgExpectEnd));
  return expected;
}

}  // namespace ORKBASE
