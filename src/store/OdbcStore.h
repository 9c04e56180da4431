// A store behind unixODBC.
#pragma once

#include <memory>

#include "RuleStore.h"
#include "database/OdbcConnectionText.h"

namespace ORKDB {

/// Connects, for five seconds at most. A driver that cannot be told to read only is asked in vain.
std::unique_ptr<StoreConnection> OpenOdbcStore(const OdbcConnectionText& text, bool readOnly);

}  // namespace ORKDB
