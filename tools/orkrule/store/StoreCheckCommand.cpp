// `orkrule store check`: which rules of a store are not well, and why.
#include "StoreCommands.h"
#include "StoreSession.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct StoreCheckOptions {
  StoreOptions store;
  std::string dialect;
};

constexpr ORKBASE::UpkeepState kAlwaysTold[] = {ORKBASE::kWellState, ORKBASE::kRefusedState,
                                                ORKBASE::kChangedState,
                                                ORKBASE::kNotTranslatableState};

class StoreCheckRun {
 public:
  explicit StoreCheckRun(const StoreCheckOptions& options)
      : options_(options.store),
        session_(options.store, UpkeepSettingsOf(EngineSetup(options.store.engine)),
                 [&options](const StoreColumns&) {
                   return options.dialect.empty() ? StoreSession::Dialects()
                                                  : DialectsOf(options.dialect);
                 }) {}

  ExitStatus All() {
    StoreTally tally;
    const auto work = [this](std::size_t worker, const ORKDB::StoreRow& row, RowsDone& done) {
      const RowResult made = session_.ResultOf(
          worker, row, [](ORKBASE::RuleUpkeep& upkeep, const ORKBASE::StoredRule& rule) {
            return upkeep.Check(rule);
          });
      done.tally.Count(made.result);
      Show(row, made, done.out);
    };
    const StreamEnd end = session_.All(work, tally);
    ShowSummary(tally, end);
    ReportEnd(end, "");
    if (!end.IsComplete()) return kInputOutput;
    return tally.Of(ORKBASE::kWellState) == tally.rules ? kDone : kRefused;
  }

 private:
  void Show(const ORKDB::StoreRow& row, const RowResult& made, std::string& out) const {
    if (made.result.findings.empty()) return;
    if (!options_.json) {
      out += session_.LinesOf(row, made);
      return;
    }
    Json json = session_.JsonOf(row, made);
    json["problems"] = FindingsJson(made.result.findings);
    out += json.dump() + "\n";
  }

  void ShowSummary(const StoreTally& tally, const StreamEnd& end) const {
    if (options_.json) {
      Json counts = TallyJson(tally);
      counts["isComplete"] = end.IsComplete();
      PrintJson({{"summary", std::move(counts)}});
      return;
    }
    Print(CountOf(tally.rules, "rule") + ": " + StateCounts(tally, kAlwaysTold) + "\n");
  }

  const StoreOptions& options_;
  StoreSession session_;
};

}  // namespace

void AddStoreCheckCommand(CLI::App& store, ExitStatus& status) {
  CLI::App* const command =
      store.add_subcommand("check", "Tell which rules are not well any more, and what mends them");
  const auto options = std::make_shared<StoreCheckOptions>();
  AddDialectOption(*command, options->dialect, true);
  AddTablesOption(*command, options->store.engine);
  AddStoreOptions(*command, options->store);
  command->footer(
      "Example:\n  orkrule store check --store examples/rules.db --db examples/shop.db \\\n"
      "    --select \"select * from rules\"");
  command->callback([options, &status] { status = StoreCheckRun(*options).All(); });
}

}  // namespace ORKTOOL
