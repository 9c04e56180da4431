// The effective replacement maps of the five classes, word by word, against a table of their own.
#include "SampleDatabase.h"
#include "dialects/MxDMTranslator.h"
#include "dialects/MxKingbaseTranslator.h"
#include "dialects/MxOpenGaussTranslator.h"
#include "dialects/MxPLsqlTranslator.h"
#include "dictionary/VocabularyTables.h"
#include "foundation/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <vector>

namespace ORKBASE {
namespace {

using T = MxSql92Translator;

struct HandlerRow {
  const char* name;
  Handler handler;
};

#define ORK_ROW(name) \
  { #name, &T::name }
constexpr HandlerRow kHandlers[] = {
    ORK_ROW(TransLike),
    ORK_ROW(TransQuarter),
    ORK_ROW(TransWeekDay),
    ORK_ROW(TransFisYear),
    ORK_ROW(TransFisMonth),
    ORK_ROW(TransFisQuarter),
    ORK_ROW(TransCount1),
    ORK_ROW(TransToText),
    ORK_ROW(TransFstDayOfMonth),
    ORK_ROW(TransLstDayOfMonth),
    ORK_ROW(TransFstDayOfFisMonth),
    ORK_ROW(TransEndOfFisMonth),
    ORK_ROW(TransFstDayOfYear),
    ORK_ROW(TransEndOfYear),
    ORK_ROW(TransFstDayOfFisYear),
    ORK_ROW(TransEndOfFisYear),
    ORK_ROW(TransFstDayOfQuarter),
    ORK_ROW(TransEndOfQuarter),
    ORK_ROW(TransFstDayOfFisQuarter),
    ORK_ROW(TransEndOfFisQuarter),
    ORK_ROW(TransToDate),
    ORK_ROW(TransThisYear),
    ORK_ROW(TransThisFisYear),
    ORK_ROW(TransLastYear),
    ORK_ROW(TransLastFisYear),
    ORK_ROW(TransThisQuarter),
    ORK_ROW(TransThisFisQuarter),
    ORK_ROW(TransLastQuarter),
    ORK_ROW(TransLastFisQuarter),
    ORK_ROW(TransThisMonth),
    ORK_ROW(TransThisFisMonth),
    ORK_ROW(TransLastMonth),
    ORK_ROW(TransLastFisMonth),
    ORK_ROW(TransSwitch),
    ORK_ROW(TransThisSet),
    ORK_ROW(TransToNumber),
    ORK_ROW(TransHour),
    ORK_ROW(TransMinute),
    ORK_ROW(TransLog10),
    ORK_ROW(TransYear),
    ORK_ROW(TransMonth),
    ORK_ROW(TransDay),
    ORK_ROW(TransDateAdd),
    ORK_ROW(TransTimeInterval),
};
#undef ORK_ROW

struct ClassColumn {
  const char* name;
  const ReplacementMap& (*map)();
};

constexpr ClassColumn kClasses[] = {{"default", &MxSql92Translator::Map},
                                    {"oracle", &MxPLsqlTranslator::Map},
                                    {"dm", &MxDMTranslator::Map},
                                    {"kingbase", &MxKingbaseTranslator::Map},
                                    {"opengauss", &MxOpenGaussTranslator::Map}};

std::string Shown(const TransEntry* entry) {
  if (entry == nullptr) return "-";
  if (entry->transType == TransType::kPlain) {
    return (entry->handler ? "plain with handler " : "") + ("\"" + U8(entry->target) + "\"");
  }
  if (!entry->target.empty()) return "handler with text";
  for (const HandlerRow& row : kHandlers) {
    if (row.handler == entry->handler) return row.name;
  }
  return "unknown handler";
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

std::vector<std::vector<std::string>> TableLines() {
  std::vector<std::vector<std::string>> lines;
  std::istringstream file(SourceText("tests/dialects/Maps.golden"));
  for (std::string line; std::getline(file, line);) {
    if (line.front() != '#') lines.push_back(Cells(line));
  }
  return lines;
}

TEST(Maps, HoldWhatTheTableSays) {
  for (const auto& cells : TableLines()) {
    ASSERT_EQ(cells.size(), 1 + std::size(kClasses)) << cells.front();
    for (std::size_t i = 0; i < std::size(kClasses); ++i) {
      const std::u16string word = U16(cells[0]);
      EXPECT_EQ(Shown(kClasses[i].map().Find(LookupKey(word))), cells[i + 1])
          << cells[0] << " " << kClasses[i].name;
      const std::u16string capitals = ToUpper(word);
      EXPECT_EQ(Shown(kClasses[i].map().Find(LookupKey(capitals))), cells[i + 1])
          << cells[0] << " in capitals, " << kClasses[i].name;
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

TEST(Maps, TableHasEveryWordOfTheVocabulary) {
  std::set<std::string> vocabulary;
  AddWords(kOperatorRows, vocabulary);
  AddWords(kFunctionRows, vocabulary);
  AddWords(kOtherRows, vocabulary);
  std::set<std::string> table;
  for (const auto& cells : TableLines()) {
    EXPECT_TRUE(table.insert(cells.front()).second) << cells.front() << " twice";
  }
  EXPECT_EQ(table, vocabulary);
}

TEST(Maps, EveryHandlerIsReachedBySomeClass) {
  std::set<std::string> named;
  for (const auto& cells : TableLines()) named.insert(cells.begin() + 1, cells.end());
  for (const HandlerRow& row : kHandlers) EXPECT_TRUE(named.count(row.name) != 0) << row.name;
}

// --- the map itself

TEST(ReplacementMap, LastRegistrationWins) {
  ReplacementMap map;
  map.AddReplacement(u"toUpper", TransType::kPlain, u"a", nullptr);
  map.AddReplacement(u"TOUPPER", TransType::kHandler, u"", &T::TransLike);
  EXPECT_EQ(Shown(map.Find(LookupKey(u"toupper"))), "TransLike");
  map.AddReplacement(u"toupper", TransType::kPlain, u"b", nullptr);
  EXPECT_EQ(Shown(map.Find(LookupKey(u"ToUpper"))), "\"b\"");
}

TEST(ReplacementMap, RemovesInAnyCaseAndWithoutFault) {
  ReplacementMap map;
  map.AddReplacement(u"Hour", TransType::kPlain, u"a", nullptr);
  map.RemoveReplacement(u"HOUR");
  EXPECT_EQ(map.Find(LookupKey(u"hour")), nullptr);
  map.RemoveReplacement(u"hour");
  map.RemoveReplacement(u"");
}

TEST(ReplacementMap, ListsGoPositionByPosition) {
  ReplacementMap map;
  map.AddReplacementList(u"a|b|c", u"1|2");
  EXPECT_EQ(Shown(map.Find(LookupKey(u"A"))), "\"1\"");
  EXPECT_EQ(Shown(map.Find(LookupKey(u"b"))), "\"2\"");
  EXPECT_EQ(Shown(map.Find(LookupKey(u"c"))), "\"\"");
  map.AddReplacementList(u"a", u"3|4");
  EXPECT_EQ(Shown(map.Find(LookupKey(u"a"))), "\"3\"");
  EXPECT_EQ(map.Find(LookupKey(u"d")), nullptr);
}

}  // namespace
}  // namespace ORKBASE
