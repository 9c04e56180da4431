// The operations on rules of a store.
#include "RuleUpkeep.h"

#include "store/RenameChecks.h"
#include "store/RuleRenames.h"
#include "store/UpkeepEngine.h"
#include "store/UpkeepRename.h"
#include "store/UpkeepStrip.h"
#include "store/UpkeepWork.h"

namespace ORKBASE {

struct RuleUpkeep::State {
  explicit State(const UpkeepSettings& given)
      : settings(given), renames(settings), engines(settings, renames.ForEngine()) {}

  UpkeepSettings settings;
  RuleRenames renames;
  UpkeepEngines engines;
};

RuleUpkeep::RuleUpkeep(const UpkeepSettings& settings)
    : state_(std::make_unique<State>(settings)) {}
RuleUpkeep::~RuleUpkeep() = default;

void RuleUpkeep::Reach() {
  state_->engines.Bare(Names::kToday).Reach();
  if (state_->settings.metadataAfter) state_->engines.Bare(Names::kAfter).Reach();
}

UpkeepResult RuleUpkeep::Check(const StoredRule& rule) {
  UpkeepWork work(state_->engines, state_->settings, rule);
  if (!work.Open()) return work.Finish(false);
  if (!work.Verify(true)) {
    work.LookAtDocument();
    return work.Finish(false);
  }
  work.CompareDocument();
  work.TakeSql(work.Engine(), work.Today().document, SqlUse::kCompare);
  return work.Finish(true);
}

UpkeepResult RuleUpkeep::Translate(const StoredRule& rule) {
  UpkeepWork work(state_->engines, state_->settings, rule);
  if (!work.Open() || !work.Verify(true)) return work.Finish(false);
  work.KeepDocument(work.Today().document);
  work.TakeSql(work.Engine(), work.Today().document, SqlUse::kKeep);
  return work.Finish(true);
}

UpkeepResult RuleUpkeep::Uses(const StoredRule& rule, std::vector<RuleUse>& uses) {
  uses.clear();
  UpkeepWork work(state_->engines, state_->settings, rule);
  if (!work.Open()) return work.Finish(false);
  work.Verify(false);  // a rule that is refused may depend on something all the same
  uses = work.Engine().Uses(work.Text());
  if (work.IsWritten()) {
    for (RuleUse& use : uses) use.offset = -1;
  }
  return work.Finish(true);
}

UpkeepResult RuleUpkeep::Rename(const StoredRule& rule) {
  UpkeepWork work(state_->engines, state_->settings, rule);
  return RenameRule(work, state_->renames);
}

UpkeepResult RuleUpkeep::Strip(const StoredRule& rule) {
  UpkeepWork work(state_->engines, state_->settings, rule);
  return StripRule(work, state_->settings.strippedTables);
}

std::vector<UpkeepFinding> RuleUpkeep::CheckRenames() {
  return ORKBASE::CheckRenames(state_->engines.Bare(Names::kToday), state_->renames.Listed());
}

const std::vector<RenamePair>& RuleUpkeep::Pairs() const noexcept {
  return state_->renames.Pairs();
}

}  // namespace ORKBASE
