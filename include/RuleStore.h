// Rules that are kept in a database of the user: read as a stream, and written back in place. Its
// statements are the user's own, values are bound and never pasted into one. This is no part of how
// the engine reads its metadata (`DataAccess.h`), and the only road by which this library writes.
//
//   ORKBASE::ConnectionSettings settings;
//   settings.server = u"sqlite:rules.db";
//   auto reader = ORKDB::OpenStore(settings);
//   auto rows = reader->Select(u"select id, expression from rules");
//   for (ORKDB::StoreRow row; rows->Next(row);) Use(row);
//
//   settings.readOnly = false;
//   auto writer = ORKDB::OpenStore(settings);
//   auto update = writer->Prepare(u"update rules set expression = :expression where id = :id");
//   writer->Begin();
//   update->Run({{u"T.a > 1", id}});  // in the order of update->Names()
//   writer->Commit();
//
// Threads. Connections are independent; one, with its rows and statements, serves one thread at a
// time. Rows and statements end before their connection.
//
// Errors. Everything here throws `StoreFailure`, and `std::bad_alloc`. No text shows a password.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "ConnectionSettings.h"
#include "OrkExport.h"

namespace ORKDB {

using StoreBytes = std::vector<std::byte>;
/// A value as the database has it: NULL, a whole number, a fraction, a text, bytes. Numbers that
/// have more digits, dates and what else there is are texts in the form of the database, and are
/// bound as what they were read as.
using StoreValue = std::variant<std::monostate, std::int64_t, double, std::u16string, StoreBytes>;
using StoreRow = std::vector<StoreValue>;

class ORKRULE_EXPORT StoreFailure : public std::exception {
 public:
  /// `isOutage`: the database is not to be reached, or was lost; else it refused what was asked.
  StoreFailure(std::int32_t number, std::u16string text, bool isOutage);
  StoreFailure(const StoreFailure& other);
  StoreFailure& operator=(const StoreFailure& other);
  ~StoreFailure() override;

  /// The database's own number, or -1.
  std::int32_t Number() const noexcept { return number_; }
  const std::u16string& Text() const noexcept { return text_; }
  bool IsOutage() const noexcept { return isOutage_; }
  /// The text in UTF-8.
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::int32_t number_;
  std::u16string text_;
  bool isOutage_;
  std::string what_;
};

/// The rows of a running query, read from the database one after the other: memory does not grow
/// with their number, beyond what an ODBC driver itself keeps (its connection string says).
class ORKRULE_EXPORT StoreRows {
 public:
  virtual ~StoreRows();
  StoreRows(const StoreRows&) = delete;
  StoreRows& operator=(const StoreRows&) = delete;

  /// Names of the columns, as the database spells them.
  virtual const std::vector<std::u16string>& Columns() const = 0;
  /// Reads the next row into `row`, a value for each column. False at the end.
  virtual bool Next(StoreRow& row) = 0;

 protected:
  StoreRows();
};

/// A statement with values that have names in it (`:expression`), prepared once.
class ORKRULE_EXPORT StoreStatement {
 public:
  virtual ~StoreStatement();
  StoreStatement(const StoreStatement&) = delete;
  StoreStatement& operator=(const StoreStatement&) = delete;

  /// The names in it, each once, in the order in which they first stand there; without their colon.
  virtual const std::vector<std::u16string>& Names() const = 0;
  /// Runs it with a value for each of `Names()`. Returns how many rows it changed, -1 where the
  /// driver does not tell.
  virtual std::int64_t Run(const StoreRow& values) = 0;
  /// Runs it as a query. The rows end before the next run.
  virtual std::unique_ptr<StoreRows> Read(const StoreRow& values) = 0;

 protected:
  StoreStatement();
};

class ORKRULE_EXPORT StoreConnection {
 public:
  virtual ~StoreConnection();
  StoreConnection(const StoreConnection&) = delete;
  StoreConnection& operator=(const StoreConnection&) = delete;

  /// Runs a query without values.
  virtual std::unique_ptr<StoreRows> Select(const std::u16string& statement) = 0;
  /// A colon begins a name where a letter or `_` follows and it stands in no text, quoted name or
  /// comment, and not behind another colon (`x::date`).
  virtual std::unique_ptr<StoreStatement> Prepare(const std::u16string& statement) = 0;

  /// Without `Begin` each statement is a transaction of its own. Within one, what is read stays as
  /// it is until the end (or the commit fails), so that what was compared is what is replaced.
  virtual void Begin() = 0;
  virtual void Commit() = 0;
  /// Takes back what was done since `Begin`; nothing where there was none. Does not throw.
  virtual void Rollback() noexcept = 0;

 protected:
  StoreConnection();
};

/// Opens a connection to a store: `sqlite:PATH` (the file has to be there), `odbc:CONNECTION
/// STRING`, or the host of a server. `readOnly` is to be false for one that writes.
/// An SQLite file that another writer holds is waited for as long as `loadSeconds` say; a server
/// has five seconds to take the connection, and no limit afterwards.
ORKRULE_EXPORT std::unique_ptr<StoreConnection> OpenStore(
    const ORKBASE::ConnectionSettings& settings);

/// Whether two values are the same to the bit and of one kind.
ORKRULE_EXPORT bool IsSame(const StoreValue& one, const StoreValue& other) noexcept;

}  // namespace ORKDB
