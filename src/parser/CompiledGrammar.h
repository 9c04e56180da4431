// The grammar in the form in which it is interpreted: the rule texts cut into items once, for the
// whole process. The steps taken over it are those of the texts.
#pragma once

#include <algorithm>
#include <array>
#include <bitset>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "MxRuleEnums.h"
#include "foundation/KeyMap.h"
#include "parser/SyntaxRules.h"

namespace ORKBASE {

struct GrammarItem {
  enum class Kind : std::uint8_t {
    kRule,     ///< `index` of a rule
    kSymbol,   ///< `index` is the kind of word that must stand here
    kLiteral,  ///< `index` of the word that must stand here
    kGroup,    ///< `index` of the first item of a group
    kEnd,      ///< the sequence ends here
  };
  Kind kind = Kind::kEnd;
  bool opens = false;    ///< a bracket, a call, a minus or "not" that stays open behind it
  bool closes = false;   ///< the closing bracket
  bool repeats = false;  ///< a group that may stand any number of times
  std::int16_t index = 0;

  bool isTerminal() const noexcept { return kind == Kind::kSymbol || kind == Kind::kLiteral; }
};

struct GrammarRule {
  std::uint16_t firstAlternative = 0;
  std::uint16_t alternativeCount = 0;
  std::int32_t dataType = 0;
  std::int32_t semanticType = 0;
  bool checkDataType = false;
  /// Worth remembering at a word position: reached from several places and more than a few words.
  bool remembered = false;
  /// Of a chain, `<operand>{<operator><operand>}`, the rule of its operands; -1 for other rules.
  std::int16_t operand = -1;
  /// Nothing but alternatives of one word that opens nothing: a word that can begin it matches it.
  bool isWord = false;
};

inline constexpr std::int16_t kNoLiteral = -1;
/// A set of rules.
using RuleSet = std::bitset<std::size(kSyntaxRules)>;

/// Of each rule the first alternative that some word can begin.
using FirstAlternatives = std::array<std::uint8_t, std::size(kSyntaxRules)>;
inline constexpr std::uint8_t kNoAlternative = 0xFF;

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
  std::int16_t StartRuleOf(MXRULE_DATATYPE dataType) const noexcept {
    const auto type = static_cast<std::size_t>(dataType);
    return type < startRules_.size() ? startRules_[type] : std::int16_t{-1};
  }
  const GrammarRule& Rule(std::int16_t index) const noexcept {
    return rules_[static_cast<std::size_t>(index)];
  }
  /// The first item of an alternative; those behind it follow.
  const GrammarItem* Alternative(const GrammarRule& rule, std::size_t index) const noexcept {
    return &items_[alternatives_[rule.firstAlternative + index]];
  }
  const GrammarItem* FirstOf(const GrammarItem& group) const noexcept {
    return &items_[static_cast<std::size_t>(group.index)];
  }

  /// What a word begins by its literal, if it is one, and by its kind and value type.
  const FirstAlternatives& BegunBy(std::int16_t literal) const noexcept {
    return begunByLiteral_[static_cast<std::size_t>(literal + 1)];
  }
  const FirstAlternatives& BegunBy(std::int32_t symbol, std::int32_t dataType) const noexcept {
    const auto row = static_cast<std::size_t>(symbol);
    if (row >= RuleStart::kSymbols) return BegunBy(kNoLiteral);
    return begunBySymbol_[row][TypeColumn(dataType)];
  }
  const RuleStart& StartOf(std::int16_t rule) const noexcept {
    return starts_[static_cast<std::size_t>(rule)];
  }

  /// Index of the literal that a word's canonical text equals, case disregarded, or `kNoLiteral`.
  std::int16_t LiteralOf(std::u16string_view primary) const {
    if (primary.size() != 1) return LongLiteralOf(primary);
    return primary[0] < characterLiterals_.size() ? characterLiterals_[primary[0]] : kNoLiteral;
  }
  /// Whether a literal opens a bracket, a minus or "not" wherever it begins a rule of several
  /// words.
  bool CanOpen(std::int16_t literal) const noexcept {
    return std::find(opening_.begin(), opening_.end(), literal) != opening_.end();
  }
  /// Index of a rule by its name; -1 for none.
  std::int16_t RuleNamed(std::u16string_view name) const {
    const auto found = ruleIndex_.find(name);
    return found == ruleIndex_.end() ? std::int16_t{-1} : found->second;
  }
  std::u16string_view LiteralText(std::int16_t index) const noexcept {
    return literals_[static_cast<std::size_t>(index)];
  }

 private:
  /// An alternative whose first words are looked for.
  struct Start {
    std::size_t rule;
    std::uint8_t alternative;
    RuleSet visited;
  };

  CompiledGrammar();
  void CompileBody(std::u16string_view body, GrammarRule& rule);
  std::size_t CompileSequence(std::u16string_view text, bool isPrefixRule);
  GrammarItem CompileItem(std::u16string_view text);
  std::int16_t LiteralIndex(std::u16string_view text);
  std::int16_t LongLiteralOf(std::u16string_view primary) const;
  void ChooseRemembered();
  void AddNamed(const GrammarItem* item, RuleSet& named) const;
  bool IsWordRule(const GrammarRule& rule) const noexcept;
  std::int16_t OperandOf(const GrammarRule& rule) const noexcept;
  void FindStarts();
  void FindStart(const GrammarItem* item, const GrammarRule& rule, Start& start);
  void AddStart(const GrammarItem& terminal, const GrammarRule& rule, const Start& start);

  // Value types of words: those of the enumeration, and one for every other number.
  static constexpr std::size_t kTypes = 12;
  static constexpr std::size_t TypeColumn(std::int32_t dataType) noexcept {
    return std::min(static_cast<std::size_t>(dataType), kTypes - 1);  // also for negative numbers
  }

  std::array<std::int16_t, kTypes> startRules_;  // -1 for a type without one
  std::vector<RuleStart> starts_;
  std::vector<FirstAlternatives> begunByLiteral_;  // by none first
  std::array<std::array<FirstAlternatives, kTypes>, RuleStart::kSymbols> begunBySymbol_;
  std::vector<GrammarRule> rules_;
  std::vector<std::uint16_t> alternatives_;  // the first item of each
  std::vector<GrammarItem> items_;
  std::vector<std::u16string> literals_;
  std::vector<std::int16_t> opening_;  ///< those that open something
  KeyMap<std::int16_t> literalIndex_;  ///< by lower-case text
  /// By the first character of literals: a bit for each length.
  std::array<std::uint64_t, 128> literalLengths_{};
  std::array<std::int16_t, 128> characterLiterals_;  ///< those of one character
  std::unordered_map<std::u16string_view, std::int16_t> ruleIndex_;
};

/// The items of a rule body without "|", in order.
std::vector<std::u16string_view> CutIntoItems(std::u16string_view body);

}  // namespace ORKBASE
