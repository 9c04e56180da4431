// The list of warnings, and the questions that several families ask.
#include "authoring/WarningList.h"

#include "dialects/Dialects.h"
#include "parser/RuleInterpreter.h"
#include "translator/IsNullForm.h"

#include <unicode/utf16.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace ORKBASE {

WarningList::WarningList(AuthoringCall& call, const RuleReading& reading,
                         const DocumentPlaces& places, std::span<const ORKDB_DSType_ENUM> dsTypes)
    : call_(call), reading_(reading), places_(places) {
  for (const DialectRow& row : Dialects()) {
    const auto is = [&row](ORKDB_DSType_ENUM asked) {
      return DialectOf(asked).dialect.number == row.dialect.number;
    };
    if (std::any_of(dsTypes.begin(), dsTypes.end(), is)) asked_.push_back(row.dialect.number);
  }
}

bool WarningList::Asks(ORKDB_DSType_ENUM database) const {
  return std::find(asked_.begin(), asked_.end(), database) != asked_.end();
}

std::u16string WarningList::With(Trait trait) const {
  for (const TraitFact& fact : TraitFacts()) {
    if (fact.trait == trait) return With(fact.known);
  }
  return {};
}

std::u16string WarningList::With(const std::array<Known, kDatabaseCount>& known) const {
  std::u16string names;
  for (const ORKDB_DSType_ENUM database : asked_) {
    if (!HoldsOn(database, known)) continue;
    if (!names.empty()) names += u", ";
    names += DatabaseName(database);
  }
  return names;
}

RuleProblem& WarningList::AtWord(const PlacedNode& node, std::int32_t message, Texts texts,
                                 RuleSeverity severity) {
  return At(node.word, node.word, message, texts, severity);
}

RuleProblem& WarningList::AtAll(const PlacedNode& node, std::int32_t message, Texts texts,
                                RuleSeverity severity) {
  return At(node.outerFirst, node.outerLast, message, texts, severity);
}

RuleProblem& WarningList::At(std::int32_t firstWord, std::int32_t lastWord, std::int32_t message,
                             Texts texts, RuleSeverity severity) {
  const RuleEdit range = InPlaceOf(firstWord, lastWord, {});
  RuleProblem& problem = problems_.emplace_back();
  problem.offset = range.offset;
  problem.length = range.length;
  problem.severity = severity;
  problem.number = message;
  problem.text = call_.Text(message, texts);
  return problem;
}

bool WarningList::MayNest(std::int32_t levels) const {
  return places_.Deepest() + levels <= kDeepestNesting;
}

RuleEdit WarningList::Before(std::int32_t word, std::u16string text) const {
  return {reading_.OffsetOf(static_cast<std::size_t>(word)), 0, std::move(text)};
}

RuleEdit WarningList::Behind(std::int32_t word, std::u16string text) const {
  const auto at = static_cast<std::size_t>(word);
  return {reading_.OffsetOf(at) + reading_.LengthOf(at), 0, std::move(text)};
}

RuleEdit WarningList::InPlaceOf(std::int32_t firstWord, std::int32_t lastWord,
                                std::u16string text) const {
  const RuleEdit end = Behind(lastWord, {});
  RuleEdit edit = Before(firstWord, std::move(text));
  edit.length = end.offset - edit.offset;
  return edit;
}

void WarningList::AddFix(RuleProblem& problem, std::u16string label,
                         std::vector<RuleEdit> edits) const {
  std::stable_sort(edits.begin(), edits.end(),
                   [](const RuleEdit& a, const RuleEdit& b) { return a.offset < b.offset; });
  problem.fixes.push_back({std::move(label), std::move(edits)});
}

std::u16string_view WarningList::Written(const PlacedNode& node) const {
  return reading_.words[static_cast<std::size_t>(node.word)].written;
}

std::u16string WarningList::ShownAll(const PlacedNode& node) const {
  constexpr std::size_t kMost = 80;
  const RuleEdit range = InPlaceOf(node.outerFirst, node.outerLast, {});
  const std::u16string_view text = reading_.text.substr(static_cast<std::size_t>(range.offset),
                                                        static_cast<std::size_t>(range.length));
  if (text.size() <= kMost) return std::u16string(text);
  const std::size_t end = U16_IS_LEAD(text[kMost - 1]) ? kMost - 1 : kMost;
  return std::u16string(text.substr(0, end)).append(u"...");
}

std::u16string WarningList::NameOf(std::u16string_view primary) const {
  const MxWord* word = call_.Dictionaries().FindByPrimary(primary);
  return word ? word->outDesc : std::u16string(primary);
}

std::vector<RuleProblem> WarningList::Take() {
  std::stable_sort(problems_.begin(), problems_.end(),
                   [](const RuleProblem& a, const RuleProblem& b) {
                     return std::tie(a.offset, a.number) < std::tie(b.offset, b.number);
                   });
  return std::move(problems_);
}

bool HasIsNullForm(const WarningList& list, const PlacedNode& field) {
  if (!list.call().Engine().useIsNull) return false;
  std::u16string text(field.primary);
  const std::size_t bare = text.size();
  WrapIsNull(field.dataType, text, u"isnull");
  return text.size() != bare;
}

bool IsColumn(const PlacedNode& node) {
  return node.symbol == kDataFieldSymbol || node.symbol == kCAXFieldSymbol;
}

bool IsComparison(const PlacedNode& node) {
  return node.symbol == kOpRelaSymbol && !node.Is(u"like");
}

bool IsTextConstant(const PlacedNode& node) {
  return node.symbol == kConstantSymbol && node.dataType == kStrDataType;
}

bool IsDateConstant(const PlacedNode& node) {
  return node.symbol == kConstantSymbol && node.dataType == kDateDataType;
}

}  // namespace ORKBASE
