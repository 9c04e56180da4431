#include "RuleService.h"

#include "service/ParallelSession.h"
#include "service/Session.h"

#include <algorithm>
#include <optional>
#include <thread>

namespace ORKBASE {

struct RuleService::State {
  explicit State(std::size_t jobs) {
    if (jobs > 1) {
      parallel.emplace(jobs);
    } else {
      session.emplace();
    }
  }

  RuleAnswer Answer(std::string_view request) {
    return parallel ? parallel->Answer(request) : session->Answer(request);
  }

  // One of them.
  std::optional<Session> session;
  std::optional<ParallelSession> parallel;
};

namespace {

std::size_t JobsFor(std::size_t wanted) {
  const std::size_t jobs = wanted == 0 ? std::thread::hardware_concurrency() : wanted;
  return std::clamp<std::size_t>(jobs, 1, kMostServiceJobs);
}

}  // namespace

RuleService::RuleService() : RuleService(1) {}
RuleService::RuleService(std::size_t jobs) : state_(std::make_unique<State>(JobsFor(jobs))) {}
RuleService::~RuleService() = default;

std::string RuleService::Answer(std::string_view request) {
  return state_->Answer(request).json;
}

void RuleService::AnswerEach(std::span<const std::string_view> requests,
                             const std::function<void(RuleAnswer answer)>& take) {
  if (state_->parallel) {
    state_->parallel->Answer(requests, take);
    return;
  }
  for (const std::string_view request : requests) take(state_->Answer(request));
}

}  // namespace ORKBASE
