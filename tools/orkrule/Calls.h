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
  /// Throws `Failure` where a template, table or document cannot be loaded.
  explicit Calls(const EngineSetup& setup);

  /// The answer to a request. Throws `Failure` for one that cannot be carried out.
  Json Ask(const Json& request);

 private:
  void Load(const Json& request, const std::string& what);

  ORKBASE::RuleService service_;
};

/// Ends the run with the error of an answer, where it has one: the database gave none.
void CheckAnswered(const Json& answer);

}  // namespace ORKTOOL
