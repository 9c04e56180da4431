// The two tables of tests/data/postgres: rules that cannot run there, and results by hand.
#pragma once

#include "SqlStatements.h"

#include "MxRuleEnums.h"

#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

/// A row of cannot_run.txt, where a reason (`== ...`) stands above its rows. A row names dialects,
/// the SQLSTATE that the server gives, and what it is about: a pattern that occurs in the SQL, or
/// the title of a golden block (or the text of another rule).
///
///     kingbase opengauss 42601 /char\(10\)/
///     oracle 42883 "toLower, which Oracle has no name for"
struct Excuse {
  std::string line;
  std::string dialects;
  std::string state;
  std::string title;  // or empty
  std::regex sql;
  std::set<std::string> used;  // dialects in which a rule needed it

  bool Names(const std::string& dialect) const;
  bool Covers(const RuleSql& rule) const;
};

std::vector<Excuse> ReadExcuses();

/// A block of results.txt: a rule, and what it comes to over the filled tables by dialect.
struct HandResult {
  std::string title;
  std::string type;
  std::string rule;
  std::map<std::string, std::string> expected;
};

std::vector<HandResult> ReadHandResults();

/// Type of a rule by its name in the tables. Throws when there is none.
ORKBASE::MXRULE_DATATYPE RuleType(const std::string& name);
