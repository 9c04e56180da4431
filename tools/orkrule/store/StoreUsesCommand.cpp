// `orkrule store uses`: what the rules of a store depend on, and which of them depend on a table or
// field.
#include "StoreCommands.h"
#include "StoreSession.h"
#include "StoreValues.h"
#include "Table.h"
#include "Text.h"

#include "RuleAuthoring.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <utility>

namespace ORKTOOL {
namespace {

struct StoreUsesOptions {
  StoreOptions store;
  std::vector<std::string> tables;
  std::vector<std::string> fields;
};

using UsedWord = std::pair<std::u16string_view, std::u16string>;  // kind and name
using WordCounts = std::map<UsedWord, std::int64_t>;

/// The words that one worker met.
struct MetWords {
  WordCounts rules;            // how many rules have a word
  std::int64_t otherCase = 0;  // listed words that have their name in another case
  std::int64_t listed = 0;     // rules
};

/// Place of a word for people: the character that it begins with, from 1.
std::size_t CharacterAt(std::u16string_view text, std::int32_t offset) {
  const std::size_t end = std::min(static_cast<std::size_t>(offset), text.size());
  std::size_t count = 1;
  for (std::size_t at = 0; at < end; ++count) NextCodePoint(text, at);
  return count;
}

Json UseJson(const ORKBASE::RuleUse& use) {
  Json json = {{"kind", ToUtf8(use.kind)}, {"name", ToUtf8(use.name)}};
  if (!use.table.empty()) json["table"] = ToUtf8(use.table);
  if (!use.field.empty()) json["field"] = ToUtf8(use.field);
  if (use.offset >= 0) {
    json["offset"] = use.offset;
    json["length"] = use.length;
    json["unit"] = "utf-16";
  }
  return json;
}

class StoreUsesRun {
 public:
  explicit StoreUsesRun(const StoreUsesOptions& options)
      : options_(options.store),
        session_(options.store, UpkeepSettingsOf(EngineSetup(options.store.engine)),
                 [](const StoreColumns&) { return StoreSession::Dialects(); }),
        met_(session_.Crew().Size()) {
    for (const std::string& table : options.tables) tables_.push_back(Wide(table));
    for (const std::string& field : options.fields) fields_.push_back(Wide(field));
  }

  ExitStatus All() {
    StoreTally tally;
    const StreamEnd end = session_.All([this](std::size_t worker, const ORKDB::StoreRow& row,
                                              RowsDone& done) { One(worker, row, done); },
                                       tally);
    if (!IsList()) ShowWords();
    ShowSummary(tally, end);
    ReportEnd(end, "");
    if (!end.IsComplete()) return kInputOutput;
    return tally.Of(ORKBASE::kUnreadableState) > 0 ? kRefused : kDone;
  }

 private:
  bool IsList() const { return !tables_.empty() || !fields_.empty(); }

  void One(std::size_t worker, const ORKDB::StoreRow& row, RowsDone& done) {
    std::vector<ORKBASE::RuleUse> uses;
    const RowResult made = session_.ResultOf(
        worker, row, [&uses](ORKBASE::RuleUpkeep& upkeep, const ORKBASE::StoredRule& rule) {
          return upkeep.Uses(rule, uses);
        });
    done.tally.Count(made.result);
    ShowFindings(row, made, done.out);
    if (!IsList()) {
      std::set<UsedWord> words;
      for (const ORKBASE::RuleUse& use : uses) words.emplace(use.kind, use.name);
      for (const UsedWord& word : words) ++met_[worker].rules[word];
      return;
    }
    std::erase_if(uses, [this](const ORKBASE::RuleUse& use) { return !IsAsked(use); });
    if (uses.empty()) return;
    ++met_[worker].listed;
    for (const ORKBASE::RuleUse& use : uses) {
      if (DiffersInCase(made.rule, use)) ++met_[worker].otherCase;
    }
    ShowUses(row, made, uses, done.out);
  }

  bool IsAsked(const ORKBASE::RuleUse& use) const { return AskedName(use) != nullptr; }

  /// The name that was asked for and that a word has in any case, or null.
  const std::u16string* AskedName(const ORKBASE::RuleUse& use) const {
    // The name of a word that no table has is all that is known of it.
    const std::u16string field = use.table.empty() ? use.name : use.table + u"." + use.field;
    const std::u16string table = field.substr(0, std::min(field.find_last_of(u'.'), field.size()));
    if (table.size() == field.size()) return nullptr;
    const auto find = [](const std::vector<std::u16string>& names, const std::u16string& name) {
      const auto is = [&name](const std::u16string& each) { return IsSameName(each, name); };
      const auto at = std::find_if(names.begin(), names.end(), is);
      return at == names.end() ? nullptr : &*at;
    };
    const std::u16string* const asked = find(tables_, table);
    return asked != nullptr ? asked : find(fields_, field);
  }

  /// Whether a rule spells the name in another case, so that a rename would leave it alone.
  bool DiffersInCase(const ORKBASE::StoredRule& rule, const ORKBASE::RuleUse& use) const {
    const std::u16string_view word = WrittenWord(rule, use);
    const std::u16string_view asked = *AskedName(use);
    const std::size_t point = asked.find(u'.');
    const std::u16string_view table = asked.substr(0, point);
    const std::u16string_view field = point == asked.npos ? u"" : asked.substr(point + 1);
    return !word.empty() && (word.find(table) == word.npos || word.find(field) == word.npos);
  }

  static std::u16string_view WrittenWord(const ORKBASE::StoredRule& rule,
                                         const ORKBASE::RuleUse& use) {
    if (!rule.expression || use.offset < 0) return {};
    const auto offset = static_cast<std::size_t>(use.offset);
    if (offset > rule.expression->size()) return {};
    return std::u16string_view(*rule.expression)
        .substr(offset, static_cast<std::size_t>(use.length));
  }

  /// A row without a rule depends on nothing that could be told.
  void ShowFindings(const ORKDB::StoreRow& row, const RowResult& made, std::string& out) const {
    if (StateOf(made.result.findings) != ORKBASE::kUnreadableState) return;
    if (!options_.json) {
      out += session_.LinesOf(row, made);
      return;
    }
    Json json = session_.JsonOf(row, made);
    json["problems"] = FindingsJson(made.result.findings);
    out += json.dump() + "\n";
  }

  void ShowUses(const ORKDB::StoreRow& row, const RowResult& made,
                const std::vector<ORKBASE::RuleUse>& uses, std::string& out) const {
    if (options_.json) {
      Json json = session_.JsonOf(row, made);
      Json& list = json["uses"] = Json::array();
      for (const ORKBASE::RuleUse& use : uses) {
        list.push_back(UseJson(use));
        if (DiffersInCase(made.rule, use)) list.back()["differsInCase"] = true;
      }
      out += json.dump() + "\n";
      return;
    }
    const std::u16string_view text = TextsOf(made.rule, made.result).before;
    for (const ORKBASE::RuleUse& use : uses) {
      const bool isWritten = use.offset >= 0;
      const std::string place =
          isWritten ? "character " + std::to_string(CharacterAt(text, use.offset)) : "document";
      std::string word = OneLine(isWritten ? WrittenWord(made.rule, use) : use.name);
      if (DiffersInCase(made.rule, use)) word += " (in another case)";
      out += StoreLine(session_.OutputStyle(), ShownValue(row[session_.Columns().Id()]),
                       place.c_str(), Colour::kPlain, word);
    }
  }

  void ShowWords() const {
    WordCounts all;
    for (const MetWords& met : met_) {
      for (const auto& [word, count] : met.rules) all[word] += count;
    }
    std::vector<TableRow> rows = {{"kind", "name", "rules"}};
    for (const auto& [word, count] : all) {
      if (options_.json) {
        PrintJson({{"kind", ToUtf8(word.first)}, {"name", ToUtf8(word.second)}, {"rules", count}});
      } else {
        rows.push_back({ToUtf8(word.first), OneLine(word.second), std::to_string(count)});
      }
    }
    if (!options_.json) Print(TableText(rows));
  }

  void ShowSummary(const StoreTally& tally, const StreamEnd& end) const {
    MetWords sums;
    for (const MetWords& met : met_) {
      sums.listed += met.listed;
      sums.otherCase += met.otherCase;
    }
    const std::int64_t unreadable = tally.Of(ORKBASE::kUnreadableState);
    if (options_.json) {
      Json summary = {{"rules", tally.rules}, {"unreadable", unreadable}};
      if (IsList()) summary["listed"] = sums.listed;
      if (IsList()) summary["differingInCase"] = sums.otherCase;
      summary["isComplete"] = end.IsComplete();
      PrintJson({{"summary", std::move(summary)}});
      return;
    }
    std::string text = CountOf(tally.rules, "rule");
    if (IsList()) text = std::to_string(sums.listed) + " of " + text + " listed";
    if (unreadable > 0) text += "; " + std::to_string(unreadable) + " unreadable";
    if (sums.otherCase > 0) {
      text +=
          "; " + CountOf(sums.otherCase, "word") + " in another case, which a rename leaves alone";
    }
    Print(text + "\n");
  }

  const StoreOptions& options_;
  StoreSession session_;
  std::vector<MetWords> met_;  // by worker
  std::vector<std::u16string> tables_;
  std::vector<std::u16string> fields_;
};

}  // namespace

void AddStoreUsesCommand(CLI::App& store, ExitStatus& status) {
  CLI::App* const command = store.add_subcommand(
      "uses", "List what the rules depend on, or those that depend on a table or field");
  const auto options = std::make_shared<StoreUsesOptions>();
  command->add_option("--table", options->tables, "List the rules with fields of these tables: A,B")
      ->delimiter(',')
      ->allow_extra_args(false);
  command->add_option("--field", options->fields, "List the rules with these fields: A.X,B.Y")
      ->delimiter(',')
      ->allow_extra_args(false);
  AddStoreOptions(*command, options->store);
  command->footer(
      "Example:\n  orkrule store uses --store examples/rules.db --db examples/shop.db \\\n"
      "    --select \"select * from rules\" --field Orders.Amount");
  command->callback([options, &status] { status = StoreUsesRun(*options).All(); });
}

}  // namespace ORKTOOL
