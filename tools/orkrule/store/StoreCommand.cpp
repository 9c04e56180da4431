// `orkrule store`: work on a whole table of rules, in the database that keeps it.
#include "StoreCommands.h"

#include "Commands.h"

namespace ORKTOOL {

void AddStoreCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command = tool.add_subcommand(
      "store", "Work on all rules of a database: check, rename, strip, translate, list");
  command->require_subcommand(1);
  AddStoreCheckCommand(*command, status);
  AddStoreRenameCommand(*command, status);
  AddStoreStripCommand(*command, status);
  AddStoreSqlCommand(*command, status);
  AddStoreUsesCommand(*command, status);
  command->footer(
      "Example:\n  orkrule store check --store examples/rules.db --db examples/shop.db \\\n"
      "    --select \"select * from rules\"");
}

}  // namespace ORKTOOL
