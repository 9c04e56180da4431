// Queries through unixODBC. Statements are plain ASCII and every value is a bound 16-bit parameter,
// so nothing depends on the code page of a driver or of the process. Every column is read as 16-bit
// text, in pieces.
#include "database/OdbcAccessor.h"

#include "database/FailingAccessor.h"
#include "database/RowTable.h"
#include "foundation/Text.h"

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace ORKDB {
namespace {

static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));

constexpr SQLULEN kLoginSeconds = 4;  // five are promised, disconnecting included
constexpr std::size_t kPieceUnits = 2048;
constexpr std::size_t kNameUnits = 256;
// A unit is at most three bytes, and the length of a string is told as a 16-bit number.
constexpr std::size_t kLongestString = std::numeric_limits<SQLSMALLINT>::max() / 3;

/// What went wrong in a call: number 0 for nothing.
struct Failure {
  std::int32_t number = 0;
  std::u16string text;
  bool isLost = false;  // the connection is gone
};

SQLPOINTER AsPointer(SQLULEN value) {
  return reinterpret_cast<SQLPOINTER>(value);  // NOLINT(performance-no-int-to-ptr)
}

bool IsLostState(std::u16string_view state) {
  return state.starts_with(u"08") || state.starts_with(u"57P0");
}

std::u16string_view Units(const SQLWCHAR* text, SQLSMALLINT length, std::size_t capacity) {
  const auto held = static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0));
  return ORKBASE::UpToZero({reinterpret_cast<const char16_t*>(text), std::min(held, capacity - 1)});
}

/// The first diagnostic record of a handle, with the state of the connection from all of them.
Failure ReadFailure(SQLSMALLINT type, SQLHANDLE handle) {
  Failure failure;
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
    failure.number = number;
    failure.text.append(u"[").append(code).append(u"] ");
    const std::u16string_view message = Units(text.data(), length, text.size());
    failure.text.append(message.substr(0, message.find_last_not_of(u" \r\n") + 1));
  }
  if (failure.number == 0) failure.number = -1;
  if (failure.text.empty()) failure.text = u"The driver manager gave no reason.";
  return failure;
}

/// An ODBC handle and its release.
class Handle {
 public:
  explicit Handle(SQLSMALLINT type) : type_(type) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() {
    if (handle_ != nullptr) SQLFreeHandle(type_, handle_);
  }

  bool Allocate(SQLHANDLE parent) { return SQL_SUCCEEDED(SQLAllocHandle(type_, parent, &handle_)); }
  SQLHANDLE Get() const { return handle_; }
  Failure Error() const { return ReadFailure(type_, handle_); }

 private:
  SQLSMALLINT type_;
  SQLHANDLE handle_ = nullptr;
};

/// One execution: owns the statement handle and what its parameters point to.
class Execution {
 public:
  explicit Execution(const MxParams& params) : lengths_(params.Params().size()) {}

  bool Start(SQLHANDLE connection, const std::u16string& statement, const MxParams& params) {
    if (!statement_.Allocate(connection)) return false;
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

  bool HasStatement() const { return statement_.Get() != nullptr; }
  Failure Error() const { return statement_.Error(); }

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

  Handle statement_{SQL_HANDLE_STMT};
  std::vector<SQLLEN> lengths_;
};

bool IsAscii(std::u16string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char16_t unit) { return unit > 0 && unit < 0x80; });
}

}  // namespace

/// An open connection with its environment.
class OdbcConnection {
 public:
  OdbcConnection() = default;
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;
  ~OdbcConnection() {
    if (isOpen_) SQLDisconnect(connection_.Get());
  }

  Failure Open(const OdbcConnectionText& text, bool readOnly) {
    if (!environment_.Allocate(SQL_NULL_HANDLE)) return {-1, u"No ODBC environment.", true};
    SQLSetEnvAttr(environment_.Get(), SQL_ATTR_ODBC_VERSION, AsPointer(SQL_OV_ODBC3), 0);
    if (!connection_.Allocate(environment_.Get())) return environment_.Error();
    SQLSetConnectAttr(connection_.Get(), SQL_ATTR_LOGIN_TIMEOUT, AsPointer(kLoginSeconds), 0);
    if (readOnly) {
      SQLSetConnectAttr(connection_.Get(), SQL_ATTR_ACCESS_MODE, AsPointer(SQL_MODE_READ_ONLY), 0);
    }
    if (text.text.size() > kLongestString) {
      return {-1, u"The connection string is too long.", true};
    }
    isOpen_ = SQL_SUCCEEDED(text.isNarrow ? ConnectNarrow(text.text) : ConnectWide(text.text));
    return isOpen_ ? Failure() : connection_.Error();
  }

  /// Runs a statement; null with `failure` set when it failed.
  std::unique_ptr<RowTable> Run(const std::u16string& statement, const MxParams& params,
                                Failure& failure) {
    failure = Failure();
    Execution execution(params);
    std::unique_ptr<RowTable> rows;
    if (execution.Start(connection_.Get(), statement, params)) rows = execution.ReadRows();
    if (rows) return rows;
    failure = execution.HasStatement() ? execution.Error() : connection_.Error();
    failure.isLost = failure.isLost || IsDead();
    return nullptr;
  }

 private:
  SQLRETURN ConnectWide(std::u16string text) {
    return SQLDriverConnectW(connection_.Get(), nullptr, reinterpret_cast<SQLWCHAR*>(text.data()),
                             static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr,
                             SQL_DRIVER_NOPROMPT);
  }

  SQLRETURN ConnectNarrow(std::u16string_view text) {
    std::string bytes = ORKBASE::WideToUtf8(text);
    return SQLDriverConnect(connection_.Get(), nullptr, reinterpret_cast<SQLCHAR*>(bytes.data()),
                            static_cast<SQLSMALLINT>(bytes.size()), nullptr, 0, nullptr,
                            SQL_DRIVER_NOPROMPT);
  }

  bool IsDead() const {
    SQLUINTEGER dead = SQL_CD_FALSE;
    return SQL_SUCCEEDED(SQLGetConnectAttr(connection_.Get(), SQL_ATTR_CONNECTION_DEAD, &dead,
                                           sizeof(dead), nullptr)) &&
           dead == SQL_CD_TRUE;
  }

  Handle environment_{SQL_HANDLE_ENV};
  Handle connection_{SQL_HANDLE_DBC};
  bool isOpen_ = false;
};

std::unique_ptr<CDBAccessor> MakeOdbcAccessor(const AccessorRequest& request) {
  if (auto refused = RefuseProxy(request)) return refused;
  return std::make_unique<OdbcAccessor>(TextOfString(request), request.readOnly);
}

std::unique_ptr<CDBAccessor> MakeServerAccessor(const AccessorRequest& request) {
  if (auto refused = RefuseProxy(request)) return refused;
  return std::make_unique<OdbcAccessor>(TextOfHost(request), request.readOnly);
}

OdbcAccessor::OdbcAccessor(OdbcConnectionText text, bool readOnly)
    : text_(std::move(text)), readOnly_(readOnly) {}

OdbcAccessor::~OdbcAccessor() = default;

std::unique_ptr<CDBRecordSet> OdbcAccessor::QueryByStatement(const std::u16string& statement,
                                                             const MxParams& params,
                                                             const std::u16string& /*reservedA*/,
                                                             std::int32_t /*reservedB*/,
                                                             std::int32_t /*reservedC*/) {
  ResetError();
  if (statement.empty() || !IsAscii(statement)) {
    SetError(-1, u"The statement is empty or not plain ASCII.");
    return nullptr;
  }
  const bool wasOpen = connection_ != nullptr;
  if (!Open()) return nullptr;
  Failure failure;
  auto rows = connection_->Run(statement, params, failure);
  if (!rows && failure.isLost && wasOpen) {
    connection_.reset();
    if (!Open()) return nullptr;
    rows = connection_->Run(statement, params, failure);
  }
  if (rows) return rows;
  if (failure.isLost) connection_.reset();
  SetError(failure.number, HideSecrets(failure.text, text_.secrets));
  return nullptr;
}

bool OdbcAccessor::Open() {
  if (connection_ != nullptr) return true;
  if (!text_.problem.empty()) {
    SetError(-1, text_.problem);
    return false;
  }
  auto opened = std::make_unique<OdbcConnection>();
  const Failure failure = opened->Open(text_, readOnly_);
  if (failure.number == 0) {
    connection_ = std::move(opened);
    return true;
  }
  SetError(failure.number, HideSecrets(failure.text, text_.secrets));
  return false;
}

}  // namespace ORKDB
