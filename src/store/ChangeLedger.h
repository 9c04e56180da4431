// What remembers which changes of a run are committed, so that an interrupted one goes on where it
// stopped.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "StoreChanges.h"

namespace ORKDB {

/// The changes of one run, told batch by batch. Throws `StoreFailure`.
class ChangeLedger {
 public:
  /// The short number of a rule's row as it is now (`RowGuard::HashOf`).
  using HashOfRow = std::function<std::uint64_t(const StoreValue& id)>;

  ChangeLedger() = default;
  ChangeLedger(const ChangeLedger&) = delete;
  ChangeLedger& operator=(const ChangeLedger&) = delete;
  virtual ~ChangeLedger() = default;

  /// A run that came to its end, and left no rule that is still to be changed.
  virtual bool IsFinished() const noexcept = 0;
  /// A run of which there are changes, or rules that it left.
  virtual bool IsContinued() const noexcept = 0;
  virtual void Forget() = 0;

  /// Before the first batch, outside of a transaction. Finds out what became of a batch whose end
  /// is not known.
  virtual void Open(const HashOfRow& hashOfRow) = 0;
  /// Whether `Wrote` is to be given the numbers of rows.
  virtual bool WantsHashes() const noexcept = 0;
  virtual bool IsDone(const StoreValue& id) = 0;
  /// Whether nobody knows if an earlier run did this: the rule was changed by others since.
  virtual bool IsUnknown(const StoreValue& id) = 0;

  /// A transaction has begun. What follows up to `Committed` is void after `TakenBack`.
  virtual void Begin() = 0;
  virtual void Wrote(const StoreValue& id, std::uint64_t was, std::uint64_t is) = 0;
  /// A rule that is there was left alone; the next run of the same text takes it up.
  virtual void Left(const StoreValue& id) = 0;
  /// This is the last transaction.
  virtual void Finish() = 0;
  virtual void BeforeCommit() = 0;
  virtual void Committed() = 0;
  /// `mayBeCommitted`: the commit failed, and how is not known.
  virtual void TakenBack(bool mayBeCommitted) noexcept = 0;
  /// After a refusal, outside of a transaction: throws where another run is the cause.
  virtual void CheckAlone() = 0;
};

/// For a run that keeps none.
std::unique_ptr<ChangeLedger> MakeNoLedger();
/// In the table `kLedgerTable` of the store: written in the transaction of the changes themselves.
/// `isOneBatch`: there is one transaction, whose end is all that has to be remembered.
std::unique_ptr<ChangeLedger> MakeTableLedger(StoreConnection& connection, std::u16string_view run,
                                              bool isOneBatch);
/// In a file, which one run at a time may hold.
std::unique_ptr<ChangeLedger> MakeFileLedger(std::u16string_view path, std::u16string_view run);

}  // namespace ORKDB
