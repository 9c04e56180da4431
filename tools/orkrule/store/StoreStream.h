// The rules of a store, one after the other through as many engines as there are workers; what
// comes out is in the order of the rows, whatever the number of workers.
#pragma once

#include "RowRules.h"
#include "StoreOptions.h"
#include "StoreReport.h"

#include "RuleStore.h"
#include "StoreChanges.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ORKTOOL {

/// The running query of --select.
class StoreReader {
 public:
  /// Connects and runs the query. Throws `StoreFailure`.
  explicit StoreReader(const StoreOptions& options);

  const StoreColumns& Columns() const noexcept { return *columns_; }
  /// How many rows there will be, where someone watches and the database tells.
  std::optional<std::int64_t> Total() const noexcept { return total_; }
  bool Next(ORKDB::StoreRow& row) { return rows_->Next(row); }
  /// Ends query and connection, so that they stand in no writer's way.
  void Close();

 private:
  void Count(const std::u16string& select);

  std::unique_ptr<ORKDB::StoreConnection> connection_;
  std::unique_ptr<ORKDB::StoreRows> rows_;
  std::optional<StoreColumns> columns_;
  std::optional<std::int64_t> total_;
};

/// What became of some rows that stand behind each other.
struct RowsDone {
  std::string out;    ///< for standard output
  std::string lines;  ///< for whoever takes them
  StoreTally tally;
  std::vector<ORKDB::StoreChange> changes;
  std::string failure;  ///< why rows are missing at the end; empty where none are
};

/// How a stream of rows ended.
struct StreamEnd {
  std::int64_t rows = 0;
  bool isInterrupted = false;
  std::string failure;  ///< why it ended too early; empty where it did not

  bool IsComplete() const { return !isInterrupted && failure.empty(); }
};

/// Adds what becomes of a row. Several threads at a time, each with a worker of its own.
using RowWork = std::function<void(std::size_t worker, const ORKDB::StoreRow& row, RowsDone& done)>;

/// Works on all rows, and hands out what became of them in their order. Ends early, but with all
/// that was begun, when the process is asked to end or a database is lost.
StreamEnd StreamRows(StoreReader& reader, std::size_t workers, const RowWork& work,
                     const std::function<void(RowsDone& done)>& take);

/// Says on standard error why a run is not complete. `rest`: what this means for the store.
void ReportEnd(const StreamEnd& end, const std::string& rest);

}  // namespace ORKTOOL
