// The one table of dialects: number, names, class and ODBC driver of each. Whatever else goes by
// dialects reads this.
#pragma once

#include <memory>
#include <span>

#include "RuleDialects.h"
#include "database/OdbcDriver.h"
#include "translator/IMxTranslator.h"
#include "translator/ReplacementMap.h"

namespace ORKBASE {

struct DialectRow {
  RuleDialect dialect;
  std::unique_ptr<IMxTranslator> (*newTranslator)(TagTree& doc);  ///< `doc` outlives it
  const ReplacementMap& (*map)();                                 ///< what each word becomes
  ORKDB::OdbcDriver driver;
};

/// In the order of `RuleDialects()`.
std::span<const DialectRow> Dialects();

/// The row of a number, or the first for a number that has none.
const DialectRow& DialectOf(ORKDB_DSType_ENUM number);

}  // namespace ORKBASE
