// The grammar in the form in which it is interpreted: the rule texts cut into items once, for the
// whole process. The steps taken over it are those of the texts.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "MxRuleEnums.h"
#include "foundation/KeyMap.h"

namespace ORKBASE {

struct GrammarItem {
  enum class Kind : std::uint8_t {
    kRule,     ///< `index` of a rule
    kSymbol,   ///< `index` is the kind of word that must stand here
    kLiteral,  ///< `index` of the word that must stand here
    kGroup,    ///< `index` of a group
  };
  Kind kind = Kind::kLiteral;
  bool opens = false;   ///< a bracket, a call, a minus or "not" that stays open behind it
  bool closes = false;  ///< the closing bracket
  std::int16_t index = 0;
};

struct ItemRange {
  std::uint16_t first = 0;
  std::uint16_t count = 0;
};

struct GrammarGroup {
  ItemRange items;
  bool repeats = false;
};

struct GrammarRule {
  std::uint16_t firstAlternative = 0;
  std::uint16_t alternativeCount = 0;
  std::int32_t dataType = 0;
  std::int32_t semanticType = 0;
  bool checkDataType = false;
  /// Worth remembering at a word position: reached from several places and more than a few words.
  bool remembered = false;
  /// Nothing but alternatives of one word that opens nothing: a word that can begin it matches it.
  bool isWord = false;
};

inline constexpr std::size_t kGrammarRules = 127;
/// A set of rules.
using RuleSet = std::bitset<kGrammarRules + 1>;

/// Of the words that a rule can begin with: what an attempt at another word reports.
struct RuleStart {
  static constexpr std::size_t kSymbols = 32;
  std::int16_t firstSymbol = -1;   ///< kind of word
  std::int16_t firstLiteral = -1;  ///< index of a literal
  /// The type asked for by the first terminal of this kind that checks types; -1 for none.
  std::array<std::int8_t, kSymbols> typeOfSymbol;
};

/// Whether a word of this value type serves where a rule asks for one: only the word has wildcards.
constexpr bool DatatypeCheck(std::int32_t expected, std::int32_t ofWord) noexcept {
  return ofWord == expected || ofWord == kNoDataType || ofWord == kVarDataType;
}

/// The compiled rules; immutable, shared by all threads.
class CompiledGrammar {
 public:
  static const CompiledGrammar& Instance();

  /// Index of the start rule of a type, -1 where it has none.
  std::int16_t StartRuleOf(MXRULE_DATATYPE dataType) const noexcept;
  const GrammarRule& Rule(std::int16_t index) const noexcept {
    return rules_[static_cast<std::size_t>(index)];
  }
  ItemRange Alternative(std::size_t index) const noexcept { return alternatives_[index]; }
  const GrammarItem* Items(ItemRange range) const noexcept { return &items_[range.first]; }
  const GrammarGroup& Group(std::int16_t index) const noexcept {
    return groups_[static_cast<std::size_t>(index)];
  }

  /// The rules that can begin with a word: its literal (or -1), kind and value type.
  RuleSet StartedBy(std::int16_t literal, std::int32_t symbol,
                    std::int32_t dataType) const noexcept;
  const RuleStart& StartOf(std::int16_t rule) const noexcept {
    return starts_[static_cast<std::size_t>(rule)];
  }

  /// Index of the literal that a word's canonical text equals, case disregarded, or -1.
  std::int16_t LiteralOf(std::u16string_view primary) const;
  std::u16string_view LiteralText(std::int16_t index) const noexcept {
    return literals_[static_cast<std::size_t>(index)];
  }

 private:
  CompiledGrammar();
  void CompileBody(std::u16string_view body, GrammarRule& rule);
  ItemRange CompileSequence(std::u16string_view text, bool isPrefixRule);
  GrammarItem CompileItem(std::u16string_view text);
  std::int16_t LiteralIndex(std::u16string_view text);
  void ChooseRemembered();
  bool IsWordRule(const GrammarRule& rule) const noexcept;
  void FindStarts();
  void FindStart(std::size_t rule, std::size_t of, RuleSet& visited);
  void FindStart(ItemRange items, std::size_t rule, std::size_t of, RuleSet& visited);
  void AddStart(const GrammarItem& terminal, const GrammarRule& rule, std::size_t of);

  // Value types of words: those of the enumeration, and one for every other number.
  static constexpr std::size_t kTypes = 12;
  static std::size_t TypeColumn(std::int32_t dataType) noexcept;

  std::vector<RuleStart> starts_;
  std::vector<RuleSet> startedByLiteral_;
  std::array<std::array<RuleSet, kTypes>, RuleStart::kSymbols> startedBySymbol_{};
  std::vector<GrammarRule> rules_;
  std::vector<ItemRange> alternatives_;
  std::vector<GrammarItem> items_;
  std::vector<GrammarGroup> groups_;
  std::vector<std::u16string> literals_;
  KeyMap<std::int16_t> literalIndex_;  ///< by lower-case text
  /// By the first character of literals: a bit for each length.
  std::array<std::uint64_t, 128> literalLengths_{};
  std::array<std::int16_t, 128> characterLiterals_{};  ///< those of one character
  std::unordered_map<std::u16string_view, std::int16_t> ruleIndex_;
};

/// The items of a rule body without "|", in order.
std::vector<std::u16string_view> CutIntoItems(std::u16string_view body);

}  // namespace ORKBASE
