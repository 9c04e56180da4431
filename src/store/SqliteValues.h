// The values of a store as SQLite has them.
#pragma once

#include <sqlite3.h>

#include "RuleStore.h"

namespace ORKDB {

/// Reads a column of the row that the statement stands on.
void ReadColumn(sqlite3_stmt* statement, int column, StoreValue& value);

/// Binds a value by its kind; false when SQLite refuses. `isWide`: the file holds texts as 16-bit
/// units. One that does not cannot hold a half of a character, which is refused.
bool BindValue(sqlite3_stmt* statement, int index, const StoreValue& value, bool isWide);

}  // namespace ORKDB
