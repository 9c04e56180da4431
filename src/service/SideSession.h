// What one thread of a crew answers: calls that only read, on copies of a session's engines.
#pragma once

#include "service/Call.h"
#include "service/Session.h"

#include "expression/ReadingCopy.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace ORKBASE {

/// What became of a request that was answered beside its session.
struct SideAnswer {
  enum class State {
    kOpen,      ///< nobody has begun it
    kAnswered,  ///< here
    kStrict,    ///< a call that has its place in the order of all
    kAsks,      ///< a call that asks the database
  };
  State state = State::kOpen;
  bool isEditing = false;  ///< a call of an editor
  bool needsPair = false;  ///< the answer ends with the pair of the call before it
  bool hasTrace = false;
  std::u16string object;
  EngineTrace trace;
  RuleAnswer answer;
};

/// One thread at a time.
class SideSession {
 public:
  /// Answers a request as the session would that owns these engines, which nobody changes
  /// meanwhile. `version` is another whenever they have changed.
  SideAnswer Answer(std::string_view request, const Engines& engines, std::uint64_t version);

 private:
  void Carry(const NamedCall& named, Request& request, std::string_view id, NamedEngine& copy,
             SideAnswer& side);
  NamedEngine& CopyOf(const std::u16string& object, const Engines& engines, std::uint64_t version);

  Engines copies_;
  std::map<std::u16string, std::uint64_t> versions_;  ///< of the copies
  std::shared_ptr<bool> asked_ = std::make_shared<bool>(false);
};

}  // namespace ORKBASE
