// The calls in JSON over one engine, set up from the command line: what they answer is what the
// tool shows, so that --json and `batch` cannot differ.
#pragma once

#include "Engine.h"
#include "Output.h"

#include "RuleService.h"

#include <string>

namespace ORKTOOL {

/// A service whose engine has its dictionaries loaded, as `Engine` has.
class Calls {
 public:
  /// Throws `Outage` where the database does not answer, and `Failure` where a template, table or
  /// document cannot be loaded.
  explicit Calls(const EngineSetup& setup);

  /// The answer to a request. Throws `Failure` for one that cannot be carried out.
  Json Ask(const Json& request);

  /// Throws `Outage` where the database, if there is one, does not answer: for an answer that may
  /// be no fault of the rule.
  void Reach() { probe_.Reach(); }

 private:
  void Load(const Json& request, const std::string& what);

  Engine probe_;  // over a connection of its own: answers do not tell what an error comes from
  ORKBASE::RuleService service_;
};

/// Ends the run with the error of an answer, where it has one: the database gave none.
void CheckAnswered(const Json& answer);

}  // namespace ORKTOOL
