// Names of tables and fields that a rule writes in another case than it was asked for. The engine
// looks at the case where it renames, and not where it asks what a rule uses; so both commands tell
// where it matters.
#pragma once

#include "Excerpt.h"
#include "RuleInput.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace ORKTOOL {

struct CaseDifference {
  std::u16string written;  ///< `orders`, or `orders.QTY`
  std::u16string name;     ///< `Orders`, or `Orders.Qty`
};

/// What a rule has of the names.
struct NamesFound {
  std::vector<CaseDifference> tables;  ///< each spelling once
  std::vector<CaseDifference> fields;
  std::unordered_set<std::u16string> exact;
  std::unordered_set<std::u16string> told;  ///< what is written in another case
  std::u16string text;                      ///< the rule with the names in their own case
};

class NameCase {
 public:
  /// Fields are `table.field`. Between the two `quotes` a name stands in SQL within a rule.
  NameCase(const std::vector<std::u16string>& tables, const std::vector<std::u16string>& fields,
           std::u16string_view quotes);

  NamesFound In(const std::u16string& rule) const;

 private:
  using Names = std::unordered_map<std::u16string, std::vector<std::u16string>>;  // by lower case

  static Names Sorted(const std::vector<std::u16string>& names);
  void LookAtTable(Stretch word, NamesFound& found) const;
  void LookAtPieces(Stretch token, NamesFound& found) const;
  void LookAtQuoted(Stretch token, NamesFound& found) const;

  Names tables_;
  Names fields_;
  std::u16string quotes_;
};

/// The difference as a line for people; `what` became of the word.
std::string CaseNotice(const Rule& rule, const CaseDifference& difference, const char* what);

/// [{"written", "name"}].
Json CaseJson(const std::vector<CaseDifference>& differences);

}  // namespace ORKTOOL
