// Rules on their way back into the store: what the names of --update stand for, and what became of
// the writing.
#pragma once

#include "RowRules.h"
#include "StoreOptions.h"
#include "StoreReport.h"

#include "RuleDialects.h"
#include "RuleUpkeep.h"
#include "StoreChanges.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ORKTOOL {

/// What a writer needs to know of a run.
struct WriterPlan {
  const StoreOptions& options;
  const WriteOptions& writing;
  const StoreColumns& columns;
  const std::vector<ORKBASE::RuleDialect>& dialects;  ///< whose SQL is made
  bool makesDocuments;  ///< `:document` is there also where the store has none
  std::string run;      ///< command and names: what the ledger knows this run by
};

class StoreWriter {
 public:
  /// Connects and looks at the names of --update. Throws `Failure` for one that stands for nothing,
  /// and `StoreFailure`.
  explicit StoreWriter(const WriterPlan& plan);

  /// Whether an earlier run was interrupted, and has written some of the rules.
  bool IsContinued() const noexcept { return !plan_.writing.again && changes_.IsContinued(); }
  /// Whether the ledger says that there is nothing left to do.
  bool IsFinished() const noexcept { return !plan_.writing.again && changes_.IsFinished(); }

  /// The change of a rule to its new texts. May be asked by several threads at a time.
  ORKDB::StoreChange ChangeOf(const ORKDB::StoreRow& row,
                              const ORKBASE::UpkeepResult& result) const;
  /// Whether the change would put anything else in the place of what was read. SQL that was not
  /// read counts as other; where there is no new one for it, nobody knows what to write.
  bool Replaces(const ORKDB::StoreRow& row, const ORKBASE::UpkeepResult& result) const;
  /// Whether --update takes the document.
  bool TakesDocument() const;
  void Add(const ORKDB::StoreChange& change) { changes_.Add(change); }

  /// Writes what was added, reports rules that were left, and tells how it ended: done, refused
  /// where rules were left, input/output where it is not complete.
  ExitStatus Apply();
  const ORKDB::ChangeReport& Report() const noexcept { return changes_.Report(); }

 private:
  /// What a name of --update stands for.
  struct Bound {
    std::optional<std::size_t> column;                                   ///< of the query
    std::optional<std::size_t> dialect;                                  ///< of the new SQL
    std::optional<std::u16string> ORKBASE::StoredRule::*text = nullptr;  ///< the new text
  };

  Bound BoundOf(const std::u16string& name) const;
  static const std::u16string* NewText(const Bound& bound, const ORKBASE::StoredRule& after);
  static ORKDB::StoreValue ValueOf(const Bound& bound, const ORKDB::StoreRow& row,
                                   const ORKBASE::StoredRule& after);
  std::string KnownNames() const;
  ExitStatus ReportUnfinished(const std::string& why) const;
  void ShowLeft(const ORKDB::LeftChange& left) const;

  WriterPlan plan_;
  std::vector<std::size_t> guarded_;  // columns
  ORKDB::StoreChanges changes_;
  std::vector<Bound> bound_;
};

}  // namespace ORKTOOL
