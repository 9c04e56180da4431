// Words that other systems use, and the words of the other languages of the message file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "authoring/Mending.h"

namespace ORKBASE {

struct BaseVocabulary;

enum class AliasUse : std::uint8_t {
  kWord,      ///< the same under another name
  kVariable,  ///< a call without arguments, or none, that is a variable here
  kJoin,      ///< a call whose arguments an operator joins here
  kBracket,   ///< the same, and the brackets stay
  kSwap,      ///< the first two arguments the other way round
  kTrim,      ///< one call within another
  kLeft,      ///< a start of 1 stands between the two arguments
};

struct AliasRow {
  std::u16string_view alias;
  AliasUse use;
  std::u16string_view primary;  ///< our word; of `kTrim` two, with "(" between
};

/// The row of a word, in any case; null for none.
const AliasRow* AliasOf(std::u16string_view word);
/// The unit of time that a word or a quoted text stands for; empty for none.
std::u16string_view DatePartOf(std::u16string_view word);

/// What words stand for, and how they are written in the language of a call.
class Lexicon {
 public:
  explicit Lexicon(AuthoringCall& call);

  /// How a word of the vocabulary is written in the language of the call.
  std::u16string Display(std::u16string_view primary) const;
  /// The word of another language, or null.
  const MxWord* OfOtherLanguage(std::u16string_view text) const;
  /// What a word of a text stands for: the canonical spelling where it is, or should be, a word of
  /// the vocabulary, else the word itself.
  std::u16string_view Meaning(const Draft& draft, std::size_t word) const;

 private:
  AuthoringCall& call_;
  std::vector<std::shared_ptr<const BaseVocabulary>> others_;
};

}  // namespace ORKBASE
