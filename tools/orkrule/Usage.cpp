#include "Usage.h"

#include "DidYouMean.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace ORKTOOL {
namespace {

/// The tool, the command that was found in the command line, and the one below it.
std::vector<const CLI::App*> PathOf(const CLI::App& tool) {
  std::vector<const CLI::App*> path{&tool};
  while (!path.back()->get_subcommands().empty()) {
    path.push_back(path.back()->get_subcommands().front());
  }
  return path;
}

std::string PathText(const std::vector<const CLI::App*>& path) {
  std::vector<std::string> names;
  names.reserve(path.size());
  for (const CLI::App* app : path) names.push_back(app->get_name());
  return Joined(names, " ");
}

std::string WhereHelpIs(const std::vector<const CLI::App*>& path) {
  return "Try '" + PathText(path) + " --help' for how it is used.";
}

std::vector<std::string> LongNamesOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : ShownOptions(app)) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

/// An option of commands that stands before the command.
bool IsOptionOfCommands(const CLI::App& app, const std::string& name) {
  return std::ranges::any_of(ShownCommands(app), [&](const CLI::App* command) {
    return command->get_option_no_throw(name) != nullptr;
  });
}

std::string UnknownOption(const CLI::App& app, const std::string& argument) {
  const std::string name = argument.substr(0, argument.find('='));
  const std::string text = "unknown option \"" + name + "\"";
  if (IsOptionOfCommands(app, name)) return text + "; it stands behind its command";
  return text + DidYouMean(name, LongNamesOf(app));
}

/// A rule that begins with a minus sign looks like short options.
bool LooksLikeRule(const CLI::App& app, const std::string& argument) {
  const bool isShortOption =
      argument.size() == 2 && std::isalpha(static_cast<unsigned char>(argument[1])) != 0;
  return app.get_option_no_throw("RULE") != nullptr && argument[1] != '-' && !isShortOption;
}

std::string Surplus(const CLI::App& app, const std::string& argument) {
  const bool isOption = argument.size() > 1 && argument.front() == '-';
  if (isOption && LooksLikeRule(app, argument)) {
    return "\"" + argument + "\" begins as an option does; put -- before such a rule";
  }
  if (isOption) return UnknownOption(app, argument);
  if (!ShownCommands(app).empty()) return UnknownCommand(app, argument);
  return "there is no place for the argument \"" + argument + "\"";
}

/// "NAME: VALUE not in {a,b}" becomes a sentence with the likeliest value.
std::string WithNearValue(const std::string& text) {
  constexpr std::string_view kNotIn = " not in {";
  const std::size_t colon = text.find(": ");
  const std::size_t at = text.rfind(kNotIn);
  if (colon == text.npos || at == text.npos || at < colon + 2) return text;
  const std::string value = text.substr(colon + 2, at - colon - 2);
  std::vector<std::string> choices;
  std::istringstream list(text.substr(at + kNotIn.size()));
  for (std::string each; std::getline(list, each, ',');) choices.push_back(each);
  choices.back().erase(choices.back().find_last_not_of('}') + 1);
  return text.substr(0, colon + 2) + "\"" + value + "\" is none of " + Joined(choices, ", ") +
         DidYouMean(value, choices);
}

/// CLI11 says of a value only that it could not be converted; numbers are all that is.
std::string WithoutNumber(const std::string& text) {
  constexpr std::string_view kBegin = "Could not convert: ";
  const std::size_t sign = text.find(" = ");
  if (!text.starts_with(kBegin) || sign == text.npos) return text;
  return text.substr(kBegin.size(), sign - kBegin.size()) + ": \"" + text.substr(sign + 3) +
         "\" is no whole number";
}

std::string Problem(const std::vector<const CLI::App*>& path, const CLI::ParseError& error) {
  for (const CLI::App* app : path) {
    const std::vector<std::string> rest = app->remaining();
    if (!rest.empty()) return Surplus(*app, rest.front());
  }
  const bool lacksCommand = path.back()->get_require_subcommand_min() > 0;
  return lacksCommand ? "a command is missing" : WithNearValue(WithoutNumber(error.what()));
}

}  // namespace

std::vector<const CLI::Option*> ShownOptions(const CLI::App& app) {
  return app.get_options([](const CLI::Option* option) {
    return option->nonpositional() && !option->get_group().empty();
  });
}

std::vector<const CLI::App*> ShownCommands(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

std::vector<std::string> NamesOf(const std::vector<const CLI::App*>& commands) {
  std::vector<std::string> names;
  names.reserve(commands.size());
  for (const CLI::App* command : commands) names.push_back(command->get_name());
  return names;
}

std::vector<std::string> ChoicesOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::size_t begin = type.find(":{");
  const std::size_t end = type.find('}', begin);
  std::vector<std::string> choices;
  if (begin == type.npos || end == type.npos) return choices;
  std::istringstream list(type.substr(begin + 2, end - begin - 2));
  for (std::string each; std::getline(list, each, ',');) choices.push_back(each);
  return choices;
}

std::string ValueName(const CLI::Option& option) {
  if (option.get_type_size() == 0) return "";
  const std::string type = option.get_type_name();
  const std::string name = type.substr(0, type.find(':'));
  return name == "INT" || name == "UINT" ? "N" : name;
}

std::string ChoiceText(const std::vector<std::string>& choices) {
  return "{" + Joined(choices, ",") + "}";
}

std::string UnknownCommand(const CLI::App& app, const std::string& name) {
  return "unknown command \"" + name + "\"" + DidYouMean(name, NamesOf(ShownCommands(app)));
}

std::string UsageError(const CLI::App& tool, const CLI::ParseError& error) {
  const std::vector<const CLI::App*> path = PathOf(tool);
  return "orkrule: " + Problem(path, error) + "\n" + WhereHelpIs(path) + "\n";
}

}  // namespace ORKTOOL
