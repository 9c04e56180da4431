#include "service/ParallelSession.h"

#include "authoring/AuthoringCopy.h"

#include "service/AnswerText.h"

#include <algorithm>
#include <utility>

namespace ORKBASE {
namespace {

/// How many requests the crew gets at once.
constexpr std::size_t kMostBeside = 16384;
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
    Progress progress;
    if (requests.size() >= kFew) {
      progress = AnswerBeside(requests.first(std::min(requests.size(), kMostBeside)), take);
      requests = requests.subspan(progress.taken);
    }
    const std::size_t alone = std::min(requests.size(), AloneAfter(progress));
    for (const std::string_view request : requests.first(alone)) take(Answer(request));
    requests = requests.subspan(alone);
  }
}

std::size_t ParallelSession::AloneAfter(const Progress& progress) noexcept {
  if (progress.taken < kFew) return kFew;  // a strict call among strict ones, or a short list
  if (progress.asks > progress.taken / 2) return kAhead;  // most would be begun twice
  return progress.taken < kMostBeside ? 1 : 0;
}

ParallelSession::Progress ParallelSession::AnswerBeside(std::span<const std::string_view> requests,
                                                        const Take& take) {
  // However it ends, the crew is at rest then and nothing is left of the list.
  struct AtEnd {
    ParallelSession& session;
    ~AtEnd() {
      const std::size_t begun = session.crew_.Rest();
      for (std::size_t i = 0; i < begun; ++i) session.answers_[i] = {};
    }
  };
  Progress progress;
  {
    const AtEnd end{*this};
    requests_ = requests;
    crew_.Start(requests.size());
    progress = TakeInOrder(requests, take);
  }
  crew_.ThrowFault();
  return progress;
}

ParallelSession::Progress ParallelSession::TakeInOrder(std::span<const std::string_view> requests,
                                                       const Take& take) {
  using State = SideAnswer::State;
  Progress progress;
  Change change;
  bool isAtRest = false;
  for (std::size_t& i = progress.taken; i < requests.size(); ++i) {
    if (!isAtRest && !crew_.WaitFor(i)) break;
    SideAnswer& side = answers_[i];
    if (side.state == State::kOpen || side.state == State::kStrict) break;
    if (change.ofWords || (change.ofEditing && side.isEditing)) break;
    if (side.state == State::kAnswered) {
      Deliver(side, take);
      continue;
    }
    crew_.Rest();
    isAtRest = true;
    Ask(requests[i], side.object, change, take);
    ++progress.asks;
  }
  return progress;
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
