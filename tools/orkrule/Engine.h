// One engine for one dialect, set up from the command line.
#pragma once

#include "Options.h"

#include "MxExpression.h"

#include <optional>
#include <string>

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

/// An engine with its dictionaries loaded. Without a database it verifies unconnected, so that a
/// rule that needs a table is told so, and translates with a copy that knows the dialect.
class Engine {
 public:
  /// Throws `Failure` where a template, table or document cannot be loaded.
  Engine(const EngineSetup& setup, const NamedDialect& dialect);

  const NamedDialect& Dialect() const noexcept { return dialect_; }
  /// Verifies rules and holds their error pair.
  ORKBASE::MxExpression& Rules() noexcept { return rules_; }
  /// Knows the dialect; shares the dictionaries of `Rules()`.
  ORKBASE::MxExpression& Translating() noexcept { return detached_ ? *detached_ : rules_; }

 private:
  void Load(const EngineSetup& setup);
  void LoadCax(const EngineSetup::CaxDocument& document);
  void CheckLoaded(const std::string& what) const;

  NamedDialect dialect_;
  ORKBASE::MxExpression rules_;
  std::optional<ORKBASE::MxExpression> detached_;
};

}  // namespace ORKTOOL
