#include "store/OdbcStore.h"

#include "database/OdbcHandle.h"
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "platform/MessageTexts.h"
#include "store/NamedValues.h"
#include "store/OdbcValues.h"
#include "store/StoreRefusal.h"

#include <sqlext.h>
#include <sqlucode.h>

#include <array>
#include <utility>

namespace ORKDB {
namespace {

// With what a driver takes beyond it, a server that takes no connection is given up within five
// seconds.
constexpr SQLULEN kLoginSeconds = 4;
constexpr std::size_t kNameUnits = 256;
/// What is read within a transaction stays as it is, or more than that.
constexpr SQLULEN kIsolations[] = {SQL_TXN_REPEATABLE_READ, SQL_TXN_SERIALIZABLE};

/// An open connection, and what its failures may not show.
class Link {
 public:
  explicit Link(const OdbcConnectionText& text, bool readOnly)
      : secrets_(text.secrets), isNarrow_(text.isNarrow), isReadOnly_(readOnly) {
    if (text.problem != 0) Throw({-1, text.problem, u"", true});
    OdbcFailure failure =
        ConnectOdbc(environment_, connection_, text, readOnly, kLoginSeconds, isOpen_);
    if (isOpen_) return;
    failure.isLost = true;
    Throw(failure);
  }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;
  ~Link() {
    if (isOpen_) SQLDisconnect(connection_.Get());
  }

  SQLHANDLE Get() const { return connection_.Get(); }
  bool IsNarrow() const { return isNarrow_; }
  bool IsReadOnly() const { return isReadOnly_; }

  /// Throws what the handle has to say of the call that failed.
  [[noreturn]] void Fail(const OdbcHandle& handle) const {
    OdbcFailure failure = handle.Error();
    failure.isLost = failure.isLost || IsDead(connection_) || IsExhausted(failure.state);
    Throw(failure);
  }
  [[noreturn]] void Fail() const { Fail(connection_); }

 private:
  /// A server without disk or memory, or with trouble of its own: the next statement would fare no
  /// better.
  static bool IsExhausted(std::u16string_view state) {
    return state.starts_with(u"53") || state.starts_with(u"58");
  }

  [[noreturn]] void Throw(const OdbcFailure& failure) const {
    const std::u16string text =
        failure.message != 0 ? ORKBASE::LoadMessage(failure.message) : failure.text;
    throw StoreFailure(failure.number, HideSecrets(text, secrets_), failure.isLost);
  }

  std::vector<std::u16string> secrets_;
  bool isNarrow_;
  bool isReadOnly_;
  bool isOpen_ = false;
  OdbcHandle environment_{SQL_HANDLE_ENV};
  OdbcHandle connection_{SQL_HANDLE_DBC};
};

/// A statement that the driver has prepared.
class Query {
 public:
  Query(const Link& link, const std::u16string& statement) : link_(link) {
    CheckStatement(statement);
    if (!handle_.Allocate(link_.Get())) link_.Fail();
    Check(Prepare(statement));
  }

  void Execute() {
    const SQLRETURN result = SQLExecute(handle_.Get());
    if (result != SQL_NO_DATA) Check(result);  // an update that met no row
  }

  SQLHANDLE Get() const { return handle_.Get(); }

  void Check(SQLRETURN result) const {
    if (!SQL_SUCCEEDED(result)) link_.Fail(handle_);
  }

  /// Ends the rows of the last execution.
  void Close() noexcept { SQLFreeStmt(handle_.Get(), SQL_CLOSE); }

  SQLSMALLINT ColumnCount() const {
    SQLSMALLINT count = 0;
    Check(SQLNumResultCols(handle_.Get(), &count));
    return count;
  }

  OdbcColumn Describe(SQLUSMALLINT column) const {
    SQLSMALLINT type = 0;
    std::u16string name = link_.IsNarrow() ? NarrowName(column, type) : WideName(column, type);
    return {std::move(name), KindOfColumn(handle_.Get(), column, type)};
  }

 private:
  SQLRETURN Prepare(const std::u16string& statement) {
    if (link_.IsNarrow() || IsAscii(statement)) {
      std::string text = ORKBASE::WideToUtf8(statement);
      return SQLPrepare(handle_.Get(), reinterpret_cast<SQLCHAR*>(text.data()),
                        static_cast<SQLINTEGER>(text.size()));
    }
    std::u16string text = statement;
    return SQLPrepareW(handle_.Get(), reinterpret_cast<SQLWCHAR*>(text.data()),
                       static_cast<SQLINTEGER>(text.size()));
  }

  std::u16string WideName(SQLUSMALLINT column, SQLSMALLINT& type) const {
    std::array<SQLWCHAR, kNameUnits> name{};
    SQLSMALLINT length = 0;
    Check(SQLDescribeColW(handle_.Get(), column, name.data(), static_cast<SQLSMALLINT>(name.size()),
                          &length, &type, nullptr, nullptr, nullptr));
    return std::u16string(Units(name.data(), length, name.size()));
  }

  std::u16string NarrowName(SQLUSMALLINT column, SQLSMALLINT& type) const {
    std::array<SQLCHAR, kNameUnits> name{};
    SQLSMALLINT length = 0;
    Check(SQLDescribeCol(handle_.Get(), column, name.data(), static_cast<SQLSMALLINT>(name.size()),
                         &length, &type, nullptr, nullptr, nullptr));
    name.back() = 0;
    return ORKBASE::Utf8ToWide(reinterpret_cast<const char*>(name.data()));
  }

  const Link& link_;
  OdbcHandle handle_{SQL_HANDLE_STMT};
};

class OdbcRows final : public StoreRows {
 public:
  /// The rows of a query that was executed; owns it where `owned` does.
  OdbcRows(Query& query, std::unique_ptr<Query> owned) : owned_(std::move(owned)), query_(query) {
    const SQLSMALLINT count = query_.ColumnCount();
    for (SQLSMALLINT column = 1; column <= count; ++column) {
      const OdbcColumn described = query_.Describe(static_cast<SQLUSMALLINT>(column));
      columns_.push_back(described.name);
      kinds_.push_back(described.kind);
    }
  }
  ~OdbcRows() override { query_.Close(); }
  OdbcRows(const OdbcRows&) = delete;
  OdbcRows& operator=(const OdbcRows&) = delete;

  const std::vector<std::u16string>& Columns() const override { return columns_; }

  bool Next(StoreRow& row) override {
    if (isOver_) return false;
    isOver_ = true;  // unless all goes well
    const SQLRETURN result = SQLFetch(query_.Get());
    if (result == SQL_NO_DATA) return false;
    query_.Check(result);
    row.resize(columns_.size());
    SQLUSMALLINT column = 0;
    for (StoreValue& value : row) {
      const OdbcColumnKind kind = kinds_[column++];
      if (!reader_.Read(query_.Get(), column, kind, value)) query_.Check(SQL_ERROR);
    }
    isOver_ = false;
    return true;
  }

 private:
  std::unique_ptr<Query> owned_;
  Query& query_;
  std::vector<std::u16string> columns_;
  std::vector<OdbcColumnKind> kinds_;
  OdbcReader reader_;
  bool isOver_ = false;
};

class OdbcPrepared final : public StoreStatement {
 public:
  OdbcPrepared(const Link& link, NamedStatement named)
      : named_(std::move(named)), query_(link, named_.text), parameters_(named_.places.size()) {
    // Not every driver can be told to read only. Asked now: once a statement has run, not every
    // driver tells its columns between two executions.
    isRefused_ = link.IsReadOnly() && query_.ColumnCount() == 0;
  }

  const std::vector<std::u16string>& Names() const override { return named_.names; }

  std::int64_t Run(const StoreRow& values) override {
    if (isRefused_) Refuse(ORKBASE::kMsgStoreReadOnly);
    Bind(values);
    query_.Execute();
    SQLLEN count = -1;
    const SQLRETURN result = SQLRowCount(query_.Get(), &count);
    query_.Close();
    return SQL_SUCCEEDED(result) ? static_cast<std::int64_t>(count) : -1;
  }

  std::unique_ptr<StoreRows> Read(const StoreRow& values) override {
    Bind(values);
    query_.Execute();
    auto rows = std::make_unique<OdbcRows>(query_, nullptr);
    if (rows->Columns().empty()) Refuse(ORKBASE::kMsgStoreNoRows);
    return rows;
  }

 private:
  void Bind(const StoreRow& values) {
    if (values.size() != named_.names.size()) Refuse(ORKBASE::kMsgWrongValueCount);
    SQLUSMALLINT index = 0;
    for (const std::size_t place : named_.places) {
      OdbcParameter& parameter = parameters_[index++];
      if (!parameter.Set(query_.Get(), index, values[place])) query_.Check(SQL_ERROR);
    }
  }

  NamedStatement named_;
  Query query_;
  std::vector<OdbcParameter> parameters_;
  bool isRefused_ = false;  // would change something on a connection that only reads
};

class OdbcStore final : public StoreConnection {
 public:
  OdbcStore(const OdbcConnectionText& text, bool readOnly) : link_(text, readOnly) {}
  OdbcStore(const OdbcStore&) = delete;
  OdbcStore& operator=(const OdbcStore&) = delete;
  // A driver does not disconnect within a transaction.
  ~OdbcStore() override { OdbcStore::Rollback(); }

  std::unique_ptr<StoreRows> Select(const std::u16string& statement) override {
    auto query = std::make_unique<Query>(link_, statement);
    Query& prepared = *query;
    // Looked at before it runs: what is no query would have changed the store.
    if (prepared.ColumnCount() == 0) Refuse(ORKBASE::kMsgStoreNoRows);
    prepared.Execute();
    return std::make_unique<OdbcRows>(prepared, std::move(query));
  }

  std::unique_ptr<StoreStatement> Prepare(const std::u16string& statement) override {
    return std::make_unique<OdbcPrepared>(link_, ReadNamedValues(statement));
  }

  void Begin() override {
    AskForIsolation();
    Set(SQL_ATTR_AUTOCOMMIT, SQL_AUTOCOMMIT_OFF);
    isWithin_ = true;
  }

  void Commit() override {
    End(SQL_COMMIT);
    isWithin_ = false;
    Set(SQL_ATTR_AUTOCOMMIT, SQL_AUTOCOMMIT_ON);
  }

  void Rollback() noexcept override {
    if (!isWithin_) return;
    isWithin_ = false;
    SQLEndTran(SQL_HANDLE_DBC, link_.Get(), SQL_ROLLBACK);
    SQLSetConnectAttr(link_.Get(), SQL_ATTR_AUTOCOMMIT, AsPointer(SQL_AUTOCOMMIT_ON), 0);
  }

 private:
  void Set(SQLINTEGER attribute, SQLULEN value) {
    if (!SQL_SUCCEEDED(SQLSetConnectAttr(link_.Get(), attribute, AsPointer(value), 0))) {
      link_.Fail();
    }
  }

  void End(SQLSMALLINT how) {
    if (!SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, link_.Get(), how))) link_.Fail();
  }

  /// A driver that knows no such isolation has a stricter one, or none at all.
  void AskForIsolation() {
    if (std::exchange(isIsolated_, true)) return;
    for (const SQLULEN isolation : kIsolations) {
      if (SQL_SUCCEEDED(
              SQLSetConnectAttr(link_.Get(), SQL_ATTR_TXN_ISOLATION, AsPointer(isolation), 0))) {
        return;
      }
    }
  }

  Link link_;
  bool isIsolated_ = false;
  bool isWithin_ = false;  // a transaction
};

}  // namespace

std::unique_ptr<StoreConnection> OpenOdbcStore(const OdbcConnectionText& text, bool readOnly) {
  return std::make_unique<OdbcStore>(text, readOnly);
}

}  // namespace ORKDB
