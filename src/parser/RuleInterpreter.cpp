// The interpreter.
#include "parser/RuleInterpreter.h"

#include <algorithm>
#include <utility>

#include "foundation/MessageNumbers.h"
#include "parser/NextWords.h"
#include "platform/ErrorTexts.h"

namespace ORKBASE {
namespace {

using Kind = GrammarItem::Kind;

// The lower, the more specific.
enum Priority : std::int32_t {
  kWordsRanOut = 0,
  kWrongDataType = 1,
  kWrongSymbol = 2,
  kWrongLiteral = 999,
};

}  // namespace

bool RuleInterpreter::ParseExpr(MXRULE_DATATYPE expected, std::span<const WordView> words,
                                std::u16string& document, MxErrorRecord& error,
                                std::int32_t& refused) {
  const std::int16_t startRule = grammar_.StartRuleOf(expected);
  if (startRule < 0) {
    error = MakeError(kRequestCause, kMsgNoStartRule);
    error.arguments = {{MxErrorArgument::kDataType, expected, {}}};
    refused = -1;
    return false;
  }
  Reset(words);
  if (!Parse(startRule)) {
    error = Report();
    refused = tooDeep_ ? position_ : furthest_;
    return false;
  }
  if (static_cast<std::size_t>(position_) < words.size()) {
    error = MakeError(kRuleCause, kMsgSurplusWords);
    refused = position_;
    return false;
  }
  document = shapes_.ToText(nodes_.front());
  return true;
}

void RuleInterpreter::FindNext(MXRULE_DATATYPE expected, std::span<const WordView> words,
                               NextWords& next) {
  const std::int16_t startRule = grammar_.StartRuleOf(expected);
  if (startRule >= 0) FindNextIn(startRule, words, next);
}

void RuleInterpreter::FindNextIn(std::int16_t row, std::span<const WordView> words,
                                 NextWords& next) {
  Reset(words);
  next_ = &next;
  const bool holds = Parse(row);
  if (holds && static_cast<std::size_t>(position_) == words.size()) next.AddEnd();
}

void RuleInterpreter::Reset(std::span<const WordView> words) {
  words_ = words;
  places_.resize(words.size() + 1);
  Place* place = places_.data();
  for (const WordView& word : words) {
    const std::int16_t literal = grammar_.LiteralOf(word.primary);
    *place++ = {&grammar_.BegunBy(literal),
                &grammar_.BegunBy(word.symbol, word.dataType),
                word.symbol,
                word.dataType,
                -1,
                literal};
  }
  *place = {&grammar_.BegunBy(kNoLiteral), &grammar_.BegunBy(kNoLiteral)};
  attempts_.clear();
  nodes_.clear();
  memory_.clear();
  shapes_.Reset(words);
  position_ = furthest_ = nesting_ = 0;
  tooDeep_ = false;
  next_ = nullptr;
  candidate_ = {};
}

bool RuleInterpreter::Parse(std::int16_t startRule) {
  // Whether the item at work is known to begin at the word at hand.
  bool begins = false;
  if (FirstAlternative(startRule) != kNoAlternative) {
    begins = TakeRule(startRule);
  } else {
    ReportStart(startRule);
  }
  while (!attempts_.empty() && !tooDeep_) {
    Attempt& attempt = attempts_.back();
    const GrammarItem& item = *attempt.item;
    if (item.kind == Kind::kEnd) {
      begins = EndOfSequence();
    } else if (item.kind == Kind::kGroup) {
      begins = TryGroup(attempt, item);
    } else if (begins || CanBegin(item, *attempt.rule)) {
      begins = Take(item, attempt);
    } else {
      begins = Fail();
    }
  }
  return !tooDeep_ && !nodes_.empty();
}

// --- what the word at hand can begin -------------------------------------------------------------

/// Whether the item does not fail at its first word.
bool RuleInterpreter::Begins(const GrammarItem& item, const GrammarRule& rule) const noexcept {
  if (item.kind == Kind::kRule) return FirstAlternative(item.index) != kNoAlternative;
  return item.kind == Kind::kGroup || TerminalCheck(item, rule);
}

std::uint8_t RuleInterpreter::FirstAlternative(std::int16_t rule) const noexcept {
  const auto index = static_cast<std::size_t>(rule);
  return std::min((*Here().begunByLiteral)[index], (*Here().begunBySymbol)[index]);
}

bool RuleInterpreter::TerminalCheck(const GrammarItem& item,
                                    const GrammarRule& rule) const noexcept {
  const Place& here = Here();
  if (item.kind == Kind::kLiteral) return item.index == here.literal;
  return item.index == here.symbol &&
         (!rule.checkDataType || DatatypeCheck(rule.dataType, here.dataType));
}

/// The same, and reported if not.
bool RuleInterpreter::CanBegin(const GrammarItem& item, const GrammarRule& rule) {
  if (Begins(item, rule)) return true;
  if (position_ >= furthest_) ReportFailure(item, rule);
  return false;
}

void RuleInterpreter::ReportFailure(const GrammarItem& item, const GrammarRule& rule) {
  if (item.kind == Kind::kRule) {
    ReportStart(item.index);
  } else if (static_cast<std::size_t>(position_) >= words_.size()) {
    if (next_) next_->AddTerminal(item, rule, nesting_ >= kDeepestNesting);
    PushErr(kMsgEndsTooEarly, kWordsRanOut, 0);
  } else if (item.kind == Kind::kLiteral) {
    PushErr(kMsgWrongLiteral, kWrongLiteral, item.index);
  } else if (item.index != Here().symbol) {
    PushErr(kMsgWrongSymbol, kWrongSymbol, item.index);
  } else {
    PushErr(kMsgWrongDataType, kWrongDataType, rule.dataType);
  }
}

/// Reports what an attempt at the rule would have: of all terminals that can begin it the first of
/// the most specific kind.
void RuleInterpreter::ReportStart(std::int16_t rule) {
  if (static_cast<std::size_t>(position_) >= words_.size()) {
    if (next_) next_->AddRule(rule, nesting_ >= kDeepestNesting);
    PushErr(kMsgEndsTooEarly, kWordsRanOut, 0);
    return;
  }
  const RuleStart& start = grammar_.StartOf(rule);
  const auto symbol = static_cast<std::size_t>(Here().symbol);
  if (start.firstSymbol < 0) {
    PushErr(kMsgWrongLiteral, kWrongLiteral, start.firstLiteral);
  } else if (symbol < RuleStart::kSymbols && start.typeOfSymbol[symbol] >= 0) {
    PushErr(kMsgWrongDataType, kWrongDataType, start.typeOfSymbol[symbol]);
  } else {
    PushErr(kMsgWrongSymbol, kWrongSymbol, start.firstSymbol);
  }
}

void RuleInterpreter::PushErr(std::int32_t message, std::int32_t priority, std::int32_t expected) {
  if (position_ < furthest_) return;
  if (position_ == furthest_ && priority >= candidate_.priority) return;
  furthest_ = position_;
  candidate_ = {message, priority, expected};
}

// --- taking items --------------------------------------------------------------------------------
// What returns a bool here tells whether the item then at work is known to begin at the word at
// hand.

/// Takes the item at work, which the word at hand begins.
bool RuleInterpreter::Take(const GrammarItem& item, Attempt& attempt) {
  if (item.kind == Kind::kRule && !grammar_.Rule(item.index).isWord) return TakeRule(item.index);
  if (Nest(item, attempt)) Deliver(shapes_.MxWordToXml(position_++));
  return false;
}

bool RuleInterpreter::TakeRule(std::int16_t index) {
  const GrammarRule& outermost = grammar_.Rule(index);
  const GrammarRule* rule = &outermost;
  const Remembered* known = Recall(*rule);
  while (!known && rule->operand >= 0) {
    index = rule->operand;
    rule = &grammar_.Rule(index);
    known = Recall(*rule);
  }
  if (known && known->end < 0) return Fail();
  const std::uint8_t alternative = FirstAlternative(index);
  attempts_.push_back({rule, &outermost, grammar_.Alternative(*rule, alternative), nullptr,
                       alternative, 0, position_, static_cast<std::uint32_t>(nodes_.size()), 0, 0});
  if (!known) return true;
  position_ = known->end;
  nodes_.push_back(known->shape);
  return Climb();
}

/// Opens the group for a turn, or passes over it when the word at hand does not begin it.
bool RuleInterpreter::TryGroup(Attempt& attempt, const GrammarItem& group) {
  const GrammarItem* const first = grammar_.FirstOf(group);
  if (!CanBegin(*first, *attempt.rule)) {
    LeaveGroup(attempt, group);
    return false;
  }
  attempt.group = &group;
  attempt.item = first;
  attempt.groupStart = position_;
  attempt.groupNodes = static_cast<std::uint32_t>(nodes_.size());
  return true;
}

/// Goes on behind the group.
void RuleInterpreter::LeaveGroup(Attempt& attempt, const GrammarItem& group) {
  attempt.group = nullptr;
  attempt.item = &group + 1;
}

/// Hands a matched node to the attempt at work.
void RuleInterpreter::Deliver(ShapeIndex shape) {
  nodes_.push_back(shape);
  ++attempts_.back().item;
}

/// The items of the sequence at work are all matched.
bool RuleInterpreter::EndOfSequence() {
  Attempt& attempt = attempts_.back();
  if (attempt.group) {
    const GrammarItem& group = *attempt.group;
    if (group.repeats) return TryGroup(attempt, group);
    LeaveGroup(attempt, group);
    return false;
  }
  return nodes_.size() == attempt.nodes ? Fail() : Succeed();
}

bool RuleInterpreter::Succeed() {
  Attempt& attempt = attempts_.back();
  nesting_ -= attempt.opened;
  attempt.opened = 0;
  // Most rules pass the one node of another on; it stays where it is.
  const std::span<const ShapeIndex> gathered = std::span(nodes_).subspan(attempt.nodes);
  if (gathered.size() > 1) {
    nodes_[attempt.nodes] = shapes_.ComposeToTree(gathered, attempt.rule->semanticType);
    nodes_.resize(attempt.nodes + std::size_t{1});
  }
  Remember(*attempt.rule, attempt.start, position_, nodes_.back());
  return Climb();
}

/// Goes on with the chain that the matched rule is the first operand of. One without a second
/// operand is matched, too; the outermost of them is handed to the attempt below.
bool RuleInterpreter::Climb() {
  Attempt& attempt = attempts_.back();
  while (attempt.rule != attempt.outermost) {
    attempt.rule = &ChainAbove(attempt, *attempt.rule);
    attempt.alternative = 0;
    if (TryGroup(attempt, grammar_.Alternative(*attempt.rule, 0)[1])) return true;
    Remember(*attempt.rule, attempt.start, position_, nodes_.back());
  }
  attempts_.pop_back();
  if (!attempts_.empty()) ++attempts_.back().item;
  return false;
}

/// Of the rules that the attempt serves the one whose first operand is `rule`.
const GrammarRule& RuleInterpreter::ChainAbove(const Attempt& attempt,
                                               const GrammarRule& rule) const noexcept {
  const GrammarRule* chain = attempt.outermost;
  while (&grammar_.Rule(chain->operand) != &rule) chain = &grammar_.Rule(chain->operand);
  return *chain;
}

/// The item at work does not match: the attempt goes on behind a group or with its next
/// alternative, or else it fails as a whole, which is a failed item of the attempt below.
bool RuleInterpreter::Fail() {
  while (!attempts_.empty()) {
    Attempt& attempt = attempts_.back();
    if (attempt.group && FailInGroup(attempt)) return false;
    if (NextAlternative(attempt)) return true;
    const GrammarRule* rule = attempt.rule;
    Remember(*rule, attempt.start, -1, kNoShape);
    while (rule != attempt.outermost) {
      rule = &ChainAbove(attempt, *rule);
      Remember(*rule, attempt.start, -1, kNoShape);
    }
    attempts_.pop_back();
  }
  return false;
}

/// True when the attempt goes on behind the group. A group of which nothing matched did not occur;
/// one that matched in part is an error of the whole sequence when it is its last item.
bool RuleInterpreter::FailInGroup(Attempt& attempt) {
  const bool inPart = nodes_.size() > attempt.groupNodes;
  position_ = attempt.groupStart;
  nodes_.resize(attempt.groupNodes);
  LeaveGroup(attempt, *attempt.group);
  return !inPart || attempt.item->kind != Kind::kEnd;
}

/// Goes to the next alternative that the word at hand begins; false when there is none. Those
/// passed over report nothing: the word was matched already, and what failed then stands further
/// on.
bool RuleInterpreter::NextAlternative(Attempt& attempt) {
  position_ = attempt.start;
  nodes_.resize(attempt.nodes);
  nesting_ -= attempt.opened;
  attempt.opened = 0;
  attempt.group = nullptr;
  const GrammarRule& rule = *attempt.rule;
  while (++attempt.alternative < rule.alternativeCount) {
    attempt.item = grammar_.Alternative(rule, attempt.alternative);
    if (Begins(*attempt.item, rule)) return true;
  }
  return false;
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

const RuleInterpreter::Remembered* RuleInterpreter::Recall(const GrammarRule& rule) const noexcept {
  if (!rule.remembered) return nullptr;
  for (std::int32_t index = Here().remembered; index >= 0;) {
    const Remembered& entry = memory_[static_cast<std::size_t>(index)];
    if (entry.rule == &rule) return &entry;
    index = entry.next;
  }
  return nullptr;
}

/// Of an attempt that ends: behind the word `end` with a shape, or, with -1, in failure.
void RuleInterpreter::Remember(const GrammarRule& rule, std::int32_t start, std::int32_t end,
                               ShapeIndex shape) {
  if (!rule.remembered) return;
  std::int32_t& head = places_[static_cast<std::size_t>(start)].remembered;
  memory_.push_back({&rule, shape, end, head});
  head = static_cast<std::int32_t>(memory_.size() - 1);
}

MxErrorRecord RuleInterpreter::Report() const {
  if (tooDeep_) return MakeError(kRuleCause, kMsgTooDeep);
  if (candidate_.priority == kWordsRanOut) return MakeError(kRuleCause, candidate_.message);
  const WordView& word = words_[static_cast<std::size_t>(furthest_)];
  MxErrorRecord error = MakeError(kRuleCause, candidate_.message, {word.content});
  MxErrorArgument expected;
  switch (candidate_.priority) {
    case kWrongDataType:
      expected = {MxErrorArgument::kDataType, candidate_.expected, {}};
      break;
    case kWrongSymbol:
      expected = {MxErrorArgument::kSymbol, candidate_.expected, {}};
      break;
    case kWrongLiteral:
      expected.text = grammar_.LiteralText(static_cast<std::int16_t>(candidate_.expected));
      break;
  }
  error.arguments.push_back(expected);
  error.expected = {std::move(expected)};
  return error;
}

}  // namespace ORKBASE
