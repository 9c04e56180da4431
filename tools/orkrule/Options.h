// What the commands share on the command line: how an engine is set up, where rules come from, and
// the names of types and dialects.
#pragma once

#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "MxRuleEnums.h"
#include "RuleDialects.h"
#include "RuleType.h"

namespace ORKTOOL {

/// How an engine is set up before it meets the first rule.
struct EngineOptions {
  std::string database;  ///< --db: server text, or path of an SQLite file
  std::string user;
  std::string databaseName;  ///< --database
  std::int32_t port = 0;
  bool askPassword = false;
  std::string reportTemplate;    ///< --rt: loaded, and the id of `rtId`
  std::string tables;            ///< --tables: loaded
  std::vector<std::string> cax;  ///< --cax TYPE=FILE
  std::int32_t formDataIn = 0;
  bool noIsNull = false;
  std::optional<std::string> rtId;  ///< --rt-id: overrules the id of --rt
};

/// Where rules come from, and how answers are written.
struct RuleOptions {
  std::optional<std::string> rule;
  std::optional<std::string> file;  ///< "-" is standard input, also where nothing is given
  bool jsonLines = false;
  bool json = false;
  std::string type = "auto";
  std::optional<std::string> key;  ///< member of a JSON line that holds what is read
  bool typed = false;              ///< lines are TYPE RULE
  bool keepGoing = false;          ///< a line that cannot be read does not end the run
  bool needsType = false;          ///< the types that lines name are asked for
};

struct NamedType {
  const char* name;
  ORKBASE::MXRULE_DATATYPE type;
};

// clang-format off
inline constexpr NamedType kTypes[] = {
    {"auto",    kEitherType},
    {"number",  ORKBASE::kNumDataType},
    {"text",    ORKBASE::kStrDataType},
    {"date",    ORKBASE::kDateDataType},
    {"logic",   ORKBASE::kLogicDataType},
    {"any",     ORKBASE::kVarDataType},
    {"picture", ORKBASE::kPicDataType},
    {"link",    ORKBASE::kLinkDataType},
};
// clang-format on

/// Adds --db, --user, --database, --port, --ask-password, --rt, --cax and the modes.
void AddEngineOptions(CLI::App& command, EngineOptions& options);
/// The group of the options that say what words rules may have.
inline constexpr const char* kWordsGroup = "Words of rules";

/// Adds --tables: the data tables to load before the first rule.
void AddTablesOption(CLI::App& command, EngineOptions& options);
/// Adds the rule itself, --file, --jsonl, --key, --typed, --keep-going, and --json.
void AddRuleOptions(CLI::App& command, RuleOptions& options);
/// Adds a document, --file, --jsonl, --key, --keep-going, and --json.
void AddDocumentOptions(CLI::App& command, RuleOptions& options);
/// Adds --type.
void AddTypeOption(CLI::App& command, RuleOptions& options);
void AddTypeOption(CLI::App& command, std::string& type);
/// Adds --language, which takes effect as soon as it is read.
void AddLanguageOption(CLI::App& command);
/// Adds --no-warnings.
void AddWarningsOption(CLI::App& command, bool& noWarnings);
/// Adds --dialect: names in any case; with `several`, a comma list of them, or `all`.
void AddDialectOption(CLI::App& command, std::string& names, bool several);

/// The type of a name of `kTypes` or of a number; nothing for other text.
std::optional<ORKBASE::MXRULE_DATATYPE> TypeOf(const std::string& text);
/// The dialects that a checked option asks for, each once, in its order.
std::vector<ORKBASE::RuleDialect> DialectsOf(const std::string& names);

/// 16-bit text of an argument. Throws `Failure` (bad usage) where it is not UTF-8.
std::u16string Wide(const std::string& argument);

}  // namespace ORKTOOL
