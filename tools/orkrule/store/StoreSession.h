// A run over a store from its command line to the rule of each row: the query, an engine for each
// worker, and how results are shown.
#pragma once

#include "Colour.h"
#include "Interrupt.h"
#include "RowRules.h"
#include "StoreOptions.h"
#include "StoreReport.h"
#include "StoreStream.h"

#include "RuleDialects.h"
#include "RuleStore.h"
#include "RuleUpkeep.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace ORKTOOL {

/// An engine for each worker, all with the same settings.
class UpkeepCrew {
 public:
  /// Asks the metadata databases once. Throws `UpkeepOutage`.
  UpkeepCrew(const ORKBASE::UpkeepSettings& settings, std::size_t workers);

  std::size_t Size() const noexcept { return upkeeps_.size(); }
  ORKBASE::RuleUpkeep& At(std::size_t worker) { return *upkeeps_[worker]; }
  /// The pairs of the renames with what all of them met.
  std::vector<ORKBASE::RenamePair> Pairs() const;

 private:
  std::vector<std::unique_ptr<ORKBASE::RuleUpkeep>> upkeeps_;
};

/// A rule of a row with what became of it. One that could not be read has a finding that says so.
struct RowResult {
  ORKBASE::StoredRule rule;
  ORKBASE::UpkeepResult result;
};

class StoreSession {
 public:
  using Dialects = std::vector<ORKBASE::RuleDialect>;
  using Operation =
      std::function<ORKBASE::UpkeepResult(ORKBASE::RuleUpkeep&, const ORKBASE::StoredRule&)>;

  /// Reaches the store and the metadata. `dialects` tells whose SQL is made; the other settings are
  /// there. Throws `StoreFailure`, `UpkeepOutage`, and `Failure` for a query without its columns.
  StoreSession(const StoreOptions& options, ORKBASE::UpkeepSettings settings,
               const std::function<Dialects(const StoreColumns& columns)>& dialects);

  const StoreOptions& Options() const noexcept { return options_; }
  const StoreColumns& Columns() const noexcept { return reader_.Columns(); }
  const Dialects& SqlDialects() const noexcept { return dialects_; }
  UpkeepCrew& Crew() noexcept { return *crew_; }
  const Style& OutputStyle() const noexcept { return style_; }

  RowResult ResultOf(std::size_t worker, const ORKDB::StoreRow& row, const Operation& operation);
  /// The findings of a row as lines.
  std::string LinesOf(const ORKDB::StoreRow& row, const RowResult& made) const;
  /// The columns of a row, and its state.
  Json JsonOf(const ORKDB::StoreRow& row, const RowResult& made) const;

  /// Works on all rows, prints what comes out, and counts it. What else became of them goes to
  /// `take`, if any.
  StreamEnd All(const RowWork& work, StoreTally& tally,
                const std::function<void(RowsDone& done)>& take = {});

 private:
  const StoreOptions& options_;
  Interrupt interrupt_;
  Style style_;
  StoreReader reader_;
  Dialects dialects_;
  std::unique_ptr<RowRules> rules_;
  std::unique_ptr<UpkeepCrew> crew_;
};

}  // namespace ORKTOOL
