#include "StoreChangeRun.h"

#include "StoreValues.h"
#include "Text.h"
#include "WordDiff.h"

#include <algorithm>
#include <utility>

namespace ORKTOOL {
namespace {

using ORKBASE::UpkeepState;

// States that make a change of rules worth a look. (What differs from its document of today is
// nothing that the new names are to blame for.)
constexpr UpkeepState kWrongStates[] = {ORKBASE::kRefusedState, ORKBASE::kNotTranslatableState,
                                        ORKBASE::kUnreadableState, ORKBASE::kBrokenState};

bool SpeaksAgainst(const ORKBASE::UpkeepFinding& finding) {
  return finding.state != ORKBASE::kNoticeState && finding.state != ORKBASE::kWellState;
}

/// The text whose change is shown: the rule, or of a store of documents the document.
std::u16string_view TextOf(const ORKBASE::StoredRule& rule) {
  const std::optional<std::u16string>& text = rule.expression ? rule.expression : rule.document;
  return text ? std::u16string_view(*text) : std::u16string_view();
}

Json PairsJson(const std::vector<ORKBASE::RenamePair>& pairs) {
  Json list = Json::array();
  for (const ORKBASE::RenamePair& pair : pairs) {
    list.push_back({{"old", ToUtf8(pair.oldName)},
                    {"new", ToUtf8(pair.newName)},
                    {"matched", pair.matched},
                    {"differingInCase", pair.differingInCase}});
  }
  return list;
}

}  // namespace

StoreChangeRun::StoreChangeRun(const ChangeOptions& options, ChangePlan plan)
    : options_(options),
      plan_(std::move(plan)),
      session_(options.store, plan_.settings,
               [](const StoreColumns& columns) { return columns.SqlDialects(); }) {}

ExitStatus StoreChangeRun::All() {
  renamesAreBad_ = ShowRenames();
  if (renamesAreBad_ && options_.writing.apply && !options_.force) {
    PrintError("orkrule: nothing was written; --force writes in spite of these names\n");
    return kRefused;
  }
  if (options_.writing.apply) {
    writer_ = std::make_unique<StoreWriter>(WriterPlan{options_.store, options_.writing,
                                                       session_.Columns(), session_.SqlDialects(),
                                                       false, RunText()});
    if (writer_->IsFinished()) {
      PrintFinished(options_.store.json);
      return kDone;
    }
  }
  const auto work = [this](std::size_t worker, const ORKDB::StoreRow& row, RowsDone& done) {
    One(worker, row, done);
  };
  const auto collect = [this](RowsDone& done) {
    for (const ORKDB::StoreChange& change : done.changes) {
      writer_->Add(change);
    }
  };
  const StreamEnd end = session_.All(work, tally_, collect);
  if (!end.IsComplete() || !writer_) {
    ShowSummary(end, nullptr);
    ReportEnd(end, options_.writing.apply ? "nothing was written" : "");
    return StatusOf(end);
  }
  const ExitStatus written = writer_->Apply();
  ShowSummary(end, &writer_->Report());
  return written == kInputOutput ? written : std::max(written, StatusOf(end));
}

bool StoreChangeRun::ShowRenames() {
  if (!plan_.isRename) return false;
  const std::vector<ORKBASE::UpkeepFinding> findings = session_.Crew().At(0).CheckRenames();
  if (findings.empty()) return false;
  if (options_.store.json) {
    PrintJson({{"renames", FindingsJson(findings)}});
  } else {
    Print(FindingLines(session_.OutputStyle(), "-", {}, findings));
  }
  return std::any_of(findings.begin(), findings.end(), SpeaksAgainst);
}

std::string StoreChangeRun::RunText() {
  std::string text = plan_.run;
  for (const ORKBASE::RenamePair& pair : session_.Crew().At(0).Pairs()) {
    text.append("\n").append(ToUtf8(pair.oldName)).append(":").append(ToUtf8(pair.newName));
  }
  return text;
}

void StoreChangeRun::One(std::size_t worker, const ORKDB::StoreRow& row, RowsDone& done) {
  const RowResult made = session_.ResultOf(worker, row, plan_.operation);
  done.tally.Count(made.result);
  if (IsPerhapsDone(made.result)) {
    ++perhapsDone_;
  } else {
    Show(row, made, done.out);
  }
  if (writer_ && made.result.changes && made.result.mayWrite) {
    done.changes.push_back(writer_->ChangeOf(row, made.result));
  }
}

bool StoreChangeRun::IsPerhapsDone(const ORKBASE::UpkeepResult& result) const {
  return plan_.isRename && writer_ && writer_->IsContinued() &&
         StateOf(result.findings) == ORKBASE::kRefusedState;
}

void StoreChangeRun::Show(const ORKDB::StoreRow& row, const RowResult& made,
                          std::string& out) const {
  const ORKBASE::UpkeepResult& result = made.result;
  if (!result.changes && result.findings.empty()) return;
  if (!options_.store.json) {
    if (result.changes && !writer_) {
      out += StoreLine(session_.OutputStyle(), ShownValue(row[session_.Columns().Id()]),
                       "would change", Colour::kMark, ChangeText(made));
    }
    out += session_.LinesOf(row, made);
    return;
  }
  Json json = session_.JsonOf(row, made);
  json["changes"] = result.changes;
  if (result.changes) {
    if (result.after.expression) json[plan_.newText] = ToUtf8(*result.after.expression);
    if (result.after.document) json["document"] = ToUtf8(*result.after.document);
    json["mayWrite"] = result.mayWrite;
  }
  json["problems"] = FindingsJson(result.findings);
  out += json.dump() + "\n";
}

std::string StoreChangeRun::ChangeText(const RowResult& made) const {
  const std::u16string_view before = TextOf(made.rule);
  const std::u16string_view after = TextOf(made.result.after);
  if (before != after) return WordDiff(before, after, session_.OutputStyle());
  return made.rule.document != made.result.after.document ? "its document" : "its SQL";
}

void StoreChangeRun::ShowPairs(const std::vector<ORKBASE::RenamePair>& pairs) const {
  const auto show = [this](const std::string& text) {
    Print(StoreLine(session_.OutputStyle(), "-", StateWords(ORKBASE::kNoticeState),
                    Colour::kInformation, text));
  };
  for (const ORKBASE::RenamePair& pair : pairs) {
    const std::string name = OneLine(pair.oldName);
    if (pair.matched == 0) show(name + ":" + OneLine(pair.newName) + " met no rule");
    if (pair.differingInCase > 0) {
      show(CountOf(pair.differingInCase, "word") + " that would be " + name +
           " in another case: left alone");
    }
  }
}

void StoreChangeRun::ShowSummary(const StreamEnd& end, const ORKDB::ChangeReport* written) {
  const std::vector<ORKBASE::RenamePair> pairs = session_.Crew().Pairs();
  if (options_.store.json) {
    Json summary = TallyJson(tally_);
    summary["changes"] = tally_.changing;
    if (plan_.isRename) summary["pairs"] = PairsJson(pairs);
    if (written != nullptr) AddWritten(summary, *written);
    summary["isComplete"] = end.IsComplete() && (written == nullptr || written->isComplete);
    PrintJson({{"summary", std::move(summary)}});
    return;
  }
  if (end.IsComplete()) ShowPairs(pairs);
  Print((written != nullptr ? WrittenText(*written, tally_.rules) : WouldText()) + "\n");
  const std::string states = StateCounts(tally_, {});
  if (tally_.Of(ORKBASE::kWellState) < tally_.rules) Print(states + "\n");
  if (perhapsDone_ > 0) {
    Print(
        "refused under the names of --db: those that the earlier run changed, and perhaps "
        "others\n");
  }
  if (written == nullptr && !options_.writing.apply && tally_.changing > tally_.left) {
    Print("nothing was written; --apply with --update STATEMENT writes it\n");
  }
}

std::string StoreChangeRun::WouldText() const {
  std::string text =
      "would change " + std::to_string(tally_.changing) + " of " + CountOf(tally_.rules, "rule");
  const std::int64_t broken = tally_.Of(ORKBASE::kBrokenState);
  if (broken > 0) text += "; " + std::to_string(broken) + " would break and be left alone";
  return text;
}

ExitStatus StoreChangeRun::StatusOf(const StreamEnd& end) const {
  if (!end.IsComplete()) return kInputOutput;
  const auto isThere = [this](UpkeepState state) {
    const bool isRefusal = state == ORKBASE::kRefusedState;
    return tally_.Of(state) > (isRefusal ? perhapsDone_.load() : 0);
  };
  const bool isWrong = renamesAreBad_ || tally_.left > 0 ||
                       std::any_of(std::begin(kWrongStates), std::end(kWrongStates), isThere);
  return isWrong ? kRefused : kDone;
}

std::string WrittenText(const ORKDB::ChangeReport& report, std::int64_t rules) {
  std::string text = "changed " + std::to_string(report.written) + " of " + CountOf(rules, "rule");
  if (report.doneBefore > 0) {
    text += "; " + std::to_string(report.doneBefore) + " were changed by an earlier run";
  }
  if (report.leftCount > 0) text += "; " + std::to_string(report.leftCount) + " were left alone";
  return text;
}

void AddWritten(Json& summary, const ORKDB::ChangeReport& report) {
  summary["written"] = report.written;
  summary["doneBefore"] = report.doneBefore;
  summary["left"] = report.leftCount;
}

void PrintFinished(bool json) {
  if (json) {
    PrintJson({{"summary", {{"isFinished", true}}}});
  } else {
    Print("by the ledger this run came to its end already; --again runs it anew\n");
  }
}

}  // namespace ORKTOOL
