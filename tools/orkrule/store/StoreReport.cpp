#include "StoreReport.h"

#include "Excerpt.h"
#include "Problems.h"
#include "StoreValues.h"
#include "Text.h"

#include <algorithm>

namespace ORKTOOL {
namespace {

constexpr std::size_t kIdWidth = 8;
constexpr std::size_t kStateWidth = 18;

struct UpkeepStateRow {
  ORKBASE::UpkeepState state;
  const char* name;
  const char* words;
  Colour colour;
};

// clang-format off
constexpr UpkeepStateRow kStateRows[] = {
    {ORKBASE::kWellState,            "well",            "well",             Colour::kPlain},
    {ORKBASE::kRefusedState,         "refused",         "refused",          Colour::kError},
    {ORKBASE::kChangedState,         "changed",         "changed",          Colour::kWarning},
    {ORKBASE::kNotTranslatableState, "notTranslatable", "not translatable", Colour::kError},
    {ORKBASE::kUnreadableState,      "unreadable",      "unreadable",       Colour::kError},
    {ORKBASE::kBrokenState,          "broken",          "broken",           Colour::kError},
    {ORKBASE::kNoticeState,          "notice",          "notice",           Colour::kInformation},
};
// clang-format on

const UpkeepStateRow& RowOf(ORKBASE::UpkeepState state) {
  const auto is = [state](const UpkeepStateRow& row) { return row.state == state; };
  return *std::find_if(std::begin(kStateRows), std::end(kStateRows) - 1, is);
}

std::string FindingText(const ORKBASE::UpkeepFinding& finding) {
  const std::string text = OneLine(finding.text);
  return finding.dialect.empty() ? text : ToUtf8(finding.dialect) + ": " + text;
}

/// Names that other commands read are written as they want them, however the database spells them.
std::string MemberName(const std::u16string& column) {
  for (const std::u16string_view known :
       {u"id", u"type", u"expression", u"template", u"cax", u"language"}) {
    if (IsSameName(column, known)) return ToUtf8(known);
  }
  return ToUtf8(column);
}

}  // namespace

void StoreTally::Count(const ORKBASE::UpkeepResult& result) {
  ++rules;
  ++states[static_cast<std::size_t>(StateOf(result.findings))];
  if (result.changes) ++changing;
  if (result.changes && !result.mayWrite) ++left;
}

void StoreTally::Add(const StoreTally& other) {
  rules += other.rules;
  changing += other.changing;
  left += other.left;
  for (std::size_t i = 0; i < states.size(); ++i) states[i] += other.states[i];
}

ORKBASE::UpkeepState StateOf(const std::vector<ORKBASE::UpkeepFinding>& findings) {
  if (findings.empty() || findings.front().state == ORKBASE::kNoticeState) {
    return ORKBASE::kWellState;
  }
  return findings.front().state;
}

const char* StateName(ORKBASE::UpkeepState state) {
  return RowOf(state).name;
}

const char* StateWords(ORKBASE::UpkeepState state) {
  return RowOf(state).words;
}

RuleTexts TextsOf(const ORKBASE::StoredRule& before, const ORKBASE::UpkeepResult& result) {
  const auto view = [](const ORKBASE::StoredRule& rule) {
    return rule.expression ? std::u16string_view(*rule.expression) : std::u16string_view();
  };
  return {view(before), view(result.after)};
}

std::string StoreLine(const Style& style, const std::string& id, const char* state, Colour colour,
                      const std::string& text) {
  std::string line = Padded(id, kIdWidth - 1) + " ";
  line += Coloured(style, colour, state);
  line.append(Padded(state, kStateWidth).size() - std::string_view(state).size(), ' ');
  return line.append(text).append("\n");
}

std::string FindingLines(const Style& style, const std::string& id, const RuleTexts& texts,
                         const std::vector<ORKBASE::UpkeepFinding>& findings) {
  std::string lines;
  for (const ORKBASE::UpkeepFinding& finding : findings) {
    const UpkeepStateRow& row = RowOf(finding.state);
    lines += StoreLine(style, id, row.words, row.colour, FindingText(finding));
    const std::u16string_view text = finding.isAfter ? texts.after : texts.before;
    if (finding.offset >= 0 && !text.empty()) {
      const Stretch stretch = {static_cast<std::size_t>(finding.offset),
                               static_cast<std::size_t>(std::max(finding.length, 0))};
      lines += Excerpt(text, stretch, style, row.colour);
    }
    lines += FixesText(finding.fixes);
  }
  return lines;
}

Json RowJson(const StoreColumns& columns, const ORKDB::StoreRow& row) {
  Json json = Json::object();
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::u16string& name = columns.Names()[i];
    if (DialectOfColumn(name) != nullptr || IsSameName(name, u"document")) continue;
    json[MemberName(name)] = JsonOfValue(row[i]);
  }
  return json;
}

Json FindingsJson(const std::vector<ORKBASE::UpkeepFinding>& findings) {
  Json list = Json::array();
  for (const ORKBASE::UpkeepFinding& finding : findings) {
    Json json = {{"state", StateName(finding.state)},
                 {"number", finding.number},
                 {"text", ToUtf8(finding.text)}};
    if (finding.offset >= 0) {
      json["offset"] = finding.offset;
      json["length"] = finding.length;
      json["unit"] = "utf-16";
    }
    if (finding.isAfter) json["isAfter"] = true;
    if (!finding.dialect.empty()) json["dialect"] = ToUtf8(finding.dialect);
    json["fixes"] = FixesJson(finding.fixes);
    list.push_back(std::move(json));
  }
  return list;
}

std::string StateCounts(const StoreTally& tally, std::span<const ORKBASE::UpkeepState> always) {
  std::string counts;
  for (const UpkeepStateRow& row : kStateRows) {
    const std::int64_t count = tally.Of(row.state);
    if (count == 0 && std::find(always.begin(), always.end(), row.state) == always.end()) continue;
    counts.append(counts.empty() ? "" : ", ").append(std::to_string(count) + " ").append(row.words);
  }
  return counts;
}

Json TallyJson(const StoreTally& tally) {
  Json json = {{"rules", tally.rules}};
  for (const UpkeepStateRow& row : kStateRows) {
    if (row.state != ORKBASE::kNoticeState) json[row.name] = tally.Of(row.state);
  }
  return json;
}

std::string CountOf(std::int64_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

}  // namespace ORKTOOL
