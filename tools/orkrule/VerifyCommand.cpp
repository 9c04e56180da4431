// `orkrule verify`: are these rules valid?
#include "Commands.h"
#include "Engine.h"
#include "Report.h"
#include "RuleAnswers.h"
#include "RuleInput.h"
#include "Text.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct VerifyOptions {
  EngineOptions engine;
  RuleOptions rules;
  bool document = false;
  bool noWarnings = false;
};

Json JsonOf(const VerifyOptions& options, const Rule& rule, const std::u16string& document,
            const std::optional<Refusal>& refusal) {
  Json json = RuleMember(options.rules, rule.text);
  json["valid"] = !refusal;
  if (refusal) {
    json["error"] = RefusalJson(rule.text, *refusal);
  } else if (options.document) {
    json["document"] = ToUtf8(document);
  }
  return json;
}

void Show(const VerifyOptions& options, const Rule& rule, const std::u16string& document,
          const std::optional<Refusal>& refusal, const RuleAnswers& answers) {
  if (options.rules.json) {
    RuleAnswers::PrintRecord(rule.given, JsonOf(options, rule, document, refusal));
  } else if (!refusal) {
    Print(options.document ? ToUtf8(document) + "\n" : "valid\n");
  } else {
    if (!options.document) Print("refused\n");
    ReportRefusal(rule, *refusal);
    if (options.document) answers.SkipLines(rule.place);
  }
}

ExitStatus Run(const VerifyOptions& options) {
  Engine engine{EngineSetup(options.engine)};
  RuleInput input(options.rules);
  RuleAnswers answers(options.rules);
  while (const std::optional<Rule> rule = input.Next()) {
    if (answers.IsUnreadable(*rule)) continue;
    const Verification made = VerifyRule(engine.Rules(), rule->type, rule->text);
    std::optional<Refusal> refusal;
    if (!made.type) {
      refusal = RefusalOf(made.error);
      AddAdvice(*refusal, engine.Authoring(), made.tried, *rule);
    }
    answers.Count(refusal.has_value());
    Show(options, *rule, made.document, refusal, answers);
    const bool warns = made.type && !options.rules.json && !options.noWarnings;
    if (warns) ReportWarnings(*rule, engine.Authoring(), {*made.type});
  }
  return answers.End();
}

}  // namespace

void AddVerifyCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command = tool.add_subcommand("verify", "Verify rules");
  const auto options = std::make_shared<VerifyOptions>();
  AddRuleOptions(*command, options->rules);
  AddTypeOption(*command, options->rules);
  command->add_flag("--document", options->document, "Give the document of each valid rule");
  AddWarningsOption(*command, options->noWarnings);
  AddLanguageOption(*command);
  AddTablesOption(*command, options->engine);
  AddEngineOptions(*command, options->engine);
  command->footer(
      "Example:\n  orkrule verify --db examples/shop.db --type logic \"Orders.Amount > 1\"");
  command->callback([options, &status] { status = Run(*options); });
}

}  // namespace ORKTOOL
