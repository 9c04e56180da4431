// The commands under `orkrule store`. Each adds itself; its run stores the exit status.
#pragma once

#include "Options.h"
#include "Output.h"

namespace ORKTOOL {

void AddStoreCheckCommand(CLI::App& store, ExitStatus& status);
void AddStoreRenameCommand(CLI::App& store, ExitStatus& status);
void AddStoreStripCommand(CLI::App& store, ExitStatus& status);
void AddStoreSqlCommand(CLI::App& store, ExitStatus& status);
void AddStoreUsesCommand(CLI::App& store, ExitStatus& status);

}  // namespace ORKTOOL
