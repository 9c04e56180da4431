// The effective replacement maps of the dialects, word by word, against tables of their own:
// Maps.golden has every word of the vocabulary, Rows.golden what rows say that are no texts.
#include "SampleDatabase.h"
#include "dialects/Dialects.h"
#include "dialects/MxKingbaseTranslator.h"
#include "dialects/MxPLsqlTranslator.h"
#include "dictionary/VocabularyTables.h"
#include "foundation/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <vector>

namespace ORKBASE {
namespace {

using T = TranslatorFrame;

struct HandlerRow {
  const char* name;
  Handler handler;
};

// clang-format off
constexpr HandlerRow kHandlers[] = {
    {"TransLike",          HandleBy<&T::TransLike>},
    {"TransCount1",        HandleBy<&T::TransCount1>},
    {"TransSwitch",        HandleBy<&T::TransSwitch>},
    {"TransThisSet",       HandleBy<&T::TransThisSet>},
    {"TransToText",        HandleBy<&T::TransToText>},
    {"TransToDate",        HandleBy<&T::TransToDate>},
    {"TransToNumber",      HandleBy<&T::TransToNumber>},
    {"TransWeekDay",       HandleBy<&MxKingbaseTranslator::TransWeekDay>},
    {"KingbaseDateAdd",    HandleBy<&MxKingbaseTranslator::TransDateAdd>},
    {"OracleDateAdd",      HandleBy<&MxPLsqlTranslator::TransDateAdd>},
    {"OracleTimeInterval", HandleBy<&MxPLsqlTranslator::TransTimeInterval>},
    {"OracleLog10",        HandleBy<&MxPLsqlTranslator::TransLog10>},
};
// clang-format on

/// A row as Rows.golden has it.
struct RowText {
  std::string operator()(std::u16string_view) const { return "a text"; }
  std::string operator()(OwnWord) const { return "own word"; }
  std::string operator()(Handler handler) const {
    for (const HandlerRow& row : kHandlers) {
      if (row.handler == handler) return row.name;
    }
    return "unknown handler";
  }
  std::string operator()(const DatePart& row) const { return "part " + U8(row.part); }
  std::string operator()(const FisDatePart& row) const { return "fiscal part " + U8(row.part); }
  std::string operator()(const PeriodBound& row) const {
    return (row.start ? "first day " : "last day ") + U8(row.part) + (row.fiscal ? " fiscal" : "");
  }
  std::string operator()(const WholePeriod& row) const {
    return U8(row.lower) + " and " + U8(row.upper);
  }
  std::string operator()(const OneLess& row) const {
    return U8(row.period) + ", argument " + std::to_string(row.argument + 1) + " less one";
  }
  std::string operator()(const Refusal& row) const {
    return "refused " + std::to_string(row.message) + " " + U8(row.module) + " " +
           U8(row.function) + " " + std::to_string(row.location);
  }
};

bool IsText(const TransEntry& entry) {
  return std::holds_alternative<std::u16string_view>(entry.what);
}

std::string Quoted(const TransEntry& entry) {
  return "\"" + U8(entry.target) + "\"";
}

std::string RowOf(const ReplacementMap& map, const std::string& word) {
  for (const auto& [key, entry] : map) {
    if (key == ToLower(U16(word)))
      return IsText(entry) ? Quoted(entry) : std::visit(RowText{}, entry.what);
  }
  return "-";
}

/// What the map finds, as Maps.golden has it: what is rebuilt has the name of its handler.
std::string Shown(const TransEntry* entry, const std::string& word) {
  if (entry == nullptr) return "-";
  if (entry->transType() == TransType::kPlain) return Quoted(*entry);
  if (!entry->target.empty()) return "rebuilt with a text";
  return "Trans" + U8(ToUpper(U16(word.substr(0, 1)))) + word.substr(1);
}

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  for (std::size_t at = 0; at <= line.size();) {
    const std::size_t end = std::min(line.find(" ; ", at), line.size());
    std::string cell = line.substr(at, end - at);
    cell.erase(cell.find_last_not_of(' ') + 1);
    cells.push_back(cell);
    at = end + 3;
  }
  return cells;
}

std::vector<std::vector<std::string>> TableLines(const std::string& file) {
  std::vector<std::vector<std::string>> lines;
  std::istringstream text(SourceText("tests/dialects/" + file));
  for (std::string line; std::getline(text, line);) {
    if (line.front() != '#') lines.push_back(Cells(line));
  }
  return lines;
}

TEST(Maps, HoldWhatTheTableSays) {
  for (const auto& cells : TableLines("Maps.golden")) {
    ASSERT_EQ(cells.size(), 1 + Dialects().size()) << cells.front();
    for (std::size_t i = 0; i < Dialects().size(); ++i) {
      const ReplacementMap& map = Dialects()[i].map();
      const std::string name = U8(Dialects()[i].dialect.name);
      const std::u16string word = U16(cells[0]);
      EXPECT_EQ(Shown(map.Find(LookupKey(word)), cells[0]), cells[i + 1]) << cells[0] << name;
      EXPECT_EQ(Shown(map.Find(LookupKey(ToUpper(word))), cells[0]), cells[i + 1])
          << cells[0] << " in capitals, " << name;
    }
  }
}

/// Rows.golden by word and dialect, `rest` and `all` resolved.
std::map<std::string, std::map<std::string, std::string>> Rows() {
  std::map<std::string, std::map<std::string, std::string>> rows;
  for (const auto& cells : TableLines("Rows.golden")) {
    auto& row = rows[cells[0]];
    std::istringstream names(cells.at(1));
    for (std::string name; names >> name;) {
      if (name != "rest" && name != "all") {
        EXPECT_TRUE(row.emplace(name, cells.at(2)).second) << cells[0] << " " << name << " twice";
        continue;
      }
      for (const RuleDialect& dialect : RuleDialects()) row.emplace(U8(dialect.name), cells.at(2));
    }
  }
  return rows;
}

TEST(Maps, HaveTheRowsOfTheTable) {
  const auto rows = Rows();
  for (const auto& [word, row] : rows) {
    for (const auto& [name, text] : row) {
      const RuleDialect* dialect = FindRuleDialect(U16(name));
      ASSERT_TRUE(dialect) << word << " " << name;
      EXPECT_EQ(RowOf(DialectOf(dialect->number).map(), word), text) << word << " " << name;
    }
  }
}

TEST(Maps, HaveNoOtherRowThatIsNoText) {
  std::set<std::u16string> words;
  for (const auto& [word, row] : Rows()) words.insert(ToLower(U16(word)));
  for (const DialectRow& dialect : Dialects()) {
    for (const auto& [word, entry] : dialect.map()) {
      EXPECT_TRUE(IsText(entry) || words.count(word) != 0)
          << U8(word) << " " << U8(dialect.dialect.name);
    }
  }
}

/// A period is made by the rows of other words; no chain of them comes back to its beginning.
TEST(Maps, HaveTheRowsThatPeriodsAreMadeOf) {
  for (const DialectRow& dialect : Dialects()) {
    for (const auto& [word, entry] : dialect.map()) {
      if (const auto* whole = std::get_if<WholePeriod>(&entry.what)) {
        for (const std::u16string_view bound : {whole->lower, whole->upper}) {
          const TransEntry* row = dialect.map().Find(LookupKey(bound));
          ASSERT_TRUE(row) << U8(word);
          EXPECT_TRUE(std::holds_alternative<PeriodBound>(row->what)) << U8(word);
        }
      } else if (const auto* less = std::get_if<OneLess>(&entry.what)) {
        const TransEntry* row = dialect.map().Find(LookupKey(less->period));
        ASSERT_TRUE(row) << U8(word);
        EXPECT_TRUE(std::holds_alternative<WholePeriod>(row->what)) << U8(word);
      }
    }
  }
}

template <class Rows>
void AddWords(const Rows& rows, std::set<std::string>& words) {
  for (const VocabularyRow& row : rows) {
    if (row.display != Display::kOwnText) {
      words.insert(U8(row.primary));
      continue;
    }
    for (const std::u16string_view word : SplitText(row.primary, u"|")) words.insert(U8(word));
  }
}

std::set<std::string> Vocabulary() {
  std::set<std::string> words;
  AddWords(kOperatorRows, words);
  AddWords(kFunctionRows, words);
  AddWords(kOtherRows, words);
  return words;
}

TEST(Maps, TableHasEveryWordOfTheVocabulary) {
  std::set<std::string> table;
  for (const auto& cells : TableLines("Maps.golden")) {
    EXPECT_TRUE(table.insert(cells.front()).second) << cells.front() << " twice";
  }
  EXPECT_EQ(table, Vocabulary());
}

TEST(Maps, HaveNoRowOfAWordThatThereIsNot) {
  std::set<std::u16string> words;
  for (const std::string& word : Vocabulary()) words.insert(ToLower(U16(word)));
  for (const DialectRow& dialect : Dialects()) {
    for (const auto& [word, entry] : dialect.map()) {
      EXPECT_TRUE(words.count(word) != 0) << U8(word) << " " << U8(dialect.dialect.name);
    }
  }
}

TEST(Maps, EveryHandlerIsReachedBySomeDialect) {
  std::set<std::string> named;
  for (const auto& cells : TableLines("Rows.golden")) named.insert(cells.at(2));
  for (const HandlerRow& row : kHandlers) EXPECT_TRUE(named.count(row.name) != 0) << row.name;
}

// --- the map itself

TEST(ReplacementMap, LastRegistrationWins) {
  ReplacementMap map;
  map.AddReplacement(u"toUpper", u"a");
  map.AddReplacement(u"TOUPPER", HandleBy<&T::TransLike>);
  EXPECT_EQ(RowOf(map, "toupper"), "TransLike");
  map.AddReplacement(u"toupper", u"b");
  EXPECT_EQ(Shown(map.Find(LookupKey(u"ToUpper")), "toUpper"), "\"b\"");
}

TEST(ReplacementMap, FindsNoWordThatGoesAsItStands) {
  ReplacementMap map;
  map.AddReplacement(u"Hour", u"a");
  map.AddReplacement(u"HOUR", OwnWord{});
  map.AddReplacement(u"", OwnWord{});
  EXPECT_EQ(map.Find(LookupKey(u"hour")), nullptr);
  EXPECT_EQ(map.Find(LookupKey(u"")), nullptr);
  EXPECT_EQ(RowOf(map, "hour"), "own word");
  map.AddReplacement(u"hour", u"b");
  EXPECT_EQ(Shown(map.Find(LookupKey(u"hour")), "hour"), "\"b\"");
}

TEST(ReplacementMap, OutlivesTheTextsOfItsRows) {
  ReplacementMap map;
  map.AddReplacement(u"a", std::u16string(40, u'x'));
  const ReplacementMap copy = map;
  EXPECT_EQ(U8(copy.Find(LookupKey(u"A"))->target), std::string(40, 'x'));
}

TEST(ReplacementMap, ListsGoPositionByPosition) {
  ReplacementMap map;
  map.AddReplacementList(u"a|b|c", u"1|2");
  EXPECT_EQ(RowOf(map, "A"), "\"1\"");
  EXPECT_EQ(RowOf(map, "b"), "\"2\"");
  EXPECT_EQ(RowOf(map, "c"), "\"\"");
  map.AddReplacementList(u"a", u"3|4");
  EXPECT_EQ(RowOf(map, "a"), "\"3\"");
  EXPECT_EQ(RowOf(map, "d"), "-");
}

}  // namespace
}  // namespace ORKBASE
