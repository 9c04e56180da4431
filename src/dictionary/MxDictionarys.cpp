// The dictionary set: look-ups and keys. Loading and renaming stand in files of their own.
#include "dictionary/MxDictionarys.h"

#include <atomic>
#include <utility>

#include "dictionary/BaseVocabulary.h"
#include "platform/ErrorTexts.h"

namespace ORKBASE {
namespace {

/// How many tables that are not there a set keeps in mind from one call to the next.
constexpr std::size_t kMostMissing = 1'000;

/// The first word that `find`, an operation of `MxDictionary`, gives.
template <class Find>
const MxWord* Search(const DictionaryMap::Entries& dictionaries, std::u16string_view text,
                     Find find) {
  const LookupKey key(text);
  for (const auto& entry : dictionaries) {
    if (const MxWord* word = (*entry.second.content.*find)(key)) return word;
  }
  return nullptr;
}

}  // namespace

WordSource* WordsIn(MxDictionarys* dictionarys) noexcept {
  return dictionarys;
}

MxDictionarys::MxDictionarys(Language language) : base_(SharedBaseVocabulary(language)) {
  dictionaries_.EnterFixed(kBaseKey, base_->words);
  Changed();  // sets made under two languages are not the same
}

std::u16string MxDictionarys::ErrDescription() const {
  return DescriptionOf(Error());
}

void MxDictionarys::BeginCall() {
  dictionaries_.Renew();
  ForgetMissing();
  load_ = 0;
}

void MxDictionarys::ForgetMissing() {
  if (!remembersMissing_ || missing_.size() > kMostMissing) {
    missing_.clear();
    return;
  }
  // A database that did not answer may do so now.
  std::erase_if(missing_, [](const auto& entry) { return entry.second.cause == kDatabaseCause; });
}

void MxDictionarys::Changed(bool content) noexcept {
  static std::atomic<std::uint64_t> last{0};
  stamp_ = ++last;
  if (content) content_ = stamp_;
}

bool MxDictionarys::MustNotAsk() noexcept {
  if (!forbidden_) return false;
  *forbidden_ = true;
  return true;
}

const MxWord* MxDictionarys::FindByDesc(std::u16string_view text) const {
  return Search(dictionaries_.All(), text, &MxDictionary::FindByDesc);
}

const MxWord* MxDictionarys::FindByPrimary(std::u16string_view text) const {
  return Search(dictionaries_.All(), text, &MxDictionary::FindByPrimary);
}

bool MxDictionarys::BindTable(std::u16string_view name, MxErrorRecord& error) {
  auto missing = missing_.find(name);
  if (missing == missing_.end()) {
    if (LoadDataTable(name) == 0) return true;
    if (forbidden_) {  // it was not asked for, so nobody knows whether it is missing
      error = Error();
      return false;
    }
    missing = missing_.emplace(name, Error()).first;
  }
  error = missing->second;
  return false;
}

void MxDictionarys::Enter(std::u16string key, std::shared_ptr<const MxDictionary> dictionary) {
  Changed();
  dictionaries_.Enter(std::move(key), std::move(dictionary));
}

std::u16string MxDictionarys::QuoteName(std::u16string_view name) const {
  if (name.empty() || name.front() == quotes_.open.front()) return std::u16string(name);
  return std::u16string(quotes_.open).append(name).append(quotes_.close);
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
  error_.Set(std::move(error));
  return ErrNumber();
}

}  // namespace ORKBASE
