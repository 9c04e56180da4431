// Makes whole statements of what rules become: a caller of the engine puts a condition behind WHERE
// or a value into a SELECT list, names the tables, and puts values in place of the placeholders.
#pragma once

#include <string>

/// SQL of one rule, and how it is to be used.
struct RuleSql {
  std::string title;    // of the golden block, or the rule
  std::string dialect;  // kingbase, opengauss, oracle
  bool isCondition;     // to stand behind WHERE or HAVING, not in the SELECT list
  std::string sql;
};

/// Puts a value in place of every placeholder outside quotes:
///
///     {vDate}, <name[D]>, <F...> of a date field   date '2024-05-17'
///     {vNow}                                       timestamp '2024-05-17 10:20:30'
///     <name[N]>, <F...> of a number field          5
///     any other {v...}, <name>, <F...>, <rcid>     text 'hanna'
///
/// Units of an interval are put as PostgreSQL calls them: (2 || ' mm') ::INTERVAL becomes
/// (2 || ' month') ::INTERVAL. It has no yy, hh, mi, and `mm` is none of its units.
std::string FillPlaceholders(const std::string& sql);

/// A list for FROM: the row of date part words, and every table that stands before a point in the
/// text, under the name that it has there. `keys` gets their key columns, with ", " between.
std::string FromList(const std::string& sql, std::string& keys);

/// The whole query of a rule. One with aggregates is grouped by the keys of its tables.
std::string QueryOf(const RuleSql& rule);

/// The query that gives the result of a rule over one filled table as one text: values in the order
/// of the keys, or the keys of the rows that a condition takes, with "; " between.
std::string ResultQueryOf(const RuleSql& rule);
