// One engine, set up from the command line.
#pragma once

#include "Options.h"

#include "MxExpression.h"
#include "RuleAuthoring.h"

#include <string>
#include <vector>

namespace ORKTOOL {

/// What the command line asked for, read once: files and password do not change between engines.
struct EngineSetup {
  explicit EngineSetup(const EngineOptions& options);

  struct CaxDocument {
    std::int32_t type;
    std::string path;
    std::u16string document;
  };

  EngineOptions options;
  std::u16string server;  ///< empty: no database
  std::u16string password;
  std::vector<CaxDocument> cax;
};

/// An engine with its dictionaries loaded. Without a database it stays unconnected, so that a rule
/// that needs a table is told so.
class Engine {
 public:
  /// `server` is the kind of the database where --db names a server. Throws `Outage` where the
  /// database does not answer, and `Failure` where a template, table or document cannot be loaded.
  explicit Engine(const EngineSetup& setup,
                  ORKBASE::ORKDB_DSType_ENUM server = ORKBASE::kSqlServerDs);

  ORKBASE::MxExpression& Rules() noexcept { return rules_; }
  ORKBASE::RuleAuthoring& Authoring() noexcept { return authoring_; }

  /// Asks the database, if there is one, something that costs it little. Throws `Outage`.
  void Reach();

 private:
  void Load(const EngineSetup& setup);
  void LoadCax(const EngineSetup::CaxDocument& document);
  void CheckLoaded(const std::string& what) const;

  bool hasDatabase_;
  ORKBASE::MxExpression rules_;
  ORKBASE::RuleAuthoring authoring_{rules_};
};

}  // namespace ORKTOOL
