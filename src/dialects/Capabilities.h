// What is known of the databases themselves: which functions of the SQL that is written for them
// they have, and why a call is refused. Each fact stands with the way in which it was tried, since
// no server of most of these databases was at hand.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "MxRuleEnums.h"
#include "translator/ReplacementMap.h"

namespace ORKBASE {

/// What a database makes of a function that stands in its SQL, and how that is known.
enum class Known : std::uint8_t {
  kUnwritten,  ///< no rule brings it into the SQL of this database
  kRun,        ///< has it: run on PostgreSQL 15, from which the database descends
  kStandIn,    ///< has it by its manual: run on PostgreSQL 15 with a function of this name added
  kManual,     ///< has it by its manual: never run
  kWritten,    ///< follows from the SQL that is written, whatever the server
  kSupplied,   ///< the application supplies it
  kMissing,    ///< has it not by its manual: the word of the rule language, as it was written
};

/// Databases of which there are facts; nothing is known of others.
inline constexpr std::size_t kDatabaseCount = 5;

struct FunctionFact {
  std::u16string_view function;  ///< as the SQL writes it, without an owner in front
  std::array<Known, kDatabaseCount> known;
};

/// By name of the function, each once, case disregarded.
std::span<const FunctionFact> FunctionFacts();
/// Of a function in the SQL of a database, with or without an owner in front.
Known KnownOf(ORKDB_DSType_ENUM database, std::u16string_view sqlFunction);

/// What sets databases apart, in what the SQL of a rule means there. Two that stand side by side
/// with "or" are what one and the same rule means on different databases.
enum class Trait : std::uint8_t {
  kCutsText,          ///< `ToText` of a text keeps 30 letters
  kPrintsDates,       ///< a text that reads as a date is written as a date
  kReadsDatesByMask,  ///< a date constant is read in the order of the user's locale
  kEmptyTextIsNull,
  kKeepsYear,       ///< the month before the first is no month
  kEndsAtMidnight,  ///< a period ends when its last day begins
  kKeepsFormInSet,  ///< `thisSet` takes the is-null form for a part of the table's name
  kNoPower,         ///< has no operator "^"
  kPowerIsBits,     ///< "^" combines bits
  kNoRemainder,     ///< has no operator "%"
  kNoOuterJoin,     ///< has no operators "*=" and "=*"
  kCountsBorders,   ///< `timeInterval` in months counts how often one begins, or
  kCountsTime,      ///< how much time passes
  kKeepsLastDay,    ///< from the last day of a month `dateAdd` leads to a last day, or
  kKeepsDayNumber,  ///< to the same number of day
  kServerWeek,      ///< the server decides with which day a week begins, or
  kMondayWeek,      ///< it is Monday
  kNaturalLog,      ///< `log` is the natural logarithm, or
  kLogOfTen,        ///< the one to base 10
  kCutsDivision,    ///< a division of whole numbers loses its fraction, or
  kExactDivision,   ///< keeps it
  kRoundsPlaces,    ///< `ToNumber` with places rounds, or
  kCutsPlaces,      ///< cuts off
  kZeroIsFirst,     ///< `substring` from 0 begins with the first letter, or
  kZeroIsBefore,    ///< in front of it
  kTimeStyle,       ///< the style hh:mm:ss writes minutes, or
  kMonthStyle,      ///< the month in their place
};

struct TraitFact {
  Trait trait;
  std::array<Known, kDatabaseCount> known;
};

/// Each trait once.
std::span<const TraitFact> TraitFacts();
bool HasTrait(ORKDB_DSType_ENUM database, Trait trait);

/// What stands beside an argument that gets no brackets.
enum class Beside : std::uint8_t {
  kFactor,  ///< a product: a sum, a division and a remainder in the argument mix with it
  kJoint,   ///< texts to be joined: a sum in the argument mixes with them
};

/// An argument whose operators mix with what the database's form has around it.
struct MixingArgument {
  std::u16string_view function;
  std::int32_t argument;
  std::u16string_view part;  ///< the unit of time that it holds for; empty for all
  Beside beside;
  std::array<Known, kDatabaseCount> known;
};

std::span<const MixingArgument> MixingArguments();
/// Whether a row is about a database.
bool HoldsOn(ORKDB_DSType_ENUM database, const std::array<Known, kDatabaseCount>& known);

/// Why a call of a rule is refused for a database, or null: by the canonical spellings of its
/// function and of its first argument.
const Refusal* RefusalOf(ORKDB_DSType_ENUM database, std::u16string_view function,
                         std::u16string_view firstArgument);

/// What people call the database.
std::u16string_view DatabaseName(ORKDB_DSType_ENUM database);

}  // namespace ORKBASE
