#include "StoreOptions.h"

#include "Colour.h"
#include "Output.h"
#include "Text.h"

#include <algorithm>
#include <cstdlib>
#include <thread>

namespace ORKTOOL {
namespace {

constexpr std::size_t kMostJobs = 256;

}  // namespace

CLI::Option* AddPlaceOptions(CLI::App& command, const std::string& name, PlaceOptions& options,
                             const std::string& text, const std::string& group) {
  CLI::Option* const server = command.add_option(name, options.server, text)->group(group);
  command.add_option(name + "-user", options.user, "Its user")->group(group);
  command.add_option(name + "-database", options.databaseName, "Its name on its server")
      ->group(group);
  command.add_option(name + "-port", options.port, "Port of its server")->group(group);
  return server;
}

void AddStoreOptions(CLI::App& command, StoreOptions& options) {
  constexpr const char* kStore = "Store of rules";
  AddPlaceOptions(command, "--store", options.store,
                  std::string("Path of an SQLite file, or a server text; password in ") +
                      kStorePassword + ", else as for --db",
                  kStore)
      ->required();
  command
      .add_option(
          "--select", options.select,
          "Query that gives the rules. Columns: id; expression or document or both; perhaps "
          "type, template, cax, language, sql_DIALECT; others pass through")
      ->required()
      ->group(kStore);
  AddTypeOption(command, options.type);
  command.add_option("--jobs", options.jobs, "Rules worked on at a time; 0: one for each core")
      ->check(CLI::Range(std::size_t{0}, kMostJobs))
      ->capture_default_str();
  command.add_flag("--json", options.json, "Write JSON Lines");
  AddColourOption(command, options.colour);
  AddLanguageOption(command);
  AddEngineOptions(command, options.engine);
}

void AddWriteOptions(CLI::App& command, WriteOptions& options) {
  constexpr const char* kWriting = "Writing back";
  command.add_flag("--apply", options.apply, "Write to the store; without it nothing is written")
      ->group(kWriting);
  command
      .add_option("--update", options.update,
                  "Statement that writes one rule; :expression, :document, :sql_DIALECT stand for "
                  "the new texts, :id and other columns for what was read")
      ->group(kWriting);
  command
      .add_option("--commit-every", options.commitEvery,
                  "Rules in a transaction, with a ledger; without it all are in one")
      ->check(CLI::Range(std::int64_t{1}, std::int64_t{1'000'000'000}))
      ->group(kWriting);
  command
      .add_option("--ledger", options.ledger,
                  "What remembers the rules that are done, so that an interrupted run goes on: "
                  "'table' for orkrule_ledger in the store, or a file")
      ->group(kWriting);
  command.add_flag("--again", options.again, "Forget what the ledger has of this run")
      ->group(kWriting);
}

void CheckWriteOptions(const WriteOptions& options) {
  if (options.apply && options.update.empty()) {
    throw Failure{kBadUsage, "--apply needs --update, the statement that writes a rule"};
  }
  const bool isMeant = !options.update.empty() || options.commitEvery > 0 ||
                       !options.ledger.empty() || options.again;
  if (!options.apply && isMeant) {
    throw Failure{kBadUsage,
                  "--update, --commit-every, --ledger and --again are for --apply, without which "
                  "nothing is written"};
  }
}

ORKBASE::ConnectionSettings SettingsOf(const PlaceOptions& place, const char* passwordVariable) {
  EngineOptions options;
  options.database = place.server;
  const EngineSetup setup(options);
  ORKBASE::ConnectionSettings settings;
  settings.server = setup.server;
  settings.password = setup.password;
  settings.port = place.port;
  settings.user = Wide(place.user);
  settings.database = Wide(place.databaseName);
  if (const char* const password = std::getenv(passwordVariable)) {
    std::optional<std::u16string> text = FromUtf8(password);
    if (!text) throw Failure{kInputOutput, std::string(passwordVariable) + " is not UTF-8 text"};
    settings.password = *std::move(text);
  }
  return settings;
}

ORKBASE::UpkeepSettings UpkeepSettingsOf(const EngineSetup& setup) {
  const EngineOptions& options = setup.options;
  ORKBASE::UpkeepSettings settings;
  if (!setup.server.empty()) {
    ORKBASE::ConnectionSettings& metadata = settings.metadata.emplace();
    metadata.server = setup.server;
    metadata.port = options.port;
    metadata.user = Wide(options.user);
    metadata.password = setup.password;
    metadata.database = Wide(options.databaseName);
  }
  settings.tables = Wide(options.tables);
  settings.reportTemplate = Wide(options.reportTemplate);
  for (const EngineSetup::CaxDocument& cax : setup.cax) {
    settings.cax.push_back({Wide(cax.path), cax.type, cax.document});
  }
  settings.formDataIn = options.formDataIn;
  settings.useIsNull = !options.noIsNull;
  if (options.rtId) settings.rtId = Wide(*options.rtId);
  return settings;
}

std::size_t WorkersOf(const StoreOptions& options) {
  if (options.jobs > 0) return options.jobs;
  return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostJobs);
}

}  // namespace ORKTOOL
