#include "Report.h"

#include "Text.h"

namespace ORKTOOL {
namespace {

constexpr std::int32_t kOwnError = -1;  // any other number is the database's
constexpr const char* kIndent = "  ";

bool IsControl(char32_t character) {
  return character < 0x20 || character == 0x7F;
}

/// A line as it is shown: control characters, which would move the cursor, are blanks.
std::u16string Shown(std::u16string_view line) {
  std::u16string shown(line);
  for (char16_t& unit : shown) {
    if (IsControl(unit) && unit != u'\t') unit = u' ';
  }
  return shown;
}

/// White space as wide as a text. Tabs stay, so that they stop where those of the text do.
std::string WhiteSpaceFor(std::u16string_view text) {
  std::string space;
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = NextCodePoint(text, at);
    if (character == U'\t') {
      space += '\t';
    } else {
      space.append(CharacterWidth(character), ' ');
    }
  }
  return space;
}

std::size_t CharactersBefore(std::u16string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++count) NextCodePoint(text, at);
  return count;
}

}  // namespace

Refusal RefusalOf(const ORKBASE::MxErrorRecord& error) {
  Refusal refusal{error.number, ORKBASE::ErrorText(error)};
  if (error.cause == ORKBASE::kDatabaseCause || error.number != kOwnError) {
    throw Failure{kInputOutput, ToUtf8(refusal.text)};
  }
  if (error.offset >= 0) refusal.at = static_cast<std::size_t>(error.offset);
  // A word that begins with its full stop names no table that could be missed.
  if (!error.behind.empty() && !error.word.starts_with(u'.')) {
    refusal.hint = ORKBASE::ErrorText(error.behind.front());
  }
  return refusal;
}

std::string MarkedRule(const std::u16string& rule, std::optional<std::size_t> at) {
  std::string marked;
  std::size_t begin = 0;
  while (begin <= rule.size()) {
    const std::size_t end = std::min(rule.find(u'\n', begin), rule.size());
    const std::u16string line = Shown(std::u16string_view(rule).substr(begin, end - begin));
    marked.append(kIndent).append(ToUtf8(line)).append("\n");
    if (at && *at >= begin && *at <= end) {
      const std::u16string_view before = std::u16string_view(line).substr(0, *at - begin);
      marked.append(kIndent).append(WhiteSpaceFor(before)).append("^\n");
    }
    begin = end + 1;
  }
  return marked;
}

void ReportRefusal(const Rule& rule, const Refusal& refusal) {
  std::string message = "orkrule: ";
  if (!rule.place.empty()) message += rule.place + ": ";
  message += ToUtf8(refusal.text);
  if (!refusal.hint.empty()) message += " " + ToUtf8(refusal.hint);
  PrintError(message + "\n" + MarkedRule(rule.text, refusal.at));
}

Json RefusalJson(const std::u16string& rule, const Refusal& refusal) {
  Json json = {{"number", refusal.number}, {"text", ToUtf8(refusal.text)}};
  if (refusal.at) {
    json["position"] = CharactersBefore(std::u16string_view(rule).substr(0, *refusal.at));
  }
  if (!refusal.hint.empty()) json["hint"] = ToUtf8(refusal.hint);
  return json;
}

}  // namespace ORKTOOL
