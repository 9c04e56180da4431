// What the library says of the rules and words of a reference, in the language of the reference.
#pragma once

#include "Engine.h"
#include "Translation.h"

#include "RuleAuthoring.h"

#include <string>
#include <string_view>
#include <vector>

namespace ORKTOOL {

/// A rule of a reference: where it stands, for complaints, and its type and text as written there.
struct ReferenceRule {
  std::string place;
  std::string type;
  std::string text;
};

/// A rule that verified.
struct VerifiedRule {
  std::string place;
  std::u16string text;
  std::u16string document;
};

/// Rules and words in one language. Examples are written in English words and told in those of the
/// language. Throws `Failure` for what a reference must not hold: a rule that is refused, one that
/// is accepted where the reference says otherwise, a word that nothing is known of.
class ReferenceRules {
 public:
  /// From here on the thread speaks the language.
  ReferenceRules(const EngineSetup& setup, const std::string& tag);

  /// A rule in words of the language.
  VerifiedRule Verified(const ReferenceRule& rule);
  /// A rule in English words, put into those of the language where these differ.
  VerifiedRule Example(const ReferenceRule& rule);
  /// Why a rule is refused.
  std::string RefusalOf(const ReferenceRule& rule);

  /// The rule for each database, in the order of `RuleDialects()`.
  std::vector<Translation> TranslationsOf(const VerifiedRule& rule, bool split);

  /// Where the word of an example in English words stands in the rule that was made of it.
  std::size_t OffsetOf(const std::string& word, const ReferenceRule& example,
                       const VerifiedRule& rule) const;
  /// The word at an offset, with its sentence.
  ORKBASE::RuleExplanation ExplanationAt(const VerifiedRule& rule, std::size_t offset);
  /// The parameters of the function whose name is at an offset.
  std::vector<ORKBASE::RuleParameter> ParametersAt(const VerifiedRule& rule, std::size_t offset);
  /// A function by its name in the language.
  const ORKBASE::RuleFunction& Function(std::u16string_view name) const;

 private:
  Engine english_;
  Engine spoken_;
  ORKBASE::RuleAuthoring authoring_;
  std::vector<ORKBASE::RuleFunction> functions_;
};

}  // namespace ORKTOOL
