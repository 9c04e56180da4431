#include "Engine.h"

#include "LineReader.h"
#include "Outage.h"
#include "Output.h"
#include "Password.h"
#include "Text.h"

#include <cstdlib>
#include <filesystem>

namespace ORKTOOL {
namespace {

bool LooksLikePath(const std::string& text) {
  return text.find('/') != text.npos || text.ends_with(".db") || text.ends_with(".sqlite") ||
         text.ends_with(".sqlite3");
}

/// The server text of --db. A path with nothing behind it is said here, not taken for a host.
std::u16string ServerOf(const std::string& database) {
  if (database.empty() || database.starts_with("odbc:")) return Wide(database);
  const std::string prefix = "sqlite:";
  const bool named = database.starts_with(prefix);
  const std::string path = named ? database.substr(prefix.size()) : database;
  std::error_code ignored;
  if (std::filesystem::is_regular_file(path, ignored)) return u"sqlite:" + Wide(path);
  if (named || LooksLikePath(path)) throw Failure{kInputOutput, "there is no file " + path};
  return Wide(database);
}

}  // namespace

EngineSetup::EngineSetup(const EngineOptions& given)
    : options(given), server(ServerOf(given.database)) {
  if (!server.empty()) password = ReadPassword(given.askPassword);
  for (const std::string& one : given.cax) {
    const std::size_t sign = one.find('=');
    const std::string path = one.substr(sign + 1);
    std::optional<std::u16string> document = FromUtf8(ReadFile(path));
    if (!document) throw Failure{kInputOutput, path + " is not UTF-8 text"};
    cax.push_back({std::atoi(one.c_str()), path, *std::move(document)});
  }
}

Engine::Engine(const EngineSetup& setup, ORKBASE::ORKDB_DSType_ENUM server)
    : hasDatabase_(!setup.server.empty()) {
  const EngineOptions& options = setup.options;
  if (hasDatabase_) {
    rules_.Connect(setup.server, options.port, u"", Wide(options.user), Wide(options.databaseName),
                   server, false, true, setup.password);
  }
  Reach();
  Load(setup);
  rules_.set_formDataIn(options.formDataIn);
  rules_.set_useIsNull(!options.noIsNull);
  if (options.rtId) rules_.set_rtId(Wide(*options.rtId));
}

void Engine::Reach() {
  if (!hasDatabase_) return;
  const std::u16string noTable;  // the database tells at once that it has no fields
  std::vector<ORKBASE::RuleField> fields;
  if (authoring_.Fields(noTable, fields)) return;
  const ORKBASE::MxErrorRecord& error = authoring_.errRecord();
  if (error.cause == ORKBASE::kDatabaseCause) throw Outage{ToUtf8(ORKBASE::ErrorText(error))};
}

void Engine::Load(const EngineSetup& setup) {
  const EngineOptions& options = setup.options;
  if (!options.reportTemplate.empty()) {
    rules_.SetRt(Wide(options.reportTemplate));
    CheckLoaded("--rt " + options.reportTemplate);
  }
  if (!options.tables.empty()) {
    rules_.SetDts(Wide(options.tables));
    CheckLoaded("--tables " + options.tables);
  }
  for (const EngineSetup::CaxDocument& document : setup.cax) LoadCax(document);
}

void Engine::LoadCax(const EngineSetup::CaxDocument& document) {
  try {
    rules_.SetCAXDD(document.type, document.document);
  } catch (const char16_t* refusal) {
    throw Failure{kInputOutput, document.path + ": " + ToUtf8(refusal)};
  }
  CheckLoaded(document.path);
}

void Engine::CheckLoaded(const std::string& what) const {
  if (rules_.errNumber() == 0) return;
  throw Failure{kInputOutput, what + ": " + ToUtf8(rules_.errDescription())};
}

}  // namespace ORKTOOL
