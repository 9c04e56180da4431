#include "Options.h"

#include "Output.h"
#include "TerminalInput.h"
#include "Text.h"

#include "OrkPlatform.h"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <sstream>

namespace ORKTOOL {
namespace {

std::optional<std::int32_t> WholeNumber(std::string_view text) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::string CheckType(std::string& text) {
  return TypeOf(text) ? "" : "'" + text + "' is neither the name nor the number of a type";
}

std::string CheckCax(std::string& text) {
  const std::size_t sign = text.find('=');
  const bool good = sign != text.npos && WholeNumber(text.substr(0, sign));
  return good ? "" : "'" + text + "' is not of the form TYPE=FILE with a number as TYPE";
}

constexpr const char* kAllDialects = "all";

bool AsksForAll(const std::string& name) {
  return strcasecmp(name.c_str(), kAllDialects) == 0;
}

const ORKBASE::RuleDialect* FindDialect(const std::string& name) {
  return ORKBASE::FindRuleDialect(Wide(name));
}

std::string DialectNames() {
  std::string names;
  for (const ORKBASE::RuleDialect& dialect : ORKBASE::RuleDialects()) {
    names.append(names.empty() ? "" : " ").append(ToUtf8(dialect.name));
  }
  return names;
}

/// The pieces of a comma list, empty ones too; never none.
std::vector<std::string> PiecesOf(const std::string& list) {
  std::vector<std::string> pieces;
  std::istringstream stream(list + ",");
  for (std::string piece; std::getline(stream, piece, ',');) pieces.push_back(piece);
  return pieces;
}

}  // namespace

void AddEngineOptions(CLI::App& command, EngineOptions& options) {
  constexpr const char* kWhere = "Metadata database";
  constexpr const char* kWords = "Words of rules";
  constexpr const char* kModes = "Modes";
  command.add_option("--db", options.database, "Path of an SQLite file, or a server text")
      ->group(kWhere);
  command.add_option("--user", options.user, "User of the database")->group(kWhere);
  command.add_option("--database", options.databaseName, "Name of the database on its server")
      ->group(kWhere);
  command.add_option("--port", options.port, "Port of the server")->group(kWhere);
  command
      .add_flag("--ask-password", options.askPassword,
                "Ask for the password instead of reading ORKRULE_PASSWORD")
      ->group(kWhere);
  command.add_option("--rt", options.reportTemplate, "Report template to load")->group(kWords);
  command.add_option("--cax", options.cax, "CAD document to load: TYPE=FILE")
      ->check(CLI::Validator(CheckCax, ""))
      ->allow_extra_args(false)
      ->group(kWords);
  command.add_option("--form-data-in", options.formDataIn, "1: form fields are read from tables")
      ->group(kModes);
  command.add_flag("--no-is-null", options.noIsNull, "Write operands without the is-null form")
      ->group(kModes);
  command.add_option("--rt-id", options.rtId, "Report-template id in names of temporary tables")
      ->group(kModes);
}

void AddTablesOption(CLI::App& command, EngineOptions& options) {
  command.add_option("--tables", options.tables, "Data tables to load first: A,B")
      ->group("Words of rules");
}

void AddRuleOptions(CLI::App& command, RuleOptions& options) {
  CLI::Option* const rule = command.add_option(
      "RULE", options.rule, "The rule; put -- before one that begins with a minus sign");
  CLI::Option* const file =
      command.add_option("--file", options.file,
                         "Read rules from a file, one a line; - is standard input, as is none");
  rule->excludes(file);
  command
      .add_flag("--jsonl", options.jsonLines,
                "Lines are JSON: a text, or an object with \"expression\" and perhaps \"type\"")
      ->excludes(rule);
  command.add_flag("--json", options.json, "Write one JSON object a rule");
  RefuseMuteWait(command, options, "rule");
}

void AddDocumentOptions(CLI::App& command, RuleOptions& options) {
  CLI::Option* const document = command.add_option("DOCUMENT", options.rule, "The document");
  command
      .add_option("--file", options.file,
                  "Read documents from a file, behind each other; - is standard input, as is none")
      ->excludes(document);
  command
      .add_flag("--jsonl", options.jsonLines,
                "Lines are JSON: a text, or an object with \"document\"")
      ->excludes(document);
  command.add_flag("--json", options.json, "Write one JSON object a document");
  RefuseMuteWait(command, options, "document");
}

void AddTypeOption(CLI::App& command, RuleOptions& options) {
  AddTypeOption(command, options.type);
}

void AddTypeOption(CLI::App& command, std::string& type) {
  command
      .add_option("--type", type,
                  "Type of the rule: number, text, date, logic, any (value), picture, link, or its "
                  "number; auto is a value of any type or a condition")
      ->check(CLI::Validator(CheckType, ""))
      ->capture_default_str();
}

void AddLanguageOption(CLI::App& command) {
  command.add_option_function<std::string>(
      "--language", [](const std::string& tag) { ORKBASE::SetThreadLanguage(Wide(tag)); },
      "Language of words and messages, such as zh-CN");
}

void AddWarningsOption(CLI::App& command, bool& noWarnings) {
  command.add_flag("--no-warnings", noWarnings, "Do not warn about rules that verify");
}

void AddDialectOption(CLI::App& command, std::string& names, bool several) {
  const std::string known = DialectNames() + (several ? " " + std::string(kAllDialects) : "");
  const auto check = [several, known](const std::string& text) {
    for (const std::string& name : PiecesOf(text)) {
      const bool isKnown = FindDialect(name) || (several && AsksForAll(name));
      if (!isKnown) {
        return ("'" + name + "' is not the name of a dialect, which are: ").append(known);
      }
    }
    return several || PiecesOf(text).size() == 1 ? "" : "'" + text + "' is more than one dialect";
  };
  command.add_option("--dialect", names, "Database to write for: " + known)
      ->check(CLI::Validator(check, ""))
      ->capture_default_str();
}

std::optional<ORKBASE::MXRULE_DATATYPE> TypeOf(const std::string& text) {
  for (const NamedType& named : kTypes) {
    if (text == named.name) return named.type;
  }
  const std::optional<std::int32_t> number = WholeNumber(text);
  if (!number) return std::nullopt;
  return static_cast<ORKBASE::MXRULE_DATATYPE>(*number);
}

std::vector<ORKBASE::RuleDialect> DialectsOf(const std::string& names) {
  std::vector<ORKBASE::RuleDialect> dialects;
  const auto add = [&](const ORKBASE::RuleDialect& dialect) {
    const auto same = [&](const ORKBASE::RuleDialect& other) {
      return other.number == dialect.number;
    };
    if (std::none_of(dialects.begin(), dialects.end(), same)) dialects.push_back(dialect);
  };
  for (const std::string& name : PiecesOf(names)) {
    if (const ORKBASE::RuleDialect* dialect = FindDialect(name)) {
      add(*dialect);
    } else {
      for (const ORKBASE::RuleDialect& each : ORKBASE::RuleDialects()) add(each);
    }
  }
  return dialects;
}

std::u16string Wide(const std::string& argument) {
  std::optional<std::u16string> text = FromUtf8(argument);
  if (!text) throw Failure{kBadUsage, "an argument is not UTF-8 text: " + argument};
  return *std::move(text);
}

}  // namespace ORKTOOL
