#include "RuleInput.h"

#include "Outage.h"
#include "Output.h"
#include "Text.h"

namespace ORKTOOL {
namespace {

[[noreturn]] void Refuse(const std::string& place, const char* what) {
  throw Failure{kInputOutput, place + ": " + what};
}

std::u16string WideLine(const std::string& text, const std::string& place) {
  std::optional<std::u16string> wide = FromUtf8(text);
  if (!wide) Refuse(place, "the line is not UTF-8 text");
  return *std::move(wide);
}

/// The type that a JSON line names, by name or number.
ORKBASE::MXRULE_DATATYPE JsonType(const Json& value, const std::string& place) {
  std::optional<ORKBASE::MXRULE_DATATYPE> type;
  if (value.is_string()) type = TypeOf(value.get<std::string>());
  if (value.is_number_integer()) type = TypeOf(value.dump());
  if (!type) Refuse(place, "\"type\" is neither the name nor the number of a type");
  return *type;
}

}  // namespace

RuleInput::RuleInput(const RuleOptions& options)
    : options_(options), type_(TypeOf(options.type).value_or(kEitherType)) {
  if (options_.rule) return;
  reader_.emplace(options_.file.value_or("-"));
  reader_->set_beforeWait(FlushOutput);
}

std::optional<Rule> RuleInput::Next() {
  AskedForRule();
  if (!reader_) {
    if (argumentTaken_) return std::nullopt;
    argumentTaken_ = true;
    return Rule{Wide(*options_.rule), "", type_};
  }
  std::string line;
  do {
    if (!reader_->Next(line)) return std::nullopt;
  } while (IsBlank(line));
  const std::string place = reader_->Name() + ":" + std::to_string(reader_->Number());
  return options_.jsonLines ? JsonRule(line, place) : LineRule(line, place);
}

Rule RuleInput::LineRule(const std::string& line, const std::string& place) const {
  Rule rule{WideLine(line, place), place, type_};
  if (rule.text.ends_with(u'\r')) rule.text.pop_back();
  return rule;
}

Rule RuleInput::JsonRule(const std::string& line, const std::string& place) const {
  const Json value = Json::parse(line, nullptr, false);
  const bool object = value.is_object();
  if (!object && !value.is_string()) Refuse(place, "the line is neither a JSON text nor an object");
  if (object && (!value.contains("expression") || !value["expression"].is_string())) {
    Refuse(place, "the object has no text \"expression\"");
  }
  const std::string text = (object ? value["expression"] : value).get<std::string>();
  const bool typed = object && value.contains("type");
  return {WideLine(text, place), place, typed ? JsonType(value["type"], place) : type_};
}

}  // namespace ORKTOOL
