#include "BatchHelp.h"

#include "Output.h"

#include "RuleService.h"

#include <string_view>

namespace ORKTOOL {
namespace {

constexpr std::size_t kHelpWidth = 80;

constexpr std::string_view kBatchLines =
    R"(A line is a JSON object: "op" is the name of an operation, beside it stand its
fields. "object" names the engine that it goes to ("main" is there from the
start), "id" comes back as it is, "want" lists the fields of the answer that are
needed. An answer ends with "errNumber" and "errDescription"; a call that left
by an exception has "thrown", a bad line has nothing but "error".

Operations with their fields (* required, = default) -> fields of the answer:
)";

/// `type*`, `port=0`, `rtId`.
std::string FieldText(const Json& field) {
  std::string text = field.at("name");
  if (field.at("required")) text += '*';
  if (field.contains("default")) text.append("=").append(field.at("default").dump());
  return text;
}

/// Puts words into lines, those behind the first with a margin.
class WrappedLine {
 public:
  explicit WrappedLine(const std::string& begin) : text_("  " + begin), column_(text_.size()) {}

  void Add(const std::string& word) {
    if (column_ + 1 + word.size() > kHelpWidth) {
      text_.append("\n     ");
      column_ = 5;
    }
    text_.append(" ").append(word);
    column_ += 1 + word.size();
  }
  std::string Take() { return std::move(text_) + "\n"; }

 private:
  std::string text_;
  std::size_t column_;
};

std::string OperationText(const Json& operation) {
  WrappedLine line(operation.at("name"));
  for (const Json& field : operation.at("in")) line.Add(FieldText(field));
  if (!operation.at("out").empty()) line.Add("->");
  for (const Json& field : operation.at("out")) line.Add(field.at("name"));
  return line.Take();
}

}  // namespace

std::string BatchHelp() {
  ORKBASE::RuleService service;
  const Json help = Json::parse(service.Answer(R"({"op":"help","want":["operations"]})"));
  std::string text(kBatchLines);
  for (const Json& operation : help.at("operations")) text += OperationText(operation);
  return text;
}

}  // namespace ORKTOOL
