// The word at a place, and what there is to say about it.
#include "authoring/Explanation.h"

#include "authoring/AuthoringCall.h"
#include "authoring/CallForms.h"
#include "authoring/SampleCalls.h"
#include "authoring/WordKinds.h"

namespace ORKBASE {
namespace {

/// The word that the offset is in; where none begins there, the one that ends there.
std::size_t WordAt(const RuleReading& reading, std::int32_t offset) {
  std::size_t ending = reading.words.size();
  for (std::size_t i = 0; i < reading.words.size(); ++i) {
    const std::int32_t begin = reading.OffsetOf(i);
    const std::int32_t end = begin + reading.LengthOf(i);
    if (begin <= offset && offset < end) return i;
    if (end == offset) ending = i;
  }
  return ending;
}

/// A word of the vocabulary without what the rule put behind it.
std::u16string_view VocabularyText(const WordView& word) {
  return word.entry ? std::u16string_view(word.entry->primary) : word.primary;
}

std::u16string TextFor(const AuthoringCall& call, const WordView& word) {
  if (word.symbol == kConstantSymbol || word.symbol == kUnknownSymbol) return {};
  if (word.entry && !word.entry->fldName.empty()) {
    return call.Text(kMsgFieldOfTable, {word.entry->dtName, word.entry->fldName});
  }
  return InfoOf(VocabularyText(word), call.TextLanguage());
}

std::vector<RuleSql> SamplesOf(AuthoringCall& call, std::u16string_view function) {
  std::vector<RuleSql> samples;
  const std::span<const CallForm> forms = FormsOf(function);
  if (forms.empty()) return samples;
  for (RuleSupport& support : SupportOf(call, SampleOf(call, forms.front()))) {
    samples.push_back({support.dialect, std::move(support.sql)});
  }
  return samples;
}

}  // namespace

RuleExplanation ExplainAt(AuthoringCall& call, std::u16string_view text, std::int32_t offset) {
  RuleReading reading;
  call.Read(text, reading);
  RuleExplanation explanation;
  explanation.offset = offset;
  const std::size_t at = WordAt(reading, offset);
  if (at == reading.words.size()) return explanation;
  const WordView& word = reading.words[at];
  explanation.offset = reading.OffsetOf(at);
  explanation.length = reading.LengthOf(at);
  explanation.kind = ItemKindOf(word.symbol);
  explanation.name = word.primary;
  if (!reading.IsRefused(at)) explanation.dataType = TypeNameOf(word.dataType);
  explanation.text = TextFor(call, word);
  if (word.symbol == kFunctionSymbol) explanation.sql = SamplesOf(call, word.primary);
  return explanation;
}

}  // namespace ORKBASE
