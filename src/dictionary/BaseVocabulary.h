// The fixed vocabulary of the rule language, and the three documents that a rule editor shows.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "dictionary/MxDictionary.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

/// Its key in every dictionary set, and its name.
inline constexpr std::u16string_view kBaseKey = u"base";

/// The vocabulary in one language: the same words in every language, display forms of that one.
struct BaseVocabulary {
  std::shared_ptr<const MxDictionary> words;
  std::u16string operatorsDoc;
  std::u16string funcsDoc;
  std::u16string sysVarDoc;
};

/// The vocabulary in a language, made once per language and then shared, unchanging, by every
/// dictionary set.
std::shared_ptr<const BaseVocabulary> SharedBaseVocabulary(Language language);

void FillOperators(MxDictionary& dictionary, Language language);
void FillFunctions(MxDictionary& dictionary, Language language);
void FillOthers(MxDictionary& dictionary, Language language);
/// Makes the three documents from the words.
void BuildDictDocs(BaseVocabulary& vocabulary);

}  // namespace ORKBASE
