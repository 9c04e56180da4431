// How to reach a metadata database, by names: what `MxExpression::Connect` takes.
//
//   ORKBASE::ConnectionSettings settings;
//   settings.server = u"sqlite:shop.db";
//   rules.Connect(settings);
//
// All texts are UTF-16 and end at their first zero.
#pragma once

#include <cstdint>
#include <string>

#include "MxRuleEnums.h"

namespace ORKBASE {

/// Seconds that one call may spend on its database, unless told otherwise.
inline constexpr std::int32_t kDefaultLoadSeconds = 10;

/// A plain record; every field that is left alone asks for nothing.
struct ConnectionSettings {
  std::u16string server;    ///< `sqlite:PATH`, `odbc:CONNECTION STRING`, a host, or an own kind's
  std::int32_t port = 0;    ///< 0 and less: the one that the driver takes by itself
  std::u16string user;      ///< may be empty
  std::u16string password;  ///< may be empty; no error text shows it
  std::u16string database;  ///< on the server; a kind that serves one database has no use for it
  ORKDB_DSType_ENUM dsType = kSqlServerDs;  ///< database that `GetSpec` writes for
  bool encrypted = false;                   ///< ask for an encrypted connection
  bool readOnly = true;                     ///< ask for a read-only one; nothing is ever written
  std::u16string proxy;  ///< empty, or type (0 none), host, port and two texts, "||~~||" between
  /// Limit for all queries of one `SetRt` (data tables included), `SetDts` or `Verify` together; 0
  /// and less stand for `kDefaultLoadSeconds`. Beyond it the load fails with message 6705. A server
  /// that takes no connection is given up after five seconds already. Accessors of a caller's own
  /// kind keep what limit they like.
  std::int32_t loadSeconds = kDefaultLoadSeconds;
};

}  // namespace ORKBASE
