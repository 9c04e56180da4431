// `orkrule strip`: cut out of rules what depends on data tables.
#include "Commands.h"
#include "Engine.h"
#include "Report.h"
#include "RuleAnswers.h"
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
std::optional<Refusal> Strip(Engine& engine, const Rule& rule, const std::u16string& tables,
                             std::u16string& out) {
  ORKBASE::MxExpression& rules = engine.Rules();
  const Verification made = VerifyRule(rules, rule.type, rule.text);
  if (!made.type) {
    Refusal refusal = RefusalOf(made.error);
    AddAdvice(refusal, engine.Authoring(), made.tried, rule);
    return refusal;
  }
  out = rule.text;
  rules.RemoveDt(out, tables, *made.type);
  if (rules.errNumber() != 0) return RefusalOf(rules.errRecord());
  return std::nullopt;
}

void Show(const StripOptions& options, const Rule& rule, const std::u16string& stripped,
          const std::optional<Refusal>& refusal, const RuleAnswers& answers) {
  if (options.rules.json) {
    Json json = RuleMember(options.rules, refusal ? rule.text : stripped);
    json["original"] = ToUtf8(rule.text);
    if (refusal) json["error"] = RefusalJson(rule.text, *refusal);
    RuleAnswers::PrintRecord(rule.given, json);
  } else if (refusal) {
    ReportRefusal(rule, *refusal);
    answers.SkipLines(rule.place);
  } else {
    Print(rule.before + ToUtf8(stripped) + "\n");
  }
}

ExitStatus Run(const StripOptions& options) {
  Engine engine{EngineSetup(options.engine)};
  const std::u16string tables = Wide(options.tables);
  RuleInput input(options.rules);
  RuleAnswers answers(options.rules);
  while (const std::optional<Rule> rule = input.Next()) {
    if (answers.IsUnreadable(*rule)) continue;
    std::u16string stripped;
    const std::optional<Refusal> refusal = Strip(engine, *rule, tables, stripped);
    answers.Count(refusal.has_value());
    Show(options, *rule, stripped, refusal, answers);
  }
  return answers.End();
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
