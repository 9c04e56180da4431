// The dictionary set: look-ups and keys. Loading and renaming stand in files of their own.
#include "dictionary/MxDictionarys.h"

#include <utility>

#include "dictionary/BaseVocabulary.h"
#include "platform/ErrorTexts.h"

namespace ORKBASE {

MxDictionarys::MxDictionarys(Language language) : base_(SharedBaseVocabulary(language)) {
  dictionaries_.emplace(u"base", base_->words);
}

std::u16string MxDictionarys::ErrDescription() const {
  return DescriptionOf(error_);
}

const MxWord* MxDictionarys::FindByDesc(std::u16string_view text) const {
  const LookupKey key(text);
  for (const auto& entry : dictionaries_) {
    if (const MxWord* word = entry.second->FindByDesc(key)) return word;
  }
  return nullptr;
}

const MxWord* MxDictionarys::FindByPrimary(std::u16string_view text) const {
  const LookupKey key(text);
  for (const auto& entry : dictionaries_) {
    if (const MxWord* word = entry.second->FindByPrimary(key)) return word;
  }
  return nullptr;
}

bool MxDictionarys::FindWord(std::u16string_view text, bool byPrimary, MxWord& out) const {
  const MxWord* word = byPrimary ? FindByPrimary(text) : FindByDesc(text);
  if (word) out = *word;
  return word != nullptr;
}

void MxDictionarys::Remove(std::u16string_view key) {
  const auto found = dictionaries_.find(key);
  if (found != dictionaries_.end()) dictionaries_.erase(found);
}

MxDictionary* MxDictionarys::Find(std::u16string_view key) const {
  const auto found = dictionaries_.find(key);
  return found == dictionaries_.end() ? nullptr : found->second.get();
}

void MxDictionarys::Enter(std::u16string key, std::shared_ptr<MxDictionary> dictionary) {
  dictionaries_.insert_or_assign(std::move(key), std::move(dictionary));
}

std::u16string MxDictionarys::QuoteName(std::u16string_view name) const {
  if (name.empty() || name.front() == quoteOpen_.front()) return std::u16string(name);
  return std::u16string(quoteOpen_).append(name).append(quoteClose_);
}

const std::u16string& MxDictionarys::operatorsDoc() const noexcept {
  return base_->operatorsDoc;
}
const std::u16string& MxDictionarys::funcsDoc() const noexcept {
  return base_->funcsDoc;
}
const std::u16string& MxDictionarys::sysVarDoc() const noexcept {
  return base_->sysVarDoc;
}

std::int32_t MxDictionarys::Fail(MxErrorRecord error) {
  error_ = std::move(error);
  return error_.number;
}

}  // namespace ORKBASE
