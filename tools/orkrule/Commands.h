// The commands of the tool. Each adds itself to the command line; its run stores the exit status.
#pragma once

#include "Options.h"
#include "Output.h"

namespace ORKTOOL {

void AddSqlCommand(CLI::App& tool, ExitStatus& status);
void AddVerifyCommand(CLI::App& tool, ExitStatus& status);
void AddCheckCommand(CLI::App& tool, ExitStatus& status);
void AddFormatCommand(CLI::App& tool, ExitStatus& status);
void AddWriteCommand(CLI::App& tool, ExitStatus& status);
void AddCompleteCommand(CLI::App& tool, ExitStatus& status);
void AddExplainCommand(CLI::App& tool, ExitStatus& status);
void AddFunctionsCommand(CLI::App& tool, ExitStatus& status);
void AddTablesCommand(CLI::App& tool, ExitStatus& status);
void AddFieldsCommand(CLI::App& tool, ExitStatus& status);
void AddVocabularyCommand(CLI::App& tool, ExitStatus& status);
void AddMessagesCommand(CLI::App& tool, ExitStatus& status);
void AddUsesCommand(CLI::App& tool, ExitStatus& status);
void AddStripCommand(CLI::App& tool, ExitStatus& status);
void AddRenameCommand(CLI::App& tool, ExitStatus& status);
void AddBatchCommand(CLI::App& tool, ExitStatus& status);
void AddStoreCommand(CLI::App& tool, ExitStatus& status);
void AddReferenceCommand(CLI::App& tool, ExitStatus& status);
void AddCompletionCommand(CLI::App& tool);

}  // namespace ORKTOOL
