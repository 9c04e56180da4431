// Which words may stand behind the words of an unfinished rule: what an interpreter tried to match
// there. Behind the last word nothing matches, so every attempt that comes so far fails there and
// is seen, those that a word would have made superfluous too.
#pragma once

#include <cstdint>
#include <vector>

#include "parser/CompiledGrammar.h"

namespace ORKBASE {

class NextWords {
 public:
  /// An attempt at a whole rule, or at one word of a row. `isFull`: no more may be opened there.
  void AddRule(std::int16_t rule, bool isFull);
  void AddTerminal(const GrammarItem& terminal, const GrammarRule& row, bool isFull);
  /// The words are a whole rule.
  void AddEnd() noexcept { hasEnd_ = true; }

  /// Whether the words may be the whole rule.
  bool HasEnd() const noexcept { return hasEnd_; }
  /// Whether all words are the beginning of some rule.
  bool IsReached() const noexcept { return isReached_ || hasEnd_; }
  /// Whether some attempt takes a word: `literal` is that of its canonical text.
  bool Takes(std::int16_t literal, std::int32_t symbol, std::int32_t dataType) const noexcept;

 private:
  struct Terminal {
    const GrammarItem* item;
    const GrammarRule* row;
  };

  const CompiledGrammar* grammar_ = &CompiledGrammar::Instance();
  bool isReached_ = false;
  bool hasEnd_ = false;
  std::vector<std::int16_t> rules_;
  std::vector<std::int16_t> fullRules_;
  RuleSet known_;
  RuleSet knownFull_;
  std::vector<Terminal> terminals_;
};

}  // namespace ORKBASE
