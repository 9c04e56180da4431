#include "TerminalInput.h"

#include "Output.h"

#include <unistd.h>

namespace ORKTOOL {

void RefuseMuteWait(CLI::App& command, const RuleOptions& options, const char* what) {
  command.parse_complete_callback([&command, &options, what] {
    if (options.rule || options.file || isatty(STDIN_FILENO) == 0) return;
    PrintError(command.help("orkrule"));
    throw Failure{kBadUsage, std::string("there is no ") + what +
                                 ": give one, or name a file of them (--file; - is this terminal), "
                                 "or pipe them in"};
  });
}

}  // namespace ORKTOOL
