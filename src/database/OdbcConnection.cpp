// Statements are plain ASCII and every value is a bound 16-bit parameter, so nothing depends on the
// code page of a driver or of the process. Every column is read as 16-bit text, in pieces.
#include "database/OdbcConnection.h"

#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>
#include <vector>

namespace ORKDB {
namespace {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));

constexpr std::size_t kPieceUnits = 2048;
constexpr std::size_t kNameUnits = 256;
// A unit is at most three bytes, and the length of a string is told as a 16-bit number.
constexpr std::size_t kLongestString = std::numeric_limits<SQLSMALLINT>::max() / 3;

SQLPOINTER AsPointer(SQLULEN value) {
  return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(performance-no-int-to-ptr)
}

bool IsLostState(std::u16string_view state) {
  return state.starts_with(u"08") || state.starts_with(u"57P0");
}

/// What drivers give for a time that is over, and servers for a statement that they were told to
/// end.
bool IsTimeoutState(std::u16string_view state) {
  return state == u"HYT00" || state == u"HYT01" || state == u"57014";
}

std::u16string_view Units(const SQLWCHAR* text, SQLSMALLINT length, std::size_t capacity) {
  const auto held = static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0));
  return ORKBASE::UpToZero({reinterpret_cast<const char16_t*>(text), std::min(held, capacity - 1)});
}

/// The first diagnostic record of a handle, with the state of the connection from all of them.
OdbcFailure ReadFailure(SQLSMALLINT type, SQLHANDLE handle) {
  OdbcFailure failure;
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, kPieceUnits> text{};
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
    failure.number = number;
    failure.text.append(u"[").append(code).append(u"] ");
    const std::u16string_view message = Units(text.data(), length, text.size());
    failure.text.append(message.substr(0, message.find_last_not_of(u" \r\n") + 1));
  }
  if (failure.number == 0) failure.number = -1;
  if (failure.text.empty()) failure.message = ORKBASE::kMsgNoOdbcReason;
  return failure;
}

/// One execution: owns the statement handle and what its parameters point to.
class Execution {
 public:
  explicit Execution(const MxParams& params) : lengths_(params.Params().size()) {}

  bool Allocate(SQLHANDLE connection) { return statement_.Allocate(connection); }

  bool Start(const std::u16string& statement, const MxParams& params, SQLULEN seconds) {
    // A driver that cannot do it has nothing to say here.
    SQLSetStmtAttr(statement_.Get(), SQL_ATTR_QUERY_TIMEOUT, AsPointer(seconds), 0);
    if (!BindAll(params)) return false;
    std::string text = ORKBASE::WideToUtf8(statement);
    const SQLRETURN result =
        SQLExecDirect(statement_.Get(), reinterpret_cast<SQLCHAR*>(text.data()),
                      static_cast<SQLINTEGER>(text.size()));
    return SQL_SUCCEEDED(result) || result == SQL_NO_DATA;
  }

  /// All rows; null when reading failed.
  std::unique_ptr<RowTable> ReadRows() {
    std::vector<std::u16string> names;
    if (!ReadNames(names)) return nullptr;
    const auto count = static_cast<SQLUSMALLINT>(names.size());
    auto rows = std::make_unique<RowTable>(std::move(names));
    if (count == 0) return rows;
    for (;;) {
      const SQLRETURN result = SQLFetch(statement_.Get());
      if (result == SQL_NO_DATA) return rows;
      if (!SQL_SUCCEEDED(result)) return nullptr;
      for (SQLUSMALLINT column = 1; column <= count; ++column) {
        Cell cell;
        if (!ReadCell(column, cell)) return nullptr;
        rows->Add(std::move(cell));
      }
    }
  }

  SQLHANDLE Statement() const { return statement_.Get(); }
  OdbcFailure Error() const { return statement_.Error(); }

 private:
  bool BindAll(const MxParams& params) {
    SQLUSMALLINT index = 0;
    for (const MxParam& param : params.Params()) {
      const std::u16string_view value = ORKBASE::UpToZero(param.value);
      SQLLEN& length = lengths_[index++];
      length = static_cast<SQLLEN>(value.size() * sizeof(char16_t));
      const SQLRETURN result =
          SQLBindParameter(statement_.Get(), index, SQL_PARAM_INPUT, SQL_C_WCHAR, SQL_WVARCHAR,
                           std::max<SQLULEN>(value.size(), 1), 0,
                           const_cast<char16_t*>(value.data()), length, &length);
      if (!SQL_SUCCEEDED(result)) return false;
    }
    return true;
  }

  bool ReadNames(std::vector<std::u16string>& names) {
    SQLSMALLINT count = 0;
    if (!SQL_SUCCEEDED(SQLNumResultCols(statement_.Get(), &count))) return false;
    for (SQLSMALLINT column = 1; column <= count; ++column) {
      std::array<SQLWCHAR, kNameUnits> name{};
      SQLSMALLINT length = 0;
      if (!SQL_SUCCEEDED(SQLDescribeColW(statement_.Get(), static_cast<SQLUSMALLINT>(column),
                                         name.data(), static_cast<SQLSMALLINT>(name.size()),
                                         &length, nullptr, nullptr, nullptr, nullptr))) {
        return false;
      }
      names.emplace_back(Units(name.data(), length, name.size()));
    }
    return true;
  }

  bool ReadCell(SQLUSMALLINT column, Cell& cell) {
    for (;;) {
      std::array<SQLWCHAR, kPieceUnits> piece{};
      SQLLEN length = 0;
      const SQLRETURN result =
          SQLGetData(statement_.Get(), column, SQL_C_WCHAR, piece.data(), sizeof(piece), &length);
      if (result == SQL_NO_DATA) return true;
      if (!SQL_SUCCEEDED(result)) return false;
      if (length == SQL_NULL_DATA) return true;
      const std::u16string_view units(reinterpret_cast<const char16_t*>(piece.data()),
                                      piece.size() - 1);
      if (!cell) cell.emplace();
      const std::u16string_view filled = ORKBASE::UpToZero(units);
      cell->append(filled);
      // A piece that is not full is the last one, whatever the driver says about the rest.
      const bool isWhole = length >= 0 && static_cast<std::size_t>(length) < sizeof(piece);
      if (isWhole || result == SQL_SUCCESS || filled.empty()) return true;
    }
  }

  OdbcHandle statement_{SQL_HANDLE_STMT};
  std::vector<SQLLEN> lengths_;
};

}  // namespace

OdbcFailure OdbcHandle::Error() const {
  return ReadFailure(type_, handle_);
}

OdbcConnection::~OdbcConnection() {
  if (isOpen_) SQLDisconnect(connection_.Get());
}

OdbcFailure OdbcConnection::Open(const OdbcConnectionText& text, bool readOnly, SQLULEN seconds) {
  if (!environment_.Allocate(SQL_NULL_HANDLE)) {
    return {-1, ORKBASE::kMsgNoOdbcEnvironment, u"", true};
  }
  SQLSetEnvAttr(environment_.Get(), SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0);
  if (!connection_.Allocate(environment_.Get())) return environment_.Error();
  SQLSetConnectAttr(connection_.Get(), SQL_ATTR_LOGIN_TIMEOUT, AsPointer(seconds), 0);
  if (readOnly) {
    SQLSetConnectAttr(connection_.Get(), SQL_ATTR_ACCESS_MODE, AsPointer(SQL_MODE_READ_ONLY), 0);
  }
  if (text.text.size() > kLongestString) {
    return {-1, ORKBASE::kMsgLongOdbcString, u"", true};
  }
  isOpen_ = SQL_SUCCEEDED(text.isNarrow ? ConnectNarrow(text.text) : ConnectWide(text.text));
  return isOpen_ ? OdbcFailure() : connection_.Error();
}

OdbcResult OdbcConnection::Run(const std::u16string& statement, const MxParams& params,
                               SQLULEN seconds) {
  OdbcResult result;
  Execution execution(params);
  if (!execution.Allocate(connection_.Get())) {
    result.failure = connection_.Error();
  } else {
    SetRunning(execution.Statement());
    if (execution.Start(statement, params, seconds)) result.rows = execution.ReadRows();
    SetRunning(nullptr);
    if (!result.rows) result.failure = execution.Error();
  }
  if (!result.rows) result.failure.isLost = result.failure.isLost || IsDead();
  return result;
}

void OdbcConnection::Cancel() {
  const std::lock_guard lock(runningMutex_);
  if (running_ != nullptr) SQLCancel(running_);
}

SQLRETURN OdbcConnection::ConnectWide(std::u16string text) {
  return SQLDriverConnectW(connection_.Get(), nullptr, reinterpret_cast<SQLWCHAR*>(text.data()),
                           static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                           SQL_DRIVER_NOPROMPT);
}

SQLRETURN OdbcConnection::ConnectNarrow(std::u16string_view text) {
  std::string bytes = ORKBASE::WideToUtf8(text);
  return SQLDriverConnect(connection_.Get(), nullptr, reinterpret_cast<SQLCHAR*>(bytes.data()),
                          static_cast<SQLSMALLINT>(bytes.size()), nullptr, 0, nullptr,
                          SQL_DRIVER_NOPROMPT);
}

void OdbcConnection::SetRunning(SQLHANDLE statement) {
  const std::lock_guard lock(runningMutex_);
  running_ = statement;
}

bool OdbcConnection::IsDead() const {
  SQLUINTEGER dead = SQL_CD_FALSE;
  return SQL_SUCCEEDED(SQLGetConnectAttr(connection_.Get(), SQL_ATTR_CONNECTION_DEAD, &dead,
                                         sizeof(dead), nullptr)) &&
         dead == SQL_CD_TRUE;
}

}  // namespace ORKDB
