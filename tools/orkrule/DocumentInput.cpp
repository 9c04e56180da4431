#include "DocumentInput.h"

#include "Output.h"
#include "Text.h"

#include <utility>

namespace ORKTOOL {
namespace {

[[noreturn]] void RefuseLine(const std::string& place, const char* what) {
  throw Failure{kInputOutput, place + ": " + what};
}

/// A JSON text, or what `verify --document --json` writes of a rule that is valid.
std::string JsonDocument(const std::string& line, const std::string& place) {
  const Json value = Json::parse(line, nullptr, false);
  if (value.is_string()) return value.get<std::string>();
  const bool holds =
      value.is_object() && value.contains("document") && value["document"].is_string();
  if (!holds) RefuseLine(place, "the line is neither a JSON text nor an object with \"document\"");
  return value["document"].get<std::string>();
}

}  // namespace

bool ElementEnd::Reads(std::string_view line) {
  for (const char unit : line) Take(unit);
  Take('\n');
  return begun_ && depth_ == 0 && in_ == In::kText;
}

void ElementEnd::Take(char unit) {
  switch (in_) {
    case In::kText:
      if (unit == '<') in_ = In::kTagBegin;
      break;
    case In::kTagBegin:
      in_ = unit == '/' ? In::kEndTag : unit == '?' || unit == '!' ? In::kOther : In::kTag;
      break;
    case In::kTag:
      if (quote_ != '\0') {
        if (unit == quote_) quote_ = '\0';
      } else if (unit == '"' || unit == '\'') {
        quote_ = unit;
      } else if (unit == '>') {
        begun_ = true;
        if (last_ != '/') ++depth_;
        in_ = In::kText;
      }
      break;
    case In::kEndTag:
      if (unit != '>') break;
      if (depth_ > 0) --depth_;
      in_ = In::kText;
      break;
    case In::kOther:
      if (unit == '>') in_ = In::kText;
      break;
  }
  last_ = unit;
}

DocumentInput::DocumentInput(const RuleOptions& options) : options_(options) {
  if (options_.rule) return;
  reader_.emplace(options_.file.value_or("-"));
  reader_->set_beforeWait(FlushOutput);
}

std::optional<Document> DocumentInput::Next() {
  if (!reader_) {
    if (std::exchange(argumentTaken_, true)) return std::nullopt;
    return Document{ToUtf8(Wide(*options_.rule)), ""};
  }
  std::string line;
  do {
    if (!reader_->Next(line)) return std::nullopt;
  } while (IsBlank(line));
  Document document{"", Place()};
  if (options_.jsonLines) {
    document.text = JsonDocument(line, document.place);
  } else {
    ElementEnd end;
    document.text = line;
    while (!end.Reads(line) && reader_->Next(line)) document.text.append("\n").append(line);
    if (Interrupt::IsAsked()) return std::nullopt;  // it may be half of one
  }
  if (!FromUtf8(document.text)) RefuseLine(document.place, "the document is not UTF-8 text");
  return document;
}

std::string DocumentInput::Place() const {
  return reader_->Name() + ":" + std::to_string(reader_->Number());
}

}  // namespace ORKTOOL
