// The rules that a command works on: one from the command line, or many from a file or from
// standard input, one a line or as JSON Lines.
#pragma once

#include "LineReader.h"
#include "Options.h"

#include <optional>
#include <string>

namespace ORKTOOL {

struct Rule {
  std::u16string text;
  std::string place;  ///< "FILE:LINE", empty for a rule of the command line
  ORKBASE::MXRULE_DATATYPE type;
};

/// Hands out one rule after the other. Blank lines are no rules.
class RuleInput {
 public:
  /// Throws `Failure` where the file cannot be opened.
  explicit RuleInput(const RuleOptions& options);

  /// Throws `Failure` where reading fails or a line is not UTF-8, or not what --jsonl says.
  std::optional<Rule> Next();

 private:
  Rule LineRule(const std::string& line, const std::string& place) const;
  Rule JsonRule(const std::string& line, const std::string& place) const;

  RuleOptions options_;
  ORKBASE::MXRULE_DATATYPE type_;
  std::optional<LineReader> reader_;
  bool argumentTaken_ = false;
};

}  // namespace ORKTOOL
