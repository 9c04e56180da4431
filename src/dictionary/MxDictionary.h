// One dictionary: words by their canonical spelling and by their display form.
#pragma once

#include <bitset>
#include <cstddef>
#include <string>
#include <vector>

#include "MxWord.h"
#include "foundation/KeyMap.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

/// Words of one source. Once it is in a dictionary set it never changes: the set, its copies and,
/// for the base vocabulary, all threads read it at once. Words that were found stay at their
/// address until the dictionary goes.
class MxDictionary {
 public:
  explicit MxDictionary(bool isCax = false) : isCax_(isCax) {}

  /// Enters a word under both of its keys; a key that is taken stays as it is, each by itself.
  void AddEntry(const MxWord& word);
  void RemoveEntry(const MxWord& word);

  /// Null when the text is no display form (or canonical spelling) of a word, in any case.
  const MxWord* FindByDesc(const LookupKey& key) const;
  const MxWord* FindByPrimary(const LookupKey& key) const;

  /// All words, ascending by lower-case canonical spelling.
  std::vector<const MxWord*> SortedWords() const;

  bool isCax() const noexcept { return isCax_; }

  std::u16string name;                   ///< empty, or the key in the set
  Language language;                     ///< of display forms: of a report template, a CAD document
  KeyMap<std::u16string> caxEnumValues;  ///< SQL text by lower-case enumeration word

 private:
  static constexpr std::size_t kMarks = 4096;

  KeyMap<MxWord> items_;
  KeyMap<std::u16string> byDesc_;  ///< display form to lower-case canonical spelling
  /// By hash, which display forms may be there: most dictionaries do not have the word that a set
  /// looks for in all of them.
  std::bitset<kMarks> marks_;
  bool isCax_;
};

}  // namespace ORKBASE
