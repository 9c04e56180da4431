// The ledger in a file. A file and a database cannot be committed together, so a batch is told
// before its commit, with short numbers of each row as it was and as it is; of a batch whose end is
// not told the rows themselves say what became of it.
#include "foundation/Text.h"
#include "store/ChangeLedger.h"
#include "store/LedgerFile.h"
#include "store/ValueCode.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace ORKDB {
namespace {

/// A line that names a rule: the number of its id, and where it stands.
struct Entry {
  std::uint64_t hash = 0;
  std::int64_t offset = 0;
};

class FileLedger final : public ChangeLedger {
 public:
  FileLedger(std::u16string_view path, std::u16string_view run)
      : file_(path),
        run_(HexOf(HashOf({reinterpret_cast<const char*>(run.data()), run.size() * 2}))) {
    Load();
  }

  bool IsFinished() const noexcept override { return isFinished_ && !hasLeft_ && !isOpen_; }
  bool IsContinued() const noexcept override {
    return !IsFinished() && (!entries_.empty() || isOpen_);
  }

  void Forget() override {
    AppendState(LedgerLine::kForgotten);
    file_.Flush(true);
    Load();
  }

  void Open(const HashOfRow& hashOfRow) override {
    if (isUncertain_) Load();
    isUncertain_ = false;
    if (isOpen_) {
      Resolve(hashOfRow);
    } else if (isBroken_) {
      AppendState(LedgerLine::kWithdrawn);  // it was never told whole, so no commit came
      isBroken_ = false;
    }
  }

  bool WantsHashes() const noexcept override { return true; }

  bool IsDone(const StoreValue& id) override {
    if (entries_.empty()) return false;
    LedgerLine::Kind kind = LedgerLine::kLeft;
    const bool isKnown = Find(IdText(id), kind);
    if (isFinished_) return !isKnown || kind != LedgerLine::kLeft;
    return isKnown && kind == LedgerLine::kWrote;
  }

  bool IsUnknown(const StoreValue& id) override {
    return !unknown_.empty() && std::binary_search(unknown_.begin(), unknown_.end(), IdText(id));
  }

  void Begin() override {
    begin_ = file_.End();
    finishes_ = false;
  }
  void Wrote(const StoreValue& id, std::uint64_t was, std::uint64_t is) override {
    file_.Append({LedgerLine::kWrote, run_, IdText(id), was, is});
  }
  void Left(const StoreValue& id) override { file_.Append({LedgerLine::kLeft, run_, IdText(id)}); }
  void Finish() override { finishes_ = true; }

  void BeforeCommit() override {
    if (file_.End() == begin_) return;
    AppendState(LedgerLine::kPrepared);
    file_.Flush(true);
  }

  void Committed() override {
    isUncertain_ = true;  // until it is told
    if (file_.End() != begin_) AppendState(LedgerLine::kCommitted);
    if (finishes_) AppendState(LedgerLine::kFinished);
    file_.Flush(finishes_);
    isUncertain_ = false;
  }

  void TakenBack(bool mayBeCommitted) noexcept override {
    if (mayBeCommitted || !file_.CutAt(begin_)) isUncertain_ = true;
  }

  void CheckAlone() override {}

 private:
  void AppendState(LedgerLine::Kind kind) { file_.Append({kind, run_}); }

  void Load() {
    entries_.clear();
    pending_.clear();
    isOpen_ = isFinished_ = hasLeft_ = false;
    std::vector<Entry> left;
    file_.ReadAll([&](const LedgerLine& line, std::int64_t offset) {
      if (line.run != run_) return;
      Take(line, offset);
      if (line.kind == LedgerLine::kLeft) left.push_back(pending_.back());
    });
    isBroken_ = !isOpen_ && !pending_.empty();
    const auto isBefore = [](const Entry& a, const Entry& b) { return a.hash < b.hash; };
    std::stable_sort(entries_.begin(), entries_.end(), isBefore);
    hasLeft_ = std::any_of(left.begin(), left.end(), [&](const Entry& entry) {
      return IsStillLeft(file_.LineAt(entry.offset));
    });
  }

  void Take(const LedgerLine& line, std::int64_t offset) {
    switch (line.kind) {
      case LedgerLine::kWrote:
      case LedgerLine::kLeft:
        pending_.push_back({HashOf(line.id), offset});
        break;
      case LedgerLine::kPrepared:
        isOpen_ = true;
        break;
      case LedgerLine::kCommitted:
        entries_.insert(entries_.end(), pending_.begin(), pending_.end());
        EndBatch();
        break;
      case LedgerLine::kWithdrawn:
        EndBatch();
        break;
      case LedgerLine::kFinished:
        isFinished_ = true;
        break;
      case LedgerLine::kForgotten:
        EndBatch();
        entries_.clear();
        isFinished_ = false;
        break;
    }
  }

  void EndBatch() {
    pending_.clear();
    isOpen_ = false;
  }

  /// Finds the last line of an id.
  bool Find(std::string_view id, LedgerLine::Kind& kind) {
    const std::uint64_t hash = HashOf(id);
    auto at = std::upper_bound(entries_.begin(), entries_.end(), hash,
                               [](std::uint64_t a, const Entry& entry) { return a < entry.hash; });
    while (at != entries_.begin() && (--at)->hash == hash) {
      const std::string text = file_.LineAt(at->offset);
      LedgerLine line;
      if (!ReadLedgerLine(text, line) || line.id != id) continue;
      kind = line.kind;
      return true;
    }
    return false;
  }

  bool IsStillLeft(const std::string& text) {
    LedgerLine line;
    LedgerLine::Kind kind = LedgerLine::kWrote;
    return ReadLedgerLine(text, line) && Find(line.id, kind) && kind == LedgerLine::kLeft;
  }

  /// Tells the end of the open batch. One row that is as the batch left it is enough, since a batch
  /// is committed as a whole. Rows that are neither as before nor as behind it were changed by
  /// others; where there are no others they stay as they are.
  void Resolve(const HashOfRow& hashOfRow) {
    std::vector<std::string> foreign;
    bool isCommitted = false;
    bool isWithdrawn = false;
    for (auto entry = pending_.begin(); entry != pending_.end() && !isCommitted; ++entry) {
      const std::string text = file_.LineAt(entry->offset);
      LedgerLine line;
      StoreValue id;
      if (!ReadLedgerLine(text, line) || line.kind != LedgerLine::kWrote || line.was == line.is ||
          !ReadIdText(line.id, id)) {
        continue;
      }
      const std::uint64_t hash = hashOfRow(id);
      isCommitted = hash == line.is;
      isWithdrawn = isWithdrawn || hash == line.was;
      if (hash != line.is && hash != line.was) foreign.emplace_back(line.id);
    }
    AppendState(isCommitted ? LedgerLine::kCommitted : LedgerLine::kWithdrawn);
    if (!isCommitted && !isWithdrawn) GiveUp(std::move(foreign));
    file_.Flush(true);
    Load();
  }

  /// Rows of which nobody can tell are never touched by this run again.
  void GiveUp(std::vector<std::string> ids) {
    if (ids.empty()) return;
    for (const std::string& id : ids) file_.Append({LedgerLine::kWrote, run_, id});
    AppendState(LedgerLine::kPrepared);
    AppendState(LedgerLine::kCommitted);
    std::sort(ids.begin(), ids.end());
    unknown_ = std::move(ids);
  }

  LedgerFile file_;
  const std::string run_;
  std::vector<Entry> entries_;  ///< of committed batches, by number, those of one as they stand
  std::vector<Entry> pending_;  ///< of the last batch, whose end is not told
  std::vector<std::string> unknown_;
  bool isOpen_ = false;    ///< the pending batch may be committed
  bool isBroken_ = false;  ///< it cannot be
  bool isFinished_ = false;
  bool hasLeft_ = false;
  bool isUncertain_ = false;  ///< what the file says has to be read again
  std::int64_t begin_ = 0;    ///< of the running batch
  bool finishes_ = false;
};

}  // namespace

std::unique_ptr<ChangeLedger> MakeFileLedger(std::u16string_view path, std::u16string_view run) {
  return std::make_unique<FileLedger>(path, run);
}

}  // namespace ORKDB
