// One dictionary.
#include "dictionary/MxDictionary.h"

#include <algorithm>
#include <utility>

#include "foundation/Text.h"

namespace ORKBASE {

void MxDictionary::AddEntry(const MxWord& word) {
  std::u16string key = ToLower(word.primary);
  std::u16string desc = ToLower(word.outDesc);
  marks_.set(KeyHash::Of(desc) % kMarks);
  byDesc_.try_emplace(std::move(desc), key);
  items_.try_emplace(std::move(key), word);
}

void MxDictionary::RemoveEntry(const MxWord& word) {
  const std::u16string desc = ToLower(word.outDesc);
  items_.erase(ToLower(word.primary));  // `word` may be the entry itself
  byDesc_.erase(desc);
}

const MxWord* MxDictionary::FindByDesc(const LookupKey& key) const {
  if (!marks_[key.hash() % kMarks]) return nullptr;
  const auto desc = byDesc_.find(key);
  if (desc == byDesc_.end()) return nullptr;
  // In most languages of most words the two spellings are one, and the hash is known.
  const auto item = desc->second == key.text() ? items_.find(key) : items_.find(desc->second);
  return item == items_.end() ? nullptr : &item->second;
}

const MxWord* MxDictionary::FindByPrimary(const LookupKey& key) const {
  const auto item = items_.find(key);
  return item == items_.end() ? nullptr : &item->second;
}

std::vector<const MxWord*> MxDictionary::SortedWords() const {
  std::vector<std::pair<std::u16string_view, const MxWord*>> sorted;
  for (const auto& [key, word] : items_) sorted.emplace_back(key, &word);
  std::sort(sorted.begin(), sorted.end());
  std::vector<const MxWord*> words;
  words.reserve(sorted.size());
  for (const auto& entry : sorted) words.push_back(entry.second);
  return words;
}

}  // namespace ORKBASE
