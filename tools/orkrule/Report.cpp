#include "Report.h"

#include "RuleType.h"
#include "Text.h"

#include "MxLexicalAnalyzer.h"
#include "OrkPlatform.h"

namespace ORKTOOL {
namespace {

constexpr std::int32_t kUnknownWord = 6260;
constexpr std::int32_t kEndsTooEarly = 6294;
constexpr const char* kIndent = "  ";

std::size_t StartOfToken(const std::vector<std::u16string>& tokens, std::size_t index) {
  std::size_t start = 0;
  for (std::size_t i = 0; i < index && i < tokens.size(); ++i) start += tokens[i].size();
  return start;
}

bool IsUnknown(const Refusal& refusal, const std::u16string& word) {
  std::u16string text = ORKBASE::MessageText(kUnknownWord);
  if (const std::size_t at = text.find(u"%s"); at != text.npos) text.replace(at, 2, word);
  return refusal.text == text;
}

/// What loading the table of an unknown word `table.field` says; empty for other words, and where
/// the table is there. Asked on a copy, so the error of the rule stays.
std::u16string TableHint(const ORKBASE::MxExpression& rules, const std::u16string& word) {
  const std::size_t dot = word.find(u'.');
  if (dot == 0 || dot == word.npos || word.find(u'.', dot + 1) != word.npos) return {};
  ORKBASE::MxExpression probe = rules;
  probe.SetDts(word.substr(0, dot));
  if (probe.errNumber() != 0 && probe.errNumber() != kOwnError) {
    throw Failure{kInputOutput, ToUtf8(probe.errDescription())};
  }
  return probe.errDescription();
}

/// Fills in where the rule was refused.
void Locate(Refusal& refusal, const ORKBASE::MxExpression& rules, const std::u16string& rule,
            std::size_t token) {
  std::vector<std::u16string> tokens;
  ORKBASE::MxLexicalAnalyzer().GenerateOriginalTokens(rule, tokens);
  refusal.at = StartOfToken(tokens, token);
  if (token < tokens.size() && IsUnknown(refusal, tokens[token])) {
    refusal.hint = TableHint(rules, tokens[token]);
  }
}

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

Refusal RefusalOf(const ORKBASE::MxExpression& rules, const std::u16string& rule) {
  Refusal refusal{rules.errNumber(), rules.errDescription()};
  if (refusal.number != kOwnError) throw Failure{kInputOutput, ToUtf8(refusal.text)};
  const std::int32_t token = ORKBASE::RefusedToken(rules);
  if (token >= 0) {
    Locate(refusal, rules, rule, static_cast<std::size_t>(token));
  } else if (refusal.text == ORKBASE::MessageText(kEndsTooEarly)) {
    refusal.at = rule.size();
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
