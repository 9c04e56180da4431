// Where the nodes of a document stand in the rule that it was made of.
//
// The nodes are the words of the rule without its brackets and commas, each once, but in another
// order: an operator stands before its operands, and between them in the rule. `a + b > 1` is
// `>(+(a, b), 1)`. Walked with each node in its place in the text, the n-th node is the n-th word.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "MxRuleEnums.h"

namespace ORKBASE {

struct RuleReading;

/// A node and its words, by their index in the reading. Links are indices of nodes, -1 for none.
struct PlacedNode {
  std::u16string_view primary;  ///< of the word
  std::int32_t symbol = kUnknownSymbol;
  std::int32_t dataType = kNoDataType;  ///< of the value: of `max(d)` that of d
  std::int32_t semanticType = kLeafSemantic;
  bool inBrackets = false;
  std::int32_t parent = -1;
  std::int32_t first = -1;
  std::int32_t next = -1;
  std::int32_t word = -1;
  std::int32_t firstWord = -1;  ///< of the node and all below it, the brackets of calls with it
  std::int32_t lastWord = -1;
  std::int32_t outerFirst = -1;  ///< the same with the brackets around it
  std::int32_t outerLast = -1;

  bool Is(std::u16string_view text) const noexcept { return primary == text; }
  bool IsInfix() const noexcept { return semanticType == kInfixSemantic && first >= 0; }
};

/// The nodes of one document, parents before their children, in document order. Refers to the words
/// of the reading that it was matched with.
class DocumentPlaces {
 public:
  /// Takes a document in the form in which `Verify` writes it. False where it is not that of the
  /// rule.
  bool Match(std::u16string_view document, const RuleReading& reading);

  std::span<const PlacedNode> nodes() const noexcept { return nodes_; }
  const PlacedNode& At(std::int32_t node) const { return nodes_[static_cast<std::size_t>(node)]; }
  /// The argument or operand at an index, or null.
  const PlacedNode* Child(const PlacedNode& node, std::int32_t index) const;
  const PlacedNode* Parent(const PlacedNode& node) const {
    return node.parent < 0 ? nullptr : &At(node.parent);
  }
  std::int32_t IndexOf(const PlacedNode& node) const {
    return static_cast<std::int32_t>(&node - nodes_.data());
  }
  /// No fewer brackets, calls, minus signs and "not" than are open at once.
  std::int32_t Deepest() const noexcept { return deepest_; }

 private:
  bool Gather(std::u16string_view document);
  bool MatchWords(const RuleReading& reading);
  void FindPartners(const RuleReading& reading);
  void FindRanges(const RuleReading& reading);
  void FindTypes();

  std::vector<PlacedNode> nodes_;
  std::vector<std::int32_t> partners_;  // of the brackets among the words
  std::int32_t deepest_ = 0;
};

}  // namespace ORKBASE
