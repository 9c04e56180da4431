// `orkrule rename`: new names of tables and fields, carried into rules. With --check the renamed
// rules are verified too: all rules are read and verified once under their old names, which loads
// their tables, then the loaded dictionaries take the new names. A database that has the new names
// already is found by the second verification.
#include "Commands.h"
#include "Engine.h"
#include "Interrupt.h"
#include "NameCase.h"
#include "RenameLists.h"
#include "Report.h"
#include "RuleAnswers.h"
#include "RuleInput.h"
#include "Text.h"

#include "MxLexicalAnalyzer.h"

#include <memory>

namespace ORKTOOL {
namespace {

constexpr std::int32_t kTooLong = 6703;  // the number of a message, which is for ever

struct RenameOptions {
  EngineOptions engine;
  RuleOptions rules;
  std::string dialect = "default";
  std::string tables;
  std::string fields;
  bool check = false;
  bool changed = false;
  bool ignoreCase = false;
};

struct NewNames {
  std::vector<NewName> tables;
  std::vector<NewName> fields;  ///< under the new names of their tables
};

class RenameRun {
 public:
  explicit RenameRun(const RenameOptions& options)
      : options_(options),
        names_(NamesOf(options)),
        tables_(ListOf(names_.tables)),
        fields_(ListOf(names_.fields)),
        dialect_(DialectsOf(options.dialect).front().number),
        case_(OldNames(names_.tables), FieldsToday(names_.fields, names_.tables),
              dialect_ == ORKBASE::kSqlServerDs ? u"[]" : u"\""),
        answers_(options.rules, {.lines = options.changed ? 0U : 1U}),
        engine_(EngineSetup(options.engine), dialect_) {}

  ExitStatus All() {
    RuleInput input(options_.rules);
    if (options_.check) {
      CheckedAll(input);
    } else {
      while (const std::optional<Rule> rule = input.Next()) {
        if (!answers_.IsUnreadable(*rule)) Answer(*rule, Renamed(*rule));
      }
    }
    if (!options_.rules.rule) {
      PrintError("orkrule: renamed " + std::to_string(renamed_) + " of " +
                 Counted(answers_.Total(), "rule", "rules") + "\n");
    }
    return answers_.End();
  }

 private:
  struct RenamedRule {
    std::u16string text;  ///< as it was where the new names make it too long
    std::optional<Refusal> refusal = std::nullopt;
    std::vector<CaseDifference> left = {};
  };

  static NewNames NamesOf(const RenameOptions& options) {
    NewNames names;
    names.tables = ReadNewNames(Wide(options.tables), false);
    names.fields = UnderNewTables(ReadNewNames(Wide(options.fields), true), names.tables);
    return names;
  }

  static std::vector<std::u16string> OldNames(const std::vector<NewName>& names) {
    std::vector<std::u16string> olds;
    olds.reserve(names.size());
    for (const NewName& name : names) olds.push_back(name.from);
    return olds;
  }

  RenamedRule Renamed(const Rule& rule) const {
    const NamesFound found = case_.In(rule.text);
    RenamedRule renamed;
    ORKBASE::MxLexicalAnalyzer lexer;
    lexer.ChangeExpWithNewDtDfNames(dialect_, tables_, fields_,
                                    options_.ignoreCase ? found.text : rule.text, renamed.text);
    if (lexer.ErrNumber() != 0) {
      renamed.text = rule.text;
      renamed.refusal = Refusal{kTooLong, lexer.ErrDescription()};
    }
    if (options_.ignoreCase) return renamed;
    renamed.left = found.tables;
    renamed.left.insert(renamed.left.end(), found.fields.begin(), found.fields.end());
    return renamed;
  }

  void CheckedAll(RuleInput& input) {
    std::vector<Rule> rules;
    ORKBASE::MxExpression& engine = engine_.Rules();
    while (std::optional<Rule> rule = input.Next()) {
      if (rule->unreadable.empty()) VerifyRule(engine, rule->type, rule->text);
      rules.push_back(*std::move(rule));
    }
    if (engine.ReplaceDtOrDfNames(tables_, fields_) != 0) {
      throw Failure{kBadUsage, ToUtf8(engine.errDescription())};
    }
    for (const Rule& rule : rules) {
      if (Interrupt::IsAsked()) break;
      if (answers_.IsUnreadable(rule)) continue;
      RenamedRule renamed = Renamed(rule);
      if (!renamed.refusal) Verify(rule, renamed);
      Answer(rule, renamed);
    }
  }

  void Verify(const Rule& rule, RenamedRule& renamed) {
    const Verification made = VerifyRule(engine_.Rules(), rule.type, renamed.text);
    if (!made.type) renamed.refusal = RefusalOf(made.error);
  }

  void Answer(const Rule& rule, const RenamedRule& renamed) {
    const bool changes = !renamed.refusal && renamed.text != rule.text;
    answers_.Count(renamed.refusal.has_value());
    if (changes) ++renamed_;
    if (options_.rules.json) {
      // a refusal is told in its record alone
      if (changes || renamed.refusal || !options_.changed) Record(rule, renamed);
      return;
    }
    if (renamed.refusal) {
      ReportRefusal({renamed.text, rule.place, rule.type}, *renamed.refusal);
      answers_.SkipLines(rule.place);
    } else if (changes || !options_.changed) {
      Print(rule.before + ToUtf8(renamed.text) + "\n");
    }
    for (const CaseDifference& each : renamed.left) PrintError(CaseNotice(rule, each, "was left"));
  }

  /// Of a rule that is refused under its new names too the new text is told, which the places are
  /// of.
  void Record(const Rule& rule, const RenamedRule& renamed) const {
    Json json = RuleMember(options_.rules, renamed.text);
    json["original"] = ToUtf8(rule.text);
    json["differsInCase"] = CaseJson(renamed.left);
    if (renamed.refusal) json["error"] = RefusalJson(renamed.text, *renamed.refusal);
    RuleAnswers::PrintRecord(rule.given, json);
  }

  const RenameOptions& options_;
  NewNames names_;
  std::u16string tables_;
  std::u16string fields_;
  ORKBASE::ORKDB_DSType_ENUM dialect_;
  NameCase case_;
  RuleAnswers answers_;
  Engine engine_;
  std::size_t renamed_ = 0;
};

}  // namespace

void AddRenameCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("rename", "Carry new names of tables and fields into rules");
  const auto options = std::make_shared<RenameOptions>();
  AddRuleOptions(*command, options->rules);
  AddTypeOption(*command, options->rules);
  command->add_option("--tables", options->tables, "Renamed tables: OLD:NEW,OLD:NEW");
  command->add_option("--fields", options->fields,
                      "Renamed fields: TABLE.OLD:NEW; the table by its old or its new name");
  command->add_flag("--check", options->check, "Verify the renamed rules");
  command->add_flag("--changed", options->changed, "Print only the rules that changed");
  command->add_flag("--ignore-case", options->ignoreCase,
                    "Rename names in another case too, which are left and told of without");
  AddDialectOption(*command, options->dialect, false);
  AddLanguageOption(*command);
  AddEngineOptions(*command, options->engine);
  command->footer(
      "Example:\n  orkrule rename --db examples/shop.db --check --type logic --tables Orders:Sales "
      "\\\n"
      "    --fields Orders.Qty:Pieces \"Orders.Amount > Orders.Qty\"");
  command->callback([options, &status] {
    options->rules.needsType = options->check;
    status = RenameRun(*options).All();
  });
}

}  // namespace ORKTOOL
