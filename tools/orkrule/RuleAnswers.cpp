#include "RuleAnswers.h"

#include "Report.h"
#include "Text.h"

namespace ORKTOOL {
namespace {

constexpr const char* kErrorKey = "error";

}  // namespace

RuleAnswers::RuleAnswers(const RuleOptions& options, const AnswerForm& form)
    : json_(options.json), form_(form) {}

bool RuleAnswers::IsUnreadable(const Rule& rule) {
  return IsUnreadable(rule.unreadable, rule.given);
}

bool RuleAnswers::IsUnreadable(const std::string& why, const JsonRecord& given) {
  if (why.empty()) return false;
  ++unreadable_;
  PrintError("orkrule: " + why + "\n");
  if (json_) {
    PrintRecord(given, {{kErrorKey, {{"number", 0}, {"text", why}, {"fixes", Json::array()}}}});
  } else {
    SkipLines(why);
  }
  return true;
}

void RuleAnswers::Count(bool isRefused) {
  ++total_;
  if (isRefused) ++refused_;
}

void RuleAnswers::SkipLines(const std::string& place) const {
  if (!place.empty()) Print(std::string(form_.lines, '\n'));
}

void RuleAnswers::PrintRecord(const JsonRecord& given, const Json& own) {
  if (own.contains(kErrorKey) || !given.Find(kErrorKey)) {
    Print(given.With(own) + "\n");
    return;
  }
  JsonRecord left = given;
  left.Remove(kErrorKey);
  Print(left.With(own) + "\n");
}

ExitStatus RuleAnswers::End() const {
  std::string text;
  if (refused_ > 0) {
    text = std::to_string(refused_) + " of " + Counted(total_, form_.one, form_.several) + " " +
           form_.failed;
  }
  if (unreadable_ > 0) {
    text +=
        (text.empty() ? "" : ", ") + Counted(unreadable_, "line", "lines") + " could not be read";
  }
  if (!text.empty() && total_ + unreadable_ > 1) PrintError("orkrule: " + text + "\n");
  return unreadable_ > 0 ? kInputOutput : refused_ > 0 ? kRefused : kDone;
}

Json RuleMember(const RuleOptions& options, const std::u16string& text) {
  return {{KeyOf(options), ToUtf8(text)}};
}

std::string Counted(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

}  // namespace ORKTOOL
