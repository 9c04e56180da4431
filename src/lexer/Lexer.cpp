// Recognising words: from tokens to dictionary words, with what stands behind a prefix word.
#include "lexer/Lexer.h"

#include "dictionary/MxDictionarys.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "lexer/Tokeniser.h"
#include "platform/MessageTexts.h"

#include <array>

namespace ORKBASE {

WordView UnknownWord(std::u16string_view token) noexcept {
  WordView word;
  word.primary = word.outDesc = word.content = token;
  return word;
}

void Lexer::PrepareRecognition(Language language) {
  if (!thiscaseVarOn1RcId) currentRecordPrefix_ = LoadMessage(kMsgThisReport, language) + u".";
}

const MxWord* Lexer::Find(std::u16string_view key) const {
  return dictionarys ? dictionarys->FindByDesc(key) : nullptr;
}

Lexer::Recognised Lexer::Recognise(std::u16string_view token) const {
  std::u16string_view key = token;
  if (!thiscaseVarOn1RcId && key.starts_with(currentRecordPrefix_)) {
    key.remove_prefix(currentRecordPrefix_.size());
  }
  if (const MxWord* word = Find(key)) return {word, {}};
  if (token.front() == u'\'') return {};

  const std::size_t bracket = token.find(u'[');
  if (bracket != token.npos) {
    if (const MxWord* word = Find(token.substr(0, bracket))) return {word, token.substr(bracket)};
  }
  const std::size_t dot = token.find(u'.');
  if (dot == token.npos || (bracket == token.npos && dot == token.rfind(u'.'))) return {};
  if (const MxWord* word = Find(token.substr(0, dot + 1))) return {word, token.substr(dot + 1)};
  return {};
}

void Lexer::ReadWords(std::u16string_view text, Language language, std::vector<WordView>& words,
                      std::forward_list<std::u16string>& composed) {
  PrepareRecognition(language);
  std::array<const MxWord*, 128> characters{};  // words of one that were found
  for (std::int32_t index = 0; !text.empty(); ++index) {
    const std::u16string_view token = FirstToken(text);
    text.remove_prefix(token.size());
    if (IsBlank(token.front())) continue;  // and so is the rest
    const bool isCharacter = token.size() == 1 && token.front() < characters.size();
    const MxWord* const known = isCharacter ? characters[token.front()] : nullptr;
    const Recognised found = known ? Recognised{known, {}} : Recognise(token);
    if (isCharacter) characters[token.front()] = found.word;
    WordView& word = words.emplace_back(found.word ? ViewOf(*found.word) : UnknownWord(token));
    if (!found.postfix.empty()) {
      word.primary =
          composed.emplace_front(std::u16string(found.word->primary).append(found.postfix));
    }
    word.content = word.written = token;
    word.token = index;
  }
}

}  // namespace ORKBASE
