// `orkrule format`: rules as the engine writes them.
#include "Calls.h"
#include "Commands.h"
#include "RuleAnswers.h"
#include "RuleInput.h"
#include "Text.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct FormatOptions {
  EngineOptions engine;
  RuleOptions rules;
  std::optional<std::int32_t> width;
  bool check = false;
};

/// Tells of a rule that stands there otherwise than it would be written.
void Tell(const Rule& rule, const std::string& formatted) {
  PrintError("orkrule: " + (rule.place.empty() ? "" : rule.place + ": ") +
             "the rule would be written\n" + formatted + "\n");
}

constexpr std::int32_t kWidth = 100;

/// Rules that come as lines, and go out as such, stay lines.
std::int32_t WidthOf(const FormatOptions& options) {
  const bool areLines = !options.rules.rule && !options.rules.jsonLines;
  return options.width.value_or(areLines && !options.rules.json ? 0 : kWidth);
}

void Show(const FormatOptions& options, const Rule& rule, Json answer) {
  const std::string formatted = answer.at("expression").get<std::string>();
  if (options.rules.json) {
    Json own = {{KeyOf(options.rules), formatted}};
    answer.erase("expression");
    own.update(answer);
    RuleAnswers::PrintRecord(rule.given, own);
  } else if (!options.check) {
    Print(rule.before + formatted + "\n");
  } else if (formatted != ToUtf8(rule.text)) {
    Tell(rule, formatted);
  }
}

ExitStatus Run(const FormatOptions& options) {
  Calls calls{EngineSetup(options.engine)};
  RuleInput input(options.rules);
  RuleAnswers answers(options.rules,
                      {.lines = options.check ? 0U : 1U, .failed = "would be written otherwise"});
  const std::int32_t width = WidthOf(options);
  while (const std::optional<Rule> rule = input.Next()) {
    if (answers.IsUnreadable(*rule)) continue;
    const std::string text = ToUtf8(rule->text);
    const Json answer = calls.Ask({{"op", "Format"}, {"expression", text}, {"width", width}});
    answers.Count(options.check && answer.at("expression") != text);
    Show(options, *rule, answer);
  }
  return answers.End();
}

}  // namespace

void AddFormatCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("format", "Write rules with even spacing, words and lines");
  const auto options = std::make_shared<FormatOptions>();
  AddRuleOptions(*command, options->rules);
  command->add_option("--width", options->width,
                      "Longest line, in units; 0 keeps one line a rule. 100 where none is given, 0 "
                      "for rules that are read as lines and printed as lines");
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
