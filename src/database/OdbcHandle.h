// ODBC handles, what they say when a call fails, and connecting: what reading metadata and the road
// to a store have in common. No text of the message file is made here: what fails tells the number
// of its message.
#pragma once

#include <sql.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "database/OdbcConnectionText.h"

namespace ORKDB {

/// What went wrong in a call: number 0 for nothing.
struct OdbcFailure {
  std::int32_t number = 0;
  std::int32_t message = 0;  ///< of the text, when it is one of this library's
  std::u16string text;       ///< else the driver's, passwords included
  bool isLost = false;       ///< the connection is gone
  bool isTimeout = false;    ///< the driver or the server ended a statement that took too long
  std::u16string state{};    ///< SQLSTATE, where the driver gave one
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
  /// The first diagnostic record, with the state of the connection from all of them.
  OdbcFailure Error() const;

 private:
  SQLSMALLINT type_;
  SQLHANDLE handle_ = nullptr;
};

/// A number where ODBC takes one as a pointer.
SQLPOINTER AsPointer(SQLULEN value);

/// A text that a driver wrote into a buffer of `capacity` units, telling its length.
std::u16string_view Units(const SQLWCHAR* text, SQLSMALLINT length, std::size_t capacity);

/// Allocates both handles and connects; `seconds` is what the driver is told to take at most.
/// `isOpen` tells whether there is something to disconnect.
OdbcFailure ConnectOdbc(OdbcHandle& environment, OdbcHandle& connection,
                        const OdbcConnectionText& text, bool readOnly, SQLULEN seconds,
                        bool& isOpen);

/// Whether the driver knows that the connection is gone.
bool IsDead(const OdbcHandle& connection);

/// What goes through a driver by the functions for narrow text whatever its code page.
bool IsAscii(std::u16string_view text);

}  // namespace ORKDB
