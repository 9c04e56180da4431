// Compiling the rule texts. An item that begins with "<" and names no rule is a literal, as the
// comparison operators are.
#include "parser/CompiledGrammar.h"

#include <algorithm>

#include "foundation/Text.h"

namespace ORKBASE {
namespace {

using Kind = GrammarItem::Kind;

constexpr std::u16string_view kEndsPlainItem = u" <[{(),";

// What the small numbers of the compiled form can hold.
static_assert(std::ranges::all_of(kSyntaxRules, [](const SyntaxRule& rule) {
  return std::ranges::count(rule.body, u'|') < kNoAlternative;
}));
static_assert(std::ranges::all_of(kTerminalSymbols, [](const TerminalSymbol& terminal) {
  return static_cast<std::size_t>(terminal.symbol) < RuleStart::kSymbols;
}));
static_assert(std::ranges::all_of(kSyntaxRules, [](const SyntaxRule& rule) {
  return std::ranges::all_of(rule.body, [](char16_t unit) { return unit < 0x80; });
}));

/// End of the item that begins at the start of a text without blanks in front.
std::size_t ItemEnd(std::u16string_view text) {
  const auto through = [&](char16_t closing) {
    const std::size_t at = text.find(closing);
    return at == text.npos ? text.size() : at + 1;
  };
  switch (text.front()) {
    case u'{':
      return through(u'}');
    case u'[':
      return through(u']');
    case u'<':
      return through(u'>');
    case u'(':
    case u')':
    case u',':
      return 1;
  }
  return std::min(text.find_first_of(kEndsPlainItem, 1), text.size());
}

bool IsGroup(std::u16string_view item) {
  return item.front() == u'{' || item.front() == u'[';
}

}  // namespace

std::vector<std::u16string_view> CutIntoItems(std::u16string_view body) {
  std::vector<std::u16string_view> items;
  for (body = TrimBlanks(body); !body.empty(); body = TrimBlanks(body)) {
    const std::size_t end = ItemEnd(body);
    items.push_back(TrimBlanks(body.substr(0, end)));
    body.remove_prefix(end);
  }
  return items;
}

const CompiledGrammar& CompiledGrammar::Instance() {
  static const CompiledGrammar grammar;
  return grammar;
}

CompiledGrammar::CompiledGrammar() {
  characterLiterals_.fill(kNoLiteral);
  for (const SyntaxRule& rule : kSyntaxRules) {
    ruleIndex_.emplace(rule.name, static_cast<std::int16_t>(ruleIndex_.size()));
  }
  for (const SyntaxRule& source : kSyntaxRules) {
    GrammarRule rule;
    rule.dataType = source.dataType;
    rule.semanticType = source.semanticType;
    rule.checkDataType = source.checkDataType;
    CompileBody(source.body, rule);
    rules_.push_back(rule);
  }
  startRules_.fill(-1);
  for (const StartRule& start : kStartRules) {
    startRules_[static_cast<std::size_t>(start.dataType)] = ruleIndex_.find(start.name)->second;
  }
  ChooseRemembered();
  FindStarts();
}

void CompiledGrammar::CompileBody(std::u16string_view body, GrammarRule& rule) {
  rule.firstAlternative = static_cast<std::uint16_t>(alternatives_.size());
  for (const std::u16string_view alternative : SplitText(body, u"|")) {
    const std::size_t first = CompileSequence(alternative, rule.semanticType == kPrefixSemantic);
    alternatives_.push_back(static_cast<std::uint16_t>(first));
    ++rule.alternativeCount;
  }
}

/// Gives the index of the first item.
std::size_t CompiledGrammar::CompileSequence(std::u16string_view text, bool isPrefixRule) {
  std::vector<GrammarItem> sequence;
  for (const std::u16string_view item : CutIntoItems(text)) sequence.push_back(CompileItem(item));
  if (isPrefixRule) sequence.front().opens = true;
  if (sequence.front().opens) opening_.push_back(sequence.front().index);
  sequence.emplace_back();
  const std::size_t first = items_.size();
  items_.insert(items_.end(), sequence.begin(), sequence.end());
  return first;
}

GrammarItem CompiledGrammar::CompileItem(std::u16string_view text) {
  GrammarItem item;
  if (IsGroup(text)) {
    item.kind = Kind::kGroup;
    item.index = static_cast<std::int16_t>(CompileSequence(text.substr(1, text.size() - 2), false));
    item.repeats = text.front() == u'{';
    return item;
  }
  if (const auto rule = ruleIndex_.find(text); rule != ruleIndex_.end()) {
    item.kind = Kind::kRule;
    item.index = rule->second;
    return item;
  }
  for (const TerminalSymbol& terminal : kTerminalSymbols) {
    if (terminal.name != text) continue;
    item.kind = Kind::kSymbol;
    item.index = static_cast<std::int16_t>(terminal.symbol);
    return item;
  }
  item.kind = Kind::kLiteral;
  item.index = LiteralIndex(text);
  item.opens = text == u"(";
  item.closes = text == u")";
  return item;
}

std::int16_t CompiledGrammar::LiteralIndex(std::u16string_view text) {
  const auto [found, added] =
      literalIndex_.emplace(ToLower(text), static_cast<std::int16_t>(literals_.size()));
  if (added) {
    literals_.emplace_back(text);
    literalLengths_[ToLower(text.front()) & 0x7F] |= std::uint64_t{1} << (text.size() & 63);
    if (text.size() == 1) {
      for (const char16_t unit : {ToLower(text.front()), ToUpper(text.front())}) {
        characterLiterals_[unit & 0x7F] = found->second;
      }
    }
  }
  return found->second;
}

std::int16_t CompiledGrammar::LongLiteralOf(std::u16string_view primary) const {
  // Most words are names and numbers: their first character and length tell.
  const char16_t first = primary.empty() ? u'\0' : ToLower(primary.front());
  if (first >= 0x80 || primary.size() > 63) return kNoLiteral;
  if ((literalLengths_[first] >> primary.size() & 1) == 0) return kNoLiteral;
  const auto found = literalIndex_.find(LookupKey(primary));
  return found == literalIndex_.end() ? kNoLiteral : found->second;
}

/// A rule that one alternative names is tried once wherever that alternative is, so only rules that
/// several name need a memory of their own. Rules of nothing but words are as quick as a look-up.
void CompiledGrammar::ChooseRemembered() {
  std::vector<int> naming(rules_.size(), 0);  // how many alternatives name each
  for (const std::uint16_t first : alternatives_) {
    RuleSet named;
    AddNamed(&items_[first], named);
    for (std::size_t i = 0; i < rules_.size(); ++i) naming[i] += named.test(i) ? 1 : 0;
  }
  for (std::size_t i = 0; i < rules_.size(); ++i) {
    GrammarRule& rule = rules_[i];
    for (std::size_t a = 0; a < rule.alternativeCount; ++a) {
      for (auto item = Alternative(rule, a); item->kind != Kind::kEnd; ++item) {
        if (naming[i] > 1 && !item->isTerminal()) rule.remembered = true;
      }
    }
    rule.isWord = IsWordRule(rule);
    rule.operand = OperandOf(rule);
  }
}

void CompiledGrammar::AddNamed(const GrammarItem* item, RuleSet& named) const {
  for (; item->kind != Kind::kEnd; ++item) {
    if (item->kind == Kind::kRule) named.set(static_cast<std::size_t>(item->index));
    if (item->kind == Kind::kGroup) AddNamed(FirstOf(*item), named);
  }
}

bool CompiledGrammar::IsWordRule(const GrammarRule& rule) const noexcept {
  for (std::size_t a = 0; a < rule.alternativeCount; ++a) {
    const GrammarItem* const item = Alternative(rule, a);
    if (!item->isTerminal() || item->opens || item->closes) return false;
    if (item[1].kind != Kind::kEnd) return false;
  }
  return true;
}

std::int16_t CompiledGrammar::OperandOf(const GrammarRule& rule) const noexcept {
  const GrammarItem* const items = Alternative(rule, 0);
  const bool isChain = rule.alternativeCount == 1 && items[0].kind == Kind::kRule &&
                       items[1].kind == Kind::kGroup && items[1].repeats &&
                       items[2].kind == Kind::kEnd;
  return isChain ? items[0].index : std::int16_t{-1};
}

// --- what rules begin with -----------------------------------------------------------------------

void CompiledGrammar::FindStarts() {
  FirstAlternatives none;
  none.fill(kNoAlternative);
  begunByLiteral_.assign(literals_.size() + 1, none);
  for (auto& types : begunBySymbol_) types.fill(none);
  starts_.resize(rules_.size());
  for (std::size_t i = 0; i < rules_.size(); ++i) {
    starts_[i].typeOfSymbol.fill(-1);
    Start start{i, 0, {}};
    for (; start.alternative < rules_[i].alternativeCount; ++start.alternative) {
      FindStart(Alternative(rules_[i], start.alternative), rules_[i], start);
    }
  }
}

/// Looks on from an item of `rule`, in the order of attempts; a second visit to a rule would add
/// nothing. A group may be absent, so what stands behind it counts, too.
void CompiledGrammar::FindStart(const GrammarItem* item, const GrammarRule& rule, Start& start) {
  for (; item->kind == Kind::kGroup; ++item) FindStart(FirstOf(*item), rule, start);
  if (item->isTerminal()) {
    AddStart(*item, rule, start);
  } else if (item->kind == Kind::kRule &&
             !start.visited.test(static_cast<std::size_t>(item->index))) {
    start.visited.set(static_cast<std::size_t>(item->index));
    const GrammarRule& next = Rule(item->index);
    for (std::size_t a = 0; a < next.alternativeCount; ++a) {
      FindStart(Alternative(next, a), next, start);
    }
  }
}

void CompiledGrammar::AddStart(const GrammarItem& terminal, const GrammarRule& rule,
                               const Start& at) {
  RuleStart& start = starts_[at.rule];
  const auto enter = [&](FirstAlternatives& begun) {
    begun[at.rule] = std::min(begun[at.rule], at.alternative);
  };
  const auto index = static_cast<std::size_t>(terminal.index);
  if (terminal.kind == Kind::kLiteral) {
    if (start.firstLiteral < 0) start.firstLiteral = terminal.index;
    enter(begunByLiteral_[index + 1]);
    return;
  }
  if (start.firstSymbol < 0) start.firstSymbol = terminal.index;
  if (rule.checkDataType && start.typeOfSymbol[index] < 0) {
    start.typeOfSymbol[index] = static_cast<std::int8_t>(rule.dataType);
  }
  for (std::size_t type = 0; type < kTypes; ++type) {
    const auto ofWord = type + 1 < kTypes ? static_cast<std::int32_t>(type) : -1;
    if (!rule.checkDataType || DatatypeCheck(rule.dataType, ofWord)) {
      enter(begunBySymbol_[index][type]);
    }
  }
}

}  // namespace ORKBASE
