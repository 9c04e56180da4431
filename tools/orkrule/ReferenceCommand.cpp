// `orkrule reference`: makes the documents of the rule language out of their templates. For those
// who work on the library: the help does not list it.
#include "Commands.h"
#include "Engine.h"
#include "LineReader.h"
#include "Reference.h"

#include <memory>

namespace ORKTOOL {
namespace {

struct ReferenceOptions {
  EngineOptions engine;
  std::string language;
  std::string file;
  std::string functions;
  std::string words;
  std::string habits;
};

ExitStatus Run(const ReferenceOptions& options) {
  ReferenceLists lists;
  if (!options.functions.empty()) lists.functions = ReadListFile(options.functions, 2);
  if (!options.words.empty()) lists.words = ReadListFile(options.words, 3);
  if (!options.habits.empty()) lists.habits = ReadListFile(options.habits, 3);
  ReferenceRules rules(EngineSetup(options.engine), options.language);
  Print(Reference(rules, lists).Fill(ReadFile(options.file), options.file));
  return kDone;
}

}  // namespace

void AddReferenceCommand(CLI::App& tool, ExitStatus& status) {
  CLI::App* const command =
      tool.add_subcommand("reference", "Fill a template of the language reference");
  const auto options = std::make_shared<ReferenceOptions>();
  command->group("");
  command->add_option("--language", options->language, "Language of the template")->required();
  command->add_option("--template", options->file, "The template")->required();
  command->add_option("--functions", options->functions, "List of an example for each function");
  command->add_option("--words", options->words, "List of an example for each other word");
  command->add_option("--habits", options->habits, "List of what other systems write");
  AddEngineOptions(*command, options->engine);
  command->callback([options, &status] { status = Run(*options); });
}

}  // namespace ORKTOOL
