// `orkrule tables` and `orkrule fields`: the names that rules may use, read from the database.
#include "Calls.h"
#include "Commands.h"
#include "Table.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct NamesOptions {
  EngineOptions engine;
  std::string name;
  bool json = false;
};

/// The answer to a call for names; what the database did not answer ends the run.
Json Asked(const NamesOptions& options, const Json& request) {
  Calls calls{EngineSetup(options.engine)};
  Json answer = calls.Ask(request);
  if (options.json) PrintJson(answer);
  CheckAnswered(answer);
  return answer;
}

ExitStatus Tables(const NamesOptions& options) {
  const Json answer = Asked(options, {{"op", "Tables"}, {"like", options.name}});
  if (options.json) return kDone;
  for (const Json& table : answer.at("tables")) Print(table.get<std::string>() + "\n");
  if (answer.at("more") == true) PrintError("orkrule: there are more tables than these\n");
  return kDone;
}

ExitStatus Fields(const NamesOptions& options) {
  const Json answer = Asked(options, {{"op", "Fields"}, {"table", options.name}});
  if (options.json) return kDone;
  std::vector<TableRow> rows;
  for (const Json& field : answer.at("fields")) {
    rows.push_back({field.at("name").get<std::string>(), field.at("dataType").get<std::string>(),
                    field.at("realName").get<std::string>()});
  }
  Print(TableText(rows));
  return kDone;
}

void AddNamesOptions(CLI::App& command, NamesOptions& options) {
  command.add_flag("--json", options.json, "Write the answer as JSON");
  AddLanguageOption(command);
  AddEngineOptions(command, options.engine);
}

}  // namespace

void AddTablesCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command = tool.add_subcommand("tables", "List the data tables of the database");
  const auto options = std::make_shared<NamesOptions>();
  command->add_option("LIKE", options->name, "Only those that contain this text, in any case");
  AddNamesOptions(*command, *options);
  command->footer("Example:\n  orkrule tables --db examples/shop.db or");
  command->callback([options, &status] { status = Tables(*options); });
}

void AddFieldsCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command = tool.add_subcommand(
      "fields", "List the fields of a data table, with their types and real names");
  const auto options = std::make_shared<NamesOptions>();
  command->add_option("TABLE", options->name, "The data table")->required();
  AddNamesOptions(*command, *options);
  command->footer("Example:\n  orkrule fields --db examples/shop.db Stock");
  command->callback([options, &status] { status = Fields(*options); });
}

}  // namespace ORKTOOL
