// What a place of a rule takes, and how a word that may or may not stand there is shown.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "RuleAuthoring.h"
#include "authoring/AuthoringCall.h"
#include "authoring/CallForms.h"
#include "authoring/CandidateList.h"
#include "parser/NextWords.h"

namespace ORKBASE {

/// What may stand behind some words.
class RulePlace {
 public:
  /// Where the words are no beginning of a rule: anything may.
  RulePlace() = default;
  explicit RulePlace(NextWords next) : isKnown_(true), next_(std::move(next)) {}

  bool IsKnown() const noexcept { return isKnown_; }
  bool TakesWord(std::int16_t literal, std::int32_t symbol, std::int32_t dataType) const noexcept {
    return !isKnown_ || next_.Takes(literal, symbol, dataType);
  }
  /// A word that needs its type behind it counts as one that has it.
  bool TakesClass(const WordClass& of) const noexcept;
  bool TakesConstant(MXRULE_DATATYPE dataType) const noexcept {
    return TakesWord(kNoLiteral, kConstantSymbol, dataType);
  }
  bool TakesField(MXRULE_DATATYPE dataType) const noexcept {
    return TakesWord(kNoLiteral, kDataFieldSymbol, dataType);
  }

 private:
  bool isKnown_ = false;
  NextWords next_;
};

/// Fills in items, for one place.
class ItemMaker {
 public:
  /// `before`: the token directly in front of the place, empty for none.
  ItemMaker(AuthoringCall& call, const RulePlace& place, const CandidateList& candidates,
            std::u16string_view before)
      : call_(call),
        place_(place),
        candidates_(candidates),
        before_(before),
        reasons_(candidates.Classes().size()) {}

  void AddFitting(const Candidate& candidate, RuleItem& item) const;
  void AddUnfit(const Candidate& candidate, RuleItem& item);
  void AddTable(const FieldGroup& group, RuleItem& item) const;

 private:
  const CallForm* FormOf(const Candidate& candidate, RuleItem& item) const;
  void AddTexts(const Candidate& candidate, const CallForm* form, RuleItem& item) const;
  void AddPrefix(const Candidate& candidate, RuleItem& item) const;
  std::u16string ReasonFor(const Candidate& candidate) const;
  std::u16string NameOf(const Candidate& candidate, bool byKind) const;
  std::u16string Expected(bool byKind) const;
  bool IsTypeTaken(const Candidate& candidate) const noexcept;
  void AddText(std::u16string_view text, RuleItem& item) const;

  AuthoringCall& call_;
  const RulePlace& place_;
  const CandidateList& candidates_;
  std::u16string_view before_;
  std::vector<std::u16string> reasons_;  ///< by class; empty as long as it was not asked for
};

}  // namespace ORKBASE
