// `orkrule write`: documents back to rules, in any language.
#include "Calls.h"
#include "Commands.h"
#include "DocumentInput.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct WriteOptions {
  EngineOptions engine;
  RuleOptions documents;
};

ExitStatus Run(const WriteOptions& options) {
  Calls calls{EngineSetup(options.engine)};
  DocumentInput input(options.documents);
  ExitStatus status = kDone;
  while (const std::optional<Document> document = input.Next()) {
    const Json answer = calls.Ask({{"op", "Write"}, {"document", document->text}});
    const bool written = answer.at("result").get<bool>();
    if (!written) calls.Reach();  // it may be the database that is to blame
    if (!written) status = kRefused;
    if (options.documents.json) {
      PrintJson(answer);
    } else if (written) {
      Print(answer.at("expression").get<std::string>() + "\n");
    } else {
      const std::string place = document->place.empty() ? "" : document->place + ": ";
      PrintError("orkrule: " + place + answer.at("errDescription").get<std::string>() + "\n");
    }
  }
  return status;
}

}  // namespace

void AddWriteCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command = tool.add_subcommand("write", "Write documents as rules");
  const auto options = std::make_shared<WriteOptions>();
  AddDocumentOptions(*command, options->documents);
  AddLanguageOption(*command);
  AddTablesOption(*command, options->engine);
  AddEngineOptions(*command, options->engine);
  command->footer(
      "Example:\n  orkrule verify --db examples/shop.db --type logic --document \"Orders.Amount > "
      "1\" "
      "|\n    orkrule write --db examples/shop.db --language zh-CN");
  command->callback([options, &status] { status = Run(*options); });
}

}  // namespace ORKTOOL
