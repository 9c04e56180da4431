// Queries on an SQLite file. Values are bound as texts first. SQLite compares a text with a number
// of a column without a declared type (a computed column of a view) as unequal, so a query that
// found nothing runs once more with the texts that are numbers bound as numbers. Time is looked at
// between the steps of SQLite's machine and between two looks at a lock.
#include "database/SqliteAccessor.h"

#include "database/FailingAccessor.h"
#include "database/RowTable.h"
#include "database/SqliteFile.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

namespace ORKDB {
namespace {

constexpr std::chrono::milliseconds kBriefWait(100);
constexpr int kLongestPauseMs = 50;
constexpr int kStepsBetweenLooks = 1000;
constexpr std::size_t kMostDigits = 18;  // always fits 64 bits

/// Whether the text is just how a number prints.
bool ReadNumber(std::u16string_view text, sqlite3_int64& value) {
  const bool negative = text.starts_with(u'-');
  if (negative) text.remove_prefix(1);
  if (text.empty() || text.size() > kMostDigits) return false;
  if (text[0] == u'0' && text.size() > 1) return false;
  value = 0;
  for (const char16_t unit : text) {
    if (unit < u'0' || unit > u'9') return false;
    value = value * 10 + (unit - u'0');
  }
  if (negative) value = -value;
  return true;
}

bool HasNumber(const MxParams& params) {
  sqlite3_int64 value = 0;
  return std::any_of(params.Params().begin(), params.Params().end(),
                     [&](const MxParam& param) { return ReadNumber(param.value, value); });
}

bool BindAll(sqlite3_stmt* statement, const MxParams& params, bool asNumbers) {
  int index = 0;
  for (const MxParam& param : params.Params()) {
    ++index;
    const std::u16string_view text = ORKBASE::UpToZero(param.value);
    sqlite3_int64 number = 0;
    const int result =
        asNumbers && ReadNumber(text, number)
            ? sqlite3_bind_int64(statement, index, number)
            : sqlite3_bind_text64(statement, index, reinterpret_cast<const char*>(text.data()),
                                  text.size() * sizeof(char16_t), SQLITE_TRANSIENT, SQLITE_UTF16);
    if (result != SQLITE_OK) return false;
  }
  return true;
}

Cell ReadCell(sqlite3_stmt* statement, int column) {
  const void* text = sqlite3_column_text16(statement, column);
  if (text == nullptr) return std::nullopt;
  const auto bytes = static_cast<std::size_t>(sqlite3_column_bytes16(statement, column));
  const std::u16string_view units(static_cast<const char16_t*>(text), bytes / sizeof(char16_t));
  return std::u16string(ORKBASE::UpToZero(units));
}

std::vector<std::u16string> ColumnNames(sqlite3_stmt* statement) {
  std::vector<std::u16string> names;
  for (int i = 0; i < sqlite3_column_count(statement); ++i) {
    const char* name = sqlite3_column_name(statement, i);
    names.push_back(name != nullptr ? ORKBASE::Utf8ToWide(name) : std::u16string());
  }
  return names;
}

}  // namespace

std::unique_ptr<CDBAccessor> MakeSqliteAccessor(const AccessorRequest& request) {
  if (auto refused = RefuseProxy(request)) return refused;
  return std::make_unique<SqliteAccessor>(request.location, request.loadSeconds);
}

SqliteAccessor::SqliteAccessor(std::u16string path, std::int32_t loadSeconds)
    : TimedAccessor(loadSeconds), path_(std::move(path)) {}

SqliteAccessor::~SqliteAccessor() {
  Close();
}

std::unique_ptr<CDBRecordSet> SqliteAccessor::Query(const std::u16string& statement,
                                                    const MxParams& params) {
  lockEnd_ = wasLocked_ ? std::min(End(), Clock::now() + kBriefWait) : End();
  if (!IsOnItsFile()) Close();
  const bool wasOpen = connection_ != nullptr;
  if (!Open()) return nullptr;
  auto rows = Run(statement, params, false);
  if (!rows && wasOpen && connection_ == nullptr) {
    ForgetError();
    if (!Open()) return nullptr;
    rows = Run(statement, params, false);
  }
  if (rows && rows->EndOfRows() && HasNumber(params)) rows = Run(statement, params, true);
  return rows;
}

bool SqliteAccessor::Open() {
  if (connection_ != nullptr) return true;
  const std::string name = SqliteFileName(path_);
  const int code = IsNoFile(name)
                       ? SQLITE_CANTOPEN
                       : sqlite3_open_v2(name.c_str(), &connection_, SQLITE_OPEN_READONLY, nullptr);
  if (code == SQLITE_OK) {
    sqlite3_busy_handler(connection_, WaitForLock, this);
    sqlite3_progress_handler(connection_, kStepsBetweenLooks, IsOver, this);
    return true;
  }
  SetServerError(code, ORKBASE::Utf8ToWide(sqlite3_errstr(code)) + u": " + path_);
  Close();
  return false;
}

void SqliteAccessor::Close() noexcept {
  sqlite3_close_v2(connection_);  // waits for a statement that is still open
  connection_ = nullptr;
}

bool SqliteAccessor::IsOnItsFile() const noexcept {
  if (connection_ == nullptr) return true;
  int moved = 0;
  sqlite3_file_control(connection_, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return moved == 0;
}

std::unique_ptr<CDBRecordSet> SqliteAccessor::Run(const std::u16string& statement,
                                                  const MxParams& params, bool asNumbers) {
  const std::string text = ORKBASE::WideToUtf8(statement);
  sqlite3_stmt* prepared = nullptr;
  if (sqlite3_prepare_v2(connection_, text.c_str(), -1, &prepared, nullptr) != SQLITE_OK) {
    return Fail();
  }
  const SqliteStatement owner(prepared);
  if (prepared == nullptr) {
    SetOwnError(ORKBASE::kMsgStatementEmpty);
    return nullptr;
  }
  if (static_cast<std::size_t>(sqlite3_bind_parameter_count(prepared)) != params.Params().size()) {
    SetOwnError(ORKBASE::kMsgWrongValueCount);
    return nullptr;
  }
  if (!BindAll(prepared, params, asNumbers)) return Fail();
  // The first step may prepare anew for a changed file, so the columns are known only behind it.
  int code = sqlite3_step(prepared);
  auto rows = std::make_unique<RowTable>(ColumnNames(prepared));
  for (; code == SQLITE_ROW; code = sqlite3_step(prepared)) {
    for (std::size_t i = 0; i < rows->ColumnCount(); ++i) {
      rows->Add(ReadCell(prepared, static_cast<int>(i)));
    }
  }
  if (code != SQLITE_DONE) return Fail();
  wasLocked_ = false;
  return rows;
}

std::unique_ptr<CDBRecordSet> SqliteAccessor::Fail() {
  const int code = sqlite3_errcode(connection_);
  std::u16string text = ORKBASE::Utf8ToWide(sqlite3_errmsg(connection_));
  wasLocked_ = PrimaryCode(code) == SQLITE_BUSY;
  if (code == SQLITE_INTERRUPT) {
    SetTimeout(code, LoadSeconds());
  } else if (wasLocked_ || IsLostFile(code)) {
    SetServerError(code, std::move(text));
  } else {
    SetError(code != SQLITE_OK ? code : -1, std::move(text));
  }
  if (IsLostFile(code)) Close();
  return nullptr;
}

int SqliteAccessor::IsOver(void* accessor) {
  return Clock::now() < static_cast<SqliteAccessor*>(accessor)->End() ? 0 : 1;
}

int SqliteAccessor::WaitForLock(void* accessor, int count) {
  if (Clock::now() >= static_cast<SqliteAccessor*>(accessor)->lockEnd_) return 0;
  sqlite3_sleep(std::min(1 + count, kLongestPauseMs));
  return 1;
}

}  // namespace ORKDB
