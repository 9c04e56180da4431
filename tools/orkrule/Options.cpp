#include "Options.h"

#include "DidYouMean.h"
#include "Output.h"
#include "TerminalInput.h"
#include "Text.h"
#include "Usage.h"

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

std::vector<std::string> TypeNames() {
  std::vector<std::string> names;
  for (const NamedType& named : kTypes) names.emplace_back(named.name);
  return names;
}

std::string CheckType(std::string& text) {
  if (TypeOf(text)) return "";
  const std::string near = DidYouMean(text, TypeNames());
  return "\"" + text + "\" is neither the name nor the number of a type" + near;
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

/// The names by which the help speaks of dialects; with `several`, the one for all of them too.
std::vector<std::string> DialectNames(bool several) {
  std::vector<std::string> names;
  for (const ORKBASE::RuleDialect& dialect : ORKBASE::RuleDialects()) {
    names.push_back(ToUtf8(dialect.name));
  }
  if (several) names.emplace_back(kAllDialects);
  return names;
}

/// The pieces of a comma list without the blanks around them, empty ones too; never none.
std::vector<std::string> PiecesOf(const std::string& list) {
  std::vector<std::string> pieces;
  std::istringstream stream(list + ",");
  for (std::string piece; std::getline(stream, piece, ',');) {
    piece.erase(0, std::min(piece.find_first_not_of(' '), piece.size()));
    piece.erase(piece.find_last_not_of(' ') + 1);
    pieces.push_back(piece);
  }
  return pieces;
}

/// What is wrong with the name of a dialect: the right ones, and the likeliest. A short other name
/// is likelier that of another product: MySQL is no slip for MSSQL.
std::string UnknownDialect(const std::string& name, bool several) {
  constexpr std::size_t kShort = 5;
  const std::vector<std::string> names = DialectNames(several);
  std::vector<std::string> all = names;
  for (const ORKBASE::RuleDialect& dialect : ORKBASE::RuleDialects()) {
    for (std::string& other : PiecesOf(ToUtf8(dialect.otherNames))) {
      if (other.size() > kShort) all.push_back(std::move(other));
    }
  }
  return "\"" + name + "\" is none of the dialects " + Joined(names, ", ") + DidYouMean(name, all);
}

/// Warns of a language that the message file does not have; the run goes on with another.
void CheckLanguage(const std::u16string& tag) {
  const std::vector<std::u16string> known = ORKBASE::MessageLanguages();
  if (tag.empty() || known.empty() || ORKBASE::HasMessageLanguage(tag)) return;
  std::vector<std::string> tags;
  tags.reserve(known.size());
  for (const std::u16string& each : known) tags.push_back(ToUtf8(each));
  PrintError("orkrule: warning: there are no texts in the language \"" + ToUtf8(tag) +
             "\", but in " + Joined(tags, ", ") + "\n");
}

}  // namespace

void AddEngineOptions(CLI::App& command, EngineOptions& options) {
  constexpr const char* kWhere = "Metadata database";
  constexpr const char* kModes = "Modes";
  command.add_option("--db", options.database, "Path of an SQLite file, or a server text")
      ->envname("ORKRULE_DB")
      ->type_name("DATABASE")
      ->group(kWhere);
  command.add_option("--user", options.user, "User of the database")
      ->type_name("NAME")
      ->group(kWhere);
  command.add_option("--database", options.databaseName, "Name of the database on its server")
      ->type_name("NAME")
      ->group(kWhere);
  command.add_option("--port", options.port, "Port of the server")->group(kWhere);
  command
      .add_flag("--ask-password", options.askPassword,
                "Ask for the password instead of reading ORKRULE_PASSWORD")
      ->group(kWhere);
  command.add_option("--rt", options.reportTemplate, "Report template to load")
      ->type_name("ID")
      ->group(kWordsGroup);
  command.add_option("--cax", options.cax, "CAD document to load, with the number of its type")
      ->check(CLI::Validator(CheckCax, ""))
      ->type_name("TYPE=FILE")
      ->allow_extra_args(false)
      ->group(kWordsGroup);
  command.add_option("--form-data-in", options.formDataIn, "1: form fields are read from tables")
      ->group(kModes);
  command.add_flag("--no-is-null", options.noIsNull, "Write operands without the is-null form")
      ->group(kModes);
  command.add_option("--rt-id", options.rtId, "Report-template id in names of temporary tables")
      ->type_name("ID")
      ->group(kModes);
}

void AddTablesOption(CLI::App& command, EngineOptions& options) {
  command.add_option("--tables", options.tables, "Data tables to load first")
      ->type_name("A,B")
      ->group(kWordsGroup);
}

namespace {

/// Adds what is said of lines, whatever they hold.
void AddLineOptions(CLI::App& command, RuleOptions& options, const std::string& key,
                    const std::string& what) {
  command.add_option("--key", options.key,
                     "Member of JSON that holds the " + what + ", instead of " + key);
  command.add_flag("--keep-going", options.keepGoing,
                   "Go on behind a line that cannot be read; the exit status is 3 all the same");
  command.add_flag("--json", options.json, "Write one JSON object a " + what);
}

}  // namespace

void AddRuleOptions(CLI::App& command, RuleOptions& options) {
  CLI::Option* const rule = command.add_option(
      "RULE", options.rule, "The rule; put -- before one that begins with a minus sign");
  CLI::Option* const file =
      command
          .add_option("--file", options.file,
                      "Read rules from a file, one a line; - is standard input, as is none. "
                      "Blank lines and those that begin with # are none")
          ->type_name("FILE");
  rule->excludes(file);
  CLI::Option* const jsonLines = command.add_flag(
      "--jsonl", options.jsonLines,
      "Lines are JSON: a text, or an object with \"expression\" and perhaps \"type\"; its other "
      "members are passed on by --json");
  jsonLines->excludes(rule);
  command.add_flag("--typed", options.typed, "Lines are TYPE RULE, with blanks between them")
      ->excludes(rule)
      ->excludes(jsonLines);
  AddLineOptions(command, options, "expression", "rule");
  RefuseMuteWait(command, options, "rule");
}

void AddDocumentOptions(CLI::App& command, RuleOptions& options) {
  CLI::Option* const document = command.add_option("DOCUMENT", options.rule, "The document");
  command
      .add_option("--file", options.file,
                  "Read documents from a file, behind each other; - is standard input, as is none")
      ->type_name("FILE")
      ->excludes(document);
  command
      .add_flag("--jsonl", options.jsonLines,
                "Lines are JSON: a text, or an object with \"document\"; its other members are "
                "passed on by --json")
      ->excludes(document);
  AddLineOptions(command, options, "document", "document");
  RefuseMuteWait(command, options, "document");
}

void AddTypeOption(CLI::App& command, RuleOptions& options) {
  options.needsType = true;
  AddTypeOption(command, options.type);
}

void AddTypeOption(CLI::App& command, std::string& type) {
  command
      .add_option("--type", type,
                  "Type of the rule: number, text, date, logic, any (value), picture, link, or its "
                  "number; auto is a value of any type or a condition")
      ->check(CLI::Validator(CheckType, ChoiceText(TypeNames())))
      ->type_name("TYPE")
      ->capture_default_str();
}

void AddLanguageOption(CLI::App& command) {
  std::vector<std::string> tags;
  for (const std::u16string& tag : ORKBASE::MessageLanguages()) tags.push_back(ToUtf8(tag));
  const auto anyTag = [](std::string& /*tag*/) { return std::string(); };
  command
      .add_option_function<std::string>(
          "--language",
          [](const std::string& tag) {
            ORKBASE::SetThreadLanguage(Wide(tag));
            CheckLanguage(Wide(tag));
          },
          "Language of words and messages, such as zh-CN")
      ->check(CLI::Validator(anyTag, ChoiceText(tags)))
      ->type_name("TAG");
}

void AddWarningsOption(CLI::App& command, bool& noWarnings) {
  command.add_flag("--no-warnings", noWarnings, "Do not warn about rules that verify");
}

void AddDialectOption(CLI::App& command, std::string& names, bool several) {
  const auto check = [several](const std::string& text) {
    for (const std::string& name : PiecesOf(text)) {
      const bool isKnown = FindDialect(name) || (several && AsksForAll(name));
      if (!isKnown) return UnknownDialect(name, several);
    }
    const bool isTooMany = !several && PiecesOf(text).size() > 1;
    return isTooMany ? "\"" + text + "\" is more than one dialect" : std::string();
  };
  const std::string what = several ? "Databases to write for, a list: " : "Database to write for: ";
  const std::vector<std::string> known = DialectNames(several);
  command.add_option("--dialect", names, what + Joined(known, ", ") + "; or another usual name")
      ->check(CLI::Validator(check, ChoiceText(known)))
      ->type_name(several ? "NAME,..." : "NAME")
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
