// Ways to spoil a valid rule, one a kind of slip, for the corpus of generated rules.
#pragma once

#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MxRuleEnums.h"

/// A word of a rule as it is written, and what it is.
struct RuleToken {
  std::u16string text;
  std::u16string primary;
  std::int32_t symbol = 0;
  std::int32_t dataType = 0;
};
using RuleTokens = std::vector<RuleToken>;

/// A rule before and after a slip.
struct SpoiltRule {
  RuleTokens rule;
  RuleTokens spoilt;
  std::u16string behind;  ///< what the spoilt rule ends with
};

/// What an injector needs to know.
struct SlipWorld {
  std::mt19937& engine;
  std::u16string_view language;
  /// The display form of a canonical word in the language of the rules, and in the other one.
  std::u16string (*display)(std::u16string_view language, std::u16string_view primary);
  std::size_t Pick(std::size_t bound) const { return engine() % bound; }
  std::u16string Own(std::u16string_view primary) const { return display(language, primary); }
  std::u16string Foreign(std::u16string_view primary) const {
    return display(language == u"en" ? u"zh-CN" : u"en", primary);
  }
};

struct SlipKind {
  const char* name;
  std::u16string_view row;  ///< of the grammar, that the rules walk through
  /// Spoils the rule; false where it has no place for the slip.
  bool (*spoil)(SpoiltRule& rule, const SlipWorld& world);
  bool isClear;  ///< only one thing can be meant: the document has to come back
};

std::span<const SlipKind> SlipKinds();

/// The text of a rule: one blank between words, none at the inner sides of brackets.
inline std::u16string TextOf(const RuleTokens& tokens) {
  std::u16string text;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    const bool isFirst = i == 0 || tokens[i - 1].primary == u"(";
    const bool isBehind =
        tokens[i].primary == u")" || tokens[i].primary == u"," ||
        (tokens[i].primary == u"(" && i > 0 && tokens[i - 1].symbol == ORKBASE::kFunctionSymbol);
    if (!isFirst && !isBehind) text += u' ';
    text += tokens[i].text;
  }
  return text;
}
