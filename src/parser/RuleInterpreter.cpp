// The interpreter.
#include "parser/RuleInterpreter.h"

#include "foundation/Format.h"
#include "foundation/MessageNumbers.h"
#include "parser/DisplayNames.h"
#include "platform/MessageTexts.h"

namespace ORKBASE {
namespace {

// The lower, the more specific.
enum Priority : std::int32_t {
  kWordsRanOut = 0,
  kWrongDataType = 1,
  kWrongSymbol = 2,
  kWrongLiteral = 999,
};

}  // namespace

bool RuleInterpreter::ParseExpr(MXRULE_DATATYPE expected, std::span<const WordView> words,
                                std::u16string& document, ParseError& error) {
  const std::int16_t startRule = grammar_.StartRuleOf(expected);
  if (startRule < 0) {
    error = {Format(LoadMessage(kMsgNoStartRule), {DataTypeName(expected)}), -1};
    return false;
  }
  Reset(words);
  if (!Parse(startRule)) {
    Report(error);
    return false;
  }
  if (static_cast<std::size_t>(position_) < words.size()) {
    error = {LoadMessage(kMsgSurplusWords), words[static_cast<std::size_t>(position_)].token};
    return false;
  }
  document = shapes_.ToText(nodes_.front());
  return true;
}

void RuleInterpreter::Reset(std::span<const WordView> words) {
  words_ = words;
  literals_.clear();
  started_.clear();
  for (const WordView& word : words) {
    literals_.push_back(grammar_.LiteralOf(word.primary));
    started_.push_back(grammar_.StartedBy(literals_.back(), word.symbol, word.dataType));
  }
  attempts_.clear();
  nodes_.clear();
  remembered_.assign(words.size() + 1, -1);
  memory_.clear();
  shapes_.Reset(words);
  position_ = furthest_ = nesting_ = 0;
  tooDeep_ = hasCandidate_ = false;
}

bool RuleInterpreter::Parse(std::int16_t startRule) {
  Enter(startRule);
  while (!attempts_.empty() && !tooDeep_) {
    Attempt& attempt = attempts_.back();
    if (attempt.item == attempt.end) {
      EndOfSequence();
      continue;
    }
    const GrammarItem& item = *attempt.item;
    switch (item.kind) {
      case GrammarItem::Kind::kRule:
        TryRule(item.index);
        break;
      case GrammarItem::Kind::kGroup:
        TryGroup(attempt);
        break;
      case GrammarItem::Kind::kSymbol:
      case GrammarItem::Kind::kLiteral:
        if (!TerminalCheck(item, *attempt.rule)) {
          Fail();
        } else if (Nest(item, attempt)) {
          Deliver(shapes_.MxWordToXml(position_++));
        }
        break;
    }
  }
  return !tooDeep_ && !nodes_.empty();
}

/// The items of the alternative at work.
ItemRange RuleInterpreter::ItemsOf(const Attempt& attempt) const noexcept {
  return grammar_.Alternative(std::size_t{attempt.rule->firstAlternative} + attempt.alternative);
}

void RuleInterpreter::Enter(std::int16_t rule) {
  attempts_.push_back({&grammar_.Rule(rule), nullptr, nullptr, nullptr, rule, 0, position_,
                       static_cast<std::uint32_t>(nodes_.size()), 0, 0, 0});
  if (!StartAlternative(attempts_.back())) Fail();
}

/// Goes to the next alternative, this one included, that the word at hand can begin; false when
/// there is none. Those passed over report what they would have.
bool RuleInterpreter::StartAlternative(Attempt& attempt) {
  for (; attempt.alternative < attempt.rule->alternativeCount; ++attempt.alternative) {
    const ItemRange items = ItemsOf(attempt);
    attempt.item = grammar_.Items(items);
    attempt.end = attempt.item + items.count;
    if (CanBegin(*attempt.item, *attempt.rule)) return true;
  }
  return false;
}

void RuleInterpreter::TryRule(std::int16_t index) {
  if (!CanStart(index)) {
    Fail();
    return;
  }
  const GrammarRule& rule = grammar_.Rule(index);
  if (rule.isWord) {
    Deliver(shapes_.MxWordToXml(position_++));
    return;
  }
  const Remembered* known = rule.remembered ? Recall(index) : nullptr;
  if (!known) {
    Enter(index);
  } else if (known->end < 0) {
    Fail();
  } else {
    position_ = known->end;
    Deliver(known->shape);
  }
}

/// Opens the group at hand for a turn, or passes over it when the word at hand cannot begin it.
void RuleInterpreter::TryGroup(Attempt& attempt) {
  const GrammarItem& group = *attempt.item;
  const ItemRange items = grammar_.Group(group.index).items;
  const GrammarItem* const first = grammar_.Items(items);
  if (!CanBegin(*first, *attempt.rule)) {
    LeaveGroup(attempt, group);
    return;
  }
  attempt.group = &group;
  attempt.item = first;
  attempt.end = first + items.count;
  attempt.groupStart = position_;
  attempt.groupNodes = static_cast<std::uint32_t>(nodes_.size());
}

/// False, and reported, when the item fails at its first word.
bool RuleInterpreter::CanBegin(const GrammarItem& item, const GrammarRule& rule) {
  switch (item.kind) {
    case GrammarItem::Kind::kRule:
      return CanStart(item.index);
    case GrammarItem::Kind::kGroup:
      return true;
    case GrammarItem::Kind::kSymbol:
    case GrammarItem::Kind::kLiteral:
      return TerminalCheck(item, rule);
  }
  return true;
}

/// Whether the word at hand can begin the rule; reported if not.
bool RuleInterpreter::CanStart(std::int16_t index) {
  const auto at = static_cast<std::size_t>(position_);
  if (at < started_.size() && started_[at][static_cast<std::size_t>(index)]) return true;
  if (position_ >= furthest_) ReportStart(index);
  return false;
}

/// Reports what an attempt would have: of all terminals that can begin the rule the first of the
/// most specific kind.
void RuleInterpreter::ReportStart(std::int16_t index) {
  const auto at = static_cast<std::size_t>(position_);
  if (at >= words_.size()) {
    PushErr(kMsgEndsTooEarly, kWordsRanOut, 0);
    return;
  }
  const RuleStart& start = grammar_.StartOf(index);
  const auto symbol = static_cast<std::size_t>(words_[at].symbol);
  if (symbol < RuleStart::kSymbols && start.typeOfSymbol[symbol] >= 0) {
    PushErr(kMsgWrongDataType, kWrongDataType, start.typeOfSymbol[symbol]);
  } else if (start.firstSymbol >= 0) {
    PushErr(kMsgWrongSymbol, kWrongSymbol, start.firstSymbol);
  } else {
    PushErr(kMsgWrongLiteral, kWrongLiteral, start.firstLiteral);
  }
}

/// Hands a matched node to the attempt at work.
void RuleInterpreter::Deliver(ShapeIndex shape) {
  nodes_.push_back(shape);
  ++attempts_.back().item;
}

/// The items of the sequence at work are all matched.
void RuleInterpreter::EndOfSequence() {
  Attempt& attempt = attempts_.back();
  if (!attempt.group) {
    nodes_.size() > attempt.nodes ? Succeed() : Fail();
    return;
  }
  const GrammarItem& group = *attempt.group;
  if (grammar_.Group(group.index).repeats) {
    attempt.item = &group;
    TryGroup(attempt);
  } else {
    LeaveGroup(attempt, group);
  }
}

/// Goes on behind the group.
void RuleInterpreter::LeaveGroup(Attempt& attempt, const GrammarItem& group) {
  const ItemRange items = ItemsOf(attempt);
  attempt.group = nullptr;
  attempt.item = &group + 1;
  attempt.end = grammar_.Items(items) + items.count;
}

void RuleInterpreter::Succeed() {
  const Attempt& attempt = attempts_.back();
  nesting_ -= attempt.opened;
  // Most rules pass the one node of another on; it stays where it is.
  const std::span<const ShapeIndex> gathered = std::span(nodes_).subspan(attempt.nodes);
  if (gathered.size() > 1) {
    nodes_[attempt.nodes] = shapes_.ComposeToTree(gathered, attempt.rule->semanticType);
    nodes_.resize(attempt.nodes + std::size_t{1});
  }
  if (attempt.rule->remembered)
    Remember(attempt.ruleIndex, attempt.start, position_, nodes_.back());
  attempts_.pop_back();
  if (!attempts_.empty()) ++attempts_.back().item;
}

/// The item at work does not match: the attempt goes on behind a group or with its next
/// alternative, or else it fails as a whole, which is a failed item of the attempt below.
void RuleInterpreter::Fail() {
  while (!attempts_.empty()) {
    Attempt& attempt = attempts_.back();
    if (attempt.group && FailInGroup(attempt)) return;
    if (NextAlternative(attempt)) return;
    if (attempt.rule->remembered) Remember(attempt.ruleIndex, attempt.start, -1, kNoShape);
    attempts_.pop_back();
  }
}

/// True when the attempt goes on behind the group. A group of which nothing matched did not occur;
/// one that matched in part is an error of the whole sequence when it is its last item.
bool RuleInterpreter::FailInGroup(Attempt& attempt) {
  const bool inPart = nodes_.size() > attempt.groupNodes;
  position_ = attempt.groupStart;
  nodes_.resize(attempt.groupNodes);
  LeaveGroup(attempt, *attempt.group);
  return !inPart || attempt.item != attempt.end;
}

bool RuleInterpreter::NextAlternative(Attempt& attempt) {
  position_ = attempt.start;
  nodes_.resize(attempt.nodes);
  nesting_ -= attempt.opened;
  attempt.opened = 0;
  attempt.group = nullptr;
  ++attempt.alternative;
  return StartAlternative(attempt);
}

bool RuleInterpreter::TerminalCheck(const GrammarItem& item, const GrammarRule& rule) {
  if (static_cast<std::size_t>(position_) >= words_.size()) {
    PushErr(kMsgEndsTooEarly, kWordsRanOut, 0);
    return false;
  }
  return Accepts(item, rule);
}

bool RuleInterpreter::Accepts(const GrammarItem& item, const GrammarRule& rule) {
  const auto at = static_cast<std::size_t>(position_);
  if (item.kind == GrammarItem::Kind::kLiteral) {
    if (item.index == literals_[at]) return true;
    PushErr(kMsgWrongLiteral, kWrongLiteral, item.index);
    return false;
  }
  if (item.index != words_[at].symbol) {
    PushErr(kMsgWrongSymbol, kWrongSymbol, item.index);
    return false;
  }
  if (!rule.checkDataType || DatatypeCheck(rule.dataType, words_[at].dataType)) return true;
  PushErr(kMsgWrongDataType, kWrongDataType, rule.dataType);
  return false;
}

void RuleInterpreter::PushErr(std::int32_t message, std::int32_t priority, std::int32_t expected) {
  if (position_ < furthest_) return;
  if (position_ == furthest_ && hasCandidate_ && priority >= candidate_.priority) return;
  furthest_ = position_;
  hasCandidate_ = true;
  candidate_ = {message, priority, expected};
}

/// Counts what the item opens or closes. False when that is one too many, which ends the parse.
bool RuleInterpreter::Nest(const GrammarItem& item, Attempt& attempt) {
  if (item.closes) {
    --nesting_;
    --attempt.opened;
  } else if (item.opens) {
    ++nesting_;
    ++attempt.opened;
    tooDeep_ = nesting_ > kDeepestNesting;
  }
  return !tooDeep_;
}

const RuleInterpreter::Remembered* RuleInterpreter::Recall(std::int16_t rule) const noexcept {
  std::int32_t index = remembered_[static_cast<std::size_t>(position_)];
  while (index >= 0) {
    const Remembered& entry = memory_[static_cast<std::size_t>(index)];
    if (entry.rule == rule) return &entry;
    index = entry.next;
  }
  return nullptr;
}

void RuleInterpreter::Remember(std::int16_t rule, std::int32_t start, std::int32_t end,
                               ShapeIndex shape) {
  std::int32_t& head = remembered_[static_cast<std::size_t>(start)];
  memory_.push_back({rule, shape, end, head});
  head = static_cast<std::int32_t>(memory_.size() - 1);
}

void RuleInterpreter::Report(ParseError& error) const {
  if (tooDeep_) {
    error = {LoadMessage(kMsgTooDeep), words_[static_cast<std::size_t>(position_)].token};
    return;
  }
  const std::u16string text = LoadMessage(candidate_.message);
  if (candidate_.priority == kWordsRanOut) {
    error = {text, -1};
    return;
  }
  const WordView& word = words_[static_cast<std::size_t>(furthest_)];
  std::u16string expected;
  switch (candidate_.priority) {
    case kWrongDataType:
      expected = DataTypeName(candidate_.expected);
      break;
    case kWrongSymbol:
      expected = SymbolName(candidate_.expected);
      break;
    case kWrongLiteral:
      expected = grammar_.LiteralText(static_cast<std::int16_t>(candidate_.expected));
      break;
  }
  error = {Format(text, {word.content, expected}), word.token};
}

}  // namespace ORKBASE
