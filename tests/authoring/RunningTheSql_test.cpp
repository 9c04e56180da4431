// docs/running-the-sql.md names all that the application has to supply.
#include "SampleDatabase.h"
#include "dialects/Capabilities.h"
#include "dialects/Dialects.h"

#include <gtest/gtest.h>

namespace ORKBASE {
namespace {

/// The cells of the row that begins with a name, without blanks around them.
std::vector<std::string> CellsOf(const std::string& page, const std::string& name) {
  std::vector<std::string> cells;
  const std::size_t begin = page.find("\n| `" + name + "` |");
  if (begin == std::string::npos) return cells;
  std::stringstream row(page.substr(begin + 2, page.find('\n', begin + 1) - begin - 2));
  for (std::string cell; std::getline(row, cell, '|');) {
    cell.erase(0, cell.find_first_not_of(' '));
    cell.erase(cell.find_last_not_of(' ') + 1);
    cells.push_back(cell);
  }
  return cells;
}

TEST(RunningTheSql, ListsTheFunctionsThatEachDatabaseNeeds) {
  const std::string page = SourceText("docs/running-the-sql.md");
  for (const FunctionFact& fact : FunctionFacts()) {
    const auto& known = fact.known;
    if (std::find(known.begin(), known.end(), Known::kSupplied) == known.end()) continue;
    const std::vector<std::string> cells = CellsOf(page, U8(fact.function));
    ASSERT_EQ(cells.size(), 3 + kDatabaseCount) << U8(fact.function);
    for (std::size_t at = 0; at < kDatabaseCount; ++at) {
      EXPECT_EQ(cells[3 + at], known[at] == Known::kSupplied ? "yes" : "-")
          << U8(fact.function) << " on " << U8(RuleDialects()[at].name);
    }
  }
}

TEST(RunningTheSql, ListsThePlaceholdersOfAllVariables) {
  const std::string page = SourceText("docs/running-the-sql.md");
  std::size_t count = 0;
  for (const auto& [word, entry] : DialectOf(kSqlServerDs).map()) {
    const std::u16string& text = entry.target;
    if (!text.starts_with(u'{') && !(text.starts_with(u'<') && text.size() > 2)) continue;
    ++count;
    const std::vector<std::string> cells = CellsOf(page, U8(text));
    ASSERT_EQ(cells.size(), 4u) << U8(text);
    EXPECT_EQ(U8(ToLower(U16(cells[1]))), "`" + U8(word) + "`");
  }
  EXPECT_EQ(count, 16u);
}

}  // namespace
}  // namespace ORKBASE
