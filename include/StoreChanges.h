// New texts for rules of a store: collected first, on disk, and then written all together. Nothing
// is written while rules are still being read, so a statement never meets its own changes.
//
//   ORKDB::ChangeSettings settings;
//   settings.store = ...;  // readOnly is not looked at
//   settings.select = u"select id, expression from rules";
//   settings.update = u"update rules set expression = :expression where id = :id";
//   settings.guarded = {u"expression"};
//   ORKDB::StoreChanges changes(settings);  // connects, and tries both statements
//   changes.Add({id, {u"T.a > 1"}, {u"S.a > 1", id}});
//   ORKDB::ChangeReport report = changes.Apply([](const ORKDB::ChangeReport& soFar) { return true;
//   });
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ConnectionSettings.h"
#include "OrkExport.h"
#include "RuleStore.h"

namespace ORKDB {

struct ChangeSettings {
  ORKBASE::ConnectionSettings store;
  /// Gave the rules: a query with a column `id` that can stand within another one. A rule is read
  /// again by its id as `select * from (SELECT) orkrule_store where id = :id`, for each change, so
  /// the database should find it there without reading all rows.
  std::u16string select;
  std::u16string update;  ///< changes one rule; `:NAME` is a value of a change, `:id` the rule's id
  /// Columns of the query that must be in the store as they were read, or the rule is left alone.
  std::vector<std::u16string> guarded;
  std::int64_t commitEvery = 0;  ///< changes in a transaction; 0: all in one
  /// What remembers which changes are committed, so that an interrupted run goes on: empty for
  /// nothing, `kLedgerTable` for that table in the store, else the path of a file. The table is
  /// written in the transactions of the changes. A file tells of each batch before its commit, and
  /// where its end is not known the rows themselves say what became of it; those that others
  /// changed since, so that nobody can tell, are left alone.
  std::u16string ledger;
  /// What the run is about (its kind, its names, its statements). A run of the same text goes on
  /// where the ledger says that the last one stopped; one that came to its end is not done again,
  /// but for the rules that it left alone.
  std::u16string run;
};

/// The table that keeps the ledger in the store; made where it is not there.
inline constexpr std::u16string_view kLedgerTable = u"orkrule_ledger";

struct StoreChange {
  StoreValue id;
  StoreRow before;  ///< values of the guarded columns, as they were read
  StoreRow values;  ///< one for each name of the update, in its order
};

/// A rule that was left alone, and why.
struct LeftChange {
  enum Reason : std::int32_t {
    kChangedMeanwhile,  ///< a guarded column is not what it was
    kGone,              ///< no row has the id any more, or the update meets none
    kNotUnique,         ///< several rows have it, or the update changed several
  };
  StoreValue id;
  Reason reason = kChangedMeanwhile;
};

struct ChangeReport {
  std::int64_t added = 0;       ///< changes that were collected
  std::int64_t written = 0;     ///< changed by this object and committed
  std::int64_t doneBefore = 0;  ///< committed by an earlier run, by the ledger
  std::int64_t leftCount = 0;
  std::vector<LeftChange> left;  ///< the first 1,000 of them
  bool isComplete = false;       ///< every change was looked at, and what was done is committed
};

/// One thread at a time. Throws `StoreFailure`.
class ORKRULE_EXPORT StoreChanges {
 public:
  /// Opens the connection that writes, and the ledger. Fails where a statement of the settings does
  /// not run (the update is tried with an id that no rule has, and taken back), where the update
  /// has no `:id`, or where another run holds the file of the ledger.
  explicit StoreChanges(const ChangeSettings& settings);
  StoreChanges(const StoreChanges&) = delete;
  StoreChanges& operator=(const StoreChanges&) = delete;
  ~StoreChanges();

  /// The names in the update, without `:`, in the order of `StoreChange::values`.
  const std::vector<std::u16string>& Names() const noexcept;
  /// Whether the ledger knows a run of this text that came to its end and left no rule that is
  /// still there. `Apply` then does nothing, unless `BeginAnew` is called first.
  bool IsFinished() const noexcept;
  /// Whether the ledger knows a run of this text that was interrupted, or that left rules alone.
  /// Behind the end of a run only those that it left are changed, not what was added since.
  bool IsContinued() const noexcept;
  /// Has the ledger forget this run.
  void BeginAnew();

  /// Keeps a change for `Apply`, in a file without a name.
  void Add(const StoreChange& change);

  /// Writes all changes that the ledger does not have, in the order in which they were added. Asks
  /// `goesOn` before each; where it says no, the batch is committed (without batches, all is taken
  /// back) and the report is not complete. `soFar` counts what the running transaction did, too. A
  /// batch that another transaction stood in the way of is done again, a few times. A failure takes
  /// the running transaction back and is thrown; what was committed before stays, and stands in the
  /// ledger. A further call goes on behind it.
  ChangeReport Apply(const std::function<bool(const ChangeReport& soFar)>& goesOn);
  /// How far `Apply` came, also after a failure.
  const ChangeReport& Report() const noexcept;

 private:
  struct ORKRULE_LOCAL State;
  std::unique_ptr<State> state_;
};

}  // namespace ORKDB
