// Statements are plain ASCII and every value is a bound 16-bit parameter, so nothing depends on the
// code page of a driver or of the process. Every column is read as 16-bit text, in pieces.
#include "database/OdbcConnection.h"

#include "foundation/Text.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace ORKDB {
namespace {

constexpr std::size_t kPieceUnits = 2048;
constexpr std::size_t kNameUnits = 256;

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

OdbcConnection::~OdbcConnection() {
  if (isOpen_) SQLDisconnect(connection_.Get());
}

OdbcFailure OdbcConnection::Open(const OdbcConnectionText& text, bool readOnly, SQLULEN seconds) {
  return ConnectOdbc(environment_, connection_, text, readOnly, seconds, isOpen_);
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
  if (!result.rows) result.failure.isLost = result.failure.isLost || IsDead(connection_);
  return result;
}

void OdbcConnection::Cancel() {
  const std::lock_guard lock(runningMutex_);
  if (running_ != nullptr) SQLCancel(running_);
}

void OdbcConnection::SetRunning(SQLHANDLE statement) {
  const std::lock_guard lock(runningMutex_);
  running_ = statement;
}

}  // namespace ORKDB
