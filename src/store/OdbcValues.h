// The values of a store as an ODBC driver gives and takes them.
#pragma once

#include <sql.h>

#include <cstddef>
#include <string>
#include <vector>

#include "RuleStore.h"

namespace ORKDB {

enum class OdbcColumnKind {
  kText,      ///< also everything that has no form of its own here
  kWhole,     ///< whole numbers
  kFraction,  ///< binary fractions
  kBytes,
  kUuid,  ///< a text in small letters, as the databases that call it so write it
};

struct OdbcColumn {
  std::u16string name;
  OdbcColumnKind kind = OdbcColumnKind::kText;
};

/// What a column of a running or prepared query is read as.
OdbcColumnKind KindOfColumn(SQLHANDLE statement, SQLUSMALLINT column, SQLSMALLINT type);

/// Reads columns of the row that a statement stands on, however long a value is.
class OdbcReader {
 public:
  OdbcReader();

  /// Column numbers begin at 1 and go up within a row. False when the driver refuses.
  bool Read(SQLHANDLE statement, SQLUSMALLINT column, OdbcColumnKind kind, StoreValue& value);

 private:
  bool ReadText(SQLHANDLE statement, SQLUSMALLINT column, StoreValue& value);
  bool ReadBytes(SQLHANDLE statement, SQLUSMALLINT column, StoreValue& value);

  std::vector<char16_t> units_;
  std::vector<std::byte> bytes_;
};

/// A parameter of a prepared statement. It keeps its place in memory as long as its values are of
/// one kind and fit in: drivers that prepare anew for each binding are spared it.
class OdbcParameter {
 public:
  /// Sets the value that the next execution sends; false when the driver refuses. Index from 1.
  bool Set(SQLHANDLE statement, SQLUSMALLINT index, const StoreValue& value);

 private:
  bool Hold(SQLHANDLE statement, SQLUSMALLINT index, SQLSMALLINT form, const void* data,
            std::size_t size);

  std::vector<std::byte> held_;
  SQLLEN length_ = 0;     // in bytes, or that it is a NULL
  SQLSMALLINT form_ = 0;  // C type that is bound, 0 for none yet
};

}  // namespace ORKDB
