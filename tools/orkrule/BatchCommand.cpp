// `orkrule batch`: one JSON object a line in, one a line out, in the same order.
#include "Commands.h"
#include "LineReader.h"

#include "RuleService.h"

#include <unistd.h>

#include <memory>

namespace ORKTOOL {
namespace {

void HintAtTerminal() {
  if (isatty(STDIN_FILENO) == 0) return;
  PrintError(
      "orkrule: reads calls from this terminal, one a line, such as\n"
      "  {\"op\":\"Translate\",\"type\":4,\"expression\":\"1 + 2 > 2\"}\n"
      "Ctrl-D at the beginning of a line ends.\n");
}

ExitStatus Run(bool flush) {
  const bool flushEach = flush || isatty(STDOUT_FILENO) != 0;
  ORKBASE::RuleService service;
  HintAtTerminal();
  LineReader input("-");
  input.set_beforeWait(FlushOutput);
  for (std::string line; input.Next(line);) {
    if (line.find_first_not_of(" \t\r\v\f") == line.npos) continue;
    Print(service.Answer(line) + "\n");
    if (flushEach) FlushOutput();
  }
  return kDone;
}

}  // namespace

void AddBatchCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("batch", "Run calls given as JSON Lines, and answer each with a line");
  const auto flush = std::make_shared<bool>(false);
  command->add_flag("--flush", *flush, "Hand over each answer at once");
  AddLanguageOption(*command);
  command->footer(
      "Example:\n"
      "  printf '%s\\n' '{\"op\":\"Connect\",\"server\":\"sqlite:examples/shop.db\"}' \\\n"
      "    '{\"op\":\"Translate\",\"id\":1,\"type\":4,\"expression\":\"T.a > 1\"}' | orkrule "
      "batch");
  command->callback([flush, &status] { status = Run(*flush); });
}

}  // namespace ORKTOOL
