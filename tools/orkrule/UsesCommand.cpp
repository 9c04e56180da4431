// `orkrule uses`: do these rules name one of these tables? Answered from the text alone. With
// --list the words themselves that rules depend on.
#include "Calls.h"
#include "Commands.h"
#include "RuleInput.h"
#include "Table.h"
#include "Text.h"

#include "MxExpression.h"

#include <algorithm>
#include <memory>

namespace ORKTOOL {
namespace {

struct UsesOptions {
  EngineOptions engine;
  RuleOptions rules;
  std::optional<std::string> tables;
  bool list = false;
};

/// Kind and name of each word, behind the place of its rule.
void ShowWords(const Rule& rule, const Json& answer) {
  std::vector<TableRow> rows;
  for (const Json& use : answer.at("uses")) {
    TableRow row = {use.at("kind").get<std::string>(), use.at("name").get<std::string>()};
    if (!rule.place.empty()) row.insert(row.begin(), rule.place + ":");
    rows.push_back(std::move(row));
  }
  Print(TableText(rows));
}

bool HasUnknownWord(const Json& answer) {
  const Json& uses = answer.at("uses");
  const auto isUnknown = [](const Json& use) { return use.at("kind") == "unknown"; };
  return std::any_of(uses.begin(), uses.end(), isUnknown);
}

ExitStatus List(const UsesOptions& options) {
  Calls calls{EngineSetup(options.engine)};
  RuleInput input(options.rules);
  while (const std::optional<Rule> rule = input.Next()) {
    const Json answer = calls.Ask({{"op", "Uses"}, {"expression", ToUtf8(rule->text)}});
    if (HasUnknownWord(answer)) calls.Reach();  // it may be the database that is to blame
    if (options.rules.json) {
      PrintJson(answer);
    } else {
      ShowWords(*rule, answer);
    }
  }
  return kDone;
}

ExitStatus Run(const UsesOptions& options) {
  if (options.list) return List(options);
  if (!options.tables) throw Failure{kBadUsage, "--tables or --list is required"};
  const std::u16string tables = Wide(*options.tables);
  ORKBASE::MxExpression engine;
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
  CLI::App* const command =
      tool.add_subcommand("uses", "Tell whether rules use data tables, or what they use");
  const auto options = std::make_shared<UsesOptions>();
  AddRuleOptions(*command, options->rules);
  command->add_option("--tables", options->tables, "The tables in question: A,B");
  command->add_flag("--list", options->list, "List the words that each rule depends on")
      ->excludes(command->get_option("--tables"));
  AddLanguageOption(*command);
  AddEngineOptions(*command, options->engine);
  command->footer(
      "Example:\n  orkrule uses --tables Orders,Stock \"Orders.Amount > T.a\"\n"
      "  orkrule uses --db examples/shop.db --list \"sum(Orders.Amount) > T.a\"");
  command->callback([options, &status] { status = Run(*options); });
}

}  // namespace ORKTOOL
