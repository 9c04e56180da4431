// Gathering the words, their classes and the groups of fields.
#include "authoring/CandidateList.h"

#include "authoring/WordKinds.h"
#include "foundation/Text.h"
#include "foundation/WordView.h"
#include "lexer/Tokeniser.h"
#include "parser/CompiledGrammar.h"

#include <algorithm>
#include <array>
#include <map>
#include <tuple>

namespace ORKBASE {
namespace {

WordOrder OrderOf(std::u16string_view kind) noexcept {
  if (kind == u"field" || kind == u"formField") return kFieldOrder;
  if (kind == u"function") return kFunctionOrder;
  return kind == u"variable" || kind == u"parameter" ? kVariableOrder : kOperatorOrder;
}

/// Whether a text is cut into one word: a name with a blank or a sign of an operator cannot be
/// written.
bool IsOneToken(std::u16string_view text) noexcept {
  return !IsBlankText(text) && (*Tokens(text).begin()).size() == text.size();
}

}  // namespace

std::u16string_view GroupText(const MxWord& word, std::u16string_view text) noexcept {
  const std::u16string_view name = word.fldName;
  if (text.size() > name.size() && text.ends_with(name)) {
    const std::u16string_view group = text.substr(0, text.size() - name.size());
    if (group.ends_with(u'.')) return group;
  }
  return text.substr(0, text.rfind(u'.') + 1);
}

class CandidateList::Maker {
 public:
  Maker(CandidateList& list, const KeyMap<bool>& loaded) : list_(list), loaded_(loaded) {}

  void Add(const IndexedWord& indexed, const MxWord& word, std::u16string_view postfix) {
    const std::u16string_view text = indexed.word->outDesc;
    Candidate candidate;
    candidate.text = text;
    candidate.folded = indexed.folded;
    candidate.kind = ItemKindOf(word.symbol);
    candidate.dataType = TypeNameOf(word.dataType);
    candidate.word = &word;
    candidate.wordClass = ClassOf(word, postfix);
    candidate.order = OrderOf(candidate.kind);
    // A prefix word such as `thisDoc.` is no field of a group.
    const bool isField = candidate.order == kFieldOrder && !text.ends_with(u'.');
    if (isField) candidate.group = GroupFor(*indexed.word, text);
    list_.candidates_.push_back(candidate);
  }

 private:
  std::uint32_t ClassOf(const MxWord& word, std::u16string_view postfix) {
    const std::int16_t literal =
        postfix.empty() ? CompiledGrammar::Instance().LiteralOf(word.primary) : kNoLiteral;
    const WordClass made{literal, word.symbol, word.dataType, word.postfixCheck};
    const auto [found, isNew] =
        classes_.emplace(made, static_cast<std::uint32_t>(list_.classes_.size()));
    if (isNew) list_.classes_.push_back(made);
    return found->second;
  }

  std::int32_t GroupFor(const MxWord& word, std::u16string_view text) {
    const std::u16string_view group = GroupText(word, text);
    if (group.empty()) return -1;
    const LookupKey key(group);
    if (const auto known = list_.groupIndex_.find(key); known != list_.groupIndex_.end()) {
      return known->second;
    }
    const auto index = static_cast<std::int32_t>(list_.groups_.size());
    const bool isTable = word.symbol == kDataFieldSymbol;
    list_.groups_.push_back(
        {std::u16string(group), !isTable || loaded_.contains(LookupKey(word.dtName))});
    list_.groupIndex_.emplace(key.text(), index);
    return index;
  }

  CandidateList& list_;
  const KeyMap<bool>& loaded_;
  std::map<WordClass, std::uint32_t> classes_;
};

CandidateList::CandidateList(const WordIndex& words, const KeyMap<bool>& loaded, Lexer& lexer,
                             Language language) {
  Maker maker(*this, loaded);
  std::vector<std::u16string_view> texts;
  texts.reserve(words.All().size());
  for (const IndexedWord& indexed : words.All()) texts.push_back(indexed.word->outDesc);
  std::size_t index = 0;
  // With the word before a field of the current record taken off, a text may lead to another word
  // than its own, or to none.
  lexer.RecogniseEach(texts, language, [&](std::u16string_view text, const auto& found) {
    const IndexedWord& indexed = words.All()[index++];
    if (found.word && IsOneToken(text)) maker.Add(indexed, *found.word, found.postfix);
  });
  std::sort(candidates_.begin(), candidates_.end(), [](const Candidate& a, const Candidate& b) {
    return std::tie(a.order, a.folded, a.text) < std::tie(b.order, b.folded, b.text);
  });
}

std::int32_t CandidateList::GroupOf(std::u16string_view text) const {
  const auto found = groupIndex_.find(LookupKey(text));
  return found == groupIndex_.end() ? -1 : found->second;
}

}  // namespace ORKBASE
