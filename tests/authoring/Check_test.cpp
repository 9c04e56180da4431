// What `Check` tells of refused rules: which problems, where, and what may stand there instead.
#include "CheckedRules.h"

#include <gtest/gtest.h>

#include <chrono>
#include <map>
#include <random>

using namespace ORKBASE;

namespace {

/// Places and numbers of all problems, `0+12 6260, 13+2 7304`.
std::string Places(const std::vector<RuleProblem>& problems) {
  std::string text;
  for (const RuleProblem& problem : problems) {
    text += (text.empty() ? "" : ", ") + std::to_string(problem.offset) + '+' +
            std::to_string(problem.length) + ' ' + std::to_string(problem.number);
  }
  return text;
}

std::string Joined(const std::vector<std::u16string>& texts) {
  std::string text;
  for (const std::u16string& each : texts) text += (text.empty() ? "" : "; ") + U8(each);
  return text;
}

}  // namespace

TEST(Check, MendsEachOfSeveralSlips) {
  CheckedRules rules;
  const std::u16string rule = u"Orders.Amout == 5 && avg(Orders.Qty) > 1";
  const std::vector<RuleProblem> problems = rules.Check(kLogicDataType, rule);
  EXPECT_EQ(Places(problems), "0+12 6260, 13+2 7304, 18+2 7304, 21+3 7305");
  for (const RuleProblem& problem : problems) EXPECT_FALSE(problem.fixes.empty());
  EXPECT_EQ(U8(ApplyFirstFixes(rule, problems)), "Orders.Amount = 5 and average(Orders.Qty) > 1");
}

TEST(Check, TellsNoErrorOfARuleThatVerifies) {
  CheckedRules rules;
  for (const char16_t* rule : {u"Orders.Amount > 1", u"Orders.Amount > 2024-05-01 and T.a = 5--3",
                               u"Input.a\uFF0Cb[S] = '\u201Cx\u201D'",
                               u"T.s like '\uFF10' or T.s = '==' or T.s = 'a -- b'"}) {
    EXPECT_FALSE(HasErrors(rules.Check(kLogicDataType, rule))) << U8(rule);
  }
}

TEST(Check, TellsPlacesAndNumbers) {
  struct Row {
    MXRULE_DATATYPE type;
    const char16_t* rule;
    const char* places;
  };
  // clang-format off
  constexpr Row kRows[] = {
      // too early an end is the end of the text
      {kLogicDataType, u"",                                    "0+0 6294"},
      {kLogicDataType, u"Orders.Amount >",                     "15+0 6294"},
      {kLogicDataType, u"Orders.Amount > ",                    "16+0 6294"},
      // a type without start rule has no place
      {kNoDataType,    u"Orders.Amount",                       "0+0 6293"},
      // unknown words, each of them
      {kLogicDataType, u"Foo.x > Bar.y",                       "0+5 6260, 8+5 6260"},
      {kNumDataType,   u"frobnicate(zzzz)",                    "0+10 6260, 11+4 6260"},
      // places count units: Chinese letters are one, a letter beyond them two
      {kLogicDataType, u"\u5BA2\u6237.\u91D1\u989D > qqqq",    "8+4 6260"},
      {kLogicDataType, u"T.s = '\U0001F600' and qqqq",         "15+4 6260"},
      {kLogicDataType, u"T.a > 1\r\nand\nqqqq > 2",            "13+4 6260"},
      // brackets
      {kLogicDataType, u"T.a > 1) and T.b > 2",                "7+1 6222"},
      {kLogicDataType, u"T.a > 1) and T.b > 2)",               "7+1 6222, 20+1 7301"},
      {kLogicDataType, u"((T.a > 1",                           "9+0 6294, 0+1 7300"},
      // texts
      {kLogicDataType, u"T.s = 'abc",                          "6+4 6263"},
      {kLogicDataType, u"T.s = 'abc and T.a > 1",              "6+16 6263"},
      {kLogicDataType, u"T.s = 'it's'",                        "10+2 6260"},
      {kLogicDataType, u"qqqq = 1 and T.s = 'abc",             "0+4 6260, 19+4 6263"},
      // a slip that the refused word is part of is one problem with it
      {kLogicDataType, u"T.a == 1 and T.b => 2", "5+1 6295, 17+2 7304"},
      {kLogicDataType, u"T.d is null and T.a == 2",            "4+2 6260, 20+2 7304"},
      {kLogicDataType, u"T.a between 1 and 2 and T.b == 1",    "12+1 6296, 28+2 7304"},
      // all wide signs of a word are one
      {kNumDataType,   u"sum\uFF08T.a\uFF09",                  "0+8 6260"},
      {kNumDataType,   u"sum\uFF08T.a + 1\uFF09",              "0+7 6260, 11+1 7302"},
      {kLogicDataType, u"T.a\u00A0> 1", "0+4 6260"},
      // types
      {kLogicDataType, u"T.a == '5'",                          "5+1 6295, 7+3 7310"},
      {kLogicDataType, u"T.s = T.a and T.s & 1 = 'x'",         "6+3 6264, 20+1 7313"},
      // said in words
      {kLogicDataType, u"Orders.Amount",                       "13+0 7313"},
      {kNumDataType,   u"Orders.Amount > 1",                   "14+1 7313"},
      {kNumDataType,   u"ROUND(Orders.Amount)",                "19+1 6296, 0+5 7315"},
      {kNumDataType,   u"sum(T.a, T.b)",                       "7+1 6296, 0+3 7318"},
      {kNumDataType,   u"POWER()",                             "6+1 6295, 0+5 7314"},
      {kNumDataType,   u"T.a T.b",                             "4+3 6222"},
  };
  // clang-format on
  CheckedRules rules;
  for (const Row& row : kRows) {
    const std::vector<RuleProblem> problems = rules.Check(row.type, row.rule);
    EXPECT_EQ(Places(problems), row.places) << U8(row.rule) << '\n' << Told(row.rule, problems);
  }
}

TEST(Check, TellsInWords) {
  struct Row {
    MXRULE_DATATYPE type;
    const char16_t* rule;
    std::size_t problem;
    const char* text;
    const char* expected;
  };
  // clang-format off
  constexpr Row kRows[] = {
      {kNumDataType,   u"avg(Orders.Amount)",   0, "The word \"avg\" is unknown.", "number; field"},
      {kLogicDataType, u"Orders.Amount",        0, "This is a number, but a condition is expected here.",
       "operator; comparison; membership test; test for an empty field"},
      {kNumDataType,   u"Orders.Amount > 1",    0, "This is a condition, but a number is expected here.",
       "operator; end of the rule"},
      {kNumDataType,   u"ROUND(Orders.Amount)", 0, "The word \")\" is not allowed here. Expected: \"*\".",
       "comma; operator"},
      {kNumDataType,   u"ROUND(Orders.Amount)", 1, "ROUND needs a second argument: number.", ""},
      {kStrDataType,   u"ToText(T.d)",          1, "ToText needs a second argument: date style.", ""},
      {kNumDataType,   u"sum(T.a, T.b)",        1, "sum takes no further argument.", ""},
      {kLogicDataType, u"T.a in 5",             0, "The word \"5\" is not allowed here. Expected: \"thisSet\".",
       "thisSet"},
      {kLogicDataType, u"T.d between 5",        0, "The word \"5\" is not allowed here. Expected: \"thisYear\".",
       "period"},
      {kDateDataType,  u"dateAdd(5, 3, T.d)",   0, "The word \"5\" is not allowed here. Expected: \"yy\".",
       "unit of time"},
      {kStrDataType,   u"ToText(T.d, 'abc')",   0,
       "The word \"'abc'\" is not allowed here. Expected: \"'yyyymmdd'\".", "date style"},
  };
  // clang-format on
  CheckedRules rules;
  for (const Row& row : kRows) {
    const std::vector<RuleProblem> problems = rules.Check(row.type, row.rule);
    ASSERT_GT(problems.size(), row.problem) << U8(row.rule);
    EXPECT_EQ(U8(problems[row.problem].text), row.text);
    EXPECT_EQ(Joined(problems[row.problem].expected), row.expected) << U8(row.rule);
  }
}

TEST(Check, GivesFixesInTheirOrder) {
  struct Row {
    MXRULE_DATATYPE type;
    const char16_t* rule;
    std::size_t fix;
    const char* label;
    const char* result;
  };
  // clang-format off
  constexpr Row kRows[] = {
      // all signs first, then those of the word
      {kNumDataType,   u"ROUND\uFF08T.a, 2\uFF09", 0, "Write all signs and blanks as ordinary ones", "ROUND(T.a, 2)"},
      {kNumDataType,   u"ROUND\uFF08T.a, 2\uFF09", 1, "Write this sign as an ordinary one: (", "ROUND(T.a, 2\uFF09"},
      // the type that fits first
      {kLogicDataType, u"T.s = Input.x",           0, "Add the data type: Input.x[S]", "T.s = Input.x[S]"},
      {kLogicDataType, u"T.d > Input.x",           0, "Add the data type: Input.x[S]", "T.d > Input.x[S]"},
      // near in the table, near in the field, the right field of another table
      {kLogicDataType, u"Stok.Count > 1",          0, "Write Stock.Count", "Stock.Count > 1"},
      {kLogicDataType, u"Stock.Conut > 1",         0, "Write Stock.Count", "Stock.Count > 1"},
      {kLogicDataType, u"Warehouse.Count > 1",     0, "Write Stock.Count", "Stock.Count > 1"},
      // a fitting type before a smaller distance
      {kLogicDataType, u"thsYear(T.d) > 2000",     0, "Write fisYear", "fisYear(T.d) > 2000"},
      {kLogicDataType, u"trim(T.s) = 'x'",         0, "Write ltrim(rtrim", "ltrim(rtrim(T.s)) = 'x'"},
      {kLogicDataType, u"left(T.s, 2) = 'x'",      0, "Write substring", "substring(T.s, 1, 2) = 'x'"},
      {kLogicDataType, u"instr(T.s, 'x') > 0",     0, "Write CHARINDEX", "CHARINDEX('x', T.s) > 0"},
      {kNumDataType,   u"mod(T.a, 2) + 1",         0, "Write %", "(T.a % 2) + 1"},
      {kNumDataType,   u"case when T.a > 1 then 2 else 3 end", 0, "Write switch", "switch(T.a > 1, 2, 3)"},
      {kLogicDataType, u"T.s not like 'x'",        0, "Write not", "not T.s like 'x'"},
      {kStrDataType,   u"T.s || Customer.Name",    0, "Write &", "T.s & Customer.Name"},
      {kLogicDataType, u"\"T.s\" = 'x'",           0, "Write T.s", nullptr},
      {kLogicDataType, u"T.a > 1 and (T.b between 1 and 2 or T.a = 3)", 0, "Write >= <=",
       "T.a > 1 and ((T.b >= 1 and T.b <= 2) or T.a = 3)"},
      {kLogicDataType, u"T.d > 01.05.2024",        0, "Put the date in single quotes: '01.05.2024'", "T.d > '01.05.2024'"},
      {kLogicDataType, u"T.d > 2024-05-01 10:30:00", 0, "Put the date in single quotes: '2024-05-01 10:30:00'",
       "T.d > '2024-05-01 10:30:00'"},
      {kLogicDataType, u"T.s = 'it's'",            0, "Add the missing '", "T.s = 'it''s'"},
      {kLogicDataType, u"T.s = 'abc and T.a > 1",  0, "Add the missing '", "T.s = 'abc' and T.a > 1"},
      {kLogicDataType, u"T.s = 'it''s \"so\"' and T.s = \"it's so\"", 0, "Put the text in single quotes: 'it''s so'",
       "T.s = 'it''s \"so\"' and T.s = 'it''s so'"},
      {kStrDataType,   u"T.s + '-' + T.s",         0, "Join the texts with &", "T.s & '-' & T.s"},
      {kStrDataType,   u"T.s + T.a",               0, "Join the texts with &", "T.s & ToText(T.a)"},
      {kStrDataType,   u"T.s & T.d",               0, "Convert the value: ToText(T.d, 'yyyy-mm-dd')",
       "T.s & ToText(T.d, 'yyyy-mm-dd')"},
      {kStrDataType,   u"T.s & T.a * 2",           0, "Convert the value: ToText(T.a * 2)", "T.s & ToText(T.a * 2)"},
      {kDateDataType,  u"T.d - 3",                 0, "Move the date: dateAdd(dd, -3, T.d)", "dateAdd(dd, -3, T.d)"},
      {kDateDataType,  u"3 + T.d",                 0, "Move the date: dateAdd(dd, 3, T.d)", "dateAdd(dd, 3, T.d)"},
  };
  // clang-format on
  CheckedRules rules;
  for (const Row& row : kRows) {
    const std::vector<RuleProblem> problems = rules.Check(row.type, row.rule);
    ASSERT_FALSE(problems.empty()) << U8(row.rule);
    const std::string told = Told(row.rule, problems);
    ASSERT_GT(problems.front().fixes.size(), row.fix) << told;
    if (!row.result) continue;
    const RuleFix& fix = problems.front().fixes[row.fix];
    EXPECT_EQ(U8(fix.label), row.label) << told;
    RuleProblem one = problems.front();
    one.fixes = {fix};
    EXPECT_EQ(U8(FirstFixApplied(row.rule, one)), row.result) << told;
  }
}

TEST(Check, MendsTheFirstFixesOfAllProblemsTogether) {
  struct Row {
    MXRULE_DATATYPE type;
    const char16_t* rule;
    const char* result;
  };
  // clang-format off
  constexpr Row kRows[] = {
      // a fix of all signs at once stands at several problems and is done once
      {kNumDataType,   u"ROUND\uFF08T.a\uFF0C 2\uFF09 \uFF0B avg\uFF08T.b\uFF09", "ROUND(T.a, 2) + average(T.b)"},
      {kLogicDataType, u"Foo.Count between 1 and 2 and T.a != null", "(Stock.Count >= 1 and Stock.Count <= 2) and T.a not_null"},
      {kLogicDataType, u"((T.a > 1 and T.b == 2",                 "((T.a > 1 and T.b = 2))"},
      {kLogicDataType, u"T.s = \"x\" && T.d > today() || T.a > $5;", "T.s = 'x' and T.d > sysVar.currentDate or T.a > 5"},
      {kLogicDataType, u"concat(T.s, \"-\", T.s) == 'a' -- or so", "T.s & '-' & T.s = 'a'"},
      {kLogicDataType, u"T.a = '5' and T.b = '6' and T.s = 7",     "T.a = 5 and T.b = 6 and T.s = ToText(7)"},
      // nothing mends these
      {kLogicDataType, u"qqqq > 1",                               "qqqq > 1"},
      {kLogicDataType, u"T.a >> 1",                               "T.a >> 1"},
  };
  // clang-format on
  CheckedRules rules;
  for (const Row& row : kRows) {
    const std::vector<RuleProblem> problems = rules.Check(row.type, row.rule);
    EXPECT_EQ(U8(ApplyFirstFixes(row.rule, problems)), row.result) << Told(row.rule, problems);
  }
}

TEST(Check, SpellsAWordAsItIsWhereCapitalsCount) {
  CheckedRules rules;
  rules.engine.SetRt(u"7");
  rules.engine.set_thiscaseVarOn1RcId(false);
  ASSERT_TRUE(rules.Verifies(kLogicDataType, u"thisReport.T.a > 1"));
  const std::u16string rule = u"thisreport.T.a > 1";
  const std::vector<RuleProblem> problems = rules.Check(kLogicDataType, rule);
  ASSERT_EQ(problems.size(), 1U) << Told(rule, problems);
  EXPECT_EQ(U8(FirstFixApplied(rule, problems.front())), "thisReport.T.a > 1");
  ASSERT_FALSE(problems.front().fixes.empty());
  EXPECT_EQ(U8(problems.front().fixes.front().label),
            "Write the word as it is spelt: thisReport.T.a");
}

TEST(Check, AnswersInTheLanguageOfTheCall) {
  CheckedRules rules;
  rules.authoring.set_language(u"zh-CN");
  const std::u16string rule = u"\u5BA2\u6237.\u91D1\u989D > 1 and avg(T.a) > 2";
  const std::vector<RuleProblem> problems = rules.Check(kLogicDataType, rule);
  ASSERT_EQ(problems.size(), 2U) << Told(rule, problems);
  EXPECT_EQ(U8(problems[0].text), "\u201Cand\u201D\u662F\u672A\u77E5\u7684\u8BCD\u3002");
  EXPECT_EQ(U8(ApplyFirstFixes(rule, problems)),
            "\u5BA2\u6237.\u91D1\u989D > 1 \u4E14 \u5E73\u5747\u503C(T.a) > 2");
}
