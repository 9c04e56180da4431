// `orkrule uses`: do these rules name one of these tables? Answered from the text alone.
#include "Commands.h"
#include "RuleInput.h"
#include "Text.h"

#include "MxExpression.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct UsesOptions {
  RuleOptions rules;
  std::string tables;
};

ExitStatus Run(const UsesOptions& options) {
  ORKBASE::MxExpression engine;
  const std::u16string tables = Wide(options.tables);
  RuleInput input(options.rules);
  while (const std::optional<Rule> rule = input.Next()) {
    const bool uses = engine.IsDtsInExp(tables, rule->text);
    if (options.rules.json) {
      PrintJson({{"rule", ToUtf8(rule->text)}, {"uses", uses}});
    } else {
      Print(uses ? "yes\n" : "no\n");
    }
  }
  return kDone;
}

}  // namespace

void AddUsesCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command = tool.add_subcommand("uses", "Tell whether rules use data tables");
  const auto options = std::make_shared<UsesOptions>();
  AddRuleOptions(*command, options->rules);
  command->add_option("--tables", options->tables, "The tables in question: A,B")->required();
  AddLanguageOption(*command);
  command->footer("Example:\n  orkrule uses --tables Orders,Stock \"Orders.Amount > T.a\"");
  command->callback([options, &status] { status = Run(*options); });
}

}  // namespace ORKTOOL
