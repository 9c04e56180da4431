// `orkrule store rename` and `orkrule store strip`: rules of a store follow their tables and
// fields.
#include "RenameLists.h"
#include "StoreChangeRun.h"
#include "StoreCommands.h"
#include "Text.h"

#include <cstdlib>
#include <memory>

namespace ORKTOOL {
namespace {

struct StoreRenameOptions {
  ChangeOptions change;
  PlaceOptions after;
  std::string tables;
  std::string fields;
};

/// As `rename` reads them; in a store no name is emptied.
std::string CheckPairs(const std::string& list, bool fields) {
  for (const NewName& name : ReadNewNames(Wide(list), fields)) {
    const bool isPair = !name.from.empty() && !name.to.empty();
    if (!isPair) return "'" + ToUtf8(ListOf({name})) + "' has an empty name";
  }
  return "";
}

/// What is not told of the other database is that of --db.
PlaceOptions AfterPlace(const StoreRenameOptions& options) {
  const EngineOptions& before = options.change.store.engine;
  PlaceOptions after = options.after;
  if (after.user.empty()) after.user = before.user;
  if (after.databaseName.empty()) after.databaseName = before.databaseName;
  if (after.port == 0) after.port = before.port;
  return after;
}

ExitStatus RunStoreRename(const StoreRenameOptions& options) {
  CheckWriteOptions(options.change.writing);
  if (options.tables.empty() && options.fields.empty()) {
    throw Failure{kBadUsage, "--tables or --fields is required"};
  }
  ChangePlan plan{[](ORKBASE::RuleUpkeep& upkeep, const ORKBASE::StoredRule& rule) {
                    return upkeep.Rename(rule);
                  },
                  UpkeepSettingsOf(EngineSetup(options.change.store.engine)), "renamed", true,
                  "rename"};
  plan.settings.tableRenames = Wide(options.tables);
  plan.settings.fieldRenames = Wide(options.fields);
  if (!options.after.server.empty()) {
    ORKBASE::ConnectionSettings& after =
        plan.settings.metadataAfter.emplace(SettingsOf(AfterPlace(options), kAfterPassword));
    const bool isToldItsOwn = std::getenv(kAfterPassword) != nullptr;
    if (!isToldItsOwn && plan.settings.metadata) after.password = plan.settings.metadata->password;
  }
  return StoreChangeRun(options.change, std::move(plan)).All();
}

struct StoreStripOptions {
  ChangeOptions change;
  std::string tables;
};

ExitStatus RunStoreStrip(const StoreStripOptions& options) {
  CheckWriteOptions(options.change.writing);
  ChangePlan plan{[](ORKBASE::RuleUpkeep& upkeep, const ORKBASE::StoredRule& rule) {
                    return upkeep.Strip(rule);
                  },
                  UpkeepSettingsOf(EngineSetup(options.change.store.engine)), "stripped", false,
                  "strip\n" + options.tables};
  plan.settings.strippedTables = Wide(options.tables);
  return StoreChangeRun(options.change, std::move(plan)).All();
}

}  // namespace

void AddStoreRenameCommand(CLI::App& store, ExitStatus& status) {
  CLI::App* const command = store.add_subcommand(
      "rename", "Carry new names of tables and fields into the rules; a dry run unless --apply");
  const auto options = std::make_shared<StoreRenameOptions>();
  const auto check = [](bool fields) {
    return CLI::Validator([fields](std::string& list) { return CheckPairs(list, fields); }, "");
  };
  command->add_option("--tables", options->tables, "Renamed tables: OLD:NEW,OLD:NEW")
      ->check(check(false));
  command->add_option("--fields", options->fields, "Renamed fields: TABLE.OLD:NEW,TABLE.OLD:NEW")
      ->check(check(true));
  AddStoreOptions(*command, options->change.store);
  AddPlaceOptions(*command, "--db-after", options->after,
                  std::string("Metadata database that has the new names; without it those of --db "
                              "as renamed. What is not told is as for --db; password in ") +
                      kAfterPassword,
                  "Metadata database");
  AddWriteOptions(*command, options->change.writing);
  command
      ->add_flag("--force", options->change.force,
                 "Write also where a new name is taken, or none that a rule can hold")
      ->group("Writing back");
  command->footer(
      "Example:\n  orkrule store rename --store examples/rules.db --db examples/shop.db \\\n"
      "    --select \"select * from rules\" \\\n"
      "    --tables Orders:Sales --fields Orders.Qty:Pieces\n"
      "and, to write it:\n"
      "    --apply --update \"update rules set expression = :expression, document = :document, \\\n"
      "    sql_oracle = :sql_oracle where id = :id\"");
  command->callback([options, &status] { status = RunStoreRename(*options); });
}

void AddStoreStripCommand(CLI::App& store, ExitStatus& status) {
  CLI::App* const command = store.add_subcommand(
      "strip", "Cut out of the rules what depends on tables; a dry run unless --apply");
  const auto options = std::make_shared<StoreStripOptions>();
  command->add_option("--tables", options->tables, "The tables to cut out: A,B")->required();
  AddStoreOptions(*command, options->change.store);
  AddWriteOptions(*command, options->change.writing);
  command->footer(
      "Example:\n  orkrule store strip --store examples/rules.db --db examples/shop.db \\\n"
      "    --select \"select * from rules\" --tables Lines");
  command->callback([options, &status] { status = RunStoreStrip(*options); });
}

}  // namespace ORKTOOL
