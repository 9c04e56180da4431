// ODBC connection strings: how one is put together for a host by database type, and how passwords
// are kept out of texts. Plain text work, without an ODBC header.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "DataAccess.h"

namespace ORKDB {

/// A connection string, and what no text may show of it.
struct OdbcConnectionText {
  std::u16string text;                  ///< of no use when there is a problem
  std::int32_t problem = 0;             ///< message that tells why it cannot be made, or 0
  std::vector<std::u16string> secrets;  ///< passwords, as typed and as written in `text`
  bool isNarrow = false;                ///< the driver takes the string as UTF-8 only
};

/// The request's own connection string, with user and password added when given.
OdbcConnectionText TextOfString(const AccessorRequest& request);

/// The string for a host: driver by database type, host, port, database, user and password.
OdbcConnectionText TextOfHost(const AccessorRequest& request);

/// `text` with every password replaced by "***": those of `secrets`, and what stands behind
/// `password=` or `pwd=` in any case.
std::u16string HideSecrets(std::u16string text, const std::vector<std::u16string>& secrets);

}  // namespace ORKDB
