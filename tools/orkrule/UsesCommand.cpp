// `orkrule uses`: do these rules name one of these tables? Answered from the text alone. With
// --list the words themselves that rules depend on.
#include "Calls.h"
#include "Commands.h"
#include "NameCase.h"
#include "RuleAnswers.h"
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
  RuleAnswers answers(options.rules, {.lines = 0});
  while (const std::optional<Rule> rule = input.Next()) {
    if (answers.IsUnreadable(*rule)) continue;
    answers.Count(false);
    const Json answer = calls.Ask({{"op", "Uses"}, {"expression", ToUtf8(rule->text)}});
    if (HasUnknownWord(answer)) calls.Reach();  // it may be the database that is to blame
    if (options.rules.json) {
      Json json = RuleMember(options.rules, rule->text);
      json.update(answer);
      RuleAnswers::PrintRecord(rule->given, json);
    } else {
      ShowWords(*rule, answer);
    }
  }
  return answers.End();
}

/// Whether rules use tables. The engine takes a name in any case; what it finds in another one only
/// is told.
class UsesRun {
 public:
  UsesRun(const UsesOptions& options, const std::u16string& tables)
      : options_(options),
        tables_(tables),
        case_(NamesOf(tables), {}, u"[]"),
        answers_(options.rules) {}

  ExitStatus All() {
    RuleInput input(options_.rules);
    while (const std::optional<Rule> rule = input.Next()) {
      if (answers_.IsUnreadable(*rule)) continue;
      answers_.Count(false);
      Show(*rule, engine_.IsDtsInExp(tables_, rule->text));
    }
    return answers_.End();
  }

 private:
  static std::vector<std::u16string> NamesOf(std::u16string_view list) {
    std::vector<std::u16string> names;
    while (!list.empty()) {
      const std::size_t end = std::min(list.find(u','), list.size());
      names.emplace_back(list.substr(0, end));
      list.remove_prefix(std::min(end + 1, list.size()));
    }
    return names;
  }

  void Show(const Rule& rule, bool uses) {
    std::vector<CaseDifference> differences;
    if (uses) differences = OtherCaseAlone(rule.text);
    if (options_.rules.json) {
      Json json = RuleMember(options_.rules, rule.text);
      json["uses"] = uses;
      json["differsInCase"] = CaseJson(differences);
      RuleAnswers::PrintRecord(rule.given, json);
      return;
    }
    Print(uses ? "yes\n" : "no\n");
    for (const CaseDifference& each : differences) {
      PrintError(CaseNotice(rule, each, "was counted"));
    }
  }

  /// The tables that the rule uses, but never in their own case.
  std::vector<CaseDifference> OtherCaseAlone(const std::u16string& rule) {
    NamesFound found = case_.In(rule);
    std::erase_if(found.tables, [&](const CaseDifference& each) {
      return found.exact.contains(each.name) || !engine_.IsDtsInExp(each.name, rule);
    });
    return found.tables;
  }

  const UsesOptions& options_;
  std::u16string tables_;
  NameCase case_;
  RuleAnswers answers_;
  ORKBASE::MxExpression engine_;
};

ExitStatus Run(const UsesOptions& options) {
  if (options.list) return List(options);
  if (!options.tables) throw Failure{kBadUsage, "--tables or --list is required"};
  return UsesRun(options, Wide(*options.tables)).All();
}

}  // namespace

void AddUsesCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("uses", "Tell whether rules use data tables, or what they use");
  const auto options = std::make_shared<UsesOptions>();
  AddRuleOptions(*command, options->rules);
  command->add_option("--tables", options->tables, "The tables in question, in any case: A,B");
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
