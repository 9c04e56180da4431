// Building the base vocabulary from its tables.
#include "dictionary/BaseVocabulary.h"

#include <map>
#include <mutex>
#include <span>
#include <utility>

#include "dictionary/VocabularyTables.h"
#include "foundation/Format.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"
#include "xml/XmlDoc.h"

namespace ORKBASE {
namespace {

std::u16string DisplayForm(const VocabularyRow& row, Language language) {
  std::u16string text = LoadMessage(row.message, language);
  return row.display == Display::kMessageAndDot ? Format(u"%s.", {text}) : text;
}

void AddWord(MxDictionary& dictionary, std::u16string_view primary, std::u16string outDesc,
             const VocabularyRow& row) {
  MxWord word;
  word.primary = primary;
  word.outDesc = std::move(outDesc);
  word.symbol = row.symbol;
  word.dataType = row.dataType;
  word.postfixCheck = row.postfixCheck;
  dictionary.AddEntry(word);
}

/// The words of a "|" list, each its own display form.
void AddWords(MxDictionary& dictionary, const VocabularyRow& row) {
  for (const std::u16string_view primary : SplitText(row.primary, u"|")) {
    AddWord(dictionary, primary, std::u16string(primary), row);
  }
}

void Fill(MxDictionary& dictionary, std::span<const VocabularyRow> rows, Language language) {
  for (const VocabularyRow& row : rows) {
    if (row.display == Display::kOwnText) {
      AddWords(dictionary, row);
    } else {
      AddWord(dictionary, row.primary, DisplayForm(row, language), row);
    }
  }
}

void AddItem(MxXmlDoc& doc, MxXmlNode parent, const MxWord& word) {
  MxXmlNode item = doc.NewNode(u"item");
  item.SetAttr(u"primary", word.primary);
  item.SetAttr(u"outdesc", word.outDesc);
  item.SetAttr(u"datatype", word.dataType);
  item.SetAttr(u"symbol", word.symbol);
  parent.AddChild(item);
}

std::shared_ptr<const BaseVocabulary> MakeBaseVocabulary(Language language) {
  auto words = std::make_shared<MxDictionary>();
  words->name = kBaseKey;
  FillOperators(*words, language);
  FillFunctions(*words, language);
  FillOthers(*words, language);
  auto vocabulary = std::make_shared<BaseVocabulary>();
  vocabulary->words = std::move(words);
  BuildDictDocs(*vocabulary);
  return vocabulary;
}

}  // namespace

void FillOperators(MxDictionary& dictionary, Language language) {
  Fill(dictionary, kOperatorRows, language);
}
void FillFunctions(MxDictionary& dictionary, Language language) {
  Fill(dictionary, kFunctionRows, language);
}
void FillOthers(MxDictionary& dictionary, Language language) {
  Fill(dictionary, kOtherRows, language);
}

void BuildDictDocs(BaseVocabulary& vocabulary) {
  MxXmlDoc doc;
  const MxXmlNode operators = doc.NewNode(u"root");
  const MxXmlNode functions = doc.NewNode(u"root");
  const MxXmlNode sysVars = doc.NewNode(u"root");
  for (const MxWord* word : vocabulary.words->SortedWords()) {
    // kept: a variable of the current record is in the language, but in no document.
    if (word->symbol == kSysvarCaseSymbol) continue;
    const bool isSysVar = word->symbol >= kSmsSymbol && word->symbol <= kSysvarUserSymbol;
    AddItem(doc,
            word->symbol == kFunctionSymbol ? functions
            : isSysVar                      ? sysVars
                                            : operators,
            *word);
  }
  vocabulary.operatorsDoc = operators.ToText();
  vocabulary.funcsDoc = functions.ToText();
  vocabulary.sysVarDoc = sysVars.ToText();
}

std::shared_ptr<const BaseVocabulary> SharedBaseVocabulary(Language language) {
  static std::mutex mutex;
  static std::map<Language, std::shared_ptr<const BaseVocabulary>> made;
  const std::lock_guard lock(mutex);
  auto& vocabulary = made[language];
  if (!vocabulary) vocabulary = MakeBaseVocabulary(language);
  return vocabulary;
}

}  // namespace ORKBASE
