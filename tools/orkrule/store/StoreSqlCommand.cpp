// `orkrule store sql`: the SQL of the rules of a store, as JSON Lines or back into the store.
#include "StoreChangeRun.h"
#include "StoreCommands.h"
#include "StoreValues.h"
#include "Text.h"

#include <algorithm>
#include <fstream>
#include <memory>

namespace ORKTOOL {
namespace {

constexpr const char* kStandardOutput = "-";

struct StoreSqlOptions {
  StoreOptions store;
  WriteOptions writing;
  std::string dialect;
  std::string out;
};

/// The dialects that were asked for, else those whose SQL is stored, else the one that serves all.
StoreSession::Dialects SqlDialectsOf(const std::string& names, const StoreColumns& columns) {
  if (!names.empty()) return DialectsOf(names);
  StoreSession::Dialects stored = columns.SqlDialects();
  if (stored.empty()) stored.push_back(ORKBASE::RuleDialects().front());
  return stored;
}

class StoreSqlRun {
 public:
  explicit StoreSqlRun(const StoreSqlOptions& options)
      : options_(options),
        session_(options.store, UpkeepSettingsOf(EngineSetup(options.store.engine)),
                 [&options](const StoreColumns& columns) {
                   return SqlDialectsOf(options.dialect, columns);
                 }) {
    isToFile_ = !options.out.empty() && options.out != kStandardOutput;
    isToOutput_ = !isToFile_ && (!options.writing.apply || !options.out.empty());
  }

  ExitStatus All() {
    if (options_.writing.apply) {
      writer_ = std::make_unique<StoreWriter>(WriterPlan{options_.store, options_.writing,
                                                         session_.Columns(), session_.SqlDialects(),
                                                         true, RunText()});
      if (writer_->IsFinished()) {
        PrintFinished(options_.store.json);
        return kDone;
      }
    }
    if (isToFile_) Open();
    const StreamEnd end = session_.All([this](std::size_t worker, const ORKDB::StoreRow& row,
                                              RowsDone& done) { One(worker, row, done); },
                                       tally_, [this](RowsDone& done) { Take(done); });
    Close();
    ExitStatus status =
        tally_.Of(ORKBASE::kWellState) + tally_.Of(ORKBASE::kChangedState) == tally_.rules
            ? kDone
            : kRefused;
    if (writer_ && end.IsComplete()) status = std::max(status, writer_->Apply());
    ShowSummary(end);
    ReportEnd(end, writer_ ? "nothing was written" : "");
    return end.IsComplete() ? status : kInputOutput;
  }

 private:
  std::string RunText() const {
    std::string text = "sql";
    for (const ORKBASE::RuleDialect& dialect : session_.SqlDialects()) {
      text.append("\n").append(ToUtf8(dialect.name));
    }
    return text;
  }

  void Open() {
    file_.open(options_.out, std::ios::binary);
    if (!file_) throw Failure{kInputOutput, "cannot write " + options_.out};
  }

  void Close() {
    if (!isToFile_) return;
    file_.close();
    if (!file_) throw Failure{kInputOutput, "cannot write " + options_.out};
  }

  void One(std::size_t worker, const ORKDB::StoreRow& row, RowsDone& done) {
    const bool fillsDocument = writer_ && writer_->TakesDocument();
    const RowResult made = session_.ResultOf(
        worker, row, [fillsDocument](ORKBASE::RuleUpkeep& upkeep, const ORKBASE::StoredRule& rule) {
          if (!fillsDocument || rule.document) return upkeep.Translate(rule);
          ORKBASE::StoredRule filled = rule;  // one that is empty gets the document of today
          filled.document.emplace();
          return upkeep.Translate(filled);
        });
    const ORKBASE::UpkeepResult& result = made.result;
    done.tally.Count(result);
    if (isToOutput_ || isToFile_) {
      done.lines += JsonLine(row, made);
    }
    if (!isToOutput_) done.out += FindingsOf(row, made);
    if (writer_ && result.mayWrite && writer_->Replaces(row, result)) {
      done.changes.push_back(writer_->ChangeOf(row, result));
    }
  }

  void Take(RowsDone& done) {
    if (isToFile_) {
      file_ << done.lines;
    } else {
      Print(done.lines);
    }
    for (const ORKDB::StoreChange& change : done.changes) writer_->Add(change);
  }

  std::string JsonLine(const ORKDB::StoreRow& row, const RowResult& made) const {
    Json json = session_.JsonOf(row, made);
    Json& sql = json["sql"] = Json::object();
    for (std::size_t i = 0; i < made.result.after.sql.size(); ++i) {
      const std::optional<std::u16string>& text = made.result.after.sql[i];
      if (text) sql[ToUtf8(session_.SqlDialects()[i].name)] = ToUtf8(*text);
    }
    json["problems"] = FindingsJson(made.result.findings);
    return json.dump() + "\n";
  }

  /// What keeps rules from being translated; that the SQL is another than the stored one is what
  /// this run is for.
  std::string FindingsOf(const ORKDB::StoreRow& row, const RowResult& made) const {
    RowResult shown = made;
    std::erase_if(shown.result.findings, [](const ORKBASE::UpkeepFinding& finding) {
      return finding.state == ORKBASE::kChangedState;
    });
    if (shown.result.findings.empty()) return "";
    if (!options_.store.json) return session_.LinesOf(row, shown);
    Json json = session_.JsonOf(row, shown);
    json["problems"] = FindingsJson(shown.result.findings);
    return json.dump() + "\n";
  }

  void ShowSummary(const StreamEnd& end) {
    const bool isWritten = writer_ && end.IsComplete();
    if (options_.store.json && !isToOutput_) {
      Json summary = TallyJson(tally_);
      if (isWritten) AddWritten(summary, writer_->Report());
      summary["isComplete"] = end.IsComplete() && (!isWritten || writer_->Report().isComplete);
      PrintJson({{"summary", std::move(summary)}});
      return;
    }
    std::string text = CountOf(tally_.rules, "rule") + ": " + StateCounts(tally_, {}) + "\n";
    if (isWritten) text += WrittenText(writer_->Report(), tally_.rules) + "\n";
    if (isToOutput_) {
      PrintError("orkrule: " + text);
    } else {
      Print(text);
    }
  }

  const StoreSqlOptions& options_;
  StoreSession session_;
  std::unique_ptr<StoreWriter> writer_;  // null: nothing is written to the store
  std::ofstream file_;
  bool isToFile_ = false;
  bool isToOutput_ = false;
  StoreTally tally_;
};

}  // namespace

void AddStoreSqlCommand(CLI::App& store, ExitStatus& status) {
  CLI::App* const command = store.add_subcommand(
      "sql", "Translate the rules, to JSON Lines or with --apply into the store");
  const auto options = std::make_shared<StoreSqlOptions>();
  AddDialectOption(*command, options->dialect, true);
  command->add_option("--out", options->out,
                      "File for the lines; - is standard output, as is none without --apply");
  AddTablesOption(*command, options->store.engine);
  AddStoreOptions(*command, options->store);
  AddWriteOptions(*command, options->writing);
  command->footer(
      "Example:\n  orkrule store sql --store examples/rules.db --db examples/shop.db \\\n"
      "    --select \"select * from rules\" --dialect oracle,kingbase\n"
      "and, to write it:\n"
      "    --apply --update \"update rules set sql_oracle = :sql_oracle where id = :id\"");
  command->callback([options, &status] {
    CheckWriteOptions(options->writing);
    status = StoreSqlRun(*options).All();
  });
}

}  // namespace ORKTOOL
