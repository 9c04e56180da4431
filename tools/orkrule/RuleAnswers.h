// What the commands answer to many rules: a line for each, so that the output stays in step with
// the input, and a count of those that failed at the end.
#pragma once

#include "JsonRecord.h"
#include "Options.h"
#include "Output.h"
#include "RuleInput.h"

#include <cstddef>
#include <string>

namespace ORKTOOL {

/// How a command speaks of what it works on, and answers.
struct AnswerForm {
  std::size_t lines = 1;  ///< of text for each rule; 0: as many as there is to say
  const char* one = "rule";
  const char* several = "rules";
  const char* failed = "refused";
};

class RuleAnswers {
 public:
  explicit RuleAnswers(const RuleOptions& options, const AnswerForm& form = {});

  /// Whether the line of a rule could not be read. Then this was told, and is the answer.
  bool IsUnreadable(const Rule& rule);
  bool IsUnreadable(const std::string& why, const JsonRecord& given);

  /// Counts one that was answered.
  void Count(bool isRefused);
  /// Prints the lines without text that stand for a refused rule; none for one that came as an
  /// argument.
  void SkipLines(const std::string& place) const;
  /// Prints the members that came in with those of the command. An "error" that came in is not
  /// passed on: what it was about is answered anew.
  static void PrintRecord(const JsonRecord& given, const Json& own);

  /// How many were read.
  std::size_t Total() const noexcept { return total_; }
  /// Tells how many failed, where there were several. Returns the exit status.
  ExitStatus End() const;

 private:
  bool json_;
  AnswerForm form_;
  std::size_t total_ = 0;
  std::size_t refused_ = 0;
  std::size_t unreadable_ = 0;
};

/// The member with the rule, the first one that a command answers.
Json RuleMember(const RuleOptions& options, const std::u16string& text);

/// "N ONE" or "N SEVERAL".
std::string Counted(std::size_t count, const char* one, const char* several);

}  // namespace ORKTOOL
