#include "authoring/AuthoringCall.h"

#include "foundation/Format.h"
#include "foundation/Text.h"
#include "platform/ErrorTexts.h"
#include "platform/MessageTexts.h"

#include <unicode/utf16.h>

#include <array>

namespace ORKBASE {

void AuthoringView::Follow(const EngineState& source, const Language* spoken) {
  const MxDictionarys::Stamp now = source.dictionaries.StampNow();
  if (isMade_ && now == source_) {
    engine.CopyModes(source);
  } else {
    isMade_ = false;
    engine = source;
    engine.dictionaries.BeginCall();  // what the engine missed in its last call is no matter here
    engine.dictionaries.RememberMissing();
    if (spoken) engine.dictionaries.SpeakLanguage(*spoken);
    source_ = now;
    loaded_.clear();
    for (const auto& entry : source.dictionaries.dictionaries()) {
      const std::u16string_view key = entry.first;
      if (key.starts_with(kDataTableMark)) {
        loaded_.emplace(ToLower(key.substr(kDataTableMark.size())), true);
      }
    }
    indexed_ = {};
    index_ = {};
    isMade_ = true;
  }
  engine.dictionaries.BeginCall();
  engine.lexer.source = &engine.dictionaries;
}

void AuthoringView::TakeOver(const AuthoringView& other, const MxDictionarys::Stamp& now,
                             const std::shared_ptr<bool>& asked) {
  if (!other.isMade_ || other.source_ != now) return;
  const bool isSame = engine.dictionaries.StampNow() == other.engine.dictionaries.StampNow();
  if (isMade_ && source_ == now && isSame) return;
  isMade_ = false;
  engine = other.engine;
  engine.dictionaries.ForbidAsking(asked);
  source_ = now;
  loaded_ = other.loaded_;
  indexed_ = {};
  index_ = {};
  isMade_ = true;
}

const WordIndex& AuthoringView::Words() {
  const MxDictionarys::Stamp now = engine.dictionaries.StampNow();
  if (indexed_ != now || index_.All().empty()) {
    index_ = WordIndex(engine.dictionaries);
    listed_ = {};
  }
  indexed_ = now;
  return index_;
}

const CandidateList& AuthoringView::Candidates(Language language) {
  const WordIndex& words = Words();
  const Reading reading{true, engine.lexer.thiscaseVarOn1RcId, language};
  if (listed_ != reading) list_ = CandidateList(words, loaded_, engine.lexer, language);
  listed_ = reading;
  return list_;
}

void AuthoringCall::Read(std::u16string_view text, RuleReading& reading) {
  Lexer& lexer = view_.engine.lexer;
  reading.text = text;
  lexer.ReadWords(text, language_, reading.words, reading.composed);
  reading.refusals.resize(reading.words.size());
  for (std::size_t i = 0; i < reading.words.size(); ++i) {
    MxErrorRecord& refusal = reading.refusals[i];
    if (lexer.VerifyToken(reading.words[i], refusal)) {
      refusal = {};
      continue;
    }
    if (refusal.cause == kNoCause) refusal.cause = kRuleCause;  // refused without a word on why
    refusal.token = reading.words[i].token;
    refusal.offset = reading.OffsetOf(i);
    refusal.length = reading.LengthOf(i);
    refusal.word = reading.words[i].written;
  }
}

std::u16string AuthoringCall::Text(std::int32_t message,
                                   std::initializer_list<std::u16string_view> arguments) const {
  const std::u16string pattern = LoadMessage(message, language_);
  const auto* const texts = arguments.begin();
  switch (arguments.size()) {
    case 0:
      return Format(pattern, {});
    case 1:
      return Format(pattern, {texts[0]});
    case 2:
      return Format(pattern, {texts[0], texts[1]});
    default:
      return Format(pattern, {texts[0], texts[1], texts[2]});
  }
}

std::u16string AuthoringCall::TextOf(const MxErrorRecord& error) const {
  return ErrorTextIn(error, language_);
}

bool IsPlace(std::u16string_view text, std::int32_t offset) noexcept {
  if (offset < 0 || static_cast<std::size_t>(offset) > text.size()) return false;
  const auto at = static_cast<std::size_t>(offset);
  return at == 0 || at == text.size() || !U16_IS_LEAD(text[at - 1]) || !U16_IS_TRAIL(text[at]);
}

}  // namespace ORKBASE
