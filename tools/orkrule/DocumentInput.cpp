#include "DocumentInput.h"

#include "Interrupt.h"
#include "Outage.h"
#include "Output.h"
#include "Text.h"

#include <utility>

namespace ORKTOOL {

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
  if (options_.key && !options_.jsonLines) throw Failure{kBadUsage, "--key is for --jsonl"};
  if (options_.rule) return;
  reader_.emplace(options_.file.value_or("-"));
  reader_->set_beforeWait(FlushOutput);
}

std::optional<Document> DocumentInput::Next() {
  AskedForRule();
  if (!reader_) {
    if (std::exchange(argumentTaken_, true)) return std::nullopt;
    return Document{Wide(*options_.rule), ""};
  }
  std::string line;
  do {
    if (!reader_->Next(line)) return std::nullopt;
  } while (IsBlank(line));
  Document document{u"", reader_->Name() + ":" + std::to_string(reader_->Number())};
  try {
    if (!Read(std::move(line), document)) return std::nullopt;
  } catch (const UnreadableLine& unreadable) {
    if (!options_.keepGoing && !Interrupt::IsAsked()) throw Failure{kInputOutput, unreadable.why};
    document.unreadable = unreadable.why;
  }
  if (Interrupt::IsAsked()) return std::nullopt;  // it may be half of one
  return document;
}

bool DocumentInput::Read(std::string line, Document& document) {
  const std::size_t first = reader_->Number();
  std::string text;
  if (options_.jsonLines) {
    text = TextOfJson(line, KeyOf(options_, "document"), *reader_, document.given);
  } else {
    ElementEnd end;
    text = line;
    while (!end.Reads(line) && reader_->Next(line)) text.append("\n").append(line);
    if (Interrupt::IsAsked()) return false;
  }
  document.text = TextOfLines(text, reader_->Name(), first);
  return true;
}

}  // namespace ORKTOOL
