// A spelling is a display form of the language, with what stood behind it, or the canonical
// spelling itself (constants, key columns, fields of tables that are not loaded yet), or what was
// typed once.
#include "authoring/WordSpelling.h"

#include "authoring/AuthoringCall.h"
#include "foundation/KeyMap.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/ErrorTexts.h"
#include "platform/MessageTexts.h"

#include <utility>
#include <vector>

namespace ORKBASE {
namespace {

/// How many of the brackets in a word may be that of its postfix: names hold few, and each is
/// tried.
constexpr int kMostBrackets = 32;

bool IsCadWord(std::int32_t symbol) noexcept {
  return symbol == kCAXFieldSymbol || symbol == kCAXEnumSymbol;
}

}  // namespace

bool WordSpelling::Spell(Tag tag, std::u16string& text, MxErrorRecord& error) {
  asked_ = {tag.Get(Attr::kPrimary), tag.GetInt(Attr::kSymbol), tag.GetInt(Attr::kDataType)};
  const auto known = spelt_.find(asked_.primary);
  if (known != spelt_.end() && known->second.symbol == asked_.symbol &&
      known->second.dataType == asked_.dataType) {
    text = known->second.text;
    return true;
  }
  isKnown_ = false;
  otherWord_.clear();
  lexersRefusal_ = {};
  if (Find(tag)) {
    text = std::move(found_);
    spelt_.insert_or_assign(std::u16string(asked_.primary),
                            Spelt{asked_.symbol, asked_.dataType, text});
    return true;
  }
  error = Refusal();
  return false;
}

bool WordSpelling::Find(Tag tag) {
  if (asked_.symbol == kConstantSymbol) return Try(asked_.primary);
  // Where words share their canonical spelling, what was typed tells which was meant.
  return TryWordsNamed(asked_.primary, {}) || TryPostfixed() || Try(asked_.primary) ||
         Try(tag.Get(Attr::kContent));
}

/// Tries the display forms of all words of a canonical spelling.
bool WordSpelling::TryWordsNamed(std::u16string_view primary, std::u16string_view behind) {
  const LookupKey key(primary);
  std::vector<const MxWord*> words;  // beside the dictionaries, to which trying may add
  for (const auto& entry : call_.Dictionaries().dictionaries()) {
    if (const MxWord* word = entry.second.content->FindByPrimary(key)) words.push_back(word);
  }
  for (const MxWord* word : words) {
    if (word->symbol != asked_.symbol) continue;
    isKnown_ = isKnown_ || !word->primary.ends_with(u'.');
    if (Try(std::u16string(word->outDesc).append(behind))) return true;
  }
  return false;
}

/// Tries words that carry something behind them: a prefix word, or any word before a bracket.
bool WordSpelling::TryPostfixed() {
  const std::u16string_view primary = asked_.primary;
  const auto cutAt = [&](std::size_t at) {
    return TryWordsNamed(primary.substr(0, at), primary.substr(at));
  };
  const std::size_t dot = primary.find(u'.');
  if (dot != primary.npos && cutAt(dot + 1)) return true;
  std::size_t bracket = primary.find(u'[');
  for (int i = 0; bracket != primary.npos && i < kMostBrackets; ++i) {
    if (cutAt(bracket)) return true;
    bracket = primary.find(u'[', bracket + 1);
  }
  return false;
}

/// Tries the text, and where the lexer takes off the word before a field of the current record, the
/// text behind that word, too.
bool WordSpelling::Try(std::u16string_view text) {
  if (Reads(std::u16string(text))) return true;
  if (call_.Engine().lexer.thiscaseVarOn1RcId) return false;
  return Reads(LoadMessage(kMsgThisReport, call_.TextLanguage()).append(u".").append(text));
}

/// Whether a rule of this text alone is the word that is asked for.
bool WordSpelling::Reads(std::u16string text) {
  RuleReading reading;
  call_.Read(text, reading);
  if (reading.words.size() != 1 || reading.words.front().written.size() != text.size()) {
    return false;
  }
  const WordView& word = reading.words.front();
  if (reading.IsRefused(0)) {
    if (lexersRefusal_.cause != kDatabaseCause) lexersRefusal_ = reading.refusals.front();
    return false;
  }
  const std::u16string_view primary = UpToZero(word.primary);
  const bool isOther = word.symbol != asked_.symbol || !EqualsIgnoringCase(primary, asked_.primary);
  if (isOther && otherWord_.empty()) otherWord_ = text;
  const bool isExact = primary == asked_.primary && word.dataType == asked_.dataType;
  if (isOther || !(isExact || IsAtFirstSight(text, word))) return false;
  found_ = std::move(text);
  return true;
}

bool WordSpelling::IsAtFirstSight(std::u16string_view text, const WordView& word) {
  const bool canBe = word.entry && word.symbol == kDataFieldSymbol &&
                     asked_.dataType == kVarDataType && text == asked_.primary;
  if (!canBe || !IsPseudoColumn(word.entry->fldName)) return false;
  atFirstSight_.insert(word.entry->dtName);
  atFirstSight_.emplace(text.substr(0, text.find(u'.')));  // where case does not count
  return true;
}

MxErrorRecord WordSpelling::Refusal() const {
  if (lexersRefusal_.cause == kDatabaseCause) return lexersRefusal_;
  // The zero that such a text held ended it in the document.
  if (asked_.symbol == kConstantSymbol && lexersRefusal_.message == kMsgUnclosedText) {
    return MakeError(kDocumentCause, kMsgControlCharacter, {asked_.primary});
  }
  if (IsCadWord(asked_.symbol) && !isKnown_) {
    return MakeError(kDocumentCause, kMsgCadWordNotLoaded, {asked_.primary});
  }
  if (!otherWord_.empty()) return MakeError(kDocumentCause, kMsgNameIsWord, {otherWord_});
  MxErrorRecord error = MakeError(kDocumentCause, kMsgNoRuleGivesThis);
  if (lexersRefusal_.cause != kNoCause) error.behind.push_back(lexersRefusal_);
  return error;
}

}  // namespace ORKBASE
