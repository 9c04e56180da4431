// The words that a set of dictionaries can recognise, in a form to search by how they look.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MxWord.h"

namespace ORKBASE {

class MxDictionarys;
class MxDictionary;

/// A text as names are compared by people: small letters, full-width signs as ordinary ones. The
/// length in units stays.
std::u16string Folded(std::u16string_view text);

struct IndexedWord {
  const MxWord* word;
  std::u16string folded;      ///< its display form
  std::uint64_t letters = 0;  ///< see `LettersOf`
};

/// A bit for each letter of a folded text, some letters sharing one: what tells two texts apart at
/// a glance.
std::uint64_t LettersOf(std::u16string_view folded) noexcept;

/// Each display form that leads to a word, once, with the word that it leads to. Refers to the
/// dictionaries that it was made of. Made in one pass, so that it pays where words are looked for
/// by their looks, which asks for all of them.
class WordIndex {
 public:
  WordIndex() = default;
  explicit WordIndex(const MxDictionarys& dictionaries);

  /// By dictionary, then by canonical spelling.
  std::span<const IndexedWord> All() const noexcept { return words_; }

 private:
  std::vector<IndexedWord> words_;
};

}  // namespace ORKBASE
