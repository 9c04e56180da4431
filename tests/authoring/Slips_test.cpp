// Each row of tests/data/slips.tsv: a rule with one slip, and what the first fix makes of it.
#include "CheckedRules.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <sstream>

using namespace ORKBASE;

namespace {

struct SlipRow {
  std::u16string language;
  MXRULE_DATATYPE type = kNoDataType;
  std::u16string rule;
  std::u16string fixed;
};

std::vector<SlipRow> SlipRows() {
  std::vector<SlipRow> rows;
  std::istringstream lines(SourceText("tests/data/slips.tsv"));
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('#')) continue;
    std::vector<std::string> cells;
    std::istringstream rest(line + '\t');
    for (std::string cell; std::getline(rest, cell, '\t');) cells.push_back(cell);
    cells.resize(4);
    rows.push_back({U16(cells[0]), static_cast<MXRULE_DATATYPE>(std::stoi(cells[1])), U16(cells[2]),
                    U16(cells[3])});
  }
  return rows;
}

}  // namespace

TEST(Slips, TheFirstFixOfTheFirstProblemMendsTheRule) {
  const std::vector<SlipRow> rows = SlipRows();
  ASSERT_GT(rows.size(), 90U);
  for (const std::u16string_view tag : {u"en", u"zh-CN"}) {
    CheckedRules rules(tag);
    for (const SlipRow& row : rows) {
      if (row.language != tag) continue;
      SCOPED_TRACE(U8(row.rule));
      const std::vector<RuleProblem> problems = rules.Check(row.type, row.rule);
      ASSERT_FALSE(problems.empty());
      const std::string told = Told(row.rule, problems);
      EXPECT_FALSE(problems.front().text.empty()) << told;
      if (row.fixed.empty()) {
        EXPECT_TRUE(problems.front().fixes.empty()) << told;
        EXPECT_FALSE(problems.front().expected.empty()) << told;
        continue;
      }
      EXPECT_EQ(U8(FirstFixApplied(row.rule, problems.front())), U8(row.fixed)) << told;
      EXPECT_TRUE(rules.Verifies(row.type, row.fixed)) << told;
    }
  }
}
