// Cutting tables out of a parsed rule.
#include "document/SubTreeRemoval.h"

#include <vector>

#include "MxRuleEnums.h"
#include "foundation/Text.h"

namespace ORKBASE {
namespace {

enum class Loss : std::uint8_t {
  kKeepsOperator,  ///< stays with the one operand that it has
  kYieldsToChild,  ///< gives its place to the one operand left
  kVanishes,       ///< makes no sense with one operand
};

Loss LossOf(std::int32_t symbol) noexcept {
  switch (symbol) {
    case kOpNotSymbol:
    case kReserved25Symbol:
    case kOpIsNullSymbol:
    case kFunctionSymbol:
      return Loss::kKeepsOperator;
    // kept: a minus before its one operand counts as one that lost the other.
    case kOpSumSymbol:
    case kOpMultiSymbol:
    case kOpComposeSymbol:
    case kOpCondSymbol:
      return Loss::kYieldsToChild;
  }
  return Loss::kVanishes;
}

struct Visit {
  Tag node;
  Tag next;  // child to visit next, from the last to the first
  bool isLeaf;
  bool lostArgument;
};

bool NamesTable(Tag field, std::u16string_view tables) {
  const auto pieces = SplitText(field.Get(Attr::kContent), u".");
  return !pieces.empty() && IsListItem(tables, pieces[0]);
}

/// Whether the node goes, all its children having been decided.
bool Goes(const Visit& visit, std::u16string_view tables, Tag root) {
  Tag node = visit.node;
  const std::int32_t symbol = node.GetInt(Attr::kSymbol);
  if (visit.isLeaf) return symbol == kDataFieldSymbol && NamesTable(node, tables);
  if (visit.lostArgument || !node.FirstChild()) return true;
  if (!node.HasOneChild()) return false;
  switch (LossOf(symbol)) {
    case Loss::kKeepsOperator:
      return false;
    case Loss::kVanishes:
      return true;
    case Loss::kYieldsToChild:
      break;
  }
  // kept: the root keeps its place: with one operand it prints that operand, in its own brackets.
  if (node != root) node.ReplaceBy(node.FirstChild());
  return false;
}

}  // namespace

Tag RemoveSubTree(std::u16string_view tables, Tag root) {
  std::vector<Visit> open;
  const auto enter = [&](Tag node) {
    open.push_back({node, node.LastChild(), !node.FirstChild(), false});
  };
  if (root) enter(root);
  bool rootLeft = static_cast<bool>(root);
  while (!open.empty()) {
    Visit& visit = open.back();
    if (visit.next) {
      const Tag child = visit.next;
      visit.next = child.Previous();
      enter(child);
      continue;
    }
    const bool goes = Goes(visit, tables, root);
    if (goes) visit.node.Unlink();
    open.pop_back();
    if (!goes) continue;
    if (open.empty()) {
      rootLeft = false;
    } else if (open.back().node.GetInt(Attr::kSymbol) == kFunctionSymbol) {
      // A function goes with its argument, whatever stands before that.
      open.back().lostArgument = true;
      open.back().next = {};
    }
  }
  return rootLeft ? root : Tag{};
}

}  // namespace ORKBASE
