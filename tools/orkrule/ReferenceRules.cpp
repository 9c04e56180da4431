#include "ReferenceRules.h"

#include "Options.h"
#include "Output.h"
#include "Text.h"

#include "MxLexicalAnalyzer.h"
#include "OrkPlatform.h"

#include <algorithm>

namespace ORKTOOL {
namespace {

Engine EngineIn(std::u16string_view tag, const EngineSetup& setup) {
  ORKBASE::SetThreadLanguage(tag);
  return Engine(setup);
}

[[noreturn]] void RefuseReference(const std::string& place, const std::string& what) {
  throw Failure{kRefused, place + ": " + what};
}

ORKBASE::MXRULE_DATATYPE TypeOfRule(const ReferenceRule& rule) {
  const std::optional<ORKBASE::MXRULE_DATATYPE> type = TypeOf(rule.type);
  if (!type) RefuseReference(rule.place, "'" + rule.type + "' is no type");
  return *type;
}

bool IsBlankToken(const std::u16string& token) {
  return token.find_first_not_of(u" \r\n") == token.npos;
}

struct PlacedToken {
  std::u16string text;
  std::size_t offset;
};

/// The words of a rule, without the blanks between them.
std::vector<PlacedToken> PlacedTokensOf(const std::u16string& rule) {
  std::vector<std::u16string> texts;
  ORKBASE::MxLexicalAnalyzer().GenerateOriginalTokens(rule, texts);
  std::vector<PlacedToken> tokens;
  std::size_t offset = 0;
  for (const std::u16string& text : texts) {
    if (!IsBlankToken(text)) tokens.push_back({text, offset});
    offset += text.size();
  }
  return tokens;
}

}  // namespace

ReferenceRules::ReferenceRules(const EngineSetup& setup, const std::string& tag)
    : english_(EngineIn(u"en", setup)),
      spoken_(EngineIn(Wide(tag), setup)),
      authoring_(english_.Rules()) {
  authoring_.set_language(Wide(tag));
  functions_ = authoring_.Capabilities();
}

VerifiedRule ReferenceRules::Verified(const ReferenceRule& rule) {
  VerifiedRule made{rule.place, Wide(rule.text), {}};
  if (!spoken_.Rules().Verify(TypeOfRule(rule), made.text, made.document)) {
    RefuseReference(rule.place, rule.text + ": " + ToUtf8(spoken_.Rules().errDescription()));
  }
  return made;
}

VerifiedRule ReferenceRules::Example(const ReferenceRule& rule) {
  std::u16string english, spoken, written;
  const std::u16string text = Wide(rule.text);
  const ORKBASE::MXRULE_DATATYPE type = TypeOfRule(rule);
  if (!english_.Rules().Verify(type, text, english)) {
    RefuseReference(rule.place, rule.text + ": " + ToUtf8(english_.Rules().errDescription()));
  }
  // A rule without a word that has another form in the language stands as it was written.
  if (spoken_.Rules().Verify(type, text, spoken) && spoken == english) {
    return {rule.place, text, std::move(spoken)};
  }
  if (!authoring_.Write(english, written)) {
    RefuseReference(rule.place, rule.text + ": " + ToUtf8(authoring_.errDescription()));
  }
  return Verified({rule.place, rule.type, ToUtf8(written)});
}

std::string ReferenceRules::RefusalOf(const ReferenceRule& rule) {
  std::u16string document;
  if (spoken_.Rules().Verify(TypeOfRule(rule), Wide(rule.text), document)) {
    RefuseReference(rule.place, rule.text + " is not refused");
  }
  return ToUtf8(spoken_.Rules().errDescription());
}

std::vector<Translation> ReferenceRules::TranslationsOf(const VerifiedRule& rule, bool split) {
  std::vector<Translation> made;
  for (const ORKBASE::RuleDialect& dialect : ORKBASE::RuleDialects()) {
    made.push_back(TranslateRule(spoken_.Rules(), dialect, rule.document, split));
  }
  return made;
}

std::size_t ReferenceRules::OffsetOf(const std::string& word, const ReferenceRule& example,
                                     const VerifiedRule& rule) const {
  const std::vector<PlacedToken> english = PlacedTokensOf(Wide(example.text));
  const std::vector<PlacedToken> spoken = PlacedTokensOf(rule.text);
  const std::u16string sought = Wide(word);
  const auto found = std::ranges::find(english, sought, &PlacedToken::text);
  if (found == english.end()) RefuseReference(example.place, word + " is no word of its example");
  if (english.size() != spoken.size()) {
    RefuseReference(example.place, "written as " + ToUtf8(rule.text) + " it has other words");
  }
  return spoken[static_cast<std::size_t>(found - english.begin())].offset;
}

ORKBASE::RuleExplanation ReferenceRules::ExplanationAt(const VerifiedRule& rule,
                                                       std::size_t offset) {
  ORKBASE::RuleExplanation explanation;
  const auto place = static_cast<std::int32_t>(offset);
  if (!authoring_.Explain(rule.text, place, explanation) || explanation.text.empty()) {
    RefuseReference(rule.place, "nothing is known of a word of " + ToUtf8(rule.text));
  }
  return explanation;
}

std::vector<ORKBASE::RuleParameter> ReferenceRules::ParametersAt(const VerifiedRule& rule,
                                                                 std::size_t offset) {
  ORKBASE::RuleSignature signature;
  const std::size_t bracket = rule.text.find(u'(', offset);
  const auto inside = static_cast<std::int32_t>(bracket + 1);
  if (bracket == rule.text.npos || !authoring_.Signature(rule.text, inside, signature) ||
      signature.name.empty()) {
    RefuseReference(rule.place, "there is no call in " + ToUtf8(rule.text));
  }
  return signature.parameters;
}

const ORKBASE::RuleFunction& ReferenceRules::Function(std::u16string_view name) const {
  const auto found = std::ranges::find(functions_, name, &ORKBASE::RuleFunction::name);
  if (found == functions_.end()) RefuseReference(ToUtf8(name), "this is no function");
  return *found;
}

}  // namespace ORKTOOL
