// Rules that the engine and the databases read in another order: "or" before "and", and a minus
// before a sum. The document has the rule's order; its SQL has no more brackets than the rule.
#include "authoring/WarningList.h"

#include <algorithm>

namespace ORKBASE {
namespace {

bool IsLink(const PlacedNode& node) {
  return node.symbol == kOpCondSymbol && node.IsInfix();
}

/// `a or b and c`: operators from left to right, each over all that stands before it.
using Chain = std::vector<const PlacedNode*>;

bool TurnsHere(const Chain& chain, std::size_t i) {
  return i + 1 < chain.size() && chain[i]->Is(u"or") && chain[i + 1]->Is(u"and");
}

/// The operand behind an operator.
const PlacedNode& Operand(const WarningList& list, const PlacedNode& link) {
  return *list.places().Child(link, 1);
}

/// `(a or b) and c`.
void AddBracketsOfRule(const WarningList& list, const Chain& chain, RuleProblem& problem) {
  std::vector<RuleEdit> edits;
  std::u16string opening;
  for (std::size_t i = 0; i < chain.size(); ++i) {
    if (!TurnsHere(chain, i)) continue;
    opening += u'(';
    edits.push_back(list.Behind(Operand(list, *chain[i]).outerLast, u")"));
  }
  if (!list.MayNest(static_cast<std::int32_t>(opening.size()))) return;
  edits.insert(edits.begin(), list.Before(chain.front()->firstWord, std::move(opening)));
  list.AddFix(problem, list.call().Text(kMsgFixBracketsOfRule), std::move(edits));
}

/// `a or (b and c)`.
void AddBracketsOfDatabases(const WarningList& list, const Chain& chain, RuleProblem& problem) {
  if (!list.MayNest(1)) return;
  std::vector<RuleEdit> edits;
  for (std::size_t i = 0; i < chain.size(); ++i) {
    if (!TurnsHere(chain, i)) continue;
    edits.push_back(list.Before(Operand(list, *chain[i]).outerFirst, u"("));
    while (i + 1 < chain.size() && chain[i + 1]->Is(u"and")) ++i;
    edits.push_back(list.Behind(Operand(list, *chain[i]).outerLast, u")"));
  }
  list.AddFix(problem, list.call().Text(kMsgFixBracketsOfDatabases), std::move(edits));
}

/// One warning a chain, at its first "or" that stands before an "and".
void WarnOfChain(WarningList& list, const PlacedNode& top) {
  Chain chain;
  for (const PlacedNode* link = &top; link && IsLink(*link); link = list.places().Child(*link, 0)) {
    if (link != &top && link->inBrackets) break;
    chain.push_back(link);
  }
  std::reverse(chain.begin(), chain.end());
  for (std::size_t i = 0; i < chain.size(); ++i) {
    if (!TurnsHere(chain, i)) continue;
    RuleProblem& problem = list.AtWord(*chain[i], kMsgOrBeforeAnd);
    AddBracketsOfRule(list, chain, problem);
    AddBracketsOfDatabases(list, chain, problem);
    return;
  }
}

bool IsTopOfChain(const WarningList& list, const PlacedNode& node) {
  if (!IsLink(node)) return false;
  const PlacedNode* parent = list.places().Parent(node);
  return !parent || !IsLink(*parent) || node.inBrackets;
}

bool IsCalculation(const PlacedNode& node) {
  return (node.symbol == kOpSumSymbol || node.symbol == kOpMultiSymbol) && node.IsInfix();
}

/// `-a + b`: the minus is over the whole sum here.
void WarnOfMinus(WarningList& list, const PlacedNode& minus) {
  const PlacedNode& sum = list.places().At(minus.first);
  if (!IsCalculation(sum) || sum.inBrackets) return;
  const PlacedNode* operand = &sum;
  while (IsCalculation(*operand) && (operand == &sum || !operand->inBrackets)) {
    operand = list.places().Child(*operand, 0);
  }
  RuleProblem& problem = list.AtWord(minus, kMsgMinusBeforeSum);
  if (!list.MayNest(1)) return;
  list.AddFix(problem, list.call().Text(kMsgFixBracketsOfRule),
              {list.Before(sum.firstWord, u"("), list.Behind(sum.lastWord, u")")});
  list.AddFix(problem, list.call().Text(kMsgFixBracketsOfDatabases),
              {list.Before(minus.word, u"("), list.Behind(operand->outerLast, u")")});
}

}  // namespace

void WarnOfOrder(WarningList& list) {
  for (const PlacedNode& node : list.nodes()) {
    const bool isMinus = node.symbol == kOpSumSymbol && node.semanticType == kPrefixSemantic;
    if (isMinus && node.first >= 0) WarnOfMinus(list, node);
    if (IsTopOfChain(list, node)) WarnOfChain(list, node);
  }
}

}  // namespace ORKBASE
