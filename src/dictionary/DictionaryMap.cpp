// Sharing dictionaries between copies.
#include "dictionary/DictionaryMap.h"

#include <utility>

namespace ORKBASE {

void DictionaryMap::Renew() {
  if (!family_ || family_->version.load(std::memory_order_acquire) == seen_) return;
  std::vector<Content> old;  // goes behind the lock
  old.reserve(entries_.size());
  const std::lock_guard lock(family_->mutex);
  for (auto& [key, entry] : entries_) {
    if (!entry.cell) continue;
    old.push_back(std::exchange(entry.content, entry.cell->content));
  }
  seen_ = family_->version.load(std::memory_order_relaxed);
}

const MxDictionary* DictionaryMap::Find(std::u16string_view key) const {
  const auto found = entries_.find(key);
  return found == entries_.end() ? nullptr : found->second.content.get();
}

void DictionaryMap::Remove(std::u16string_view key) {
  const auto found = entries_.find(key);
  if (found != entries_.end()) entries_.erase(found);
}

void DictionaryMap::Enter(std::u16string key, Content content) {
  if (!family_) family_ = std::make_shared<Family>();
  auto cell = std::make_shared<Cell>(Cell{content});
  entries_.insert_or_assign(std::move(key), Entry{std::move(content), std::move(cell)});
}

void DictionaryMap::EnterFixed(std::u16string_view key, Content content) {
  entries_.insert_or_assign(std::u16string(key), Entry{std::move(content), nullptr});
}

bool DictionaryMap::Commit(Change& change) {
  if (family_) {
    const std::lock_guard lock(family_->mutex);
    if (family_->version.load(std::memory_order_relaxed) != seen_) return false;
    // Nothing below throws, so that it is done whole.
    const auto store = [](Entry& entry) {
      if (entry.cell) entry.cell->content = entry.content;
    };
    for (auto& [key, entry] : change.entries) store(entry);
    for (Entry& entry : change.displaced) store(entry);
    family_->version.store(++seen_, std::memory_order_release);
  }
  entries_.swap(change.entries);
  return true;
}

}  // namespace ORKBASE
