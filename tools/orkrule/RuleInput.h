// The rules that a command works on: one from the command line, or many from a file or from
// standard input, one a line, with its type in front (--typed), or as JSON Lines.
#pragma once

#include "JsonRecord.h"
#include "LineReader.h"
#include "Options.h"

#include <optional>
#include <string>

namespace ORKTOOL {

struct Rule {
  std::u16string text;
  std::string place;  ///< "FILE:LINE", empty for a rule of the command line
  ORKBASE::MXRULE_DATATYPE type;
  JsonRecord given = {};        ///< the members of its line, type and rule among them
  std::string before = {};      ///< what stands before the rule in a line of --typed
  std::string unreadable = {};  ///< why the line holds no rule, behind its place; else empty
};

/// Hands out one rule after the other. Blank lines are no rules, and lines with a "#" at their
/// beginning are none where lines are rules: one that begins with it has a blank in front.
class RuleInput {
 public:
  /// Throws `Failure` where the file cannot be opened.
  explicit RuleInput(const RuleOptions& options);

  /// Throws `Failure` where reading fails, or where a line cannot be read and --keep-going is not
  /// given.
  std::optional<Rule> Next();

 private:
  bool IsNone(const std::string& line) const;
  void ReadLine(const std::string& line, Rule& rule) const;
  void ReadTyped(const std::string& line, Rule& rule) const;
  void ReadJson(const std::string& line, Rule& rule) const;

  RuleOptions options_;
  ORKBASE::MXRULE_DATATYPE type_;
  std::optional<LineReader> reader_;
  bool argumentTaken_ = false;
};

/// The member that holds the rule, or the document where `standard` is its name.
std::string KeyOf(const RuleOptions& options, const char* standard = "expression");

/// What a line cannot be read for.
struct UnreadableLine {
  std::string why;  ///< "FILE:LINE: what is wrong"
};

/// The 16-bit text of what begins in a line; `place` is its "FILE", `number` its line. Throws
/// `UnreadableLine`, which names the first byte that is not UTF-8.
std::u16string TextOfLines(const std::string& text, const std::string& file, std::size_t number);

/// The text of a JSON line: a JSON text, or a member of an object, whose members are kept. Throws
/// `UnreadableLine`.
std::string TextOfJson(const std::string& line, const std::string& key, const LineReader& reader,
                       JsonRecord& given);

}  // namespace ORKTOOL
