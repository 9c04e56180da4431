#include "CompleteLine.h"

#include "Engine.h"
#include "Outage.h"
#include "Output.h"
#include "ShellLine.h"
#include "Text.h"
#include "Usage.h"

#include <strings.h>

#include <algorithm>
#include <initializer_list>
#include <optional>

namespace ORKTOOL {
namespace {

struct Candidate {
  std::string word;
  std::string meaning = {};
};

struct Candidates {
  std::vector<Candidate> all = {};
  bool areParts = false;  ///< no blank belongs behind them
  bool areFiles = false;  ///< the shell knows them
};

bool BeginsWith(const std::string& text, const std::string& begin) {
  return text.size() >= begin.size() && strncasecmp(text.c_str(), begin.c_str(), begin.size()) == 0;
}

/// What the options before the last word say of the engine; what they do not, the environment does.
class LineEngine {
 public:
  explicit LineEngine(const ShellLine& line) {
    CLI::App reader;
    reader.allow_extras();
    AddEngineOptions(reader, options_);
    AddTablesOption(reader, options_);
    AddTypeOption(reader, type_);
    AddLanguageOption(reader);
    std::vector<std::string> values;
    for (const std::string& value : line.values) {
      // Of some commands an option of this name lists tables to work on, not to load.
      if (!value.starts_with("--tables=") || LoadsTables(line)) values.push_back(value);
    }
    reader.parse(values);
    engine_.emplace(EngineSetup(options_));
  }

  std::vector<std::string> Tables() {
    ORKBASE::RuleTables tables;
    std::vector<std::string> names;
    if (options_.database.empty() || !engine_->Authoring().Tables(u"", tables)) return names;
    for (const std::u16string& table : tables.tables) names.push_back(ToUtf8(table));
    return names;
  }

  std::vector<std::string> Fields(const std::string& table) {
    std::vector<ORKBASE::RuleField> fields;
    std::vector<std::string> names;
    if (!engine_->Authoring().Fields(Wide(table), fields)) return names;
    for (const ORKBASE::RuleField& field : fields) names.push_back(ToUtf8(field.name));
    return names;
  }

  ORKBASE::RuleCompletion Complete(const std::u16string& rule) {
    ORKBASE::RuleCompletion completion;
    const ORKBASE::MXRULE_DATATYPE asked = TypeOf(type_).value_or(kEitherType);
    // A condition begins with a value, so it stands for both.
    const ORKBASE::MXRULE_DATATYPE type = asked == kEitherType ? ORKBASE::kLogicDataType : asked;
    engine_->Authoring().Complete(type, rule, static_cast<std::int32_t>(rule.size()), 0, false,
                                  completion);
    return completion;
  }

 private:
  static bool LoadsTables(const ShellLine& line) {
    const CLI::Option* const option = line.app->get_option_no_throw("--tables");
    return option != nullptr && option->get_group() == kWordsGroup;
  }

  EngineOptions options_;
  std::string type_ = "auto";
  std::optional<Engine> engine_;
};

Candidates OfNames(const std::vector<std::string>& names, const std::string& begin,
                   const std::string& before) {
  Candidates found;
  for (const std::string& name : names) {
    if (BeginsWith(name, begin)) found.all.push_back({before + name});
  }
  return found;
}

Candidates OfCommands(const CLI::App& app, const std::string& begin) {
  Candidates found;
  for (const CLI::App* command : ShownCommands(app)) {
    const bool fits = command->get_name().starts_with(begin);
    if (fits) found.all.push_back({command->get_name(), command->get_description()});
  }
  return found;
}

Candidates OfOptions(const CLI::App& app, const std::string& begin) {
  Candidates found;
  for (const CLI::Option* option : ShownOptions(app)) {
    for (const std::string& name : option->get_lnames()) {
      if (("--" + name).starts_with(begin)) {
        found.all.push_back({"--" + name, option->get_description()});
      }
    }
  }
  return found;
}

/// `TABLE.` for a word without a full stop, else the fields of its table.
Candidates OfFields(LineEngine& engine, const std::string& begin, const std::string& before) {
  const std::size_t dot = begin.rfind('.');
  if (dot != begin.npos) {
    const std::string table = begin.substr(0, dot + 1);
    return OfNames(engine.Fields(begin.substr(0, dot)), begin.substr(dot + 1), before + table);
  }
  Candidates tables = OfNames(engine.Tables(), begin, before);
  for (Candidate& table : tables.all) table.word += '.';
  tables.areParts = true;
  if (tables.all.size() != 1) return tables;
  // A shell closes the quote behind the only candidate, so that is to be a whole name.
  return OfFields(engine, tables.all.front().word.substr(before.size()), before);
}

/// The rule with each word put in that may stand at its end and goes on as it was begun there.
Candidates OfRule(LineEngine& engine, const std::string& rule) {
  const std::u16string wide = Wide(rule);
  const ORKBASE::RuleCompletion completion = engine.Complete(wide);
  const auto offset = static_cast<std::size_t>(completion.offset);
  const std::string before = ToUtf8(std::u16string_view(wide).substr(0, offset));
  const std::string begin = ToUtf8(std::u16string_view(wide).substr(offset));
  Candidates found;
  if (begin.find('.') == begin.npos) found = OfFields(engine, begin, before);
  for (const ORKBASE::RuleItem& item : completion.items) {
    const std::string text = ToUtf8(item.text);
    const auto is = [&](const Candidate& each) { return each.word == before + text; };
    const bool isNew = std::none_of(found.all.begin(), found.all.end(), is);
    if (BeginsWith(text, begin) && isNew) found.all.push_back({before + text, ToUtf8(item.info)});
  }
  found.areParts = true;
  return found;
}

/// The candidates for the last item of a comma list.
template <typename Find>
Candidates OfList(const std::string& list, const std::string& before, Find find) {
  const std::size_t item = list.rfind(',') + 1;  // 0 where there is no comma
  const std::string last = list.substr(item);
  Candidates found;
  if (last.find(':') == last.npos) found = find(last, before + list.substr(0, item));
  found.areParts = true;
  return found;
}

/// Options of the commands over a store whose values may be paths.
constexpr auto kPaths = {"store", "db-after", "ledger", "out"};

bool IsOneOf(const std::string& name, std::initializer_list<const char*> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

Candidates OfValue(const ShellLine& line) {
  const CLI::Option& option = *line.option;
  const std::string name = option.get_single_name();
  const std::string value = ValueName(option);
  const std::vector<std::string> choices = ChoicesOf(option);
  if (!choices.empty() && value.ends_with(",...")) {
    return OfList(line.word, line.before, [&](const std::string& last, const std::string& before) {
      return OfNames(choices, last, before);
    });
  }
  if (!choices.empty()) return OfNames(choices, line.word, line.before);
  if (IsOneOf(name, {"tables", "table"})) {
    LineEngine engine(line);
    return OfList(line.word, line.before, [&](const std::string& last, const std::string& before) {
      return OfNames(engine.Tables(), last, before);
    });
  }
  if (IsOneOf(name, {"fields", "field"})) {
    LineEngine engine(line);
    return OfList(line.word, line.before, [&](const std::string& last, const std::string& before) {
      return OfFields(engine, last, before);
    });
  }
  Candidates files;
  files.areFiles = IsOneOf(value, {"FILE", "DATABASE"}) || IsOneOf(name, kPaths);
  return files;
}

/// The argument that the word is, of those that the command takes in order.
const CLI::Option* ArgumentAt(const CLI::App& app, std::size_t index) {
  const std::vector<const CLI::Option*> all =
      app.get_options([](const CLI::Option* option) { return option->get_positional(); });
  return index < all.size() ? all[index] : nullptr;
}

Candidates OfArgument(const ShellLine& line) {
  const CLI::Option* const argument = ArgumentAt(*line.app, line.arguments.size());
  if (argument == nullptr) return {};
  const std::string name = argument->get_name(true, false);
  if (name == "RULE") {
    LineEngine engine(line);
    return OfRule(engine, line.word);
  }
  if (IsOneOf(name, {"LIKE", "TABLE"})) {
    LineEngine engine(line);
    return OfNames(engine.Tables(), line.word, "");
  }
  return OfNames(ChoicesOf(*argument), line.word, "");
}

/// Of `help`: commands as they stand behind the tool's name.
Candidates OfHelp(const CLI::App& tool, const ShellLine& line) {
  const ShellLine called = ReadShellLine(tool, line.arguments);
  const CLI::App* app = line.arguments.empty() ? &tool : nullptr;
  for (const CLI::App* command : ShownCommands(tool)) {
    const bool isNamed = line.arguments.size() == 1 && command->get_name() == called.word;
    if (isNamed) app = command;
  }
  return app == nullptr ? Candidates{} : OfCommands(*app, line.word);
}

Candidates Find(const CLI::App& tool, const ShellLine& line) {
  if (line.option != nullptr) return OfValue(line);
  const bool isOption = line.mayBeOption && line.word.starts_with('-');
  if (isOption) return OfOptions(*line.app, line.word);
  if (line.app->get_name() == "help") return OfHelp(tool, line);
  if (!ShownCommands(*line.app).empty()) return OfCommands(*line.app, line.word);
  return OfArgument(line);
}

/// Nothing where a database, an option or a rule is such that nothing can be told.
Candidates FindInSilence(const CLI::App& tool, const ShellLine& line) {
  try {
    return Find(tool, line);
  } catch (const Failure&) {
  } catch (const Outage&) {
  } catch (const CLI::ParseError&) {
  }
  return {};
}

}  // namespace

void CompleteLine(const CLI::App& tool, const std::vector<std::string>& words) {
  const Candidates found = FindInSilence(tool, ReadShellLine(tool, words));
  std::string text = found.areFiles ? "files\n" : found.areParts ? "parts\n" : "words\n";
  for (const Candidate& candidate : found.all) {
    if (candidate.word.find('\n') != std::string::npos) continue;
    text += candidate.word;
    if (!candidate.meaning.empty()) text.append("\t").append(candidate.meaning);
    text += '\n';
  }
  Print(text);
}

}  // namespace ORKTOOL
