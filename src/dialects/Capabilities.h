// What is known of the databases themselves: which functions of the SQL that is written for them
// they have, and why a call is refused. Each fact stands with the way in which it was tried, since
// no server of most of these databases was at hand.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "MxRuleEnums.h"
#include "document/TagTree.h"
#include "translator/ReplacementMap.h"

namespace ORKBASE {

/// What a database makes of a function that stands in its SQL, and how that is known.
enum class Known : std::uint8_t {
  kUnwritten,  ///< no rule brings it into the SQL of this database
  kRun,        ///< has it: run on PostgreSQL 15, from which the database descends
  kStandIn,    ///< has it by its manual: run on PostgreSQL 15 with a function of this name added
  kManual,     ///< has it by its manual: never run
  kSupplied,   ///< the application supplies it
  kMissing,    ///< has it not by its manual: the word of the rule language, as it was written
};

/// Databases in the order of `Dialects()`.
inline constexpr std::size_t kDatabaseCount = 5;

struct FunctionFact {
  std::u16string_view function;  ///< as the SQL writes it, without an owner in front
  std::array<Known, kDatabaseCount> known;
};

/// By name of the function, each once, case disregarded.
std::span<const FunctionFact> FunctionFacts();
/// Of a function in the SQL of a database, with or without an owner in front.
Known KnownOf(ORKDB_DSType_ENUM database, std::u16string_view sqlFunction);

/// Why a call of a rule is refused for a database, or null. `call` is its node in the document that
/// `Verify` gives.
const Refusal* RefusalOf(ORKDB_DSType_ENUM database, Tag call);

/// What people call the database.
std::u16string_view DatabaseName(ORKDB_DSType_ENUM database);

}  // namespace ORKBASE
