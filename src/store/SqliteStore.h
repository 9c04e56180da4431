// A store in an SQLite file.
#pragma once

#include <memory>

#include "DataAccess.h"
#include "RuleStore.h"

namespace ORKDB {

/// Opens the file that the request's location names. Waits for a locked file as long as a load may
/// take.
std::unique_ptr<StoreConnection> OpenSqliteStore(const AccessorRequest& request);

}  // namespace ORKDB
