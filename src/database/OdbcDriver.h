// The ODBC driver of a kind of database, and how its connection strings are written.
#pragma once

#include <string_view>

#include "MxRuleEnums.h"

namespace ORKDB {

/// A driver has to be registered with the driver manager by the name given here.
struct OdbcDriver {
  std::u16string_view name;
  std::u16string_view portKey;    ///< empty: host, port and database are one key, `Dbq=//h:p/d`
  std::u16string_view encrypted;  ///< what asks for encryption; empty where nothing does
  std::u16string_view readOnly;
  std::u16string_view always;
};

/// By the table of dialects, which stands above this folder and defines it. A number that has no
/// row is served like the default dialect.
const OdbcDriver& DriverOf(ORKBASE::ORKDB_DSType_ENUM type);

}  // namespace ORKDB
