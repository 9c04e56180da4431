// Recognising words: from tokens to dictionary words, with what stands behind a prefix word.
#include "lexer/Lexer.h"

#include "foundation/MessageNumbers.h"
#include "lexer/TextRenamer.h"
#include "lexer/Tokeniser.h"
#include "platform/ErrorTexts.h"
#include "platform/MessageTexts.h"

namespace ORKBASE {
namespace {

/// The word of a token that no dictionary knows.
WordView UnknownWord(std::u16string_view token) noexcept {
  WordView word;
  word.primary = word.outDesc = token;
  return word;
}

}  // namespace

void Lexer::PrepareRecognition(Language language) {
  if (!thiscaseVarOn1RcId) currentRecordPrefix_ = LoadMessage(kMsgThisReport, language) + u".";
}

const MxWord* Lexer::Find(std::u16string_view key) const {
  return source ? source->FindByDesc(key) : nullptr;
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

Lexer::Recognised Lexer::RecogniseKnown(std::u16string_view token, Characters& characters) const {
  if (token.size() != 1 || token.front() >= characters.size()) return Recognise(token);
  const MxWord*& known = characters[token.front()];
  if (known) return {known, {}};
  const Recognised found = Recognise(token);
  if (found.postfix.empty()) known = found.word;
  return found;
}

void Lexer::ReadWords(std::u16string_view text, Language language, std::vector<WordView>& words,
                      std::forward_list<std::u16string>& composed) {
  std::int32_t index = -1;
  RecogniseEach(Tokens(text), language, [&](std::u16string_view token, const Recognised& found) {
    ++index;
    if (found.isBlank) return;
    WordView& word = words.emplace_back(found.word ? ViewOf(*found.word) : UnknownWord(token));
    if (!found.postfix.empty()) {
      word.primary =
          composed.emplace_front(std::u16string(found.word->primary).append(found.postfix));
    }
    word.content = word.written = token;
    word.token = index;
  });
}

bool Lexer::ChangeNames(ORKDB_DSType_ENUM dsType, std::u16string_view tableRenames,
                        std::u16string_view fieldRenames, std::u16string_view expression,
                        std::u16string& out, MxErrorRecord& error) {
  quotes.Follow(dsType);
  if (RenameInText(tableRenames, fieldRenames, quotes, expression, out)) return true;
  out = std::u16string(expression);
  error = MakeError(kRequestCause, kMsgRenamedTooLong);
  return false;
}

}  // namespace ORKBASE
