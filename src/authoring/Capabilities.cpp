// A print of the tables of functions and of dialects.
#include "authoring/Capabilities.h"

#include "authoring/AuthoringCall.h"
#include "authoring/CallForms.h"
#include "authoring/SampleCalls.h"
#include "authoring/WordKinds.h"
#include "dictionary/VocabularyTables.h"

namespace ORKBASE {
namespace {

/// All forms, ` | ` between them; `max` takes numbers, texts and dates.
std::u16string Signatures(std::span<const CallForm> forms, std::u16string_view name,
                          Language language) {
  std::u16string text;
  for (const CallForm& form : forms) {
    if (!text.empty()) text += u" | ";
    text += SignatureText(form, name, language);
  }
  return text;
}

RuleFunction FunctionOf(AuthoringCall& call, const VocabularyRow& row) {
  RuleFunction function;
  const MxWord* word = call.Dictionaries().FindByPrimary(row.primary);
  function.name = word ? word->outDesc : std::u16string(row.primary);
  function.dataType = TypeNameOf(row.dataType);
  function.info = InfoOf(row.primary, call.TextLanguage());
  const std::span<const CallForm> forms = FormsOf(row.primary);
  function.signature = Signatures(forms, function.name, call.TextLanguage());
  if (forms.empty()) return function;
  SampleCall sample = SampleOf(call, forms.front());
  function.databases = SupportOf(call, sample);
  function.sample = std::move(sample.rule);
  return function;
}

}  // namespace

std::vector<RuleFunction> CapabilitiesOf(AuthoringCall& call) {
  std::vector<RuleFunction> functions;
  for (const VocabularyRow& row : kFunctionRows) functions.push_back(FunctionOf(call, row));
  return functions;
}

}  // namespace ORKBASE
