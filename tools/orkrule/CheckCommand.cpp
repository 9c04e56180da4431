// `orkrule check`: all that is wrong with rules, or dangerous about them, and what would mend it.
#include "Calls.h"
#include "Commands.h"
#include "Problems.h"
#include "RuleAnswers.h"
#include "RuleInput.h"
#include "Text.h"

#include <unistd.h>

#include <memory>

namespace ORKTOOL {
namespace {

struct CheckOptions {
  EngineOptions engine;
  RuleOptions rules;
  std::string dialect;
  bool split = false;
  bool fix = false;
  std::string colour;
};

/// What became of a rule.
struct Checked {
  Json answer;
  Problems problems;
};

class CheckRun {
 public:
  explicit CheckRun(const CheckOptions& options)
      : options_(options),
        answers_(options.rules, {.lines = options.fix ? 1U : 0U}),
        calls_(EngineSetup(options.engine)),
        numbers_(Json::array()) {
    if (options.dialect.empty()) return;
    for (const ORKBASE::RuleDialect& dialect : DialectsOf(options.dialect)) {
      numbers_.push_back(static_cast<std::int32_t>(dialect.number));
    }
  }

  ExitStatus All() {
    RuleInput input(options_.rules);
    while (const std::optional<Rule> rule = input.Next()) {
      if (answers_.IsUnreadable(*rule)) continue;
      if (options_.fix) {
        Mend(*rule);
      } else {
        Show(*rule, CheckEither(*rule));
      }
      if (isOutage_) return kInputOutput;  // each further rule would ask the database again
    }
    return answers_.End();
  }

 private:
  /// As a value or as a condition where no type is named. Of two refusals the one that got further
  /// through the rule.
  Checked CheckEither(const Rule& rule) {
    if (rule.type != kEitherType) return CheckAs(rule.type, rule);
    Checked value = CheckAs(ORKBASE::kVarDataType, rule);
    if (!HasErrors(value.problems)) return value;
    Checked condition = CheckAs(ORKBASE::kLogicDataType, rule);
    const bool isFurther = !HasErrors(condition.problems) ||
                           condition.problems.front().offset > value.problems.front().offset;
    return isFurther ? condition : value;
  }

  Checked CheckAs(ORKBASE::MXRULE_DATATYPE type, const Rule& rule) {
    Checked checked;
    checked.answer = calls_.Ask({{"op", "Check"},
                                 {"type", static_cast<std::int32_t>(type)},
                                 {"expression", ToUtf8(rule.text)},
                                 {"dsTypes", numbers_},
                                 {"twoParts", options_.split}});
    checked.problems = ProblemsOf(checked.answer);
    if (HasOutage(checked.problems)) calls_.Reach();
    return checked;
  }

  void Show(const Rule& rule, const Checked& checked) {
    if (options_.rules.json) {
      Json json = RuleMember(options_.rules, rule.text);
      json.update(checked.answer);
      RuleAnswers::PrintRecord(rule.given, json);
    } else {
      const Style style = StyleOf(STDOUT_FILENO, options_.colour);
      Print(TextOf("", rule, checked.problems, style));
    }
    Count(checked.problems);
  }

  /// Prints the rule with its fixes; what they leave wrong goes to standard error, or beside it.
  void Mend(const Rule& rule) {
    const Checked before = CheckEither(rule);
    const Rule mended = {ORKBASE::ApplyFirstFixes(rule.text, before.problems), rule.place,
                         rule.type};
    const Checked after = CheckEither(mended);
    if (options_.rules.json) {
      Json json = RuleMember(options_.rules, mended.text);
      json["original"] = ToUtf8(rule.text);
      json.update(after.answer);
      RuleAnswers::PrintRecord(rule.given, json);
      Count(after.problems);
      return;
    }
    Print(rule.before + ToUtf8(mended.text) + "\n");
    Problems left = after.problems;
    std::erase_if(left, [](const ORKBASE::RuleProblem& problem) {
      return problem.severity != ORKBASE::kErrorSeverity;
    });
    PrintError(TextOf("orkrule: ", mended, left, StyleOf(STDERR_FILENO, options_.colour)));
    Count(left);
  }

  static std::string TextOf(const std::string& begin, const Rule& rule, const Problems& problems,
                            const Style& style) {
    std::string text;
    for (const ORKBASE::RuleProblem& problem : problems) {
      text += ProblemText(begin, rule, problem, style);
    }
    const std::u16string hint = LanguageHint(problems);
    if (!hint.empty()) text.append("  ").append(ToUtf8(hint)).append("\n");
    return text;
  }

  void Count(const Problems& problems) {
    isOutage_ = HasOutage(problems);
    answers_.Count(HasErrors(problems));
  }

  const CheckOptions& options_;
  RuleAnswers answers_;
  Calls calls_;
  Json numbers_;  // of the databases that warnings are asked for
  bool isOutage_ = false;
};

}  // namespace

void AddCheckCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("check", "Tell all problems of rules, with what would mend them");
  const auto options = std::make_shared<CheckOptions>();
  AddRuleOptions(*command, options->rules);
  AddTypeOption(*command, options->rules);
  AddDialectOption(*command, options->dialect, true);
  command->add_flag("--split", options->split, "Warn about the two texts of sql --split too");
  command->add_flag("--fix", options->fix, "Print the rule with the first fix of each problem");
  AddColourOption(*command, options->colour);
  AddLanguageOption(*command);
  AddTablesOption(*command, options->engine);
  AddEngineOptions(*command, options->engine);
  command->footer(
      "Example:\n  orkrule check --db examples/shop.db --type logic --fix \\\n"
      "    \"Orders.Amout == 5 && avg(Orders.Qty) > 1\"");
  command->callback([options, &status] { status = CheckRun(*options).All(); });
}

}  // namespace ORKTOOL
