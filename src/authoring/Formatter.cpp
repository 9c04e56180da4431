#include "authoring/Formatter.h"

#include "authoring/AuthoringCall.h"
#include "authoring/LineBreaks.h"
#include "authoring/SettledReading.h"
#include "authoring/Spacing.h"

#include <vector>

namespace ORKBASE {
namespace {

/// The word as the dictionary spells it, with what was typed behind it; as it was typed where that
/// would be another word, be it only as long as its table is not loaded.
std::u16string DisplayForm(AuthoringCall& call, const WordView& word) {
  std::u16string typed(word.written);
  const bool mayChange =
      word.symbol == kDataFieldSymbol && word.entry && IsPseudoColumn(word.entry->fldName);
  if (!word.entry || mayChange) return typed;
  std::u16string text = word.entry->outDesc;
  text += word.primary.substr(word.entry->primary.size());
  if (text == typed) return typed;
  RuleReading reading;
  call.Read(text, reading);
  const bool isSame = reading.words.size() == 1 && reading.words[0].entry == word.entry &&
                      reading.words[0].primary == word.primary &&
                      reading.words[0].written.size() == text.size();
  return isSame ? text : typed;
}

LayoutWord::Role RoleOf(const WordView& word) {
  using Role = LayoutWord::Role;
  if (word.symbol == kOpCondSymbol) return Role::kConnective;
  if (word.symbol != kDelimiterSymbol) return Role::kOther;
  if (word.primary == u"(") return Role::kOpening;
  return word.primary == u")" ? Role::kClosing : Role::kComma;
}

}  // namespace

std::u16string FormatRule(AuthoringCall& call, std::u16string_view text, std::int32_t width) {
  RuleReading reading;
  ReadSettled(call, text, reading);
  std::vector<std::u16string> texts;
  texts.reserve(reading.words.size());  // the layout refers to them
  std::vector<LayoutWord> words;
  words.reserve(reading.words.size());
  Spacing spacing;
  for (const WordView& word : reading.words) {
    const bool blankBefore = spacing.BlankBefore(word.symbol, word.primary);
    words.push_back({texts.emplace_back(DisplayForm(call, word)), RoleOf(word), blankBefore});
  }
  std::u16string formatted;
  const std::vector<LayoutGap> gaps = BreakLines(words, width);
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (gaps[i].breaks) formatted += u'\n';
    formatted.append(static_cast<std::size_t>(gaps[i].blanks), u' ');
    formatted += words[i].text;
  }
  return formatted;
}

}  // namespace ORKBASE
