#include "Problems.h"

#include "Excerpt.h"
#include "Text.h"

#include "OrkPlatform.h"

#include <algorithm>

namespace ORKTOOL {
namespace {

// Numbers of messages, which are for ever.
constexpr std::int32_t kCallRefused = 7237;
constexpr std::int32_t kOtherLanguage = 7306;
constexpr std::int32_t kDatabaseFailed = 7319;
constexpr std::int32_t kWordsFollowLanguage = 7329;
constexpr std::int32_t kFixOwnLanguage = 7354;

struct SeverityRow {
  ORKBASE::RuleSeverity severity;
  const char* name;
  Colour colour;
};

// clang-format off
constexpr SeverityRow kSeverities[] = {
    {ORKBASE::kErrorSeverity,       "error",       Colour::kError},
    {ORKBASE::kWarningSeverity,     "warning",     Colour::kWarning},
    {ORKBASE::kInformationSeverity, "information", Colour::kInformation},
};
// clang-format on

const SeverityRow& RowOf(ORKBASE::RuleSeverity severity) {
  const auto is = [severity](const SeverityRow& row) { return row.severity == severity; };
  return *std::find_if(std::begin(kSeverities), std::end(kSeverities) - 1, is);
}

ORKBASE::RuleSeverity SeverityOf(const std::string& name) {
  const auto is = [&name](const SeverityRow& row) { return row.name == name; };
  return std::find_if(std::begin(kSeverities), std::end(kSeverities) - 1, is)->severity;
}

std::u16string TextOf(const Json& record, const char* name) {
  return FromUtf8(record.at(name).get_ref<const std::string&>()).value_or(std::u16string());
}

template <typename Item, typename Read>
std::vector<Item> ListOf(const Json& record, const char* name, Read read) {
  std::vector<Item> items;
  for (const Json& each : record.at(name)) items.push_back(read(each));
  return items;
}

ORKBASE::RuleEdit EditOf(const Json& edit) {
  return {edit.at("offset").get<std::int32_t>(), edit.at("length").get<std::int32_t>(),
          TextOf(edit, "text")};
}

ORKBASE::RuleFix FixOf(const Json& fix) {
  return {TextOf(fix, "label"), ListOf<ORKBASE::RuleEdit>(fix, "edits", EditOf)};
}

ORKBASE::RuleProblem ProblemOf(const Json& problem) {
  ORKBASE::RuleProblem made;
  made.offset = problem.at("offset").get<std::int32_t>();
  made.length = problem.at("length").get<std::int32_t>();
  made.severity = SeverityOf(problem.at("severity").get<std::string>());
  made.number = problem.at("number").get<std::int32_t>();
  made.text = TextOf(problem, "text");
  made.fixes = ListOf<ORKBASE::RuleFix>(problem, "fixes", FixOf);
  return made;
}

/// Whether a label is made of the message for a word of another language.
bool NamesOwnWord(const ORKBASE::RuleFix& fix) {
  const std::u16string form = ORKBASE::MessageText(kFixOwnLanguage);
  const std::size_t gap = form.find(u"%s");
  return gap != form.npos && fix.label.starts_with(form.substr(0, gap));
}

bool IsOfOtherLanguage(const ORKBASE::RuleProblem& problem) {
  return problem.number == kOtherLanguage ||
         std::any_of(problem.fixes.begin(), problem.fixes.end(), NamesOwnWord);
}

}  // namespace

Problems ProblemsOf(const Json& answer) {
  return ListOf<ORKBASE::RuleProblem>(answer, "problems", ProblemOf);
}

std::string ProblemText(const std::string& begin, const Rule& rule,
                        const ORKBASE::RuleProblem& problem, const Style& style) {
  const SeverityRow& severity = RowOf(problem.severity);
  std::string text = begin + (rule.place.empty() ? "" : rule.place + ": ");
  text += Coloured(style, severity.colour, severity.name + std::string(":"));
  text.append(" ").append(ToUtf8(problem.text)).append("\n");
  const Stretch stretch = {static_cast<std::size_t>(problem.offset),
                           static_cast<std::size_t>(problem.length)};
  text += Excerpt(rule.text, stretch, style, severity.colour);
  return text + FixesText(problem.fixes);
}

std::string FixesText(const std::vector<ORKBASE::RuleFix>& fixes) {
  std::string text;
  for (const ORKBASE::RuleFix& fix : fixes) {
    text.append("  fix: ").append(ToUtf8(fix.label)).append("\n");
  }
  return text;
}

Json FixesJson(const std::vector<ORKBASE::RuleFix>& fixes) {
  Json list = Json::array();
  for (const ORKBASE::RuleFix& fix : fixes) {
    Json edits = Json::array();
    for (const ORKBASE::RuleEdit& edit : fix.edits) {
      edits.push_back(
          {{"offset", edit.offset}, {"length", edit.length}, {"text", ToUtf8(edit.text)}});
    }
    list.push_back({{"label", ToUtf8(fix.label)}, {"edits", std::move(edits)}});
  }
  return list;
}

bool HasErrors(const Problems& problems) {
  return std::any_of(problems.begin(), problems.end(), [](const ORKBASE::RuleProblem& problem) {
    return problem.severity == ORKBASE::kErrorSeverity;
  });
}

bool HasOutage(const Problems& problems) {
  return std::any_of(problems.begin(), problems.end(), [](const ORKBASE::RuleProblem& problem) {
    return problem.number == kDatabaseFailed;
  });
}

bool IsRefusal(const ORKBASE::RuleProblem& problem) {
  return problem.number == kCallRefused;
}

std::u16string LanguageHint(const Problems& problems) {
  if (std::none_of(problems.begin(), problems.end(), IsOfOtherLanguage)) return {};
  return ORKBASE::MessageText(kWordsFollowLanguage) + u" (--language)";
}

}  // namespace ORKTOOL
