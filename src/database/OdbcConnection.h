// One ODBC connection with its environment, and the running of a statement on it. Everything here
// may be called on a thread that its caller has given up, so no text of the message file is made
// here: what fails tells the number of its message.
#pragma once

#include <sql.h>

#include <memory>
#include <mutex>
#include <string>

#include "DataAccess.h"
#include "database/OdbcConnectionText.h"
#include "database/OdbcHandle.h"
#include "database/RowTable.h"

namespace ORKDB {

/// What a statement came to: rows, or a failure.
struct OdbcResult {
  std::unique_ptr<RowTable> rows;
  OdbcFailure failure;
};

/// Used by one thread at a time, except for `Cancel`.
class OdbcConnection {
 public:
  OdbcConnection() = default;
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;
  ~OdbcConnection();

  /// Opens it; `seconds` is what the driver is told to take at most.
  OdbcFailure Open(const OdbcConnectionText& text, bool readOnly, SQLULEN seconds);
  /// Runs a statement and reads all its rows; `seconds` as above.
  OdbcResult Run(const std::u16string& statement, const MxParams& params, SQLULEN seconds);
  /// Asks the driver to end the statement that runs on another thread, if one does. May wait for
  /// the server as long as the statement itself.
  void Cancel();

 private:
  void SetRunning(SQLHANDLE statement);

  OdbcHandle environment_{SQL_HANDLE_ENV};
  OdbcHandle connection_{SQL_HANDLE_DBC};
  bool isOpen_ = false;
  std::mutex runningMutex_;
  SQLHANDLE running_ = nullptr;  // the statement that `Cancel` ends; guarded
};

}  // namespace ORKDB
