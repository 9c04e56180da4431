// The words of a dictionary set in another language: what a form field or a CAD word begins with is
// a word of a language, the rest of its display form is a name and stays.
#include "dictionary/MxDictionarys.h"

#include <utility>
#include <vector>

#include "dictionary/BaseVocabulary.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"

namespace ORKBASE {
namespace {

/// What display forms begin with, before and after.
struct Beginning {
  std::u16string from;
  std::u16string to;
};

Beginning BeginningOf(MessageNumber message, std::u16string_view head, Language from, Language to) {
  const auto in = [&](Language language) {
    return std::u16string(head).append(LoadMessage(message, language)).append(1, u'.');
  };
  return {in(from), in(to)};
}

MxWord WithBeginning(const MxWord& word, const Beginning& beginning) {
  MxWord changed = word;
  if (changed.outDesc.starts_with(beginning.from)) {
    changed.outDesc.replace(0, beginning.from.size(), beginning.to);
  }
  return changed;
}

/// The dictionary with the words that `change` makes of its own. Where words share a display form
/// it goes on leading to the same one.
template <class Change>
std::shared_ptr<MxDictionary> Rebuilt(const MxDictionary& old, Change change) {
  auto rebuilt = std::make_shared<MxDictionary>(old.isCax());
  rebuilt->name = old.name;
  rebuilt->caxEnumValues = old.caxEnumValues;
  std::vector<const MxWord*> behind;
  for (const MxWord* word : old.SortedWords()) {
    if (old.FindByDesc(LookupKey(word->outDesc)) == word) {
      rebuilt->AddEntry(change(*word));
    } else {
      behind.push_back(word);
    }
  }
  for (const MxWord* word : behind) rebuilt->AddEntry(change(*word));
  return rebuilt;
}

}  // namespace

void MxDictionarys::SpeakLanguage(Language language) {
  base_ = SharedBaseVocabulary(language);
  dictionaries_.EnterFixed(kBaseKey, base_->words);
  std::vector<std::pair<std::u16string, std::shared_ptr<MxDictionary>>> rebuilt;
  for (const auto& [key, entry] : dictionaries_.All()) {
    const MxDictionary& old = *entry.content;
    const bool isTemplate = key.starts_with(kTemplateMark);
    if (!isTemplate && !key.starts_with(kCaxMark)) continue;
    const std::u16string_view program =
        CaxProgramName(isTemplate ? 0 : ReadInt(std::u16string_view(key).substr(kCaxMark.size())));
    const Beginning field =
        BeginningOf(isTemplate ? kMsgThisReport : kMsgThisDoc, u"", old.language, language);
    const Beginning value = BeginningOf(kMsgCaxEnum, program, old.language, language);
    auto words = Rebuilt(old, [&](const MxWord& word) {
      return WithBeginning(word, word.symbol == kCAXEnumSymbol ? value : field);
    });
    words->language = language;
    rebuilt.emplace_back(key, std::move(words));
  }
  for (auto& [key, words] : rebuilt) dictionaries_.EnterFixed(key, std::move(words));
}

}  // namespace ORKBASE
