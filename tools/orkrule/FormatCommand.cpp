// `orkrule format`: rules as the engine writes them.
#include "Calls.h"
#include "Commands.h"
#include "RuleInput.h"
#include "Text.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct FormatOptions {
  EngineOptions engine;
  RuleOptions rules;
  std::int32_t width = 100;
  bool check = false;
};

/// Tells of a rule that stands there otherwise than it would be written.
void Tell(const Rule& rule, const std::string& formatted) {
  PrintError("orkrule: " + (rule.place.empty() ? "" : rule.place + ": ") +
             "the rule would be written\n" + formatted + "\n");
}

ExitStatus Run(const FormatOptions& options) {
  Calls calls{EngineSetup(options.engine)};
  RuleInput input(options.rules);
  ExitStatus status = kDone;
  while (const std::optional<Rule> rule = input.Next()) {
    const std::string text = ToUtf8(rule->text);
    const Json answer =
        calls.Ask({{"op", "Format"}, {"expression", text}, {"width", options.width}});
    const auto& formatted = answer.at("expression").get_ref<const std::string&>();
    const bool changes = formatted != text;
    if (options.check && changes) status = kRefused;
    if (options.rules.json) {
      PrintJson(answer);
    } else if (!options.check) {
      Print(formatted + "\n");
    } else if (changes) {
      Tell(*rule, formatted);
    }
  }
  return status;
}

}  // namespace

void AddFormatCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("format", "Write rules with even spacing, words and lines");
  const auto options = std::make_shared<FormatOptions>();
  AddRuleOptions(*command, options->rules);
  command->add_option("--width", options->width, "Longest line, in units; 0 keeps one line a rule")
      ->capture_default_str();
  command->add_flag("--check", options->check, "Print nothing, tell of rules that would change");
  AddLanguageOption(*command);
  AddTablesOption(*command, options->engine);
  AddEngineOptions(*command, options->engine);
  command->footer(
      "Example:\n  orkrule format --db examples/shop.db --width 40 \\\n"
      "    \"Orders.Amount>1000 and(Orders.Qty<5 or Orders.State=2)\"");
  command->callback([options, &status] { status = Run(*options); });
}

}  // namespace ORKTOOL
