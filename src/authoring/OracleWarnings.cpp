// What only Oracle makes of a rule: dates in the order of the user's locale, empty texts that are
// empty fields, periods that end early.
#include "authoring/DateMask.h"
#include "authoring/WarningList.h"
#include "dialects/MxPLsqlTranslator.h"
#include "foundation/Text.h"

#include <utility>

namespace ORKBASE {
namespace {

struct LastPeriod {
  std::u16string_view function;
  std::u16string_view same;  ///< the function of the period itself
  std::u16string_view last;  ///< its number in the year before
};

// clang-format off
constexpr LastPeriod kLastPeriods[] = {
    {u"lastMonth",   u"thisMonth",   u"12"},
    {u"lastQuarter", u"thisQuarter", u"4"},
};

constexpr std::u16string_view kPeriods[] = {
    u"thisYear", u"lastYear", u"thisQuarter", u"lastQuarter", u"thisMonth", u"lastMonth",
};
// clang-format on

const PlacedNode* Sibling(const WarningList& list, const PlacedNode& node) {
  const PlacedNode* parent = list.places().Parent(node);
  if (!parent) return nullptr;
  const PlacedNode* first = list.places().Child(*parent, 0);
  return first == &node ? list.places().Child(*parent, 1) : first;
}

// --- dates ---------------------------------------------------------------------------------------

/// A constant that is meant as a text: it is compared with one, or takes its place.
bool StandsBesideText(const WarningList& list, const PlacedNode& constant) {
  const PlacedNode* parent = list.places().Parent(constant);
  if (!parent || !(IsComparison(*parent) || parent->Is(u"IsNull"))) return false;
  const PlacedNode* other = Sibling(list, constant);
  return other && other->dataType == kStrDataType;
}

void WarnOfOtherOrder(WarningList& list, const PlacedNode& constant, const DateMask& mask) {
  const std::u16string_view quoted = constant.primary;
  if (!mask.IsWhole() || quoted.size() < 3) return;
  const std::u16string_view date = quoted.substr(1, quoted.size() - 2);
  if (mask.Reads(date)) return;
  RuleProblem& problem =
      list.AtWord(constant, kMsgDateNotInMask,
                  {list.With(Trait::kReadsDatesByMask), list.Written(constant), mask.text()});
  const std::u16string rewritten = mask.Rewritten(date);
  if (rewritten.empty()) return;
  const std::u16string text = u"'" + rewritten + u"'";
  list.AddFix(problem, list.call().Text(kMsgFixWrite, {text}),
              {list.InPlaceOf(constant.word, constant.word, text)});
}

void WarnOfDate(WarningList& list, const PlacedNode& constant, const DateMask& mask) {
  if (StandsBesideText(list, constant)) {
    list.AtWord(constant, kMsgTextReadsAsDate,
                {list.With(Trait::kPrintsDates), list.Written(constant)});
  } else {
    WarnOfOtherOrder(list, constant, mask);
  }
}

// --- empty texts ---------------------------------------------------------------------------------

bool MayBeNull(const PlacedNode& node) {
  return node.symbol == kDataFieldSymbol || node.symbol == kFormFieldSymbol;
}

/// `s = ''` becomes `s null`.
void AddNullTest(const WarningList& list, const PlacedNode& comparison, const PlacedNode& field,
                 RuleProblem& problem) {
  const bool isEqual = comparison.Is(u"=");
  if (!MayBeNull(field) || !(isEqual || comparison.Is(u"<>"))) return;
  const std::u16string test =
      std::u16string(list.Written(field)) + u" " + list.NameOf(isEqual ? u"null" : u"not_null");
  list.AddFix(problem, list.call().Text(kMsgFixWrite, {test}),
              {list.InPlaceOf(comparison.firstWord, comparison.lastWord, test)});
}

/// `s <> 'x'` becomes `(s <> 'x' or s null)`.
void AddOrNull(const WarningList& list, const PlacedNode& comparison, const PlacedNode& field,
               RuleProblem& problem) {
  if (!list.MayNest(1)) return;
  const bool isAlone = comparison.parent < 0 || comparison.inBrackets;
  const std::u16string test = u" " + list.NameOf(u"or") + u" " +
                              std::u16string(list.Written(field)) + u" " + list.NameOf(u"null");
  list.AddFix(problem, list.call().Text(kMsgFixWrite, {list.ShownAll(comparison) + test}),
              {list.Before(comparison.firstWord, isAlone ? u"" : u"("),
               list.Behind(comparison.lastWord, isAlone ? test : test + u")")});
}

void WarnOfEmptyText(WarningList& list, const PlacedNode& comparison) {
  const std::u16string names = list.With(Trait::kEmptyTextIsNull);
  for (const std::int32_t side : {0, 1}) {
    const PlacedNode* constant = list.places().Child(comparison, side);
    const PlacedNode* other = list.places().Child(comparison, 1 - side);
    if (!constant || !other || !IsTextConstant(*constant)) continue;
    if (constant->Is(u"''")) {
      RuleProblem& problem = list.AtWord(*constant, kMsgEmptyTextIsNull, {names});
      AddNullTest(list, comparison, *other, problem);
      return;
    }
    if (!comparison.Is(u"<>") || !MayBeNull(*other) || other->dataType != kStrDataType) continue;
    RuleProblem& problem =
        list.AtWord(comparison, kMsgEmptyFieldLeftOut, {names}, kInformationSeverity);
    AddOrNull(list, comparison, *other, problem);
    return;
  }
}

// --- periods -------------------------------------------------------------------------------------

/// `lastMonth(2024, 1)` becomes `thisMonth(2023, 12)`.
void AddYearBefore(const WarningList& list, const PlacedNode& call, const LastPeriod& row,
                   const PlacedNode& number, RuleProblem& problem) {
  const PlacedNode& year = *list.places().Child(call, 0);
  const std::u16string same = list.NameOf(row.same);
  std::vector<RuleEdit> edits = {
      list.InPlaceOf(call.word, call.word, same),
      list.InPlaceOf(number.outerFirst, number.outerLast, std::u16string(row.last))};
  std::u16string shown = list.ShownAll(year) + u" - 1";
  std::int32_t value = 0;
  const bool isSum = year.first >= 0 && year.symbol != kFunctionSymbol && !year.inBrackets;
  if (ReadWholeInt(year.primary, value) && value > 0) {
    shown = Decimal(value - 1);
    edits.push_back(list.InPlaceOf(year.outerFirst, year.outerLast, shown));
  } else if (isSum) {
    if (!list.MayNest(1)) return;
    edits.push_back(list.Before(year.outerFirst, u"("));
    edits.push_back(list.Behind(year.outerLast, u") - 1"));
  } else {
    edits.push_back(list.Behind(year.outerLast, u" - 1"));
  }
  const std::u16string text = same + u"(" + shown + u", " + std::u16string(row.last) + u")";
  list.AddFix(problem, list.call().Text(kMsgFixWrite, {text}), std::move(edits));
}

void WarnOfYearBefore(WarningList& list, const PlacedNode& call) {
  for (const LastPeriod& row : kLastPeriods) {
    const PlacedNode* number = list.places().Child(call, 1);
    if (!call.Is(row.function) || !number) continue;
    std::int32_t value = 0;
    const bool isConstant = number->symbol == kConstantSymbol;
    if (isConstant && (!ReadWholeInt(number->primary, value) || value > 1)) return;
    RuleProblem& problem =
        list.AtWord(call, kMsgNoYearBefore, {list.With(Trait::kKeepsYear), list.Written(call)},
                    isConstant ? kWarningSeverity : kInformationSeverity);
    if (isConstant && value == 1) AddYearBefore(list, call, row, *number, problem);
  }
}

void WarnOfEnd(WarningList& list, const PlacedNode& call) {
  for (const std::u16string_view period : kPeriods) {
    if (!call.Is(period)) continue;
    list.AtWord(call, kMsgEndIsMidnight, {list.With(Trait::kEndsAtMidnight)}, kInformationSeverity);
  }
}

/// Sets are refused as a whole.
std::vector<bool> BelowSets(const WarningList& list) {
  std::vector<bool> found(list.nodes().size());
  for (const PlacedNode& node : list.nodes()) {
    const bool isBelow = node.parent >= 0 && found[static_cast<std::size_t>(node.parent)];
    found[static_cast<std::size_t>(list.places().IndexOf(node))] = isBelow || node.Is(u"thisSet");
  }
  return found;
}

}  // namespace

void WarnOfOracle(WarningList& list) {
  const DateMask mask(LocaleDateFormat());
  const std::vector<bool> isBelowSet = BelowSets(list);
  for (const PlacedNode& node : list.nodes()) {
    if (isBelowSet[static_cast<std::size_t>(list.places().IndexOf(node))]) continue;
    if (IsDateConstant(node)) WarnOfDate(list, node, mask);
    if (IsComparison(node)) WarnOfEmptyText(list, node);
    if (node.symbol != kFunctionSymbol) continue;
    WarnOfYearBefore(list, node);
    WarnOfEnd(list, node);
  }
}

}  // namespace ORKBASE
