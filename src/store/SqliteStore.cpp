#include "store/SqliteStore.h"

#include "database/SqliteFile.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "store/NamedValues.h"
#include "store/SqliteValues.h"
#include "store/StoreRefusal.h"

#include <string>
#include <utility>

namespace ORKDB {
namespace {

/// What ends the use of a file altogether. A full disk and a lock that does not go away, too: the
/// next statement would fare no better.
bool IsOutage(int code) {
  const int primary = PrimaryCode(code);
  return IsLostFile(code) || primary == SQLITE_BUSY || primary == SQLITE_LOCKED ||
         primary == SQLITE_FULL || primary == SQLITE_PROTOCOL || code == SQLITE_READONLY_ROLLBACK ||
         code == SQLITE_READONLY_RECOVERY;
}

[[noreturn]] void Fail(sqlite3* connection) {
  const int code = sqlite3_extended_errcode(connection);
  if (PrimaryCode(code) == SQLITE_NOMEM) throw std::bad_alloc();
  throw StoreFailure(PrimaryCode(code), ORKBASE::Utf8ToWide(sqlite3_errmsg(connection)),
                     IsOutage(code));
}

/// True for a row, false at the end.
bool Step(sqlite3* connection, sqlite3_stmt* statement) {
  const int code = sqlite3_step(statement);
  if (code != SQLITE_ROW && code != SQLITE_DONE) Fail(connection);
  return code == SQLITE_ROW;
}

SqliteStatement Compile(sqlite3* connection, const std::u16string& statement) {
  CheckStatement(statement);
  const std::string text = ORKBASE::WideToUtf8(statement);
  const char* rest = nullptr;
  sqlite3_stmt* compiled = nullptr;
  if (sqlite3_prepare_v2(connection, text.c_str(), -1, &compiled, &rest) != SQLITE_OK) {
    Fail(connection);
  }
  SqliteStatement made(compiled);
  if (!made) Refuse(ORKBASE::kMsgStatementEmpty);
  // Behind the first statement only blanks and comments may stand.
  while (*rest != '\0') {
    const int code = sqlite3_prepare_v2(connection, rest, -1, &compiled, &rest);
    const SqliteStatement second(compiled);
    if (code != SQLITE_OK || second) Refuse(ORKBASE::kMsgStoreSecondStatement);
  }
  return made;
}

/// What the end of the rows does to their statement.
using StatementEnd = void (*)(sqlite3_stmt*);
using HeldStatement = std::unique_ptr<sqlite3_stmt, StatementEnd>;

void FinalizeStatement(sqlite3_stmt* statement) {
  sqlite3_finalize(statement);
}

void ResetStatement(sqlite3_stmt* statement) {
  sqlite3_reset(statement);
}

class SqliteRows final : public StoreRows {
 public:
  /// Makes the first step, since the columns are known only behind it: SQLite compiles anew there
  /// for a table that has changed.
  SqliteRows(sqlite3* connection, HeldStatement statement)
      : connection_(connection), statement_(std::move(statement)) {
    if (sqlite3_column_count(statement_.get()) == 0) Refuse(ORKBASE::kMsgStoreNoRows);
    hasRow_ = Step(connection_, statement_.get());
    for (int i = 0; i < sqlite3_column_count(statement_.get()); ++i) {
      const char* name = sqlite3_column_name(statement_.get(), i);
      if (name == nullptr) throw std::bad_alloc();
      columns_.push_back(ORKBASE::Utf8ToWide(name));
    }
  }

  const std::vector<std::u16string>& Columns() const override { return columns_; }

  bool Next(StoreRow& row) override {
    if (isStepDue_) {
      isStepDue_ = hasRow_ = false;  // also where the step fails
      hasRow_ = Step(connection_, statement_.get());
    }
    if (!hasRow_) return false;
    row.resize(columns_.size());
    int column = 0;
    for (StoreValue& value : row) ReadColumn(statement_.get(), column++, value);
    isStepDue_ = true;
    return true;
  }

 private:
  sqlite3* connection_;
  HeldStatement statement_;
  std::vector<std::u16string> columns_;
  bool hasRow_ = false;
  bool isStepDue_ = false;  // the row that SQLite holds has been read
};

class SqlitePrepared final : public StoreStatement {
 public:
  SqlitePrepared(sqlite3* connection, bool isWide, NamedStatement named)
      : connection_(connection),
        isWide_(isWide),
        named_(std::move(named)),
        statement_(Compile(connection, named_.text)) {
    if (static_cast<std::size_t>(sqlite3_bind_parameter_count(statement_.get())) !=
        named_.places.size()) {
      Refuse(ORKBASE::kMsgWrongValueCount);
    }
  }

  const std::vector<std::u16string>& Names() const override { return named_.names; }

  std::int64_t Run(const StoreRow& values) override {
    const HeldStatement running = Start(values);
    const sqlite3_int64 before = sqlite3_total_changes64(connection_);
    while (Step(connection_, running.get())) {
    }
    // What a statement that changes no rows leaves there is the number of an earlier one.
    return sqlite3_total_changes64(connection_) == before ? 0 : sqlite3_changes64(connection_);
  }

  std::unique_ptr<StoreRows> Read(const StoreRow& values) override {
    return std::make_unique<SqliteRows>(connection_, Start(values));
  }

 private:
  HeldStatement Start(const StoreRow& values) {
    if (values.size() != named_.names.size()) Refuse(ORKBASE::kMsgWrongValueCount);
    HeldStatement held(statement_.get(), ResetStatement);
    sqlite3_reset(statement_.get());
    int index = 0;
    for (const std::size_t place : named_.places) {
      if (!BindValue(statement_.get(), ++index, values[place], isWide_)) Fail(connection_);
    }
    return held;
  }

  sqlite3* connection_;
  bool isWide_;
  NamedStatement named_;
  SqliteStatement statement_;
};

struct ConnectionCloser {
  void operator()(sqlite3* connection) const noexcept { sqlite3_close_v2(connection); }
};
using Connection = std::unique_ptr<sqlite3, ConnectionCloser>;

[[noreturn]] void FailToOpen(int code, std::u16string_view path) {
  if (PrimaryCode(code) == SQLITE_NOMEM) throw std::bad_alloc();
  std::u16string text = ORKBASE::Utf8ToWide(sqlite3_errstr(code));
  throw StoreFailure(PrimaryCode(code), text.append(u": ").append(path), true);
}

Connection OpenFile(std::u16string_view path, bool readOnly, int waitMs) {
  const std::string name = SqliteFileName(path);
  if (IsNoFile(name)) FailToOpen(SQLITE_CANTOPEN, path);
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(
      name.c_str(), &opened, readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE, nullptr);
  Connection connection(opened);
  if (code != SQLITE_OK) FailToOpen(code, path);
  sqlite3_busy_timeout(opened, waitMs);
  return connection;
}

/// Reads the file for the first time: SQLite opens one without a look into it.
int ReadFirst(sqlite3* connection) {
  return sqlite3_exec(connection, "pragma schema_version", nullptr, nullptr, nullptr) == SQLITE_OK
             ? SQLITE_OK
             : sqlite3_extended_errcode(connection);
}

/// A writer that was killed left a transaction half done. Only one that may write can take it back,
/// which SQLite does by itself.
bool IsHalfDone(int code) {
  return code == SQLITE_READONLY_ROLLBACK || code == SQLITE_READONLY_RECOVERY;
}

class SqliteStore final : public StoreConnection {
 public:
  SqliteStore(std::u16string_view path, bool readOnly, int waitMs)
      : readOnly_(readOnly), connection_(OpenFile(path, readOnly, waitMs)) {
    int code = ReadFirst(connection_.get());
    if (IsHalfDone(code)) {
      ReadFirst(OpenFile(path, false, waitMs).get());
      code = ReadFirst(connection_.get());
    }
    if (code != SQLITE_OK) FailToOpen(code, path);
    // SQLite opens a file that it may not write all the same.
    if (!readOnly_ && sqlite3_db_readonly(connection_.get(), "main") != 0) {
      FailToOpen(SQLITE_READONLY, path);
    }
    isWide_ = HasWideTexts();
  }

  std::unique_ptr<StoreRows> Select(const std::u16string& statement) override {
    HeldStatement compiled(Compile(connection_.get(), statement).release(), FinalizeStatement);
    if (sqlite3_bind_parameter_count(compiled.get()) != 0) Refuse(ORKBASE::kMsgWrongValueCount);
    return std::make_unique<SqliteRows>(connection_.get(), std::move(compiled));
  }

  std::unique_ptr<StoreStatement> Prepare(const std::u16string& statement) override {
    return std::make_unique<SqlitePrepared>(connection_.get(), isWide_, ReadNamedValues(statement));
  }

  // Whoever is to write takes the lock at once: one who has read cannot be told to wait later.
  void Begin() override { Execute(readOnly_ ? "begin" : "begin immediate"); }
  void Commit() override { Execute("commit"); }

  void Rollback() noexcept override {
    if (sqlite3_get_autocommit(connection_.get()) != 0) return;
    sqlite3_exec(connection_.get(), "rollback", nullptr, nullptr, nullptr);
  }

 private:
  void Execute(const char* statement) {
    if (sqlite3_exec(connection_.get(), statement, nullptr, nullptr, nullptr) != SQLITE_OK) {
      Fail(connection_.get());
    }
  }

  bool HasWideTexts() {
    const SqliteStatement encoding = Compile(connection_.get(), u"pragma encoding");
    StoreValue name;
    if (Step(connection_.get(), encoding.get())) ReadColumn(encoding.get(), 0, name);
    const auto* const text = std::get_if<std::u16string>(&name);
    return text != nullptr && text->starts_with(u"UTF-16");
  }

  bool readOnly_;
  Connection connection_;
  bool isWide_ = false;  // the file holds its texts as 16-bit units
};

}  // namespace

std::unique_ptr<StoreConnection> OpenSqliteStore(const AccessorRequest& request) {
  const std::int32_t seconds =
      request.loadSeconds > 0 ? request.loadSeconds : ORKBASE::kDefaultLoadSeconds;
  constexpr std::int32_t kMostSeconds = 1'000'000;
  return std::make_unique<SqliteStore>(ORKBASE::UpToZero(request.location), request.readOnly,
                                       std::min(seconds, kMostSeconds) * 1000);
}

}  // namespace ORKDB
