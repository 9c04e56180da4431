// What `Check` tells of refused rules.
#include "CheckedRules.h"

#include <gtest/gtest.h>

using namespace ORKBASE;

TEST(Check, MendsEachOfSeveralSlips) {
  CheckedRules rules;
  const std::u16string rule = u"Orders.Amout == 5 && avg(Orders.Qty) > 1";
  const std::vector<RuleProblem> problems = rules.Check(kLogicDataType, rule);
  ASSERT_EQ(problems.size(), 4U) << Told(rule, problems);
  for (const RuleProblem& problem : problems) EXPECT_FALSE(problem.fixes.empty());
  EXPECT_EQ(U8(ApplyFirstFixes(rule, problems)), "Orders.Amount = 5 and average(Orders.Qty) > 1");
}
