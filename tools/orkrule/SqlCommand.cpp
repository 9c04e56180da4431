// `orkrule sql`: rules to SQL, for one dialect or for several under each other.
#include "Commands.h"
#include "Engine.h"
#include "Report.h"
#include "RuleAnswers.h"
#include "RuleInput.h"
#include "Text.h"
#include "Translation.h"

#include <algorithm>
#include <memory>

namespace ORKTOOL {
namespace {

struct SqlOptions {
  EngineOptions engine;
  RuleOptions rules;
  std::string dialect = "default";
  bool split = false;
  bool noWarnings = false;
};

/// What became of a rule: refused for all dialects, or translated for each.
struct Outcome {
  std::optional<ORKBASE::MXRULE_DATATYPE> type;
  std::optional<Refusal> refusal;
  std::vector<Translation> translations;
};

class SqlRun {
 public:
  explicit SqlRun(const SqlOptions& options)
      : options_(options),
        dialects_(DialectsOf(options.dialect)),
        answers_(options.rules, {.lines = dialects_.size() * (options.split ? 2 : 1)}),
        engine_(EngineSetup(options.engine), dialects_.front().number) {
    for (const ORKBASE::RuleDialect& dialect : dialects_) numbers_.push_back(dialect.number);
  }

  ExitStatus All() {
    RuleInput input(options_.rules);
    while (const std::optional<Rule> rule = input.Next()) {
      if (!answers_.IsUnreadable(*rule)) answers_.Count(!One(*rule));
    }
    return answers_.End();
  }

 private:
  bool One(const Rule& rule) {
    const Outcome outcome = Translate(rule);
    if (options_.rules.json) {
      RuleAnswers::PrintRecord(rule.given, JsonOf(rule, outcome));
    } else {
      Show(rule, outcome);
      Warn(rule, outcome);
    }
    const auto isRefused = [](const Translation& made) { return made.refusal.has_value(); };
    return !outcome.refusal && std::ranges::none_of(outcome.translations, isRefused);
  }

  Outcome Translate(const Rule& rule) {
    Outcome outcome;
    const Verification verification = VerifyRule(engine_.Rules(), rule.type, rule.text);
    if (!verification.type) {
      outcome.refusal = RefusalOf(verification.error);
      AddAdvice(*outcome.refusal, engine_.Authoring(), verification.tried, rule);
      return outcome;
    }
    outcome.type = verification.type;
    for (const ORKBASE::RuleDialect& dialect : dialects_) {
      outcome.translations.push_back(
          TranslateRule(engine_.Rules(), dialect, verification.document, options_.split));
    }
    return outcome;
  }

  bool ForOneDialect() const noexcept { return dialects_.size() == 1; }

  void Show(const Rule& rule, const Outcome& outcome) const {
    const Refusal* const refusal = RefusalForAll(outcome);
    if (refusal) {
      ReportRefusal(rule, *refusal);
      answers_.SkipLines(rule.place);
      return;
    }
    for (std::size_t i = 0; i < dialects_.size(); ++i) {
      const Translation& made = outcome.translations[i];
      const std::string name =
          ForOneDialect() ? "" : Padded(ToUtf8(dialects_[i].name), kDialectColumn);
      Print(made.refusal ? Refused(*made.refusal, rule, name) : Sql(made, name));
    }
  }

  /// As many lines as the SQL would have been where the output is to stay in step.
  std::string Refused(const Refusal& refusal, const Rule& rule, const std::string& name) const {
    const bool isStep = options_.split && !rule.place.empty();
    return name + "refused: " + ToUtf8(refusal.text) + (isStep ? "\n\n" : "\n");
  }

  void Warn(const Rule& rule, const Outcome& outcome) {
    if (options_.noWarnings || RefusalForAll(outcome) != nullptr) return;
    ReportWarnings(rule, engine_.Authoring(), {*outcome.type, numbers_, options_.split});
  }

  /// Of the rule, or of the only dialect.
  const Refusal* RefusalForAll(const Outcome& outcome) const {
    const std::optional<Refusal>& refusal =
        outcome.refusal || !ForOneDialect() ? outcome.refusal : outcome.translations[0].refusal;
    return refusal ? &*refusal : nullptr;
  }

  std::string Sql(const Translation& made, const std::string& name) const {
    if (!options_.split) return name + ToUtf8(made.a) + "\n";
    return name + Padded("where", kPartColumn) + ToUtf8(made.a) + "\n" +
           std::string(name.size(), ' ') + Padded("having", kPartColumn) + ToUtf8(made.b) + "\n";
  }

  Json JsonOf(const Rule& rule, const Outcome& outcome) const {
    Json json = RuleMember(options_.rules, rule.text);
    if (ForOneDialect()) {
      AddTo(json, rule, 0, outcome);
      return json;
    }
    json["dialects"] = Json::array();
    for (std::size_t i = 0; i < dialects_.size(); ++i) {
      json["dialects"].push_back(Json::object());
      AddTo(json["dialects"].back(), rule, i, outcome);
    }
    return json;
  }

  void AddTo(Json& json, const Rule& rule, std::size_t dialect, const Outcome& outcome) const {
    json["dialect"] = ToUtf8(dialects_[dialect].name);
    if (outcome.refusal) {
      json["error"] = RefusalJson(rule.text, *outcome.refusal);
      return;
    }
    const Translation& made = outcome.translations[dialect];
    if (made.refusal) {
      json["error"] = RefusalJson(rule.text, *made.refusal);
    } else if (options_.split) {
      json["where"] = ToUtf8(made.a);
      json["having"] = ToUtf8(made.b);
    } else {
      json["sql"] = ToUtf8(made.a);
    }
  }

  const SqlOptions& options_;
  std::vector<ORKBASE::RuleDialect> dialects_;
  std::vector<ORKBASE::ORKDB_DSType_ENUM> numbers_;  // of the dialects
  RuleAnswers answers_;
  Engine engine_;
};

}  // namespace

void AddSqlCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command = tool.add_subcommand("sql", "Translate rules to SQL");
  const auto options = std::make_shared<SqlOptions>();
  AddRuleOptions(*command, options->rules);
  AddTypeOption(*command, options->rules);
  AddDialectOption(*command, options->dialect, true);
  command->add_flag("--split", options->split,
                    "Two texts: what a plain filter takes, and what a grouped query's does");
  AddWarningsOption(*command, options->noWarnings);
  AddLanguageOption(*command);
  AddTablesOption(*command, options->engine);
  AddEngineOptions(*command, options->engine);
  command->footer(
      "Example:\n  orkrule sql --db examples/shop.db --type logic --dialect all \\\n"
      "    --split \"Orders.Amount > 1 and sum(Orders.Qty) > 2\"");
  command->callback([options, &status] { status = SqlRun(*options).All(); });
}

}  // namespace ORKTOOL
