// Matching nodes with words, and what follows from their places.
#include "authoring/DocumentPlaces.h"

#include "authoring/AuthoringCall.h"
#include "document/AttrNames.h"
#include "foundation/Text.h"

#include <algorithm>

namespace ORKBASE {
namespace {

bool IsBracket(const WordView& word, std::u16string_view bracket) {
  return word.symbol == kDelimiterSymbol && word.primary == bracket;
}

constexpr std::u16string_view kOpening = u"<tag primary=\"";
constexpr std::u16string_view kClosing = u"</tag>";
constexpr std::u16string_view kInBrackets = u" inBrackets=\"1\"";
/// No element is shorter.
constexpr std::size_t kLeastLength = 61;

/// Takes a suffix away, if it is there.
bool Drop(std::u16string_view& text, std::u16string_view suffix) {
  if (!text.ends_with(suffix)) return false;
  text.remove_suffix(suffix.size());
  return true;
}

/// The number at the end of an attribute that is the last of an element.
bool DropNumber(std::u16string_view& text, std::u16string_view opening, std::int32_t& value) {
  if (text.size() < opening.size() + 2 || text.back() != u'"') return false;
  const char16_t digit = text[text.size() - 2];
  if (!text.substr(0, text.size() - 2).ends_with(opening) || digit < u'0' || digit > u'9') {
    return false;
  }
  value = digit - u'0';
  text.remove_suffix(opening.size() + 2);
  return true;
}

/// An element up to its ">", which stands in no value: where it ends, or npos for another form.
/// What follows the texts says how the node prints.
std::size_t ReadElement(std::u16string_view document, PlacedNode& node, bool& isOpen) {
  if (!document.starts_with(kOpening)) return document.npos;
  const std::size_t end = document.find(u'>', kLeastLength);
  if (end == document.npos) return end;
  std::u16string_view element = document.substr(0, end);
  isOpen = !Drop(element, u"/");
  node.inBrackets = Drop(element, kInBrackets);
  DropNumber(element, OpeningOf(Attr::kSemanticType), node.semanticType);
  node.inBrackets |= Drop(element, kInBrackets);
  const std::size_t symbol = element.find(OpeningOf(Attr::kSymbol));
  if (symbol == element.npos) return symbol;
  node.symbol = ReadInt(element.substr(symbol + OpeningOf(Attr::kSymbol).size()));
  return end;
}

}  // namespace

bool DocumentPlaces::Match(std::u16string_view document, const RuleReading& reading) {
  nodes_.clear();
  if (!Gather(document)) return false;
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

bool DocumentPlaces::Gather(std::u16string_view document) {
  std::vector<std::int32_t> lastChild;
  std::int32_t parent = -1;
  std::size_t at = 0;
  for (at = document.find(u'<'); at != document.npos; at = document.find(u'<', at)) {
    document.remove_prefix(at);
    at = 0;
    if (document.starts_with(kClosing)) {
      if (parent < 0) return false;
      parent = At(parent).parent;
      at = kClosing.size();
      continue;
    }
    PlacedNode node;
    bool isOpen = false;
    const std::size_t end = ReadElement(document, node, isOpen);
    if (end == document.npos || (parent < 0 && !nodes_.empty())) return false;
    const auto index = static_cast<std::int32_t>(nodes_.size());
    node.parent = parent;
    if (parent >= 0) {
      std::int32_t& last = lastChild[static_cast<std::size_t>(parent)];
      PlacedNode& up = nodes_[static_cast<std::size_t>(parent)];
      (last < 0 ? up.first : nodes_[static_cast<std::size_t>(last)].next) = index;
      last = index;
    }
    nodes_.push_back(node);
    lastChild.push_back(-1);
    if (isOpen) parent = index;
    at = end;
  }
  return parent < 0;
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
    node.primary = reading.words[word].primary;
    node.dataType = reading.words[word].dataType;
    if (node.dataType == kMemoDataType) node.dataType = kStrDataType;
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
