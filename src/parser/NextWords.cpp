// What was tried behind the last word.
#include "parser/NextWords.h"

#include <algorithm>

namespace ORKBASE {

void NextWords::AddRule(std::int16_t rule, bool isFull) {
  isReached_ = true;
  RuleSet& known = isFull ? knownFull_ : known_;
  const auto index = static_cast<std::size_t>(rule);
  if (known.test(index)) return;
  known.set(index);
  (isFull ? fullRules_ : rules_).push_back(rule);
}

void NextWords::AddTerminal(const GrammarItem& terminal, const GrammarRule& row, bool isFull) {
  isReached_ = true;
  if (isFull && terminal.opens) return;
  const auto is = [&](const Terminal& known) { return known.item == &terminal; };
  if (std::any_of(terminals_.begin(), terminals_.end(), is)) return;
  terminals_.push_back({&terminal, &row});
}

bool NextWords::Takes(std::int16_t literal, std::int32_t symbol,
                      std::int32_t dataType) const noexcept {
  const FirstAlternatives& byLiteral = grammar_->BegunBy(literal);
  const FirstAlternatives& bySymbol = grammar_->BegunBy(symbol, dataType);
  const auto begins = [&](std::int16_t rule) {
    const auto index = static_cast<std::size_t>(rule);
    return std::min(byLiteral[index], bySymbol[index]) != kNoAlternative;
  };
  const auto beginsFull = [&](std::int16_t rule) {
    return begins(rule) && (grammar_->Rule(rule).isWord || !grammar_->CanOpen(literal));
  };
  const auto is = [&](const Terminal& terminal) {
    if (terminal.item->kind == GrammarItem::Kind::kLiteral) return terminal.item->index == literal;
    return terminal.item->index == symbol &&
           (!terminal.row->checkDataType || DatatypeCheck(terminal.row->dataType, dataType));
  };
  return std::any_of(terminals_.begin(), terminals_.end(), is) ||
         std::any_of(rules_.begin(), rules_.end(), begins) ||
         std::any_of(fullRules_.begin(), fullRules_.end(), beginsFull);
}

}  // namespace ORKBASE
