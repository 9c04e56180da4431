// Writes collected changes to a store, one transaction after the other.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "StoreChanges.h"
#include "store/ChangeLedger.h"
#include "store/ChangeSpool.h"
#include "store/RowGuard.h"

namespace ORKDB {

/// What `StoreChanges` does, over any connection.
class ChangeRun {
 public:
  using GoesOn = std::function<bool(const ChangeReport& soFar)>;

  ChangeRun(std::unique_ptr<StoreConnection> connection, const ChangeSettings& settings);
  ChangeRun(const ChangeRun&) = delete;
  ChangeRun& operator=(const ChangeRun&) = delete;

  const std::vector<std::u16string>& Names() const noexcept { return update_->Names(); }
  bool IsFinished() const noexcept { return ledger_->IsFinished(); }
  bool IsContinued() const noexcept { return ledger_->IsContinued(); }
  void BeginAnew();
  void Add(const StoreChange& change);
  const ChangeReport& Apply(const GoesOn& goesOn);
  const ChangeReport& Report() const noexcept { return report_; }

 private:
  enum Outcome : std::int32_t {
    kGoOn,  ///< to the next change, or batch
    kEnd,   ///< all is done
    kStop,  ///< as the caller wishes
    kRedo,  ///< the batch, without a change that turned out to be impossible
  };
  class Transaction;

  void TryUpdate();
  Outcome RunBatchAgainAndAgain(const GoesOn& goesOn);
  Outcome RunBatch(const GoesOn& goesOn);
  Outcome RunChanges(const GoesOn& goesOn);
  Outcome RunChange();
  Outcome Write(std::int64_t index);
  std::int64_t Update();
  void Leave(LeftChange::Reason reason, bool isThere);
  std::uint64_t HashOfRow(const StoreValue& id);
  bool IsInterfered(const StoreFailure& failure) const noexcept;

  ChangeSettings settings_;
  std::unique_ptr<StoreConnection> connection_;
  std::unique_ptr<StoreStatement> update_;
  std::unique_ptr<RowGuard> guard_;
  std::unique_ptr<ChangeLedger> ledger_;
  ChangeSpool spool_;
  StoreChange change_;
  std::set<std::int64_t> wide_;  ///< changes whose update meets several rows
  ChangeReport report_;
};

}  // namespace ORKDB
