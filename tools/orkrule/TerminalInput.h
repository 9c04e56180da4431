// What a command does that would read from a terminal where nobody knows that he is to type.
#pragma once

#include "Options.h"

namespace ORKTOOL {

/// Has the command show how it is used instead of waiting for rules at a terminal, unless they were
/// announced with `--file -`. `what` it reads is for the message. The options live as long as the
/// command.
void RefuseMuteWait(CLI::App& command, const RuleOptions& options, const char* what);

}  // namespace ORKTOOL
