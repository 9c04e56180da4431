// orkrule: the rule engine on the command line.
#include "Commands.h"
#include "Interrupt.h"

#include <clocale>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <sstream>

namespace {

using namespace ORKTOOL;

/// Messages, dates and their language follow the user's locale; numbers are written in one way.
void TakeLocale() {
  std::setlocale(LC_ALL, "");
  std::setlocale(LC_NUMERIC, "C");
}

int Run(int argc, char** argv) {
  ExitStatus status = kDone;
  CLI::App tool("Rules of forms: verify them, translate them to SQL, keep them in step.",
                "orkrule");
  tool.require_subcommand(1);
  tool.footer("Example:\n  orkrule sql --db examples/shop.db --type logic \"Orders.Amount > 1\"");
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
  try {
    tool.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    std::ostringstream help;
    if (tool.exit(error, help, std::cerr) != 0) status = kBadUsage;
    Print(help.str());
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
