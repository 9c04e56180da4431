#include "StoreStream.h"

#include "Interrupt.h"
#include "OrderedWork.h"
#include "Output.h"
#include "Progress.h"
#include "StoreValues.h"
#include "Text.h"

#include "OrkPlatform.h"
#include "RuleUpkeep.h"

#include <unistd.h>

#include <deque>

namespace ORKTOOL {
namespace {

// Rows that a worker takes at a time, and how much text all workers may have before them.
constexpr std::size_t kRowsTogether = 16;
constexpr std::size_t kBytesTogether = std::size_t{1} << 18;
constexpr std::size_t kBytesOnTheWay = std::size_t{1} << 24;

std::size_t BytesOf(const ORKDB::StoreRow& row) {
  std::size_t bytes = row.size() * sizeof(ORKDB::StoreValue);
  for (const ORKDB::StoreValue& value : row) {
    if (const auto* text = std::get_if<std::u16string>(&value)) bytes += 2 * text->size();
    if (const auto* other = std::get_if<ORKDB::StoreBytes>(&value)) bytes += other->size();
  }
  return bytes;
}

struct SomeRows {
  std::vector<ORKDB::StoreRow> rows;
  std::size_t bytes = 0;
};

/// What became of some rows. Where the metadata are lost it ends with those before.
RowsDone WorkOn(const SomeRows& rows, std::size_t worker, const RowWork& work) {
  RowsDone done;
  try {
    for (const ORKDB::StoreRow& row : rows.rows) work(worker, row, done);
  } catch (const ORKBASE::UpkeepOutage& outage) {
    done.failure = OneLine(outage.Text());
  }
  return done;
}

class Streaming {
 public:
  Streaming(StoreReader& reader, std::size_t workers, const RowWork& work)
      : reader_(reader),
        language_(ORKBASE::ThreadLanguage()),
        work_(workers,
              [this, workers, &work](std::size_t worker, SomeRows& rows) {
                if (workers > 1) ORKBASE::SetThreadLanguage(language_);
                return WorkOn(rows, worker, work);
              }),
        progress_("rules", reader.Total()) {}

  StreamEnd All(const std::function<void(RowsDone& done)>& take) {
    for (bool isLost = false; !isLost;) {
      Fill();
      if (work_.Pending() == 0) break;
      RowsDone done = work_.Take();
      bytesOnTheWay_ -= bytes_.front();
      bytes_.pop_front();
      end_.rows += done.tally.rules;
      take(done);
      progress_.Show(end_.rows);
      isLost = !done.failure.empty();
      if (isLost) end_.failure = done.failure;
    }
    progress_.End();
    return end_;
  }

 private:
  /// Puts rows until there is enough to do.
  void Fill() {
    while (!isRead_ && work_.Room() > 0 && bytesOnTheWay_ < kBytesOnTheWay) {
      SomeRows rows = Read();
      if (rows.rows.empty()) return;
      bytesOnTheWay_ += rows.bytes;
      bytes_.push_back(rows.bytes);
      work_.Put(std::move(rows));
    }
  }

  /// A store that is lost ends the reading; what was read before is worked on.
  SomeRows Read() {
    SomeRows some;
    try {
      while (!isRead_ && some.rows.size() < kRowsTogether && some.bytes < kBytesTogether) {
        end_.isInterrupted = Interrupt::IsAsked();
        ORKDB::StoreRow row;
        isRead_ = end_.isInterrupted || !reader_.Next(row);
        if (isRead_) break;
        some.bytes += BytesOf(row);
        some.rows.push_back(std::move(row));
      }
    } catch (const ORKDB::StoreFailure& failure) {
      isRead_ = true;
      end_.failure = OneLine(failure.Text());
    }
    return some;
  }

  StoreReader& reader_;
  std::u16string language_;
  OrderedWork<SomeRows, RowsDone> work_;
  Progress progress_;
  std::deque<std::size_t> bytes_;  // of each item on the way
  std::size_t bytesOnTheWay_ = 0;
  bool isRead_ = false;
  StreamEnd end_;
};

}  // namespace

StoreReader::StoreReader(const StoreOptions& options)
    : connection_(ORKDB::OpenStore(SettingsOf(options.store, kStorePassword))) {
  const std::u16string select = Wide(options.select);
  if (isatty(STDERR_FILENO) != 0) Count(select);
  rows_ = connection_->Select(select);
  columns_.emplace(rows_->Columns());
}

/// A query that cannot stand within another is not counted.
void StoreReader::Count(const std::u16string& select) {
  try {
    const auto rows = connection_->Select(u"select count(*) from (" + select + u") orkrule_rows");
    ORKDB::StoreRow row;
    if (!rows->Next(row)) return;
    const auto* count = std::get_if<std::int64_t>(&row.front());
    if (count != nullptr) total_ = *count;
  } catch (const ORKDB::StoreFailure& failure) {
    if (failure.IsOutage()) throw;
  }
}

void StoreReader::Close() {
  rows_.reset();
  connection_.reset();
}

StreamEnd StreamRows(StoreReader& reader, std::size_t workers, const RowWork& work,
                     const std::function<void(RowsDone& done)>& take) {
  StreamEnd end = Streaming(reader, workers, work).All(take);
  reader.Close();
  return end;
}

void ReportEnd(const StreamEnd& end, const std::string& rest) {
  if (end.IsComplete()) return;
  const std::string after = " after " + CountOf(end.rows, "rule");
  const std::string why =
      end.isInterrupted ? "interrupted" + after : "stopped" + after + ": " + end.failure;
  PrintError("orkrule: " + why + (rest.empty() ? "" : "\norkrule: " + rest) + "\n");
}

}  // namespace ORKTOOL
