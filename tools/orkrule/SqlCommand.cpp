// `orkrule sql`: rules to SQL, for one dialect or for all of them under each other.
#include "Commands.h"
#include "Engine.h"
#include "Report.h"
#include "RuleInput.h"
#include "Text.h"

#include "Mx_Exception.h"

#include <deque>
#include <memory>

namespace ORKTOOL {
namespace {

constexpr std::size_t kDialectColumn = 11;
constexpr std::size_t kPartColumn = 8;

struct SqlOptions {
  EngineOptions engine;
  RuleOptions rules;
  std::string dialect = "default";
  bool split = false;
};

/// What one dialect made of a rule.
struct Translation {
  bool verified = false;
  std::optional<Refusal> refusal;
  std::u16string a;
  std::u16string b;
};

class SqlRun {
 public:
  explicit SqlRun(const SqlOptions& options) : options_(options) {
    const EngineSetup setup(options.engine);
    for (const NamedDialect& dialect : DialectsOf(options.dialect)) {
      engines_.emplace_back(setup, dialect);
    }
  }

  ExitStatus All() {
    RuleInput input(options_.rules);
    ExitStatus status = kDone;
    while (const std::optional<Rule> rule = input.Next()) {
      if (!One(*rule)) status = kRefused;
    }
    return status;
  }

 private:
  bool One(const Rule& rule) {
    std::vector<Translation> made;
    bool good = true;
    for (Engine& engine : engines_) {
      made.push_back(Translate(engine, rule));
      good = good && !made.back().refusal;
    }
    if (options_.rules.json) {
      PrintJson(JsonOf(rule, made));
    } else {
      Show(rule, made);
    }
    return good;
  }

  Translation Translate(Engine& engine, const Rule& rule) const {
    Translation made;
    std::u16string translated;
    const Verification verification = VerifyRule(engine.Rules(), rule.type, rule.text);
    made.verified = verification.type.has_value();
    if (!made.verified) {
      made.refusal = RefusalOf(verification.error);
      return made;
    }
    ORKBASE::MxExpression& rules = engine.Translating();
    try {
      if (!rules.GetSpec(verification.document, engine.Dialect().dsType, translated, made.a, made.b,
                         options_.split)) {
        made.refusal = Refusal{rules.errNumber(), rules.errDescription()};
      }
    } catch (const ORKBASE::Mx_Exception& refused) {
      made.refusal = Refusal{-1, refused.message};
    }
    return made;
  }

  void Show(const Rule& rule, const std::vector<Translation>& made) const {
    if (engines_.size() == 1 || !made.front().verified) {
      const Translation& first = made.front();
      if (first.refusal) {
        ReportRefusal(rule, *first.refusal);
      } else {
        Print(Sql(first, ""));
      }
      return;
    }
    for (std::size_t i = 0; i < made.size(); ++i) {
      const std::string name = Padded(engines_[i].Dialect().name, kDialectColumn);
      const std::optional<Refusal>& refusal = made[i].refusal;
      Print(refusal ? name + "refused: " + ToUtf8(refusal->text) + "\n" : Sql(made[i], name));
    }
  }

  std::string Sql(const Translation& made, const std::string& name) const {
    if (!options_.split) return name + ToUtf8(made.a) + "\n";
    return name + Padded("where", kPartColumn) + ToUtf8(made.a) + "\n" +
           std::string(name.size(), ' ') + Padded("having", kPartColumn) + ToUtf8(made.b) + "\n";
  }

  Json JsonOf(const Rule& rule, const std::vector<Translation>& made) const {
    Json json = {{"rule", ToUtf8(rule.text)}};
    if (options_.dialect != "all") {
      AddTo(json, rule, 0, made.front());
      return json;
    }
    json["dialects"] = Json::array();
    for (std::size_t i = 0; i < made.size(); ++i) {
      json["dialects"].push_back(Json::object());
      AddTo(json["dialects"].back(), rule, i, made[i]);
    }
    return json;
  }

  void AddTo(Json& json, const Rule& rule, std::size_t engine, const Translation& made) const {
    json["dialect"] = engines_[engine].Dialect().name;
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
  std::deque<Engine> engines_;
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
  AddLanguageOption(*command);
  AddTablesOption(*command, options->engine);
  AddEngineOptions(*command, options->engine);
  command->footer(
      "Example:\n  orkrule sql --db examples/shop.db --type logic --dialect all \\\n"
      "    --split \"Orders.Amount > 1 and sum(Orders.Qty) > 2\"");
  command->callback([options, &status] { status = SqlRun(*options).All(); });
}

}  // namespace ORKTOOL
