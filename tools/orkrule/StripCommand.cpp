// `orkrule strip`: cut out of rules what depends on data tables.
#include "Commands.h"
#include "Engine.h"
#include "Report.h"
#include "RuleInput.h"
#include "Text.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct StripOptions {
  EngineOptions engine;
  RuleOptions rules;
  std::string tables;
};

/// The rule without the tables, or why it was refused. The first verification loads the tables that
/// the rule names: only a field whose table is loaded carries its name as it was written.
std::optional<Refusal> Strip(ORKBASE::MxExpression& rules, const Rule& rule,
                             const std::u16string& tables, std::u16string& out) {
  const Verification made = VerifyRule(rules, rule.type, rule.text);
  if (!made.type) return RefusalOf(made.error);
  out = rule.text;
  rules.RemoveDt(out, tables, *made.type);
  if (rules.errNumber() != 0) return RefusalOf(rules.errRecord());
  return std::nullopt;
}

void Show(const StripOptions& options, const Rule& rule, const std::u16string& stripped,
          const std::optional<Refusal>& refusal) {
  if (!options.rules.json) {
    if (refusal) {
      ReportRefusal(rule, *refusal);
    } else {
      Print(ToUtf8(stripped) + "\n");
    }
    return;
  }
  Json json = {{"rule", ToUtf8(rule.text)}};
  if (refusal) {
    json["error"] = RefusalJson(rule.text, *refusal);
  } else {
    json["stripped"] = ToUtf8(stripped);
  }
  PrintJson(json);
}

ExitStatus Run(const StripOptions& options) {
  Engine engine{EngineSetup(options.engine)};
  const std::u16string tables = Wide(options.tables);
  RuleInput input(options.rules);
  ExitStatus status = kDone;
  while (const std::optional<Rule> rule = input.Next()) {
    std::u16string stripped;
    const std::optional<Refusal> refusal = Strip(engine.Rules(), *rule, tables, stripped);
    if (refusal) status = kRefused;
    Show(options, *rule, stripped, refusal);
  }
  return status;
}

}  // namespace

void AddStripCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("strip", "Cut out of rules what depends on data tables");
  const auto options = std::make_shared<StripOptions>();
  AddRuleOptions(*command, options->rules);
  AddTypeOption(*command, options->rules);
  command->add_option("--tables", options->tables, "The tables to cut out: A,B")->required();
  AddLanguageOption(*command);
  AddEngineOptions(*command, options->engine);
  command->footer(
      "Example:\n  orkrule strip --db examples/shop.db --type logic --tables Orders \\\n"
      "    \"Orders.Amount > 1 and T.a > 2\"");
  command->callback([options, &status] { status = Run(*options); });
}

}  // namespace ORKTOOL
