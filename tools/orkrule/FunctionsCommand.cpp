// `orkrule functions`: what each database makes of every function.
#include "Calls.h"
#include "Commands.h"
#include "Table.h"
#include "Text.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct FunctionsOptions {
  EngineOptions engine;
  std::string dialect = "all";
  bool json = false;
};

/// The functions that an application has to supply, in brackets.
std::string NeedsOf(const Json& support) {
  if (!support.contains("needs")) return "";
  std::string names;
  for (const Json& name : support["needs"]) {
    names.append(names.empty() ? "" : ", ").append(name.get<std::string>());
  }
  return "  (" + names + ")";
}

/// Takes out what nobody asked for.
void KeepAsked(Json& answer, const std::vector<std::string>& dialects) {
  for (Json& function : answer.at("functions")) {
    Json kept = Json::object();
    for (const std::string& dialect : dialects) {
      if (function["databases"].contains(dialect)) kept[dialect] = function["databases"][dialect];
    }
    function["databases"] = std::move(kept);
  }
}

/// One line a function with its SQL, or why there is none.
TableRow RowForOne(const Json& function, const std::string& dialect) {
  const Json& support = function.at("databases").value(dialect, Json::object());
  const std::string sql = support.value("sql", "");
  return {function.at("name").get<std::string>(), function.at("dataType").get<std::string>(),
          support.value("state", ""),
          sql.empty() ? support.value("text", "") : sql + NeedsOf(support)};
}

TableRow RowForSeveral(const Json& function, const std::vector<std::string>& dialects) {
  TableRow row = {function.at("name").get<std::string>(),
                  function.at("dataType").get<std::string>()};
  for (const std::string& dialect : dialects) {
    const Json support = function.at("databases").value(dialect, Json::object());
    row.push_back(support.value("state", ""));
  }
  return row;
}

void Show(const Json& answer, const std::vector<std::string>& dialects) {
  std::vector<TableRow> rows;
  const bool isOne = dialects.size() == 1;
  if (!isOne) {
    rows.push_back({"function", "type"});
    rows.back().insert(rows.back().end(), dialects.begin(), dialects.end());
  }
  for (const Json& function : answer.at("functions")) {
    rows.push_back(isOne ? RowForOne(function, dialects[0]) : RowForSeveral(function, dialects));
  }
  Print(TableText(rows));
}

ExitStatus Run(const FunctionsOptions& options) {
  std::vector<std::string> dialects;
  for (const ORKBASE::RuleDialect& dialect : DialectsOf(options.dialect)) {
    dialects.push_back(ToUtf8(dialect.name));
  }
  Calls calls{EngineSetup(options.engine)};
  Json answer = calls.Ask({{"op", "Capabilities"}});
  if (dialects.size() < ORKBASE::RuleDialects().size()) KeepAsked(answer, dialects);
  if (options.json) {
    PrintJson(answer);
  } else {
    Show(answer, dialects);
  }
  return kDone;
}

}  // namespace

void AddFunctionsCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("functions", "Tell what each database makes of every function");
  const auto options = std::make_shared<FunctionsOptions>();
  AddDialectOption(*command, options->dialect, true);
  command->add_flag("--json", options->json, "Write the answer as JSON");
  AddLanguageOption(*command);
  command->footer(
      "native   the database's own form\n"
      "user     calls functions that the application supplies\n"
      "bare     reaches the database under its own name\n"
      "refused  the database has no form for it\n\n"
      "With one dialect: the SQL of a sample call, or why there is none.\n\n"
      "Example:\n  orkrule functions --dialect oracle");
  command->callback([options, &status] { status = Run(*options); });
}

}  // namespace ORKTOOL
