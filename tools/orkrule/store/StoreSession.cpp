#include "StoreSession.h"

#include "Output.h"
#include "StoreValues.h"

#include <unistd.h>

#include <utility>

namespace ORKTOOL {

UpkeepCrew::UpkeepCrew(const ORKBASE::UpkeepSettings& settings, std::size_t workers) {
  for (std::size_t i = 0; i < workers; ++i) {
    upkeeps_.push_back(std::make_unique<ORKBASE::RuleUpkeep>(settings));
  }
  upkeeps_.front()->Reach();
}

std::vector<ORKBASE::RenamePair> UpkeepCrew::Pairs() const {
  std::vector<ORKBASE::RenamePair> pairs = upkeeps_.front()->Pairs();
  for (std::size_t i = 1; i < upkeeps_.size(); ++i) {
    const std::vector<ORKBASE::RenamePair>& others = upkeeps_[i]->Pairs();
    for (std::size_t j = 0; j < pairs.size(); ++j) {
      pairs[j].matched += others[j].matched;
      pairs[j].differingInCase += others[j].differingInCase;
    }
  }
  return pairs;
}

StoreSession::StoreSession(const StoreOptions& options, ORKBASE::UpkeepSettings settings,
                           const std::function<Dialects(const StoreColumns& columns)>& dialects)
    : options_(options),
      style_(StyleOf(STDOUT_FILENO, options.colour)),
      reader_(options),
      dialects_(dialects(reader_.Columns())) {
  for (const ORKBASE::RuleDialect& dialect : dialects_) settings.dialects.push_back(dialect.number);
  const auto type = TypeOf(options.type).value_or(ORKBASE::kEitherType);
  rules_ = std::make_unique<RowRules>(reader_.Columns(), type, settings, dialects_);
  crew_ = std::make_unique<UpkeepCrew>(settings, WorkersOf(options));
}

RowResult StoreSession::ResultOf(std::size_t worker, const ORKDB::StoreRow& row,
                                 const Operation& operation) {
  RowResult made;
  ORKBASE::UpkeepFinding problem;
  if (auto rule = rules_->RuleOf(row, problem)) {
    made.rule = *std::move(rule);
    made.result = operation(crew_->At(worker), made.rule);
  } else {
    made.result.findings.push_back(std::move(problem));
  }
  return made;
}

std::string StoreSession::LinesOf(const ORKDB::StoreRow& row, const RowResult& made) const {
  if (made.result.findings.empty()) return {};
  return FindingLines(style_, ShownValue(row[Columns().Id()]), TextsOf(made.rule, made.result),
                      made.result.findings);
}

Json StoreSession::JsonOf(const ORKDB::StoreRow& row, const RowResult& made) const {
  Json json = RowJson(Columns(), row);
  json["state"] = StateName(StateOf(made.result.findings));
  return json;
}

StreamEnd StoreSession::All(const RowWork& work, StoreTally& tally,
                            const std::function<void(RowsDone& done)>& take) {
  return StreamRows(reader_, crew_->Size(), work, [&](RowsDone& done) {
    Print(done.out);
    tally.Add(done.tally);
    if (take) take(done);
  });
}

}  // namespace ORKTOOL
