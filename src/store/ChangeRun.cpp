#include "store/ChangeRun.h"

#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "store/ChangeFailure.h"
#include "store/ValueCode.h"

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace ORKDB {
namespace {

constexpr std::size_t kMostLeft = 1000;
constexpr std::size_t kMostWide = 100;
constexpr int kMostTries = 10;
constexpr int kMostTriesWhenLocked = 3;  // each has waited for the lock already
constexpr std::chrono::milliseconds kFirstPause(10);
constexpr std::chrono::milliseconds kLongestPause(300);
// Short numbers of rows that are not there.
constexpr std::uint64_t kNoRow = 0;
constexpr std::uint64_t kSeveralRows = 1;

std::unique_ptr<ChangeLedger> MakeLedger(StoreConnection& connection,
                                         const ChangeSettings& settings) {
  if (settings.ledger.empty()) return MakeNoLedger();
  if (settings.ledger != kLedgerTable) return MakeFileLedger(settings.ledger, settings.run);
  return MakeTableLedger(connection, settings.run, settings.commitEvery <= 0);
}

}  // namespace

/// What is not committed at its end is taken back, in the report too.
class ChangeRun::Transaction {
 public:
  explicit Transaction(ChangeRun& run)
      : run_(run),
        place_(run.spool_.Here()),
        written_(run.report_.written),
        doneBefore_(run.report_.doneBefore),
        leftCount_(run.report_.leftCount),
        leftSize_(run.report_.left.size()) {
    run_.connection_->Begin();
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction() {
    if (isCommitted_) return;
    run_.connection_->Rollback();
    run_.ledger_->TakenBack(mayBeCommitted_);
    run_.spool_.ReturnTo(place_);
    run_.report_.written = written_;
    run_.report_.doneBefore = doneBefore_;
    run_.report_.leftCount = leftCount_;
    run_.report_.left.resize(leftSize_);
  }

  void Commit() {
    run_.ledger_->BeforeCommit();
    try {
      run_.connection_->Commit();
    } catch (const StoreFailure& failure) {
      mayBeCommitted_ = !run_.IsInterfered(failure);
      throw;
    }
    isCommitted_ = true;
    run_.ledger_->Committed();
  }

 private:
  ChangeRun& run_;
  const ChangeSpool::Place place_;
  const std::int64_t written_;
  const std::int64_t doneBefore_;
  const std::int64_t leftCount_;
  const std::size_t leftSize_;
  bool isCommitted_ = false;
  bool mayBeCommitted_ = false;
};

ChangeRun::ChangeRun(std::unique_ptr<StoreConnection> connection, const ChangeSettings& settings)
    : settings_(settings),
      connection_(std::move(connection)),
      update_(connection_->Prepare(settings.update)) {
  const auto& names = update_->Names();
  if (!std::any_of(names.begin(), names.end(), [](const std::u16string& name) {
        return ORKBASE::EqualsIgnoringCase(name, u"id");
      })) {
    throw ChangeFailure(ORKBASE::kMsgUpdateWithoutId, {});
  }
  guard_ = std::make_unique<RowGuard>(*connection_, settings, names);
  TryUpdate();
  ledger_ = MakeLedger(*connection_, settings);
}

/// Many drivers look at a statement only when it runs: with an id that no rule has.
void ChangeRun::TryUpdate() {
  try {
    connection_->Begin();
    update_->Run(StoreRow(Names().size()));
    connection_->Rollback();
  } catch (const StoreFailure& failure) {
    connection_->Rollback();
    if (!IsInterfered(failure)) throw;  // else it is looked at soon enough
  }
}

void ChangeRun::BeginAnew() {
  ledger_->Forget();
}

void ChangeRun::Add(const StoreChange& change) {
  if (change.before.size() != settings_.guarded.size() || change.values.size() != Names().size()) {
    throw ChangeFailure(ORKBASE::kMsgWrongValueCount, {});
  }
  spool_.Add(change);
  report_.added = spool_.Count();
}

const ChangeReport& ChangeRun::Apply(const GoesOn& goesOn) {
  if (report_.isComplete) return report_;
  if (IsFinished()) {
    report_.doneBefore = report_.added;
    report_.isComplete = true;
  }
  if (report_.added == 0 && !IsContinued()) report_.isComplete = true;  // nothing to remember
  if (report_.isComplete) return report_;
  ledger_->Open([this](const StoreValue& id) { return HashOfRow(id); });
  Outcome outcome = kGoOn;
  while (outcome == kGoOn) outcome = RunBatchAgainAndAgain(goesOn);
  report_.isComplete = outcome == kEnd;
  return report_;
}

ChangeRun::Outcome ChangeRun::RunBatchAgainAndAgain(const GoesOn& goesOn) {
  std::chrono::milliseconds pause = kFirstPause;
  for (int tries = 1;;) {
    try {
      const Outcome outcome = RunBatch(goesOn);
      if (outcome != kRedo) return outcome;
    } catch (const StoreFailure& failure) {
      const bool isInterfered = IsInterfered(failure);
      if (!isInterfered && !failure.IsOutage()) ledger_->CheckAlone();
      const int mostTries = failure.IsOutage() ? kMostTriesWhenLocked : kMostTries;
      if (!isInterfered || ++tries > mostTries) throw;
      std::this_thread::sleep_for(pause);
      pause = std::min(pause * 2, kLongestPause);
    }
  }
}

ChangeRun::Outcome ChangeRun::RunBatch(const GoesOn& goesOn) {
  Transaction transaction(*this);
  ledger_->Begin();
  const Outcome outcome = RunChanges(goesOn);
  if (outcome == kRedo || (outcome == kStop && settings_.commitEvery <= 0)) return outcome;
  if (outcome == kEnd) ledger_->Finish();
  transaction.Commit();
  return outcome;
}

ChangeRun::Outcome ChangeRun::RunChanges(const GoesOn& goesOn) {
  for (std::int64_t count = 0; settings_.commitEvery <= 0 || count < settings_.commitEvery;
       ++count) {
    if (spool_.IsAtEnd()) return kEnd;
    if (goesOn && !goesOn(report_)) return kStop;
    const Outcome outcome = RunChange();
    if (outcome != kGoOn) return outcome;
  }
  return spool_.IsAtEnd() ? kEnd : kGoOn;
}

ChangeRun::Outcome ChangeRun::RunChange() {
  const std::int64_t index = spool_.Here().index;
  spool_.Read(change_);
  if (ledger_->IsUnknown(change_.id)) {
    Leave(LeftChange::kChangedMeanwhile, false);
  } else if (ledger_->IsDone(change_.id)) {
    ++report_.doneBefore;
  } else if (wide_.count(index) > 0) {
    Leave(LeftChange::kNotUnique, true);
  } else {
    return Write(index);
  }
  return kGoOn;
}

ChangeRun::Outcome ChangeRun::Write(std::int64_t index) {
  const RowGuard::Found found = guard_->Read(change_.id);
  if (found == RowGuard::kNone) {
    Leave(LeftChange::kGone, false);
  } else if (found == RowGuard::kSeveral) {
    Leave(LeftChange::kNotUnique, true);
  } else if (!guard_->IsAsRead(change_.before)) {
    Leave(LeftChange::kChangedMeanwhile, true);
  } else {
    const bool hashes = ledger_->WantsHashes();
    const std::uint64_t was = hashes ? guard_->Hash() : 0;
    const std::int64_t count = Update();
    if (count > 1) {
      wide_.insert(index);
      if (wide_.size() > kMostWide) throw ChangeFailure(ORKBASE::kMsgUpdateTooWide, {});
      return kRedo;
    }
    if (count == 0) {
      Leave(LeftChange::kGone, true);
    } else {
      ledger_->Wrote(change_.id, was, hashes ? HashOfRow(change_.id) : 0);
      ++report_.written;
    }
  }
  return kGoOn;
}

/// How many rows the change met, -1 where the driver does not tell.
std::int64_t ChangeRun::Update() {
  try {
    return update_->Run(change_.values);
  } catch (const StoreFailure& failure) {
    if (failure.IsOutage() || IsInterfered(failure)) throw;
    const std::u16string id = ORKBASE::Utf8ToWide(ShortIdText(change_.id));
    throw StoreFailure(failure.Number(),
                       ChangeFailure(ORKBASE::kMsgRuleNotWritten, {id, failure.Text()}).Text(),
                       false);
  }
}

void ChangeRun::Leave(LeftChange::Reason reason, bool isThere) {
  ++report_.leftCount;
  if (report_.left.size() < kMostLeft) report_.left.push_back({change_.id, reason});
  if (isThere) ledger_->Left(change_.id);
}

std::uint64_t ChangeRun::HashOfRow(const StoreValue& id) {
  switch (guard_->Read(id)) {
    case RowGuard::kNone:
      return kNoRow;
    case RowGuard::kSeveral:
      return kSeveralRows;
    case RowGuard::kOne:
      return guard_->Hash();
  }
  return kNoRow;
}

bool ChangeRun::IsInterfered(const StoreFailure& failure) const noexcept {
  return IsInterference(failure, settings_.store.server);
}

}  // namespace ORKDB
