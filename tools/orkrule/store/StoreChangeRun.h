// A run that gives the rules of a store new texts: shows what would change, or writes it.
#pragma once

#include "StoreSession.h"
#include "StoreWriter.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ORKTOOL {

/// What the commands that change rules differ in.
struct ChangePlan {
  StoreSession::Operation operation;
  ORKBASE::UpkeepSettings settings;
  const char* newText;  ///< key of the new rule in JSON
  bool isRename = false;
  std::string run;  ///< what the ledger knows the run by, beside the pairs of a rename
};

struct ChangeOptions {
  StoreOptions store;
  WriteOptions writing;
  bool force = false;
};

class StoreChangeRun {
 public:
  StoreChangeRun(const ChangeOptions& options, ChangePlan plan);

  ExitStatus All();

 private:
  /// What is to be said of the renames themselves. True where it speaks against writing.
  bool ShowRenames();
  bool IsPerhapsDone(const ORKBASE::UpkeepResult& result) const;
  /// Text that the ledger knows the run by.
  std::string RunText();
  void One(std::size_t worker, const ORKDB::StoreRow& row, RowsDone& done);
  void Show(const ORKDB::StoreRow& row, const RowResult& made, std::string& out) const;
  std::string ChangeText(const RowResult& made) const;
  void ShowPairs(const std::vector<ORKBASE::RenamePair>& pairs) const;
  /// What the run came to; `written` where something was to be written.
  void ShowSummary(const StreamEnd& end, const ORKDB::ChangeReport* written);
  std::string WouldText() const;
  ExitStatus StatusOf(const StreamEnd& end) const;

  const ChangeOptions& options_;
  ChangePlan plan_;
  StoreSession session_;
  std::unique_ptr<StoreWriter> writer_;  // null: nothing is written
  StoreTally tally_;
  /// Rules that are refused, where an earlier run was interrupted: it may be that it gave them the
  /// new names already.
  std::atomic<std::int64_t> perhapsDone_ = 0;
  bool renamesAreBad_ = false;
};

/// `changed 12 of 200 rules; 3 were left alone` for what a writer reports.
std::string WrittenText(const ORKDB::ChangeReport& report, std::int64_t rules);
/// The same as members of a summary.
void AddWritten(Json& summary, const ORKDB::ChangeReport& report);
/// Says that the ledger knows the run as one that came to its end.
void PrintFinished(bool json);

}  // namespace ORKTOOL
