#include "service/ParallelSession.h"

#include "authoring/AuthoringCopy.h"

#include "service/AnswerText.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace ORKBASE {
namespace {

/// How many requests the crew gets at once.
constexpr std::size_t kMostBeside = 2048;
/// How far the crew goes on behind a call that asks the database, which may make it all void.
constexpr std::size_t kAhead = 256;
/// Where calls that only read stand alone, so many requests are answered without the crew.
constexpr std::size_t kFew = 16;

}  // namespace

ParallelSession::ParallelSession(std::size_t jobs)
    : sides_(jobs),
      answers_(kMostBeside),
      crew_(jobs, [this](std::size_t worker, std::size_t item) { return Work(worker, item); }) {}

RuleAnswer ParallelSession::Answer(std::string_view request) {
  Settle();
  ++version_;
  return session_.Answer(request);
}

void ParallelSession::Answer(std::span<const std::string_view> requests, const Take& take) {
  while (!requests.empty()) {
    std::size_t beside = 0;
    if (requests.size() >= kFew) {
      beside = AnswerBeside(requests.first(std::min(requests.size(), kMostBeside)), take);
      requests = requests.subspan(beside);
    }
    // A strict call stopped the crew, or there is too little to do for it.
    const std::size_t alone = beside < kFew ? kFew : beside < kMostBeside ? 1 : 0;
    for (const std::string_view request : requests.first(std::min(requests.size(), alone))) {
      take(Answer(request));
      requests = requests.subspan(1);
    }
  }
}

std::size_t ParallelSession::AnswerBeside(std::span<const std::string_view> requests,
                                          const Take& take) {
  // However it ends, the crew is at rest then and nothing is left of the list.
  struct AtEnd {
    ParallelSession& session;
    ~AtEnd() {
      const std::size_t begun = session.crew_.Rest();
      for (std::size_t i = 0; i < begun; ++i) session.answers_[i] = {};
    }
  };
  std::size_t taken = 0;
  {
    const AtEnd end{*this};
    requests_ = requests;
    crew_.Start(requests.size());
    taken = TakeInOrder(requests, take);
  }
  crew_.ThrowFault();
  return taken;
}

std::size_t ParallelSession::TakeInOrder(std::span<const std::string_view> requests,
                                         const Take& take) {
  using State = SideAnswer::State;
  Change change;
  std::size_t begun = requests.size();
  for (std::size_t i = 0; i < requests.size(); ++i) {
    if (i >= begun || (begun == requests.size() && !crew_.WaitFor(i))) return i;
    SideAnswer& side = answers_[i];
    if (side.state == State::kOpen || side.state == State::kStrict) return i;
    if (change.ofWords || (change.ofEditing && side.isEditing)) return i;
    if (side.state == State::kAnswered) {
      Deliver(side, take);
      continue;
    }
    begun = crew_.Rest();
    Ask(requests[i], side.object, change, take);
  }
  return requests.size();
}

std::size_t ParallelSession::Work(std::size_t worker, std::size_t item) {
  SideAnswer& side = answers_[item];
  side = sides_[worker].Answer(requests_[item], session_.AllEngines(), version_);
  if (side.state == SideAnswer::State::kStrict) crew_.HaltBehind(item, 0);
  if (side.state == SideAnswer::State::kAsks) crew_.HaltBehind(item, kAhead);
  return side.answer.json.size();
}

void ParallelSession::Deliver(SideAnswer& side, const Take& take) {
  const std::size_t held = side.answer.json.size();
  if (side.needsPair) EndAnswer(side.answer.json, PairBefore(side.object));
  if (side.hasTrace) Gather(side.object, std::move(side.trace));
  take(std::move(side.answer));
  crew_.Took(held);
}

void ParallelSession::Ask(std::string_view request, const std::u16string& object, Change& change,
                          const Take& take) {
  const NamedEngine& engine = KnownEngine(session_.AllEngines(), object);
  const MxDictionarys::Stamp words = ContentOf(engine.rules);
  const std::vector<MxDictionarys::Stamp> editing = AuthoringAccess::Stamps(engine.authoring);
  take(Answer(request));
  change.ofWords = change.ofWords || ContentOf(engine.rules) != words;
  change.ofEditing = change.ofEditing || AuthoringAccess::Stamps(engine.authoring) != editing;
}

ErrorPair ParallelSession::PairBefore(const std::u16string& object) const {
  const auto found = traces_.find(object);
  if (found != traces_.end() && found->second.setsPair) {
    return {found->second.number, found->second.description};
  }
  return PairOf(KnownEngine(session_.AllEngines(), object).rules);
}

void ParallelSession::Gather(const std::u16string& object, EngineTrace trace) {
  EngineTrace& gathered = traces_[object];
  if (!trace.last) trace.last = std::move(gathered.last);
  if (!trace.setsPair && gathered.setsPair) {
    trace.setsPair = true;
    trace.number = gathered.number;
    trace.description = std::move(gathered.description);
    trace.error = std::move(gathered.error);
  }
  gathered = std::move(trace);
}

void ParallelSession::Settle() {
  for (auto& [object, trace] : traces_) {
    LeaveTrace(session_.EngineOf(object), std::move(trace));
  }
  traces_.clear();
}

}  // namespace ORKBASE
