#include "StoreChanges.h"

#include "store/ChangeRun.h"

namespace ORKDB {
namespace {

std::unique_ptr<StoreConnection> OpenToWrite(ORKBASE::ConnectionSettings settings) {
  settings.readOnly = false;
  return OpenStore(settings);
}

}  // namespace

struct StoreChanges::State {
  explicit State(const ChangeSettings& settings) : run(OpenToWrite(settings.store), settings) {}

  ChangeRun run;
};

StoreChanges::StoreChanges(const ChangeSettings& settings)
    : state_(std::make_unique<State>(settings)) {}
StoreChanges::~StoreChanges() = default;

const std::vector<std::u16string>& StoreChanges::Names() const noexcept {
  return state_->run.Names();
}

bool StoreChanges::IsFinished() const noexcept {
  return state_->run.IsFinished();
}

bool StoreChanges::IsContinued() const noexcept {
  return state_->run.IsContinued();
}

void StoreChanges::BeginAnew() {
  state_->run.BeginAnew();
}

void StoreChanges::Add(const StoreChange& change) {
  state_->run.Add(change);
}

ChangeReport StoreChanges::Apply(const std::function<bool(const ChangeReport& soFar)>& goesOn) {
  return state_->run.Apply(goesOn);
}

const ChangeReport& StoreChanges::Report() const noexcept {
  return state_->run.Report();
}

}  // namespace ORKDB
