// What all warnings about a rule share: its nodes, the databases that were asked about, and the
// list that they go into.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "RuleAuthoring.h"
#include "authoring/AuthoringCall.h"
#include "authoring/DocumentPlaces.h"
#include "dialects/Capabilities.h"

namespace ORKBASE {

/// Lives as long as the search for warnings about one rule. Refers to call, reading and places.
class WarningList {
 public:
  WarningList(AuthoringCall& call, const RuleReading& reading, const DocumentPlaces& places,
              std::span<const ORKDB_DSType_ENUM> dsTypes);

  AuthoringCall& call() const noexcept { return call_; }
  const DocumentPlaces& places() const noexcept { return places_; }
  std::span<const PlacedNode> nodes() const noexcept { return places_.nodes(); }

  /// The databases that were asked about, each once, in the order of `RuleDialects()`.
  std::span<const ORKDB_DSType_ENUM> asked() const noexcept { return asked_; }
  bool Asks(ORKDB_DSType_ENUM database) const;
  /// The names of those of a trait, ", " between them; empty for none.
  std::u16string With(Trait trait) const;
  std::u16string With(const std::array<Known, kDatabaseCount>& known) const;

  using Texts = std::initializer_list<std::u16string_view>;
  /// A warning at the word of a node. The reference holds until the next one.
  RuleProblem& AtWord(const PlacedNode& node, std::int32_t message, Texts texts = {},
                      RuleSeverity severity = kWarningSeverity);
  /// The same at all that the node is over.
  RuleProblem& AtAll(const PlacedNode& node, std::int32_t message, Texts texts = {},
                     RuleSeverity severity = kWarningSeverity);
  RuleProblem& At(std::int32_t firstWord, std::int32_t lastWord, std::int32_t message, Texts texts,
                  RuleSeverity severity);

  /// Whether the rule may be nested so much deeper.
  bool MayNest(std::int32_t levels) const;
  RuleEdit Before(std::int32_t word, std::u16string text) const;
  RuleEdit Behind(std::int32_t word, std::u16string text) const;
  RuleEdit InPlaceOf(std::int32_t firstWord, std::int32_t lastWord, std::u16string text) const;
  /// Adds a fix; its edits come in any order.
  void AddFix(RuleProblem& problem, std::u16string label, std::vector<RuleEdit> edits) const;

  /// As it stands in the rule.
  std::u16string_view Written(const PlacedNode& node) const;
  /// All that the node is over, for people: a long text is cut.
  std::u16string ShownAll(const PlacedNode& node) const;
  /// How a word of the vocabulary is written in the language of the call.
  std::u16string NameOf(std::u16string_view primary) const;

  /// In the order of their places.
  std::vector<RuleProblem> Take();

 private:
  AuthoringCall& call_;
  const RuleReading& reading_;
  const DocumentPlaces& places_;
  std::vector<ORKDB_DSType_ENUM> asked_;
  std::vector<RuleProblem> problems_;
};

// The families of warnings, each in a file of its own.
void WarnOfOrder(WarningList& list);
void WarnOfTypes(WarningList& list);
void WarnOfDifferences(WarningList& list);
void WarnOfCalls(WarningList& list, std::u16string_view document);
void WarnOfOracle(WarningList& list);
void WarnOfTwoTexts(WarningList& list);

/// Whether the SQL of a field stands in the is-null form.
bool HasIsNullForm(const WarningList& list, const PlacedNode& field);
/// Whether the node is a column of a query.
bool IsColumn(const PlacedNode& node);
/// A comparison, without `like`.
bool IsComparison(const PlacedNode& node);
/// A constant that is a text or reads as a date.
bool IsTextConstant(const PlacedNode& node);
bool IsDateConstant(const PlacedNode& node);

}  // namespace ORKBASE
