// One dictionary: words by their canonical spelling and by their display form.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "MxWord.h"
#include "foundation/KeyMap.h"

namespace ORKBASE {

/// Words of one source. Owned by dictionary sets, shared between an `MxExpression` and its copies;
/// the base vocabulary is shared by all. Looking up changes nothing. Words that were found stay at
/// their address until they are removed or the dictionary goes.
class MxDictionary {
 public:
  explicit MxDictionary(bool isCax = false, std::int32_t caxType = 0, std::u16string source = {});

  /// Enters a word under both of its keys; a key that is taken stays as it is, each by itself.
  void AddEntry(const MxWord& word);
  void RemoveEntry(const MxWord& word);

  /// Null when the text is no display form (or canonical spelling) of a word, in any case.
  const MxWord* FindByDesc(const LookupKey& key) const;
  const MxWord* FindByPrimary(const LookupKey& key) const;

  /// All words, ascending by lower-case canonical spelling.
  std::vector<const MxWord*> SortedWords() const;

  bool isCax() const noexcept { return isCax_; }
  std::int32_t caxType() const noexcept { return caxType_; }
  const std::u16string& source() const noexcept { return source_; }

  std::u16string name;                   ///< empty, or the key in the set
  KeyMap<std::u16string> caxEnumValues;  ///< SQL text by lower-case enumeration word

 private:
  KeyMap<MxWord> items_;
  KeyMap<std::u16string> byDesc_;  ///< display form to lower-case canonical spelling
  bool isCax_;
  std::int32_t caxType_;
  std::u16string source_;
};

}  // namespace ORKBASE
