// `orkrule complete` and `orkrule explain`: what an editor shows at a place in a rule.
#include "Calls.h"
#include "Commands.h"
#include "Table.h"
#include "Text.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct PlaceOptions {
  EngineOptions engine;
  std::string rule;
  std::optional<std::int32_t> offset;
  std::string type = "auto";
  std::int32_t limit = 100;
  bool all = false;
  bool json = false;
};

std::int32_t UnitsOf(const std::string& rule) {
  return static_cast<std::int32_t>(Wide(rule).size());
}

std::string MemberText(const Json& record, const char* name) {
  return record.value(name, "");
}

/// The type that a rule is completed as. One that may be a value or a condition is completed as a
/// condition, which begins with a value.
std::int32_t CompletedType(const std::string& type) {
  const ORKBASE::MXRULE_DATATYPE asked = TypeOf(type).value_or(kEitherType);
  return static_cast<std::int32_t>(asked == kEitherType ? ORKBASE::kLogicDataType : asked);
}

void ShowItems(const Json& answer) {
  std::vector<TableRow> rows;
  for (const Json& item : answer.at("items")) {
    const std::string reason = MemberText(item, "reason");
    rows.push_back({MemberText(item, "text"), MemberText(item, "kind"),
                    MemberText(item, "dataType"),
                    reason.empty() ? MemberText(item, "signature") : "(" + reason + ")"});
  }
  for (const Json& type : answer.at("constants")) {
    rows.push_back({"", "constant", type.get<std::string>()});
  }
  Print(TableText(rows));
  if (answer.at("more") == true) PrintError("orkrule: there are more, --limit 0 lists all\n");
  if (answer.at("unsure") == true) {
    PrintError("orkrule: what stands before the place is no beginning of a rule\n");
  }
}

ExitStatus Complete(const PlaceOptions& options) {
  Calls calls{EngineSetup(options.engine)};
  const Json answer = calls.Ask({{"op", "Complete"},
                                 {"type", CompletedType(options.type)},
                                 {"expression", options.rule},
                                 {"offset", options.offset.value_or(UnitsOf(options.rule))},
                                 {"limit", options.limit},
                                 {"all", options.all}});
  if (options.json) {
    PrintJson(answer);
  } else {
    ShowItems(answer);
  }
  return kDone;
}

void ShowExplanation(const Json& answer) {
  if (MemberText(answer, "kind").empty()) return;
  Print(TableText(
      {{MemberText(answer, "name"), MemberText(answer, "kind"), MemberText(answer, "dataType")}}));
  const std::string text = MemberText(answer, "text");
  if (!text.empty()) Print("  " + text + "\n");
  std::vector<TableRow> rows;
  for (const auto& [dialect, sql] : answer.at("sql").items()) {
    rows.push_back({"  " + dialect, sql.get<std::string>()});
  }
  Print(TableText(rows));
}

ExitStatus Explain(const PlaceOptions& options) {
  Calls calls{EngineSetup(options.engine)};
  const Json answer = calls.Ask(
      {{"op", "Explain"}, {"expression", options.rule}, {"offset", options.offset.value_or(0)}});
  if (options.json) {
    PrintJson(answer);
  } else {
    ShowExplanation(answer);
  }
  return kDone;
}

void AddPlaceOptions(CLI::App& command, PlaceOptions& options, const char* where) {
  command.add_option("RULE", options.rule, "The rule; put -- before one that begins with a minus")
      ->required();
  command.add_option("--offset", options.offset,
                     std::string("The place, in units of UTF-16 from 0; ") + where);
  command.add_flag("--json", options.json, "Write the answer as JSON");
  AddLanguageOption(command);
  AddTablesOption(command, options.engine);
  AddEngineOptions(command, options.engine);
}

}  // namespace

void AddCompleteCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("complete", "List what may stand at a place in a rule");
  const auto options = std::make_shared<PlaceOptions>();
  AddPlaceOptions(*command, *options, "else the end");
  AddTypeOption(*command, options->type);
  command->add_option("--limit", options->limit, "How many at most, 0 for all")
      ->capture_default_str();
  command->add_flag("--all", options->all, "Those that may not stand there too, with the reason");
  command->footer(
      "Example:\n  orkrule complete --db examples/shop.db --type logic --tables Orders \\\n"
      "    \"Orders.Amount > Or\"");
  command->callback([options, &status] { status = Complete(*options); });
}

void AddExplainCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command = tool.add_subcommand("explain", "Tell what a word of a rule is");
  const auto options = std::make_shared<PlaceOptions>();
  AddPlaceOptions(*command, *options, "else the beginning");
  command->footer(
      "Example:\n  orkrule explain ROUND\n"
      "  orkrule explain --db examples/shop.db --offset 6 \"1 + 2 * Orders.Amount\"");
  command->callback([options, &status] { status = Explain(*options); });
}

}  // namespace ORKTOOL
