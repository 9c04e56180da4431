#include "authoring/Uses.h"

#include "authoring/AuthoringCall.h"
#include "authoring/SettledReading.h"
#include "authoring/WordKinds.h"

#include <utility>

namespace ORKBASE {
namespace {

/// Table and field out of `table.field`; nothing out of any other text.
void SetNames(RuleUse& use, std::u16string_view qualified) {
  const std::size_t dot = qualified.find(u'.');
  if (dot == qualified.npos) return;
  use.table = qualified.substr(0, dot);
  use.field = qualified.substr(dot + 1);
}

/// The names that a rule has for a field. Key columns, and fields of a CAD document that is not
/// loaded, stand in no dictionary and have their names in the word itself.
void SetFieldNames(RuleUse& use, const WordView& word) {
  const MxWord* entry = word.entry;
  const bool hasNames = entry && !(entry->dtName.empty() && entry->fldName.empty());
  if (hasNames) {
    use.table = entry->dtName;
    use.field = entry->fldName;
  } else if (word.symbol == kCAXFieldSymbol && entry) {
    SetNames(use, word.primary.substr(entry->primary.size()));
  } else if (word.symbol == kDataFieldSymbol) {
    SetNames(use, word.primary);
  }
}

/// A text without its closing quote is no word.
bool IsBrokenText(const WordView& word) {
  return word.symbol == kUnknownSymbol && word.written.starts_with(u'\'');
}

}  // namespace

std::vector<RuleUse> UsesOf(AuthoringCall& call, std::u16string_view text) {
  RuleReading reading;
  ReadSettled(call, text, reading);
  std::vector<RuleUse> uses;
  for (std::size_t i = 0; i < reading.words.size(); ++i) {
    const WordView& word = reading.words[i];
    RuleUse use;
    use.kind = UseKindOf(word.symbol);
    if (use.kind.empty() || IsBrokenText(word)) continue;
    use.name = word.primary;
    SetFieldNames(use, word);
    use.offset = reading.OffsetOf(i);
    use.length = reading.LengthOf(i);
    uses.push_back(std::move(use));
  }
  return uses;
}

}  // namespace ORKBASE
