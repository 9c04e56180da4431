// orkrule: the rule engine on the command line.
#include "Commands.h"
#include "CompleteLine.h"
#include "Help.h"
#include "Interrupt.h"
#include "Outage.h"
#include "Usage.h"
#include "Version.h"

#include <clocale>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <memory>
#include <sstream>
#include <string_view>

namespace {

using namespace ORKTOOL;

/// Messages, dates and their language follow the user's locale; numbers are written in one way.
void TakeLocale() {
  std::setlocale(LC_ALL, "");
  std::setlocale(LC_NUMERIC, "C");
}

/// What asks for help or the version gets it; anything else is an error.
ExitStatus Answer(const CLI::App& tool, const CLI::ParseError& error) {
  if (error.get_exit_code() != 0) {
    PrintError(UsageError(tool, error));
    if (tool.get_subcommands().empty() && tool.remaining().empty()) PrintError("\n" + tool.help());
    return kBadUsage;
  }
  std::ostringstream help;
  tool.exit(error, help, std::cerr);
  Print(help.str());
  return kDone;
}

int Run(int argc, char** argv) {
  ExitStatus status = kDone;
  CLI::App tool("Rules of forms: verify them, translate them to SQL, keep them in step.",
                "orkrule");
  tool.require_subcommand(1);
  tool.formatter(std::make_shared<HelpFormatter>());
  tool.set_version_flag("--version", VersionText, "Print versions and exit");
  tool.footer(
      "'orkrule help COMMAND' tells the options of a command.\n\n"
      "Example:\n  orkrule sql --db examples/shop.db --type logic \"Orders.Amount > 1\"");
  AddSqlCommand(tool, status);
  AddVerifyCommand(tool, status);
  AddCheckCommand(tool, status);
  AddFormatCommand(tool, status);
  AddWriteCommand(tool, status);
  AddCompleteCommand(tool, status);
  AddExplainCommand(tool, status);
  AddFunctionsCommand(tool, status);
  AddTablesCommand(tool, status);
  AddFieldsCommand(tool, status);
  AddVocabularyCommand(tool, status);
  AddMessagesCommand(tool, status);
  AddUsesCommand(tool, status);
  AddStripCommand(tool, status);
  AddRenameCommand(tool, status);
  AddBatchCommand(tool, status);
  AddStoreCommand(tool, status);
  AddReferenceCommand(tool, status);
  AddCompletionCommand(tool);
  AddHelpCommand(tool);
  if (argc > 1 && std::string_view(argv[1]) == kCompleteLine) {
    CompleteLine(tool, {argv + 2, argv + argc});
    FlushOutput();
    return kDone;
  }
  try {
    tool.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    status = Answer(tool, error);
  }
  FlushOutput();
  return status;
}

/// Ends as a program does that the signal ended by itself, which shells know: 141.
int EndByClosedPipe() {
  std::signal(SIGPIPE, SIG_DFL);
  std::raise(SIGPIPE);
  return kInputOutput;  // somebody keeps that signal away
}

/// The exit status of the run, with its failures told.
int RunAndTell(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const ClosedPipe&) {
    return EndByClosedPipe();
  } catch (const Failure& failure) {
    std::fprintf(stderr, "orkrule: %s\n", failure.message.c_str());
    return failure.status;
  } catch (const Outage& outage) {
    std::fprintf(stderr, "orkrule: %s\n", OutageText(outage).c_str());
    return kInputOutput;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "orkrule: %s\n", error.what());
    return kInputOutput;
  }
}

}  // namespace

int main(int argc, char** argv) {
  TakeLocale();
  std::signal(SIGPIPE, SIG_IGN);  // a run that writes elsewhere too ends in order
  const int status = RunAndTell(argc, argv);
  std::fflush(stdout);
  Interrupt::EndIfAsked();
  return status;
}
