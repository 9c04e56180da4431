// A run of calls over engines that have names: what stands between a door and the table of calls.
#pragma once

#include "service/Call.h"
#include "service/Fields.h"

#include "RuleService.h"

#include <optional>
#include <string>
#include <string_view>

namespace ORKBASE {

/// A request that names a call, and an object for it where it needs one.
struct NamedCall {
  const CallRow& row;
  std::u16string object;
  Value wanted;
};

/// Throws `BadRequest` where there is no such call or object.
NamedCall NameCall(Request& request, const Engines& engines);

/// What became of a call.
struct Reply {
  Record fields;  ///< those of the call, or `thrown` alone
  std::optional<ErrorPair> ownPair;
  bool isRefused = false;
};

/// Carries out a call with the rest of its request. Throws `BadRequest`, and nothing has happened.
Reply RunCall(const NamedCall& named, Request& request, Engines& engines);

ErrorPair PairOf(const MxExpression& engine);

/// Owns the engines of one caller; "main" exists from the start. One thread at a time.
class Session {
 public:
  Session();

  /// Carries out the call that the request names and returns its answer: the fields of the call, or
  /// `thrown` alone where it left by an exception, and the error pair of the object. Takes the
  /// values out of the request. Throws `BadRequest` where there is no call to carry out.
  Record Run(Request& request);

  /// The same for a request as JSON.
  RuleAnswer Answer(std::string_view request);

  const Engines& AllEngines() const noexcept { return engines_; }
  MxExpression& EngineOf(const std::u16string& object) {
    return KnownEngine(engines_, object).rules;
  }

 private:
  /// The pair that ends an answer; none where the object is gone.
  std::optional<ErrorPair> PairBehind(const NamedCall& named, const Reply& reply) const;

  Engines engines_;
};

}  // namespace ORKBASE
