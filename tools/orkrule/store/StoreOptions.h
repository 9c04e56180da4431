// What the commands over a store of rules share on the command line: where the store is, the query
// that gives its rules, how its rules are written back.
#pragma once

#include "Engine.h"
#include "Options.h"

#include "ConnectionSettings.h"
#include "RuleUpkeep.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace ORKTOOL {

/// The variables with the passwords of other databases than that of --db.
inline constexpr const char* kStorePassword = "ORKRULE_STORE_PASSWORD";
inline constexpr const char* kAfterPassword = "ORKRULE_AFTER_PASSWORD";

/// How a database is reached, beside the one of --db.
struct PlaceOptions {
  std::string server;
  std::string user;
  std::string databaseName;
  std::int32_t port = 0;
};

struct StoreOptions {
  EngineOptions engine;
  PlaceOptions store;
  std::string select;
  std::string type = "auto";  ///< of rules whose row names none
  std::size_t jobs = 1;       ///< 0: one for each core
  bool json = false;
  std::string colour;
};

struct WriteOptions {
  bool apply = false;
  std::string update;
  std::int64_t commitEvery = 0;
  std::string ledger;
  bool again = false;
};

/// Adds the options of the store, and those of the engine.
void AddStoreOptions(CLI::App& command, StoreOptions& options);
/// Adds --apply and what goes with it.
void AddWriteOptions(CLI::App& command, WriteOptions& options);
/// Adds options NAME, NAME-user, NAME-database and NAME-port. Returns the first.
CLI::Option* AddPlaceOptions(CLI::App& command, const std::string& name, PlaceOptions& options,
                             const std::string& text, const std::string& group);

/// Throws `Failure` (bad usage) where --apply lacks what it needs, or something stands without it.
void CheckWriteOptions(const WriteOptions& options);

/// The settings of a database. Its password is that of the environment variable, else that of --db.
ORKBASE::ConnectionSettings SettingsOf(const PlaceOptions& place, const char* passwordVariable);
/// What the engines are made with, apart from the names and databases of one command.
ORKBASE::UpkeepSettings UpkeepSettingsOf(const EngineSetup& setup);

/// How many rules are worked on at a time.
std::size_t WorkersOf(const StoreOptions& options);

}  // namespace ORKTOOL
