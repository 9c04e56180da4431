// Calls and operators that a database refuses or does not have.
#include "Mx_Exception.h"
#include "authoring/WarningList.h"
#include "dialects/Dialects.h"
#include "foundation/Text.h"

#include <algorithm>

namespace ORKBASE {
namespace {

struct OperatorRow {
  std::u16string_view word;
  Trait trait;
  MessageNumber message;
};

// clang-format off
constexpr OperatorRow kOperators[] = {
    {u"^",  Trait::kNoPower,     kMsgNoOperator},
    {u"^",  Trait::kPowerIsBits, kMsgOperatorIsBits},
    {u"%",  Trait::kNoRemainder, kMsgNoOperator},
    {u"*=", Trait::kNoOuterJoin, kMsgNoOperator},
    {u"=*", Trait::kNoOuterJoin, kMsgNoOperator},
};
// clang-format on

/// Whether the translation of the whole document ends with a refusal.
bool IsRefused(const WarningList& list, ORKDB_DSType_ENUM database, std::u16string_view document) {
  const auto translator = list.call().Engine().CreateTranslator(database);
  try {
    std::u16string translated;
    translator->Translate(document, translated);
  } catch (const Mx_Exception&) {
    return true;
  }
  return false;
}

/// A call is dropped unseen where the SQL has no room for its argument: so the translator decides.
void WarnOfRefusals(WarningList& list, ORKDB_DSType_ENUM database, std::u16string_view document) {
  bool isAsked = false;
  for (const PlacedNode& node : list.nodes()) {
    if (node.symbol != kFunctionSymbol) continue;
    const std::u16string_view first = node.first < 0 ? u"" : list.places().At(node.first).primary;
    const Refusal* refusal = RefusalOf(database, node.primary, first);
    if (!refusal) continue;
    if (!isAsked && !IsRefused(list, database, document)) return;
    isAsked = true;
    const std::u16string text = list.call().Text(refusal->message);
    list.AtWord(node, kMsgCallRefused, {DatabaseName(database), text});
  }
}

/// A function of the rule that goes to the database as it stands.
bool IsUnknown(ORKDB_DSType_ENUM database, const PlacedNode& call) {
  return KnownOf(database, call.primary) == Known::kMissing &&
         !DialectOf(database).map().Find(LookupKey(call.primary));
}

void WarnOfUnknown(WarningList& list, const PlacedNode& call) {
  std::u16string names;
  for (const ORKDB_DSType_ENUM database : list.asked()) {
    if (!IsUnknown(database, call)) continue;
    if (!names.empty()) names += u", ";
    names += DatabaseName(database);
  }
  if (!names.empty()) list.AtWord(call, kMsgCallUnknown, {names, list.Written(call)});
}

/// `a ^ b` becomes `POWER(a, b)`.
void AddPower(const WarningList& list, const PlacedNode& power, RuleProblem& problem) {
  const PlacedNode* base = list.places().Child(power, 0);
  const PlacedNode* exponent = list.places().Child(power, 1);
  if (!base || !exponent || !list.MayNest(1)) return;
  const std::u16string name = list.NameOf(u"POWER");
  const RuleEdit left = list.Behind(base->outerLast, {});
  RuleEdit comma = list.Before(exponent->outerFirst, u", ");
  comma.length = comma.offset - left.offset;
  comma.offset = left.offset;
  list.AddFix(problem, list.call().Text(kMsgFixWrite, {name + u"(...)"}),
              {list.Before(base->outerFirst, name + u"("), std::move(comma),
               list.Behind(exponent->outerLast, u")")});
}

void WarnOfOperator(WarningList& list, const PlacedNode& node) {
  for (const OperatorRow& row : kOperators) {
    if (!node.Is(row.word)) continue;
    const std::u16string names = list.With(row.trait);
    if (names.empty()) continue;
    RuleProblem& problem = list.AtWord(node, row.message, {names, list.Written(node)});
    if (row.word == u"^") AddPower(list, node, problem);
  }
}

}  // namespace

void WarnOfCalls(WarningList& list, std::u16string_view document) {
  for (const ORKDB_DSType_ENUM database : list.asked()) WarnOfRefusals(list, database, document);
  for (const PlacedNode& node : list.nodes()) {
    if (node.symbol == kFunctionSymbol) WarnOfUnknown(list, node);
    if (node.IsInfix()) WarnOfOperator(list, node);
  }
}

}  // namespace ORKBASE
