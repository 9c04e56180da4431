// `orkrule rename`: new names of tables and fields, carried into rules. With --check the renamed
// rules are verified too: all rules are read and verified once under their old names, which loads
// their tables, then the loaded dictionaries take the new names. A database that has the new names
// already is found by the second verification.
#include "Commands.h"
#include "Engine.h"
#include "Report.h"
#include "RuleInput.h"
#include "Text.h"

#include "MxLexicalAnalyzer.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct RenameOptions {
  EngineOptions engine;
  RuleOptions rules;
  std::string dialect = "default";
  std::string tables;
  std::string fields;
  bool check = false;
};

/// Each item of `a:b,c:d` has an old and a new name; for fields the old one has a table.
void CheckList(const std::u16string& list, bool fields) {
  std::size_t begin = 0;
  while (begin < list.size()) {
    const std::size_t end = std::min(list.find(u',', begin), list.size());
    const std::u16string_view item = std::u16string_view(list).substr(begin, end - begin);
    const std::u16string_view old = item.substr(0, item.find(u':'));
    if (item.find(u':') == item.npos || (fields && old.find(u'.') == old.npos)) {
      throw Failure{kBadUsage, "'" + ToUtf8(item) + "' is not of the form " +
                                   (fields ? "TABLE.OLD:NEW" : "OLD:NEW")};
    }
    begin = end + 1;
  }
}

class RenameRun {
 public:
  explicit RenameRun(const RenameOptions& options)
      : options_(options),
        tables_(Wide(options.tables)),
        fields_(Wide(options.fields)),
        dialect_(DialectsOf(options.dialect).front().number),
        engine_(EngineSetup(options.engine), dialect_) {
    CheckList(tables_, false);
    CheckList(fields_, true);
  }

  ExitStatus All() {
    RuleInput input(options_.rules);
    if (options_.check) return CheckedAll(input);
    ExitStatus status = kDone;
    while (const std::optional<Rule> rule = input.Next()) {
      const RenamedRule renamed = Renamed(*rule);
      if (renamed.refusal) status = kRefused;
      Show(*rule, renamed);
    }
    return status;
  }

 private:
  struct RenamedRule {
    std::u16string text;  ///< as it was where the new names make it too long
    std::optional<Refusal> refusal = std::nullopt;
  };

  RenamedRule Renamed(const Rule& rule) const {
    RenamedRule renamed;
    ORKBASE::MxLexicalAnalyzer lexer;
    lexer.ChangeExpWithNewDtDfNames(dialect_, tables_, fields_, rule.text, renamed.text);
    if (lexer.ErrNumber() != 0) {
      renamed.refusal = Refusal{lexer.ErrNumber(), lexer.ErrDescription()};
    }
    return renamed;
  }

  ExitStatus CheckedAll(RuleInput& input) {
    std::vector<Rule> rules;
    ORKBASE::MxExpression& engine = engine_.Rules();
    while (std::optional<Rule> rule = input.Next()) {
      VerifyRule(engine, rule->type, rule->text);
      rules.push_back(*std::move(rule));
    }
    if (engine.ReplaceDtOrDfNames(tables_, fields_) != 0) {
      throw Failure{kBadUsage, ToUtf8(engine.errDescription())};
    }
    ExitStatus status = kDone;
    for (const Rule& rule : rules) {
      RenamedRule renamed = Renamed(rule);
      if (!renamed.refusal) {
        const Verification made = VerifyRule(engine, rule.type, renamed.text);
        if (!made.type) renamed.refusal = RefusalOf(made.error);
      }
      if (renamed.refusal) status = kRefused;
      Show(rule, renamed);
    }
    return status;
  }

  void Show(const Rule& rule, const RenamedRule& renamed) const {
    if (options_.rules.json) {
      Json json = {{"rule", ToUtf8(rule.text)}, {"renamed", ToUtf8(renamed.text)}};
      if (renamed.refusal) json["error"] = RefusalJson(renamed.text, *renamed.refusal);
      PrintJson(json);
      return;
    }
    if (!renamed.refusal) {
      Print(ToUtf8(renamed.text) + "\n");
    } else {
      ReportRefusal({renamed.text, rule.place, rule.type}, *renamed.refusal);
    }
  }

  const RenameOptions& options_;
  std::u16string tables_;
  std::u16string fields_;
  ORKBASE::ORKDB_DSType_ENUM dialect_;
  Engine engine_;
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
                      "Renamed fields: TABLE.OLD:NEW, under the new name of the table");
  command->add_flag("--check", options->check, "Verify the renamed rules");
  AddDialectOption(*command, options->dialect, false);
  AddLanguageOption(*command);
  AddEngineOptions(*command, options->engine);
  command->footer(
      "Example:\n  orkrule rename --db examples/shop.db --check --type logic --tables Orders:Sales "
      "\\\n"
      "    --fields Sales.Qty:Pieces \"Orders.Amount > Orders.Qty\"");
  command->callback([options, &status] { status = RenameRun(*options).All(); });
}

}  // namespace ORKTOOL
