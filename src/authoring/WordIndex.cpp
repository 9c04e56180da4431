#include "authoring/WordIndex.h"

#include "dictionary/MxDictionarys.h"
#include "foundation/Text.h"

#include <unordered_set>
#include <utility>

namespace ORKBASE {
namespace {

constexpr char16_t kFullWidthFirst = 0xFF01;  // stand in the order of "!" to "~"
constexpr char16_t kFullWidthLast = 0xFF5E;
constexpr char16_t kFullWidthBlank = 0x3000;

char16_t OrdinaryWidth(char16_t unit) noexcept {
  if (unit == kFullWidthBlank) return u' ';
  if (unit < kFullWidthFirst || unit > kFullWidthLast) return unit;
  return static_cast<char16_t>(unit - kFullWidthFirst + u'!');
}

}  // namespace

std::u16string Folded(std::u16string_view text) {
  std::u16string folded(text);
  for (char16_t& unit : folded) unit = ToLower(OrdinaryWidth(unit));
  return folded;
}

std::uint64_t LettersOf(std::u16string_view folded) noexcept {
  std::uint64_t letters = 0;
  for (const char16_t unit : folded) letters |= std::uint64_t{1} << (unit % 64);
  return letters;
}

WordIndex::WordIndex(const MxDictionarys& dictionaries) {
  std::unordered_set<std::u16string> taken;
  for (const auto& entry : dictionaries.dictionaries()) {
    const MxDictionary& dictionary = *entry.second.content;
    for (const MxWord* word : dictionary.SortedWords()) {
      if (word->outDesc.empty()) continue;
      if (dictionary.FindByDesc(LookupKey(word->outDesc)) != word) continue;
      if (taken.insert(ToLower(word->outDesc)).second) {
        std::u16string folded = Folded(word->outDesc);
        const std::uint64_t letters = LettersOf(folded);
        words_.push_back({word, std::move(folded), letters});
      }
    }
  }
}

}  // namespace ORKBASE
