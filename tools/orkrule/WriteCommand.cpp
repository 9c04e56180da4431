// `orkrule write`: documents back to rules, in any language.
#include "Commands.h"
#include "DocumentInput.h"
#include "Engine.h"
#include "Report.h"
#include "RuleAnswers.h"
#include "Text.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct DocumentWriteOptions {
  EngineOptions engine;
  RuleOptions documents;
};

/// The rule, or why there is none: behind that stands why the rule that was written is refused.
std::optional<Refusal> Write(ORKBASE::RuleAuthoring& authoring, const Document& document,
                             std::u16string& rule) {
  if (authoring.Write(document.text, rule)) return std::nullopt;
  const ORKBASE::MxErrorRecord& error = authoring.errRecord();
  Refusal refusal = RefusalOf(error);
  if (!error.behind.empty()) {
    const Refusal behind = RefusalOf(error.behind.front());
    refusal.hint = behind.text + (behind.hint.empty() ? u"" : u" ") + behind.hint;
  }
  return refusal;
}

/// What `batch` answers, and the error as the other commands tell it. A document that gives no rule
/// leaves one that stands beside it alone.
Json JsonOf(const Document& document, const std::u16string& rule,
            const std::optional<Refusal>& refusal) {
  Json json = {{"result", !refusal}};
  if (!refusal || !document.given.Find("expression")) json["expression"] = ToUtf8(rule);
  json["errNumber"] = refusal ? -1 : 0;
  json["errDescription"] = refusal ? ToUtf8(refusal->text) : "";
  if (refusal) json["error"] = RefusalJson(rule, *refusal);
  return json;
}

void Tell(const Document& document, const Refusal& refusal) {
  const std::string place = document.place.empty() ? "" : document.place + ": ";
  const std::string hint = refusal.hint.empty() ? "" : " " + ToUtf8(refusal.hint);
  PrintError("orkrule: " + place + ToUtf8(refusal.text) + hint + "\n");
}

ExitStatus Run(const DocumentWriteOptions& options) {
  Engine engine{EngineSetup(options.engine)};
  DocumentInput input(options.documents);
  RuleAnswers answers(options.documents, {.one = "document", .several = "documents"});
  while (const std::optional<Document> document = input.Next()) {
    if (answers.IsUnreadable(document->unreadable, document->given)) continue;
    std::u16string rule;
    const std::optional<Refusal> refusal = Write(engine.Authoring(), *document, rule);
    answers.Count(refusal.has_value());
    if (options.documents.json) {
      RuleAnswers::PrintRecord(document->given, JsonOf(*document, rule, refusal));
    } else if (!refusal) {
      Print(ToUtf8(rule) + "\n");
    } else {
      Tell(*document, *refusal);
      answers.SkipLines(document->place);
    }
  }
  return answers.End();
}

}  // namespace

void AddWriteCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command = tool.add_subcommand("write", "Write documents as rules");
  const auto options = std::make_shared<DocumentWriteOptions>();
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
