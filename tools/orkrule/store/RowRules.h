// Which column of a query is what of a rule, and the rule of a row.
#pragma once

#include "RuleDialects.h"
#include "RuleStore.h"
#include "RuleUpkeep.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ORKTOOL {

inline constexpr std::u16string_view kSqlColumn = u"sql_";

/// The columns of a query, found by their names in any case.
class StoreColumns {
 public:
  /// Throws `Failure` (bad usage) where there is no column `id`, or none that has rules.
  explicit StoreColumns(std::vector<std::u16string> names);

  const std::vector<std::u16string>& Names() const noexcept { return names_; }
  std::optional<std::size_t> Find(std::u16string_view name) const;
  std::size_t Id() const noexcept { return id_; }
  /// The dialects that have a column `sql_DIALECT`, by name or other name.
  std::vector<ORKBASE::RuleDialect> SqlDialects() const;
  /// The column with the SQL of a dialect.
  std::optional<std::size_t> SqlOf(const ORKBASE::RuleDialect& dialect) const;

 private:
  std::vector<std::u16string> names_;
  std::size_t id_ = 0;
};

/// The dialect of a name `sql_DIALECT`, or null.
const ORKBASE::RuleDialect* DialectOfColumn(std::u16string_view name);

/// Makes rules of rows. May be used by several threads at a time.
class RowRules {
 public:
  /// `type`: of rules whose row names none. The rest is of the settings of the engines.
  RowRules(const StoreColumns& columns, ORKBASE::MXRULE_DATATYPE type,
           const ORKBASE::UpkeepSettings& settings,
           const std::vector<ORKBASE::RuleDialect>& dialects);

  /// The rule of a row. Nothing where there is none, with the reason in `problem`.
  std::optional<ORKBASE::StoredRule> RuleOf(const ORKDB::StoreRow& row,
                                            ORKBASE::UpkeepFinding& problem) const;

 private:
  using Column = std::optional<std::size_t>;

  bool TakeText(const ORKDB::StoreRow& row, Column column, std::optional<std::u16string>& text,
                std::u16string& problem) const;
  bool TakeType(const ORKDB::StoreRow& row, ORKBASE::MXRULE_DATATYPE& type,
                std::u16string& problem) const;
  std::u16string DocumentName(const std::u16string& name) const;

  const StoreColumns& columns_;
  ORKBASE::MXRULE_DATATYPE type_;
  Column typeColumn_;
  std::vector<Column> sql_;
  std::vector<std::pair<Column, std::optional<std::u16string> ORKBASE::StoredRule::*>> texts_;
  std::vector<std::u16string> documents_;  // names of CAD documents
};

}  // namespace ORKTOOL
