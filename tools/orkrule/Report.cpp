#include "Report.h"

#include "Excerpt.h"
#include "Outage.h"
#include "Problems.h"
#include "Text.h"

#include <unistd.h>

namespace ORKTOOL {
namespace {

constexpr std::int32_t kOwnError = -1;  // any other number is the database's
constexpr const char* kAuto = "auto";

/// The lines of a rule of which no word is to blame. Control characters, which would move the
/// cursor, are blanks.
std::string Indented(std::u16string_view rule) {
  std::u16string text = u"  ";
  for (const char16_t unit : rule) {
    text += IsControl(unit) && unit != u'\n' ? u' ' : unit;
    if (unit == u'\n') text += u"  ";
  }
  return ToUtf8(text) + '\n';
}

std::size_t CharactersBefore(std::u16string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++count) NextCodePoint(text, at);
  return count;
}

}  // namespace

Refusal RefusalOf(const ORKBASE::MxErrorRecord& error) {
  Refusal refusal{error.message != 0 ? error.message : error.number, ORKBASE::ErrorText(error)};
  if (error.cause == ORKBASE::kDatabaseCause || error.number != kOwnError) {
    throw Outage{ToUtf8(refusal.text)};
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

void ReportRefusal(const Rule& rule, const Refusal& refusal) {
  std::string message = "orkrule: ";
  if (!rule.place.empty()) message += rule.place + ": ";
  message += ToUtf8(refusal.text);
  if (!refusal.hint.empty()) message += " " + ToUtf8(refusal.hint);
  const Style style = StyleOf(STDERR_FILENO, kAuto);
  const std::string shown =
      refusal.at ? Excerpt(rule.text, {*refusal.at, refusal.length}, style, Colour::kError)
                 : Indented(rule.text);
  PrintError(message + "\n" + shown + FixesText(refusal.fixes));
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
    json["offset"] = *refusal.at;
    json["length"] = refusal.length;
    json["unit"] = "utf-16";
    json["position"] = CharactersBefore(std::u16string_view(rule).substr(0, *refusal.at));
  }
  if (!refusal.hint.empty()) json["hint"] = ToUtf8(refusal.hint);
  json["fixes"] = FixesJson(refusal.fixes);
  return json;
}

}  // namespace ORKTOOL
