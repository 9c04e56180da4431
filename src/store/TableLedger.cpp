// The ledger in the store. A row is a change of the run that is committed (its id as JSON), a rule
// that was left (`!` and its id), or a mark (`#`): the number of batches so far, which each batch
// counts on and so notices another run, or the end. Behind the end only what was left is kept.
#include "foundation/MessageNumbers.h"
#include "foundation/Text.h"
#include "store/ChangeFailure.h"
#include "store/ChangeLedger.h"
#include "store/ValueCode.h"

#include <string>
#include <utility>

namespace ORKDB {
namespace {

constexpr std::u16string_view kCreate =
    u"create table orkrule_ledger (run varchar(64) not null, id varchar(255) not null, "
    u"primary key (run, id))";
constexpr std::u16string_view kMarks =
    u"select id from orkrule_ledger where run = :run and id like '#%'";
constexpr std::u16string_view kLeftOnes =
    u"select id from orkrule_ledger where run = :run and id like '!%'";
constexpr std::u16string_view kFind =
    u"select id from orkrule_ledger where run = :run and id = :id";
constexpr std::u16string_view kInsert = u"insert into orkrule_ledger (run, id) values (:run, :id)";
constexpr std::u16string_view kDelete = u"delete from orkrule_ledger where run = :run and id = :id";
constexpr std::u16string_view kCount =
    u"update orkrule_ledger set id = :next where run = :run and id = :last";
constexpr std::u16string_view kDeleteChanges =
    u"delete from orkrule_ledger where run = :run and id not like '!%'";
constexpr std::u16string_view kDeleteAll = u"delete from orkrule_ledger where run = :run";
constexpr std::u16string_view kFinishedMark = u"#finished";

std::u16string MarkOf(std::int32_t batches) {
  return u"#" + ORKBASE::Decimal(batches);
}

std::u16string NameOf(const StoreValue& id) {
  return ORKBASE::Utf8ToWide(ShortIdText(id));
}

/// What the table says of a run.
struct RunState {
  std::int32_t batches = 0;
  bool isFinished = false;
  bool hasLeft = false;

  bool operator==(const RunState&) const = default;
};

class TableLedger final : public ChangeLedger {
 public:
  TableLedger(StoreConnection& connection, std::u16string_view run, bool isOneBatch)
      : connection_(connection),
        run_(ORKBASE::Utf8ToWide(
            HexOf(HashOf({reinterpret_cast<const char*>(run.data()), run.size() * 2})))),
        isOneBatch_(isOneBatch) {
    try {
      state_ = ReadState();
      isThere_ = true;
    } catch (const StoreFailure& failure) {
      if (failure.IsOutage()) throw;
    }
  }

  bool IsFinished() const noexcept override { return state_.isFinished && !state_.hasLeft; }
  bool IsContinued() const noexcept override { return !IsFinished() && state_ != RunState(); }

  void Forget() override {
    if (isThere_) Statement(kDeleteAll)->Run({run_});
    state_ = {};
  }

  void Open(const HashOfRow&) override {
    if (!isThere_) Create();
    const RunState now = ReadState();
    if (now != state_ && !isUncertain_) FailAsInUse();
    state_ = now;
    isUncertain_ = false;
    find_ = Statement(kFind);
    insert_ = Statement(kInsert);
    delete_ = Statement(kDelete);
    count_ = Statement(kCount);
  }

  bool WantsHashes() const noexcept override { return false; }
  bool IsUnknown(const StoreValue&) override { return false; }

  bool IsDone(const StoreValue& id) override {
    if (!IsContinued()) return false;
    return state_.isFinished ? !Has(u"!" + NameOf(id)) : Has(NameOf(id));
  }

  void Begin() override {
    next_ = state_;
    ++next_.batches;
    if (state_.batches == 0) {
      insert_->Run({run_, MarkOf(1)});
    } else if (count_->Run({MarkOf(next_.batches), run_, MarkOf(state_.batches)}) == 0) {
      FailAsInUse();
    }
  }

  void Wrote(const StoreValue& id, std::uint64_t, std::uint64_t) override {
    if (!isOneBatch_ && !state_.isFinished) insert_->Run({run_, NameOf(id)});
    if (state_.hasLeft) delete_->Run({run_, u"!" + NameOf(id)});
  }

  void Left(const StoreValue& id) override {
    const std::u16string name = u"!" + NameOf(id);
    if (!Has(name)) insert_->Run({run_, name});
  }

  void Finish() override {
    Statement(kDeleteChanges)->Run({run_});
    insert_->Run({run_, std::u16string(kFinishedMark)});
    next_.batches = 0;
    next_.isFinished = true;
  }

  void BeforeCommit() override {}
  void Committed() override { state_ = next_; }
  void TakenBack(bool mayBeCommitted) noexcept override { isUncertain_ |= mayBeCommitted; }

  void CheckAlone() override {
    if (isUncertain_) return;
    RunState now = state_;
    try {
      now = ReadState();
    } catch (const StoreFailure&) {
      return;  // what was refused first is to be told
    }
    if (now.batches != state_.batches || now.isFinished != state_.isFinished) FailAsInUse();
  }

 private:
  std::unique_ptr<StoreStatement> Statement(std::u16string_view text) const {
    return connection_.Prepare(std::u16string(text));
  }

  bool Has(const std::u16string& name) const {
    StoreRow row;
    return find_->Read({run_, name})->Next(row);
  }

  RunState ReadState() const {
    RunState state;
    StoreRow row;
    const auto marks = Statement(kMarks);
    const auto rows = marks->Read({run_});
    while (rows->Next(row)) {
      const auto* mark = std::get_if<std::u16string>(&row[0]);
      if (mark == nullptr) continue;
      if (*mark == kFinishedMark) {
        state.isFinished = true;
      } else {
        state.batches = ORKBASE::ReadInt(std::u16string_view(*mark).substr(1));
      }
    }
    const auto left = Statement(kLeftOnes);
    state.hasLeft = left->Read({run_})->Next(row);
    return state;
  }

  void Create() {
    try {
      connection_.Begin();
      Statement(kCreate)->Run({});
      connection_.Commit();
    } catch (const StoreFailure& failure) {
      connection_.Rollback();
      if (failure.IsOutage()) throw;
      if (!IsMadeByAnother()) {
        throw ChangeFailure(ORKBASE::kMsgLedgerUnusable, {kLedgerTable, failure.Text()});
      }
    }
    isThere_ = true;
  }

  bool IsMadeByAnother() const {
    try {
      ReadState();
      return true;
    } catch (const StoreFailure& failure) {
      if (failure.IsOutage()) throw;
      return false;
    }
  }

  [[noreturn]] static void FailAsInUse() {
    throw ChangeFailure(ORKBASE::kMsgLedgerInUse, {kLedgerTable});
  }

  StoreConnection& connection_;
  const StoreValue run_;
  const bool isOneBatch_;
  bool isThere_ = false;
  bool isUncertain_ = false;  ///< whether the last batch was committed
  RunState state_;
  RunState next_;  ///< once the running transaction is committed
  std::unique_ptr<StoreStatement> find_;
  std::unique_ptr<StoreStatement> insert_;
  std::unique_ptr<StoreStatement> delete_;
  std::unique_ptr<StoreStatement> count_;
};

}  // namespace

std::unique_ptr<ChangeLedger> MakeTableLedger(StoreConnection& connection, std::u16string_view run,
                                              bool isOneBatch) {
  return std::make_unique<TableLedger>(connection, run, isOneBatch);
}

}  // namespace ORKDB
