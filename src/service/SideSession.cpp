#include "service/SideSession.h"

#include "service/AnswerText.h"
#include "service/Calls.h"
#include "service/JsonReader.h"

#include "authoring/AuthoringCopy.h"

#include <utility>

namespace ORKBASE {
namespace {

/// How many copies a thread keeps.
constexpr std::size_t kMostCopies = 16;

}  // namespace

SideAnswer SideSession::Answer(std::string_view request, const Engines& engines,
                               std::uint64_t version) {
  SideAnswer side;
  side.state = SideAnswer::State::kAnswered;
  *asked_ = false;
  std::string_view id;
  try {
    JsonRequest read = ReadJson(request);
    id = read.id;
    const NamedCall named = NameCall(read.fields, engines);
    side.object = named.object;
    side.isEditing = named.row.order == Order::kReadsEditing;
    if (named.row.order == Order::kStrict) {
      side.state = SideAnswer::State::kStrict;
    } else {
      Carry(named, read.fields, id, CopyOf(named.object, engines, version), side);
    }
  } catch (const BadRequest& bad) {
    side.answer = {AnswerOf(id, bad), RuleOutcome::kBadRequest};
  }
  if (*asked_) side.state = SideAnswer::State::kAsks;
  return side;
}

void SideSession::Carry(const NamedCall& named, Request& request, std::string_view id,
                        NamedEngine& copy, SideAnswer& side) {
  const std::uint64_t verdicts = VerdictsOf(copy.rules);
  BeginTrace(copy.rules);
  const Reply reply = RunCall(named, request, copies_);
  if (*asked_) return;
  side.hasTrace = true;
  side.trace = TraceOf(copy.rules, verdicts);
  side.answer = {BeginAnswer(id, reply.fields),
                 reply.isRefused ? RuleOutcome::kRefused : RuleOutcome::kCarriedOut};
  if (reply.ownPair) {
    EndAnswer(side.answer.json, *reply.ownPair);
  } else if (side.trace.setsPair) {
    EndAnswer(side.answer.json, PairOf(copy.rules));
  } else {
    side.needsPair = true;
  }
}

NamedEngine& SideSession::CopyOf(const std::u16string& object, const Engines& engines,
                                 std::uint64_t version) {
  const NamedEngine& source = KnownEngine(engines, object);
  auto copy = copies_.find(object);
  if (copy == copies_.end()) {
    if (copies_.size() >= kMostCopies) {
      copies_.clear();
      versions_.clear();
    }
    copy = copies_.emplace(object, std::make_unique<NamedEngine>()).first;
  } else if (versions_[object] == version) {
    return *copy->second;
  }
  MakeReadingCopy(copy->second->rules, source.rules, asked_);
  AuthoringAccess::TakeOver(copy->second->authoring, source.authoring, asked_);
  versions_[object] = version;
  return *copy->second;
}

}  // namespace ORKBASE
