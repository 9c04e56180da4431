#include "Report.h"

#include "Excerpt.h"
#include "Problems.h"
#include "Text.h"

#include <unistd.h>

namespace ORKTOOL {
namespace {

constexpr std::int32_t kOwnError = -1;  // any other number is the database's
constexpr const char* kIndent = "  ";
constexpr const char* kAuto = "auto";

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

/// On a terminal what fits, in colours; elsewhere the whole rule.
std::string Placed(const Rule& rule, const Refusal& refusal) {
  const Style style = StyleOf(STDERR_FILENO, kAuto);
  if (!refusal.at || style.columns == 0) return MarkedRule(rule.text, refusal.at);
  return Excerpt(rule.text, {*refusal.at, refusal.length}, style, Colour::kError);
}

}  // namespace

Refusal RefusalOf(const ORKBASE::MxErrorRecord& error) {
  Refusal refusal{error.number, ORKBASE::ErrorText(error)};
  if (error.cause == ORKBASE::kDatabaseCause || error.number != kOwnError) {
    throw Failure{kInputOutput, ToUtf8(refusal.text)};
  }
  if (error.offset >= 0) {
    refusal.at = static_cast<std::size_t>(error.offset);
    refusal.length = static_cast<std::size_t>(error.length);
  }
  // A word that begins with its full stop names no table that could be missed.
  if (!error.behind.empty() && !error.word.starts_with(u'.')) {
    refusal.hint = ORKBASE::ErrorText(error.behind.front());
  }
  return refusal;
}

void AddAdvice(Refusal& refusal, ORKBASE::RuleAuthoring& authoring, ORKBASE::MXRULE_DATATYPE type,
               const Rule& rule) {
  const Problems problems = authoring.Check(type, rule.text);
  if (!HasErrors(problems)) return;
  refusal.fixes = problems.front().fixes;
  const std::u16string hint = LanguageHint(problems);
  if (!refusal.hint.empty() && !hint.empty()) refusal.hint += u' ';
  refusal.hint += hint;
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
  PrintError(message + "\n" + Placed(rule, refusal) + FixesText(refusal.fixes));
}

void ReportWarnings(const Rule& rule, ORKBASE::RuleAuthoring& authoring,
                    const WarningsWanted& wanted) {
  std::string text;
  const Style style = StyleOf(STDERR_FILENO, kAuto);
  for (const ORKBASE::RuleProblem& problem :
       authoring.Check(wanted.type, rule.text, wanted.databases, wanted.twoParts)) {
    const bool isWarning = problem.severity == ORKBASE::kWarningSeverity && !IsRefusal(problem);
    if (isWarning) text += ProblemText("orkrule: ", rule, problem, style);
  }
  if (!text.empty()) PrintError(text);
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
