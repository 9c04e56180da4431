// How the tool speaks of its own command line: what is wrong with it, in one sentence, and where
// the right one is told.
#pragma once

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace ORKTOOL {

/// The options or commands below an app that the help shows.
std::vector<const CLI::Option*> ShownOptions(const CLI::App& app);
std::vector<const CLI::App*> ShownCommands(const CLI::App& app);
std::vector<std::string> NamesOf(const std::vector<const CLI::App*>& commands);

/// The values that an option or argument can have, where it is one of a few.
std::vector<std::string> ChoicesOf(const CLI::Option& option);
/// What an option's value is called in the help: "FILE"; empty for a flag.
std::string ValueName(const CLI::Option& option);
/// `{a,b}`: how a check says what the choices are.
std::string ChoiceText(const std::vector<std::string>& choices);

/// `unknown command "verfy"; did you mean "verify"?`
std::string UnknownCommand(const CLI::App& app, const std::string& name);

/// What standard error gets for a command line that is wrong.
std::string UsageError(const CLI::App& tool, const CLI::ParseError& error);

}  // namespace ORKTOOL
