// The words that can be put into a rule, in the order in which they are listed, each with what
// decides whether it may stand in a place. Made once for a state of the dictionaries.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "MxWord.h"
#include "authoring/WordIndex.h"
#include "foundation/KeyMap.h"
#include "lexer/Lexer.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

/// What the grammar sees of a word: where one word of a class may stand, all may.
struct WordClass {
  std::int16_t literal;
  std::int32_t symbol;
  std::int32_t dataType;
  std::int32_t postfixCheck;
  // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer in it
  friend auto operator<=>(const WordClass&, const WordClass&) = default;
};

/// Among words that match equally well, those of a lower order stand first.
enum WordOrder : std::uint8_t { kFieldOrder, kFunctionOrder, kVariableOrder, kOperatorOrder };

struct Candidate {
  std::u16string_view text;    ///< display form
  std::u16string_view folded;  ///< the same, as it is compared
  std::u16string_view kind;    ///< as items name it
  std::u16string_view dataType;
  const MxWord* word = nullptr;  ///< that the text leads to
  std::uint32_t wordClass = 0;
  std::int32_t group = -1;  ///< of a field, -1 for other words
  WordOrder order = kOperatorOrder;
};

/// Fields with one beginning: those of a table.
struct FieldGroup {
  std::u16string text;    ///< with the point, `Orders.`
  bool isLoaded = false;  ///< the engine has loaded it, not a rule by itself
};

/// What is told of a word of the vocabulary, in the language of the list.
struct WordTexts {
  std::u16string info;
  std::u16string signature;  ///< of a call
  std::u16string snippet;
};

/// Refers to the words and the dictionaries that it was made of.
class CandidateList {
 public:
  CandidateList() = default;
  /// `loaded`: the tables that the engine has loaded, in lower case. `lexer` says to which word a
  /// text leads.
  CandidateList(const WordIndex& words, const KeyMap<bool>& loaded, Lexer& lexer,
                Language language);

  /// Fields, functions, variables, operators; each by alphabet.
  std::span<const Candidate> All() const noexcept { return candidates_; }
  std::span<const WordClass> Classes() const noexcept { return classes_; }
  std::span<const FieldGroup> Groups() const noexcept { return groups_; }
  /// The group with a text in any case, -1 for none.
  std::int32_t GroupOf(std::u16string_view text) const;
  /// The texts that `make` gives, made once for each key: a word, or a form of a function.
  template <class Make>
  const WordTexts& TextsOf(const void* key, Make make) const {
    const auto [found, isNew] = texts_.try_emplace(key);
    if (isNew) found->second = make();
    return found->second;
  }

 private:
  class Maker;

  std::vector<Candidate> candidates_;
  std::vector<WordClass> classes_;
  std::vector<FieldGroup> groups_;
  KeyMap<std::int32_t> groupIndex_;  ///< by lower-case text
  mutable std::unordered_map<const void*, WordTexts> texts_;
};

/// What the display form of a field begins with: all in front of the field's own name.
std::u16string_view GroupText(const MxWord& word, std::u16string_view text) noexcept;

}  // namespace ORKBASE
