#include "RuleInput.h"

#include "Outage.h"
#include "Output.h"
#include "Text.h"

#include <algorithm>
#include <utility>

namespace ORKTOOL {
namespace {

constexpr const char* kTypeKey = "type";
constexpr const char* kBlanks = " \t";

std::string PlaceOf(const LineReader& reader) {
  return reader.Name() + ":" + std::to_string(reader.Number());
}

[[noreturn]] void Refuse(const LineReader& reader, const std::string& what) {
  throw UnreadableLine{PlaceOf(reader) + ": " + what};
}

/// The type that a JSON line names, by name or number; null names none.
ORKBASE::MXRULE_DATATYPE JsonType(const std::string& written, ORKBASE::MXRULE_DATATYPE standard,
                                  const LineReader& reader) {
  if (written == "null") return standard;
  const bool isText = written.starts_with('"');
  const auto type = TypeOf(isText ? Json::parse(written).get<std::string>() : written);
  if (!type) Refuse(reader, "\"type\" is neither the name nor the number of a type");
  return *type;
}

}  // namespace

std::string KeyOf(const RuleOptions& options, const char* standard) {
  return options.key.value_or(standard);
}

std::u16string TextOfLines(const std::string& text, const std::string& file, std::size_t number) {
  std::optional<std::u16string> wide = FromUtf8(text);
  if (wide) return *std::move(wide);
  const std::size_t bad = BadUtf8At(text).value_or(0);
  const std::string_view before = std::string_view(text).substr(0, bad);
  number += static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
  const std::size_t byte = bad - (before.rfind('\n') + 1) + 1;  // npos + 1 is 0
  throw UnreadableLine{file + ":" + std::to_string(number) + ": byte " + std::to_string(byte) +
                       " is not UTF-8"};
}

std::string TextOfJson(const std::string& line, const std::string& key, const LineReader& reader,
                       JsonRecord& given) {
  if (BadUtf8At(line)) TextOfLines(line, reader.Name(), reader.Number());
  if (line[std::min(line.find_first_not_of(" \t\r"), line.size())] == '"') {
    const Json text = Json::parse(line, nullptr, false);
    if (text.is_string()) return text.get<std::string>();
  }
  std::optional<JsonRecord> record = JsonRecord::Read(line);
  if (!record) Refuse(reader, "the line is neither a JSON text nor an object");
  given = *std::move(record);
  const std::string* const value = given.Find(key);
  if (!value || !value->starts_with('"')) {
    Refuse(reader, std::string("the object has no text ") + Json(key).dump());
  }
  return Json::parse(*value).get<std::string>();
}

RuleInput::RuleInput(const RuleOptions& options)
    : options_(options), type_(TypeOf(options.type).value_or(kEitherType)) {
  if (options_.key && !options_.jsonLines && !options_.json) {
    throw Failure{kBadUsage, "--key is for --jsonl and --json"};
  }
  if (options_.rule) return;
  reader_.emplace(options_.file.value_or("-"));
  reader_->set_beforeWait(FlushOutput);
}

std::optional<Rule> RuleInput::Next() {
  AskedForRule();
  if (!reader_) {
    if (std::exchange(argumentTaken_, true)) return std::nullopt;
    return Rule{Wide(*options_.rule), "", type_};
  }
  std::string line;
  do {
    if (!reader_->Next(line)) return std::nullopt;
  } while (IsNone(line));
  Rule rule{u"", PlaceOf(*reader_), type_};
  try {
    ReadLine(line, rule);
  } catch (const UnreadableLine& unreadable) {
    if (!options_.keepGoing) throw Failure{kInputOutput, unreadable.why};
    rule.unreadable = unreadable.why;
  }
  return rule;
}

bool RuleInput::IsNone(const std::string& line) const {
  return IsBlank(line) || (!options_.jsonLines && line.starts_with('#'));
}

void RuleInput::ReadLine(const std::string& line, Rule& rule) const {
  if (options_.jsonLines) {
    ReadJson(line, rule);
    return;
  }
  rule.text = TextOfLines(line, reader_->Name(), reader_->Number());
  if (rule.text.ends_with(u'\r')) rule.text.pop_back();
  if (options_.typed) ReadTyped(line, rule);
}

void RuleInput::ReadTyped(const std::string& line, Rule& rule) const {
  const std::size_t begin = line.find_first_not_of(kBlanks);
  const std::size_t end = std::min(line.find_first_of(" \t\r", begin), line.size());
  const std::string name = line.substr(begin, end - begin);
  const auto type = TypeOf(name);
  if (!type) Refuse(*reader_, "'" + name + "' is neither the name nor the number of a type");
  rule.before = line.substr(0, std::min(line.find_first_not_of(kBlanks, end), line.size()));
  rule.type = *type;
  // Types have names of one byte a letter, so bytes before the rule are units.
  rule.text.erase(0, rule.before.size());
  rule.given.Add(kTypeKey, Json(name).dump());
  rule.given.Add(KeyOf(options_), Json(ToUtf8(rule.text)).dump());
}

void RuleInput::ReadJson(const std::string& line, Rule& rule) const {
  const std::string text = TextOfJson(line, KeyOf(options_), *reader_, rule.given);
  rule.text = TextOfLines(text, reader_->Name(), reader_->Number());
  const std::string* const type = rule.given.Find(kTypeKey);
  if (type && options_.needsType) rule.type = JsonType(*type, type_, *reader_);
}

}  // namespace ORKTOOL
