// One ODBC connection with its environment, and the running of a statement on it. Everything here
// may be called on a thread that its caller has given up, so no text of the message file is made
// here: what fails tells the number of its message.
#pragma once

#include <sql.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "DataAccess.h"
#include "database/OdbcConnectionText.h"
#include "database/RowTable.h"

namespace ORKDB {

/// What went wrong in a call: number 0 for nothing.
struct OdbcFailure {
  std::int32_t number = 0;
  std::int32_t message = 0;  ///< of the text, when it is one of this library's
  std::u16string text;       ///< else the driver's, passwords included
  bool isLost = false;       ///< the connection is gone
  bool isTimeout = false;    ///< the driver or the server ended a statement that took too long
};

/// What a statement came to: rows, or a failure.
struct OdbcResult {
  std::unique_ptr<RowTable> rows;
  OdbcFailure failure;
};

/// An ODBC handle and its release.
class OdbcHandle {
 public:
  explicit OdbcHandle(SQLSMALLINT type) : type_(type) {}
  OdbcHandle(const OdbcHandle&) = delete;
  OdbcHandle& operator=(const OdbcHandle&) = delete;
  ~OdbcHandle() {
    if (handle_ != nullptr) SQLFreeHandle(type_, handle_);
  }

  bool Allocate(SQLHANDLE parent) { return SQL_SUCCEEDED(SQLAllocHandle(type_, parent, &handle_)); }
  SQLHANDLE Get() const { return handle_; }
  OdbcFailure Error() const;

 private:
  SQLSMALLINT type_;
  SQLHANDLE handle_ = nullptr;
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
  SQLRETURN ConnectWide(std::u16string text);
  SQLRETURN ConnectNarrow(std::u16string_view text);
  void SetRunning(SQLHANDLE statement);
  bool IsDead() const;

  OdbcHandle environment_{SQL_HANDLE_ENV};
  OdbcHandle connection_{SQL_HANDLE_DBC};
  bool isOpen_ = false;
  std::mutex runningMutex_;
  SQLHANDLE running_ = nullptr;  // the statement that `Cancel` ends; guarded
};

}  // namespace ORKDB
