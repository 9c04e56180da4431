#include "database/OdbcHandle.h"

#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace ORKDB {
namespace {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));

constexpr std::size_t kMessageUnits = 2048;
// A unit is at most three bytes, and the length of a string is told as a 16-bit number.
constexpr std::size_t kLongestString = std::numeric_limits<SQLSMALLINT>::max() / 3;

bool IsLostState(std::u16string_view state) {
  return state.starts_with(u"08") || state.starts_with(u"57P0");
}

/// What drivers give for a time that is over, and servers for a statement that they were told to
/// end.
bool IsTimeoutState(std::u16string_view state) {
  return state == u"HYT00" || state == u"HYT01" || state == u"57014";
}

/// The first diagnostic record of a handle, with the state of the connection from all of them.
OdbcFailure ReadFailure(SQLSMALLINT type, SQLHANDLE handle) {
  OdbcFailure failure;
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, kMessageUnits> text{};
  SQLINTEGER number = 0;
  SQLSMALLINT length = 0;
  for (SQLSMALLINT record = 1; record <= 16; ++record) {
    if (!SQL_SUCCEEDED(SQLGetDiagRecW(type, handle, record, state.data(), &number, text.data(),
                                      static_cast<SQLSMALLINT>(text.size()), &length))) {
      break;
    }
    const std::u16string_view code = Units(state.data(), 5, state.size());
    failure.isLost = failure.isLost || IsLostState(code);
    if (record > 1) continue;
    failure.isTimeout = IsTimeoutState(code);
    failure.state = code;
    failure.number = number;
    failure.text.append(u"[").append(code).append(u"] ");
    const std::u16string_view message = Units(text.data(), length, text.size());
    failure.text.append(message.substr(0, message.find_last_not_of(u" \r\n") + 1));
  }
  if (failure.number == 0) failure.number = -1;
  if (failure.text.empty()) failure.message = ORKBASE::kMsgNoOdbcReason;
  return failure;
}

SQLRETURN ConnectWide(SQLHANDLE connection, std::u16string text) {
  return SQLDriverConnectW(connection, nullptr, reinterpret_cast<SQLWCHAR*>(text.data()),
                           static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                           SQL_DRIVER_NOPROMPT);
}

SQLRETURN ConnectNarrow(SQLHANDLE connection, std::u16string_view text) {
  std::string bytes = ORKBASE::WideToUtf8(text);
  return SQLDriverConnect(connection, nullptr, reinterpret_cast<SQLCHAR*>(bytes.data()),
                          static_cast<SQLSMALLINT>(bytes.size()), nullptr, 0, nullptr,
                          SQL_DRIVER_NOPROMPT);
}

}  // namespace

SQLPOINTER AsPointer(SQLULEN value) {
  return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(performance-no-int-to-ptr)
}

std::u16string_view Units(const SQLWCHAR* text, SQLSMALLINT length, std::size_t capacity) {
  const auto held = static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0));
  return ORKBASE::UpToZero({reinterpret_cast<const char16_t*>(text), std::min(held, capacity - 1)});
}

OdbcFailure OdbcHandle::Error() const {
  return ReadFailure(type_, handle_);
}

OdbcFailure ConnectOdbc(OdbcHandle& environment, OdbcHandle& connection,
                        const OdbcConnectionText& text, bool readOnly, SQLULEN seconds,
                        bool& isOpen) {
  if (!environment.Allocate(SQL_NULL_HANDLE)) {
    return {-1, ORKBASE::kMsgNoOdbcEnvironment, u"", true};
  }
  SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0);
  if (!connection.Allocate(environment.Get())) return environment.Error();
  SQLSetConnectAttr(connection.Get(), SQL_ATTR_LOGIN_TIMEOUT, AsPointer(seconds), 0);
  if (readOnly) {
    SQLSetConnectAttr(connection.Get(), SQL_ATTR_ACCESS_MODE, AsPointer(SQL_MODE_READ_ONLY), 0);
  }
  if (text.text.size() > kLongestString) {
    return {-1, ORKBASE::kMsgLongOdbcString, u"", true};
  }
  isOpen = SQL_SUCCEEDED(text.isNarrow ? ConnectNarrow(connection.Get(), text.text)
                                       : ConnectWide(connection.Get(), text.text));
  return isOpen ? OdbcFailure() : connection.Error();
}

bool IsDead(const OdbcHandle& connection) {
  SQLUINTEGER dead = SQL_CD_FALSE;
  return SQL_SUCCEEDED(SQLGetConnectAttr(connection.Get(), SQL_ATTR_CONNECTION_DEAD, &dead,
                                         sizeof(dead), nullptr)) &&
         dead == SQL_CD_TRUE;
}

bool IsAscii(std::u16string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char16_t unit) { return unit > 0 && unit < 0x80; });
}

}  // namespace ORKDB
