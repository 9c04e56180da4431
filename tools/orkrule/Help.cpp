#include "Help.h"

#include "Output.h"
#include "Usage.h"

#include <memory>
#include <sstream>
#include <string_view>
#include <vector>

namespace ORKTOOL {
namespace {

constexpr std::size_t kColumns = 80;
constexpr std::size_t kTextColumn = 26;

/// Words filled into lines; each but the first begins at a column.
std::string Filled(const std::string& text, std::size_t column) {
  std::string filled;
  std::size_t at = column;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const bool isFirst = filled.empty();
    if (!isFirst && at + 1 + word.size() > kColumns) {
      filled.append("\n").append(column, ' ');
      at = column;
    } else if (!isFirst) {
      filled += ' ';
      ++at;
    }
    filled += word;
    at += word.size();
  }
  return filled;
}

/// A name and what it means, side by side; a long name has a line of its own.
std::string Entry(const std::string& name, const std::string& text) {
  std::string entry = "  " + name;
  if (text.empty()) return entry + "\n";
  if (entry.size() + 2 > kTextColumn) {
    entry.append("\n").append(kTextColumn, ' ');
  } else {
    entry.append(kTextColumn - entry.size(), ' ');
  }
  return entry + Filled(text, kTextColumn) + "\n";
}

std::string OptionName(const CLI::Option& option) {
  std::string name;
  for (const std::string& each : option.get_snames()) name += "-" + each + ", ";
  if (name.empty()) name = "    ";  // long names stand below each other
  for (const std::string& each : option.get_lnames()) name += "--" + each + ", ";
  name.erase(name.find_last_not_of(", ") + 1);
  const std::string value = ValueName(option);
  return value.empty() ? name : name + " " + value;
}

std::string OptionText(const CLI::Option& option) {
  std::string text = option.get_description();
  if (option.get_required()) text += " (required)";
  if (!option.get_envname().empty()) {
    text += " (default: the variable " + option.get_envname() + ")";
  }
  const std::string value = option.get_default_str();
  if (!value.empty() && value != "\"\"" && value != "[]") text += " (default: " + value + ")";
  return text;
}

std::string Group(const std::string& title, const std::string& entries) {
  return entries.empty() ? "" : "\n" + title + ":\n" + entries;
}

std::string Arguments(const CLI::App& app) {
  std::string entries;
  for (const CLI::Option* option : app.get_options()) {
    const bool isShown = option->get_positional() && !option->get_group().empty();
    if (!isShown) continue;
    const std::string required = option->get_required() ? " (required)" : "";
    entries += Entry(option->get_name(true, false), option->get_description() + required);
  }
  return Group("Arguments", entries);
}

std::string Options(const CLI::App& app) {
  std::string text;
  for (const std::string& group : app.get_groups()) {
    std::string entries;
    for (const CLI::Option* option : ShownOptions(app)) {
      if (option->get_group() == group) entries += Entry(OptionName(*option), OptionText(*option));
    }
    if (!group.empty()) text += Group(group, entries);
  }
  return text;
}

std::string Commands(const CLI::App& app) {
  std::string entries;
  for (const CLI::App* command : ShownCommands(app)) {
    entries += Entry(command->get_name(), command->get_description());
  }
  return Group("Commands", entries);
}

std::string UsageLine(const CLI::App& app, const std::string& name) {
  std::string usage = "Usage: " + name + " [OPTIONS]";
  if (!ShownCommands(app).empty()) usage += " COMMAND";
  for (const CLI::Option* option : app.get_options()) {
    const bool isShown = option->get_positional() && !option->get_group().empty();
    if (!isShown) continue;
    const std::string argument =
        option->get_name(true, false) + (option->get_items_expected_max() > 1 ? "..." : "");
    usage += option->get_required() ? " " + argument : " [" + argument + "]";
  }
  return usage + "\n";
}

const CLI::App* CommandNamed(const CLI::App& app, const std::string& name) {
  const auto is = [&name](const CLI::App* command) { return command->get_name() == name; };
  const std::vector<const CLI::App*> found = app.get_subcommands(is);
  return found.empty() ? nullptr : found.front();
}

/// The app below the tool that the words name.
const CLI::App& Found(const CLI::App& tool, const std::vector<std::string>& words) {
  const CLI::App* app = &tool;
  for (const std::string& word : words) {
    const CLI::App* const next = CommandNamed(*app, word);
    if (next == nullptr) throw Failure{kBadUsage, UnknownCommand(*app, word)};
    app = next;
  }
  return *app;
}

std::string FullName(const CLI::App& app) {
  std::string name = app.get_name();
  for (const CLI::App* each = app.get_parent(); each != nullptr; each = each->get_parent()) {
    name.insert(0, each->get_name() + " ");
  }
  return name;
}

/// Every command, and every command below one, by the words that call it; one a line.
void PrintCommands(const CLI::App& tool) {
  for (const CLI::App* command : ShownCommands(tool)) {
    Print(command->get_name() + "\n");
    for (const CLI::App* below : ShownCommands(*command)) {
      Print(command->get_name() + " " + below->get_name() + "\n");
    }
  }
}

/// What stands behind the options. One example or more: the heading is what manual pages know.
std::string Footer(const CLI::App& app) {
  constexpr std::string_view kOne = "Example:\n";
  std::string footer = app.get_footer();
  const std::size_t at = footer.find(kOne);
  if (at != footer.npos) footer.replace(at, kOne.size(), "Examples:\n");
  return footer.empty() ? "" : "\n" + footer + "\n";
}

}  // namespace

std::string HelpFormatter::make_help(const CLI::App* app, std::string name,
                                     CLI::AppFormatMode /*mode*/) const {
  return UsageLine(*app, name) + Filled(app->get_description(), 0) + "\n" + Arguments(*app) +
         Commands(*app) + Options(*app) + Footer(*app);
}

void AddHelpCommand(CLI::App& tool) {
  CLI::App* const command = tool.add_subcommand("help", "Show the help of a command");
  const auto words = std::make_shared<std::vector<std::string>>();
  const auto list = std::make_shared<bool>(false);
  command->add_option("COMMAND", *words, "The command, and the command below it")->expected(0, 2);
  command->add_flag("--commands", *list, "List the commands")->group("");
  command->footer("Example:\n  orkrule help sql");
  command->callback([&tool, words, list] {
    if (*list) return PrintCommands(tool);
    const CLI::App& app = Found(tool, *words);
    Print(app.get_formatter()->make_help(&app, FullName(app), CLI::AppFormatMode::Normal));
  });
}

}  // namespace ORKTOOL
