// What a rule means on the databases that were asked about: where two of them differ, and what one
// of them makes of it that no other does.
#include "authoring/WarningList.h"

#include "foundation/Text.h"

#include <algorithm>

namespace ORKBASE {
namespace {

/// A call that two databases understand in two ways.
struct CallRow {
  std::u16string_view function;
  bool (*isMeant)(const WarningList& list, const PlacedNode& call);
  MessageNumber message;
  Trait one;
  Trait other;
};

std::u16string_view Argument(const WarningList& list, const PlacedNode& call, std::int32_t index) {
  const PlacedNode* argument = list.places().Child(call, index);
  return argument ? argument->primary : std::u16string_view{};
}

bool Always(const WarningList& /*list*/, const PlacedNode& /*call*/) {
  return true;
}

bool CountsMonths(const WarningList& list, const PlacedNode& call) {
  return Argument(list, call, 0) == u"mm";
}

bool MovesByMonths(const WarningList& list, const PlacedNode& call) {
  const std::u16string_view part = Argument(list, call, 0);
  return part == u"mm" || part == u"qq" || part == u"yy";
}

bool HasPlaces(const WarningList& list, const PlacedNode& call) {
  return list.places().Child(call, 1) != nullptr;
}

bool BeginsAtZero(const WarningList& list, const PlacedNode& call) {
  return Argument(list, call, 1) == u"0";
}

bool HasTimeStyle(const WarningList& list, const PlacedNode& call) {
  return Argument(list, call, 1).starts_with(u"'hh:mm:ss");
}

// clang-format off
constexpr CallRow kCalls[] = {
    {u"timeInterval", CountsMonths,  kMsgIntervalDiffers,  Trait::kCountsBorders, Trait::kCountsTime},
    {u"dateAdd",      MovesByMonths, kMsgMonthEndDiffers,  Trait::kKeepsLastDay,  Trait::kKeepsDayNumber},
    {u"weekDay",      Always,        kMsgWeekBeginDiffers, Trait::kServerWeek,    Trait::kMondayWeek},
    {u"log",          Always,        kMsgLogDiffers,       Trait::kNaturalLog,    Trait::kLogOfTen},
    {u"ToNumber",     HasPlaces,     kMsgPlacesDiffer,     Trait::kRoundsPlaces,  Trait::kCutsPlaces},
    {u"substring",    BeginsAtZero,  kMsgStartZeroDiffers, Trait::kZeroIsFirst,   Trait::kZeroIsBefore},
    {u"ToText",       HasTimeStyle,  kMsgTimeStyleDiffers, Trait::kTimeStyle,     Trait::kMonthStyle},
};

/// Functions whose value has a fraction, whatever they are given.
constexpr std::u16string_view kFractions[] = {u"log", u"log10", u"Exponent", u"RAND"};
// clang-format on

void WarnOfCall(WarningList& list, const PlacedNode& call) {
  for (const CallRow& row : kCalls) {
    if (!call.Is(row.function) || !row.isMeant(list, call)) continue;
    const std::u16string one = list.With(row.one);
    const std::u16string other = list.With(row.other);
    if (!one.empty() && !other.empty()) list.AtWord(call, row.message, {one, other});
  }
}

// --- division ------------------------------------------------------------------------------------

bool IsCalculation(const PlacedNode& node) {
  return node.symbol == kOpSumSymbol || node.symbol == kOpMultiSymbol;
}

/// Nodes whose value surely has a fraction part, if only .0; children come behind their parents.
std::vector<bool> Fractions(const WarningList& list) {
  const std::span<const PlacedNode> nodes = list.nodes();
  std::vector<bool> found(nodes.size());
  for (std::size_t i = nodes.size(); i-- > 0;) {
    const PlacedNode& node = nodes[i];
    if (node.symbol == kConstantSymbol) {
      found[i] = node.primary.find_first_of(u".eE") != std::u16string_view::npos;
    } else if (node.symbol == kFunctionSymbol) {
      const auto is = [&node](std::u16string_view name) { return node.Is(name); };
      found[i] = std::any_of(std::begin(kFractions), std::end(kFractions), is) ||
                 (node.Is(u"ToNumber") && HasPlaces(list, node));
    }
    if (!found[i] || node.parent < 0) continue;
    const PlacedNode& parent = list.places().At(node.parent);
    if (IsCalculation(parent)) found[static_cast<std::size_t>(node.parent)] = true;
  }
  return found;
}

void WarnOfDivisions(WarningList& list) {
  const std::u16string cut = list.With(Trait::kCutsDivision);
  const std::u16string exact = list.With(Trait::kExactDivision);
  if (cut.empty() || exact.empty()) return;
  const std::vector<bool> fractions = Fractions(list);
  for (const PlacedNode& node : list.nodes()) {
    if (node.symbol != kOpMultiSymbol || !node.Is(u"/") || !node.IsInfix()) continue;
    bool isFraction = false;
    bool isConstant = true;
    for (const std::int32_t side : {0, 1}) {
      const PlacedNode* operand = list.places().Child(node, side);
      if (!operand) continue;
      isFraction |= fractions[static_cast<std::size_t>(list.places().IndexOf(*operand))];
      isConstant &= operand->symbol == kConstantSymbol;
    }
    if (isFraction) continue;
    // Of columns it is not known whether they hold whole numbers.
    list.AtWord(node, kMsgDivisionDiffers, {cut, exact},
                isConstant ? kWarningSeverity : kInformationSeverity);
  }
}

// --- texts that are cut --------------------------------------------------------------------------

constexpr std::int32_t kKeptLetters = 30;

bool IsShortConstant(const PlacedNode& node) {
  return node.symbol == kConstantSymbol && node.primary.size() <= kKeptLetters + 2;
}

/// `ToText` of one text, which may be longer than what stays.
bool IsCut(const WarningList& list, const PlacedNode& node) {
  if (!node.Is(u"ToText") || node.first < 0 || HasPlaces(list, node)) return false;
  const PlacedNode& value = list.places().At(node.first);
  const bool isText = value.dataType == kStrDataType || value.dataType == kVarDataType;
  return isText && !IsShortConstant(value);
}

/// Whether the length of a text that stands below this node counts.
bool Measures(const PlacedNode& node) {
  return node.symbol == kOpRelaSymbol || node.symbol == kOpInSymbol || node.Is(u"thisSet") ||
         node.Is(u"length");
}

/// A comparison over a text, or its length, also through what joins or changes texts.
void WarnOfCutTexts(WarningList& list) {
  const std::u16string names = list.With(Trait::kCutsText);
  if (names.empty()) return;
  std::vector<bool> isMeasured(list.nodes().size());
  for (const PlacedNode& node : list.nodes()) {
    const PlacedNode* parent = list.places().Parent(node);
    if (!parent) continue;
    const auto index = static_cast<std::size_t>(list.places().IndexOf(node));
    isMeasured[index] = Measures(*parent) || (parent->dataType == kStrDataType &&
                                              isMeasured[static_cast<std::size_t>(node.parent)]);
    if (!isMeasured[index] || !IsCut(list, node)) continue;
    list.AtWord(node, kMsgTextIsCut, {names, Decimal(kKeptLetters)});
  }
}

// --- arguments without brackets ------------------------------------------------------------------

/// Whether the operators of an argument reach what stands beside it.
bool Mixes(const WarningList& list, const PlacedNode& argument, Beside beside) {
  const PlacedNode* node = &argument;
  if (node->semanticType == kPrefixSemantic && node->first >= 0) {
    node = list.places().Child(*node, 0);
  }
  if (!node->IsInfix() || node->inBrackets || argument.inBrackets) return false;
  return node->symbol == kOpSumSymbol || (beside == Beside::kFactor && !node->Is(u"*"));
}

void WarnOfMixing(WarningList& list, const PlacedNode& call) {
  for (const MixingArgument& row : MixingArguments()) {
    if (!call.Is(row.function)) continue;
    if (!row.part.empty() && Argument(list, call, 0) != row.part) continue;
    const PlacedNode* argument = list.places().Child(call, row.argument);
    const std::u16string names = list.With(row.known);
    if (!argument || names.empty() || !Mixes(list, *argument, row.beside)) continue;
    RuleProblem& problem =
        list.AtAll(*argument, kMsgArgumentMixes, {names, list.ShownAll(*argument)});
    if (!list.MayNest(1)) continue;
    list.AddFix(problem, list.call().Text(kMsgFixBracketArgument),
                {list.Before(argument->outerFirst, u"("), list.Behind(argument->outerLast, u")")});
  }
}

// --- sets ----------------------------------------------------------------------------------------

void WarnOfSets(WarningList& list) {
  const std::u16string names = list.With(Trait::kKeepsFormInSet);
  if (names.empty()) return;
  std::vector<bool> isBelow(list.nodes().size());
  for (const PlacedNode& node : list.nodes()) {
    const auto index = static_cast<std::size_t>(list.places().IndexOf(node));
    const bool isMember = node.parent >= 0 && isBelow[static_cast<std::size_t>(node.parent)];
    isBelow[index] = isMember || node.Is(u"thisSet");
    if (!isMember || !IsColumn(node) || !HasIsNullForm(list, node)) continue;
    list.AtWord(node, kMsgSetKeepsForm, {names, list.Written(node)});
  }
}

}  // namespace

void WarnOfDifferences(WarningList& list) {
  for (const PlacedNode& node : list.nodes()) {
    if (node.symbol != kFunctionSymbol) continue;
    WarnOfCall(list, node);
    WarnOfMixing(list, node);
  }
  WarnOfDivisions(list);
  WarnOfCutTexts(list);
  WarnOfSets(list);
}

}  // namespace ORKBASE
