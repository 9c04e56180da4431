// The help of the tool and of its commands, at most 80 columns wide, and the command that shows it.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace ORKTOOL {

/// Writes the help of an app: usage, what it does, arguments, options by groups, commands,
/// examples.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;
};

/// Adds `help [COMMAND [SUBCOMMAND]]`.
void AddHelpCommand(CLI::App& tool);

}  // namespace ORKTOOL
