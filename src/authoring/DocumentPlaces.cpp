// Matching nodes with words, and what follows from their places.
#include "authoring/DocumentPlaces.h"

#include "authoring/AuthoringCall.h"
#include "document/Composer.h"
#include "document/TagReader.h"

#include <algorithm>

namespace ORKBASE {
namespace {

bool IsBracket(const WordView& word, std::u16string_view bracket) {
  return word.symbol == kDelimiterSymbol && word.primary == bracket;
}

}  // namespace

bool DocumentPlaces::Match(std::u16string_view document, const RuleReading& reading) {
  nodes_.clear();
  if (!ReadTagTree(document, tree_)) return false;
  Gather();
  FindPartners(reading);
  if (!MatchWords(reading)) return false;
  FindRanges(reading);
  FindTypes();
  return true;
}

const PlacedNode* DocumentPlaces::Child(const PlacedNode& node, std::int32_t index) const {
  std::int32_t child = node.first;
  for (; child >= 0 && index > 0; --index) child = At(child).next;
  return child < 0 ? nullptr : &At(child);
}

void DocumentPlaces::Gather() {
  std::vector<std::int32_t> lastChild;
  const Tag root = tree_.Root();
  std::int32_t parent = -1;
  for (Tag tag = root; tag; tag = tag.NextInDocument(root)) {
    while (parent >= 0 && !(At(parent).tag == tag.Parent())) parent = At(parent).parent;
    const auto index = static_cast<std::int32_t>(nodes_.size());
    PlacedNode node;
    node.tag = tag;
    node.symbol = tag.GetInt(Attr::kSymbol);
    node.dataType = tag.GetInt(Attr::kDataType);
    if (node.dataType == kMemoDataType) node.dataType = kStrDataType;
    node.semanticType = SemanticTypeOf(tag);
    node.inBrackets = IsInBrackets(tag);
    node.parent = parent;
    if (parent >= 0) {
      std::int32_t& last = lastChild[static_cast<std::size_t>(parent)];
      PlacedNode& up = nodes_[static_cast<std::size_t>(parent)];
      (last < 0 ? up.first : nodes_[static_cast<std::size_t>(last)].next) = index;
      last = index;
    }
    nodes_.push_back(node);
    lastChild.push_back(-1);
    parent = index;
  }
}

/// Also counts how deep the brackets go.
void DocumentPlaces::FindPartners(const RuleReading& reading) {
  partners_.assign(reading.words.size(), -1);
  std::vector<std::int32_t> open;
  std::size_t deepest = 0;
  for (std::size_t i = 0; i < reading.words.size(); ++i) {
    if (IsBracket(reading.words[i], u"(")) {
      open.push_back(static_cast<std::int32_t>(i));
      deepest = std::max(deepest, open.size());
    } else if (IsBracket(reading.words[i], u")") && !open.empty()) {
      partners_[i] = open.back();
      partners_[static_cast<std::size_t>(open.back())] = static_cast<std::int32_t>(i);
      open.pop_back();
    }
  }
  deepest_ = static_cast<std::int32_t>(deepest);
}

bool DocumentPlaces::MatchWords(const RuleReading& reading) {
  std::size_t word = 0;
  const auto take = [&](PlacedNode& node) {
    while (word < reading.words.size() && reading.words[word].symbol == kDelimiterSymbol) ++word;
    if (word == reading.words.size() || reading.words[word].symbol != node.symbol) return false;
    node.word = static_cast<std::int32_t>(word++);
    return true;
  };
  struct Open {
    std::int32_t node;
    std::int32_t next;  // child
  };
  std::vector<Open> open;
  std::int32_t prefixes = 0;
  std::int32_t mostPrefixes = 0;
  const auto enter = [&](std::int32_t index) {
    PlacedNode& node = nodes_[static_cast<std::size_t>(index)];
    open.push_back({index, node.first});
    if (node.semanticType == kPrefixSemantic) mostPrefixes = std::max(mostPrefixes, ++prefixes);
    const bool isBehind = node.first >= 0 && (node.semanticType == kInfixSemantic ||
                                              node.semanticType == kPostfixSemantic);
    return isBehind || take(node);
  };
  if (nodes_.empty() || !enter(0)) return false;
  while (!open.empty()) {
    const std::size_t top = open.size() - 1;
    PlacedNode& node = nodes_[static_cast<std::size_t>(open[top].node)];
    const std::int32_t child = open[top].next;
    // The operator between comes with the second operand, or behind the only one.
    const bool isSecond = child >= 0 && node.first >= 0 && At(node.first).next == child;
    if (node.word < 0 && (child < 0 || (isSecond && node.IsInfix())) && !take(node)) return false;
    if (child < 0) {
      if (node.semanticType == kPrefixSemantic) --prefixes;
      open.pop_back();
      continue;
    }
    open[top].next = At(child).next;
    if (!enter(child)) return false;
  }
  deepest_ += mostPrefixes;
  return std::all_of(reading.words.begin() + static_cast<std::ptrdiff_t>(word), reading.words.end(),
                     [](const WordView& rest) { return rest.symbol == kDelimiterSymbol; });
}

void DocumentPlaces::FindRanges(const RuleReading& reading) {
  const auto count = static_cast<std::int32_t>(reading.words.size());
  const auto partner = [this](std::int32_t at) { return partners_[static_cast<std::size_t>(at)]; };
  const auto isFunction = [&](std::int32_t at) {
    return at >= 0 && reading.words[static_cast<std::size_t>(at)].symbol == kFunctionSymbol;
  };
  for (PlacedNode& node : nodes_) {
    node.firstWord = node.lastWord = node.word;
    const bool isCall = isFunction(node.word) && node.word + 1 < count;
    if (isCall && partner(node.word + 1) > node.word) node.lastWord = partner(node.word + 1);
  }
  for (auto node = nodes_.rbegin(); node != nodes_.rend(); ++node) {
    std::int32_t first = node->firstWord;
    std::int32_t last = node->lastWord;
    while (node->inBrackets && first > 0 && partner(first - 1) == last + 1 &&
           !isFunction(first - 2)) {
      --first;
      ++last;
    }
    node->outerFirst = first;
    node->outerLast = last;
    if (node->parent < 0) continue;
    PlacedNode& parent = nodes_[static_cast<std::size_t>(node->parent)];
    parent.firstWord = std::min(parent.firstWord, first);
    parent.lastWord = std::max(parent.lastWord, last);
  }
}

/// Of the functions that have the type of an argument.
void DocumentPlaces::FindTypes() {
  for (auto node = nodes_.rbegin(); node != nodes_.rend(); ++node) {
    if (node->symbol != kFunctionSymbol) continue;
    const auto typeOf = [&](std::int32_t index) {
      const PlacedNode* child = Child(*node, index);
      return child ? child->dataType : kVarDataType;
    };
    if (node->Is(u"max") || node->Is(u"min")) node->dataType = typeOf(0);
    if (node->Is(u"switch")) node->dataType = typeOf(1);
    if (node->Is(u"IsNull")) node->dataType = typeOf(typeOf(0) == kVarDataType ? 1 : 0);
  }
}

}  // namespace ORKBASE
