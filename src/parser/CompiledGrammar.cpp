// Compiling the rule texts. An item that begins with "<" and names no rule is a literal, as the
// comparison operators are.
#include "parser/CompiledGrammar.h"

#include <algorithm>

#include "foundation/Text.h"
#include "parser/SyntaxRules.h"

namespace ORKBASE {
namespace {

constexpr std::u16string_view kEndsPlainItem = u" <[{(),";

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
  for (const SyntaxRule& rule : SyntaxRules()) {
    ruleIndex_.emplace(rule.name, static_cast<std::int16_t>(ruleIndex_.size()));
  }
  for (const SyntaxRule& source : SyntaxRules()) {
    GrammarRule rule;
    rule.dataType = source.dataType;
    rule.semanticType = source.semanticType;
    rule.checkDataType = source.checkDataType;
    CompileBody(source.body, rule);
    rules_.push_back(rule);
  }
  ChooseRemembered();
  FindStarts();
}

void CompiledGrammar::CompileBody(std::u16string_view body, GrammarRule& rule) {
  rule.firstAlternative = static_cast<std::uint16_t>(alternatives_.size());
  for (const std::u16string_view alternative : SplitText(body, u"|")) {
    alternatives_.push_back(CompileSequence(alternative, rule.semanticType == kPrefixSemantic));
    ++rule.alternativeCount;
  }
}

ItemRange CompiledGrammar::CompileSequence(std::u16string_view text, bool isPrefixRule) {
  std::vector<GrammarItem> sequence;
  for (const std::u16string_view item : CutIntoItems(text)) sequence.push_back(CompileItem(item));
  if (isPrefixRule) sequence.front().opens = true;
  const ItemRange range{static_cast<std::uint16_t>(items_.size()),
                        static_cast<std::uint16_t>(sequence.size())};
  items_.insert(items_.end(), sequence.begin(), sequence.end());
  return range;
}

GrammarItem CompiledGrammar::CompileItem(std::u16string_view text) {
  GrammarItem item;
  if (IsGroup(text)) {
    const ItemRange inner = CompileSequence(text.substr(1, text.size() - 2), false);
    item.kind = GrammarItem::Kind::kGroup;
    item.index = static_cast<std::int16_t>(groups_.size());
    groups_.push_back({inner, text.front() == u'{'});
    return item;
  }
  if (const auto rule = ruleIndex_.find(text); rule != ruleIndex_.end()) {
    item.kind = GrammarItem::Kind::kRule;
    item.index = rule->second;
    return item;
  }
  for (const TerminalSymbol& terminal : TerminalSymbols()) {
    if (terminal.name != text) continue;
    item.kind = GrammarItem::Kind::kSymbol;
    item.index = static_cast<std::int16_t>(terminal.symbol);
    return item;
  }
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
    if (text.size() == 1) characterLiterals_[ToLower(text.front()) & 0x7F] = found->second;
  }
  return found->second;
}

std::int16_t CompiledGrammar::LiteralOf(std::u16string_view primary) const {
  // Most words are names and numbers: their first character and length tell.
  const char16_t first = primary.empty() ? u'\0' : ToLower(primary.front());
  if (first >= 0x80 || primary.size() > 63) return -1;
  if ((literalLengths_[first] >> primary.size() & 1) == 0) return -1;
  if (primary.size() == 1) return characterLiterals_[first];
  const auto found = literalIndex_.find(LookupKey(primary));
  return found == literalIndex_.end() ? std::int16_t{-1} : found->second;
}

std::int16_t CompiledGrammar::StartRuleOf(MXRULE_DATATYPE dataType) const noexcept {
  for (const StartRule& start : StartRules()) {
    if (start.dataType == dataType) return ruleIndex_.find(start.name)->second;
  }
  return -1;
}

/// A rule that is named once is tried once wherever the rule that names it is, so only rules named
/// more often need a memory of their own. Rules of nothing but words are as quick as a look-up.
void CompiledGrammar::ChooseRemembered() {
  std::vector<int> named(rules_.size(), 0);
  for (const GrammarItem& item : items_) {
    if (item.kind == GrammarItem::Kind::kRule) ++named[static_cast<std::size_t>(item.index)];
  }
  for (std::size_t i = 0; i < rules_.size(); ++i) {
    GrammarRule& rule = rules_[i];
    for (std::size_t a = 0; a < rule.alternativeCount; ++a) {
      const ItemRange range = alternatives_[rule.firstAlternative + a];
      for (std::size_t k = 0; k < range.count; ++k) {
        const auto kind = items_[range.first + k].kind;
        const bool isWord =
            kind == GrammarItem::Kind::kLiteral || kind == GrammarItem::Kind::kSymbol;
        if (named[i] > 1 && !isWord) rule.remembered = true;
      }
    }
    rule.isWord = IsWordRule(rule);
  }
}

bool CompiledGrammar::IsWordRule(const GrammarRule& rule) const noexcept {
  for (std::size_t a = 0; a < rule.alternativeCount; ++a) {
    const ItemRange range = alternatives_[rule.firstAlternative + a];
    const GrammarItem& item = items_[range.first];
    const bool isTerminal =
        item.kind == GrammarItem::Kind::kLiteral || item.kind == GrammarItem::Kind::kSymbol;
    if (range.count != 1 || !isTerminal || item.opens || item.closes) return false;
  }
  return true;
}

// --- what rules begin with -----------------------------------------------------------------------

std::size_t CompiledGrammar::TypeColumn(std::int32_t dataType) noexcept {
  return dataType >= 0 && dataType < static_cast<std::int32_t>(kTypes) - 1
             ? static_cast<std::size_t>(dataType)
             : kTypes - 1;
}

RuleSet CompiledGrammar::StartedBy(std::int16_t literal, std::int32_t symbol,
                                   std::int32_t dataType) const noexcept {
  RuleSet rules;
  if (literal >= 0) rules = startedByLiteral_[static_cast<std::size_t>(literal)];
  if (symbol >= 0 && symbol < static_cast<std::int32_t>(RuleStart::kSymbols)) {
    rules |= startedBySymbol_[static_cast<std::size_t>(symbol)][TypeColumn(dataType)];
  }
  return rules;
}

void CompiledGrammar::FindStarts() {
  startedByLiteral_.resize(literals_.size());
  starts_.resize(rules_.size());
  for (std::size_t of = 0; of < rules_.size(); ++of) {
    starts_[of].typeOfSymbol.fill(-1);
    RuleSet visited;
    FindStart(of, of, visited);
  }
}

/// In the order of attempts; a second visit would add nothing.
void CompiledGrammar::FindStart(std::size_t rule, std::size_t of, RuleSet& visited) {
  if (visited.test(rule)) return;
  visited.set(rule);
  for (std::size_t a = 0; a < rules_[rule].alternativeCount; ++a) {
    FindStart(alternatives_[rules_[rule].firstAlternative + a], rule, of, visited);
  }
}

/// A group may be absent, so what stands behind it counts, too.
void CompiledGrammar::FindStart(ItemRange items, std::size_t rule, std::size_t of,
                                RuleSet& visited) {
  for (std::size_t i = 0; i < items.count; ++i) {
    const GrammarItem& item = items_[items.first + i];
    switch (item.kind) {
      case GrammarItem::Kind::kGroup:
        FindStart(Group(item.index).items, rule, of, visited);
        continue;
      case GrammarItem::Kind::kRule:
        FindStart(static_cast<std::size_t>(item.index), of, visited);
        return;
      case GrammarItem::Kind::kSymbol:
      case GrammarItem::Kind::kLiteral:
        AddStart(item, rules_[rule], of);
        return;
    }
  }
}

void CompiledGrammar::AddStart(const GrammarItem& terminal, const GrammarRule& rule,
                               std::size_t of) {
  RuleStart& start = starts_[of];
  const auto index = static_cast<std::size_t>(terminal.index);
  if (terminal.kind == GrammarItem::Kind::kLiteral) {
    if (start.firstLiteral < 0) start.firstLiteral = terminal.index;
    startedByLiteral_[index].set(of);
    return;
  }
  if (start.firstSymbol < 0) start.firstSymbol = terminal.index;
  if (rule.checkDataType && start.typeOfSymbol[index] < 0) {
    start.typeOfSymbol[index] = static_cast<std::int8_t>(rule.dataType);
  }
  for (std::size_t type = 0; type < kTypes; ++type) {
    const auto ofWord = type + 1 < kTypes ? static_cast<std::int32_t>(type) : -1;
    if (!rule.checkDataType || DatatypeCheck(rule.dataType, ofWord)) {
      startedBySymbol_[index][type].set(of);
    }
  }
}

}  // namespace ORKBASE
