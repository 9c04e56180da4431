// What is to be told of the rules of a store: a table for people, JSON Lines for programs, and the
// count at the end.
//
//   17      refused           The word "Orders.Amout" is unknown.
//     Orders.Amout > 5
//     ^~~~~~~~~~~~
//     fix: Write Orders.Amount
//   200 rules: 199 well, 1 refused
#pragma once

#include "Colour.h"
#include "Output.h"
#include "RowRules.h"

#include "RuleStore.h"
#include "RuleUpkeep.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ORKTOOL {

inline constexpr std::size_t kUpkeepStates = ORKBASE::kNoticeState + 1;

/// Counts of rules.
struct StoreTally {
  std::int64_t rules = 0;
  std::array<std::int64_t, kUpkeepStates> states{};  ///< a rule counts for its worst finding
  std::int64_t changing = 0;                         ///< rules whose texts change
  std::int64_t left = 0;                             ///< of these, rules that may not be written

  std::int64_t Of(ORKBASE::UpkeepState state) const {
    return states[static_cast<std::size_t>(state)];
  }
  void Count(const ORKBASE::UpkeepResult& result);
  void Add(const StoreTally& other);
};

/// The state of a rule with these findings; a notice leaves it well.
ORKBASE::UpkeepState StateOf(const std::vector<ORKBASE::UpkeepFinding>& findings);
/// Name of a state in JSON, and for people.
const char* StateName(ORKBASE::UpkeepState state);
const char* StateWords(ORKBASE::UpkeepState state);

/// The texts of a rule that places are told in.
struct RuleTexts {
  std::u16string_view before;
  std::u16string_view after;
};
RuleTexts TextsOf(const ORKBASE::StoredRule& before, const ORKBASE::UpkeepResult& result);

/// A line of the table: id, state, text.
std::string StoreLine(const Style& style, const std::string& id, const char* state, Colour colour,
                      const std::string& text);
/// The findings of a rule, each with the line that it is about.
std::string FindingLines(const Style& style, const std::string& id, const RuleTexts& texts,
                         const std::vector<ORKBASE::UpkeepFinding>& findings);

/// An object that begins with the columns of a row; those of `sql_DIALECT` and `document`, which
/// are long and known, are left out.
Json RowJson(const StoreColumns& columns, const ORKDB::StoreRow& row);
Json FindingsJson(const std::vector<ORKBASE::UpkeepFinding>& findings);

/// `990 well, 5 refused`: the counts of the states that are always told, and of others where there
/// are any.
std::string StateCounts(const StoreTally& tally, std::span<const ORKBASE::UpkeepState> always);
/// Number of rules, and of each state.
Json TallyJson(const StoreTally& tally);

/// "1 rule", "3 rules".
std::string CountOf(std::int64_t count, const std::string& what);

}  // namespace ORKTOOL
