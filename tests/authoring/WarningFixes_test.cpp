// What the fixes of warnings make of a rule.
#include "RuleGenerator.h"
#include "RuleWarnings.h"

namespace ORKBASE {
namespace {

struct FixRow {
  MXRULE_DATATYPE type;
  const char* databases;
  const char* rule;
  std::int32_t number;
  const char* first;
  const char* second;  ///< empty for none
};

// clang-format off
constexpr FixRow kFixRows[] = {
    {kLogicDataType, "", "T.a = 1 or T.b = 2 and T.a = 3", kMsgOrBeforeAnd,
     "(T.a = 1 or T.b = 2) and T.a = 3",
     "T.a = 1 or (T.b = 2 and T.a = 3)"},
    {kLogicDataType, "", "T.a=1 or T.a=2 and T.a=3 and (T.a=4) or T.a=5 and T.a=6", kMsgOrBeforeAnd,
     "((T.a=1 or T.a=2) and T.a=3 and (T.a=4) or T.a=5) and T.a=6",
     "T.a=1 or (T.a=2 and T.a=3 and (T.a=4)) or (T.a=5 and T.a=6)"},
    {kLogicDataType, "", "T.a=1 and T.a=2 or T.a=3 and T.a=4", kMsgOrBeforeAnd,
     "(T.a=1 and T.a=2 or T.a=3) and T.a=4",
     "T.a=1 and T.a=2 or (T.a=3 and T.a=4)"},
    {kNumDataType, "", "-T.a + T.b", kMsgMinusBeforeSum,
     "-(T.a + T.b)",
     "(-T.a) + T.b"},
    {kNumDataType, "", "1 - -ROUND(T.a, 0) * 2 + (T.b)", kMsgMinusBeforeSum,
     "1 - -(ROUND(T.a, 0) * 2 + (T.b))",
     "1 - (-ROUND(T.a, 0)) * 2 + (T.b)"},

    {kLogicDataType, "O", "T.d > '2024-01-15'", kMsgDateNotInMask,
     "T.d > '01/15/2024'", ""},
    {kLogicDataType, "O", "T.d > '15.1.2024 10:30'", kMsgDateNotInMask,
     "T.d > '01/15/2024 10:30'", ""},
    {kLogicDataType, "O", "T.s = ''", kMsgEmptyTextIsNull,
     "T.s null", ""},
    {kLogicDataType, "O", "not ('' <> T.s)", kMsgEmptyTextIsNull,
     "not (T.s not_null)", ""},
    {kLogicDataType, "O", "toUpper(T.s) = ''", kMsgEmptyTextIsNull,
     "", ""},
    {kLogicDataType, "O", "T.s <> 'x'", kMsgEmptyFieldLeftOut,
     "T.s <> 'x' or T.s null", ""},
    {kLogicDataType, "O", "T.s <> 'x' and T.a = 1", kMsgEmptyFieldLeftOut,
     "(T.s <> 'x' or T.s null) and T.a = 1", ""},
    {kLogicDataType, "O", "T.d between lastMonth(2024, 1)", kMsgNoYearBefore,
     "T.d between thisMonth(2023, 12)", ""},
    {kLogicDataType, "O", "T.d between lastQuarter(year(T.d), 1)", kMsgNoYearBefore,
     "T.d between thisQuarter(year(T.d) - 1, 4)", ""},
    {kLogicDataType, "O", "T.d between lastMonth(T.a - T.b, 1)", kMsgNoYearBefore,
     "T.d between thisMonth((T.a - T.b) - 1, 12)", ""},
    {kLogicDataType, "O", "T.d between lastMonth(2024, month(T.d))", kMsgNoYearBefore,
     "", ""},
    {kDateDataType, "K", "dateAdd(qq, T.a + 1, T.d)", kMsgArgumentMixes,
     "dateAdd(qq, (T.a + 1), T.d)", ""},
    {kNumDataType, "O", "T.a ^ 2", kMsgNoOperator,
     "POWER(T.a, 2)", ""},
    {kNumDataType, "D", "T.a * T.b^(T.a + 1) - 1", kMsgOperatorIsBits,
     "POWER(T.a * T.b, (T.a + 1)) - 1", ""},
};
// clang-format on

class WarningFixes : public RuleWarnings {
 protected:
  std::string DocumentWithoutBrackets() const {
    return U8(ReplaceAll(document_, u" inBrackets=\"1\"", u""));
  }
};

TEST_F(WarningFixes, AreThese) {
  for (const FixRow& row : kFixRows) {
    SCOPED_TRACE(std::string(row.rule) + " on " + row.databases);
    const std::u16string rule = U16(row.rule);
    bool isFound = false;
    for (const RuleProblem& warning : Warnings(row.type, rule, row.databases)) {
      if (warning.number != row.number) continue;
      isFound = true;
      const std::size_t count = row.first[0] == 0 ? 0 : row.second[0] == 0 ? 1 : 2;
      ASSERT_EQ(warning.fixes.size(), count);
      if (count > 0) {
        EXPECT_EQ(U8(Fixed(rule, warning.fixes[0])), row.first);
        EXPECT_FALSE(warning.fixes[0].label.empty());
      }
      if (count > 1) {
        EXPECT_EQ(U8(Fixed(rule, warning.fixes[1])), row.second);
      }
    }
    EXPECT_TRUE(isFound);
  }
}

TEST_F(WarningFixes, AreWrittenInTheWordsOfTheCall) {
  const ScopedLanguage chinese(u"zh-CN");
  SampleExpression rules;
  rules.SetDts(u"T");
  AuthoringView view;
  view.Follow(EngineAccess::Of(rules), nullptr);
  AuthoringCall call(view, CurrentLanguage());
  const std::u16string rule = u"T.s = ''";
  std::u16string document;
  MxErrorRecord refusal;
  ASSERT_TRUE(call.Verify(kLogicDataType, rule, document, refusal));
  const ORKDB_DSType_ENUM oracle[] = {kOracleDs};
  const std::vector<RuleProblem> found =
      WarningsOf(call, kLogicDataType, rule, document, oracle, false);
  ASSERT_EQ(found.size(), 1u);
  ASSERT_EQ(found[0].fixes.size(), 1u);
  EXPECT_EQ(U8(Fixed(rule, found[0].fixes[0])), U8(u"T.s " + MessageText(6331)));
}

/// A bracket more would be one too many.
TEST_F(WarningFixes, DoNotNestTooDeep) {
  const std::u16string rule = std::u16string(999, u'(') + u"-T.a + 1" + std::u16string(999, u')');
  const std::vector<RuleProblem> found = Warnings(kNumDataType, rule, "");
  ASSERT_EQ(found.size(), 1u);
  EXPECT_TRUE(found[0].fixes.empty());
  std::u16string chain = u"T.a = 1";
  for (int i = 0; i < 1200; ++i) chain += u" or T.a = 1 and T.b = 2";
  const std::vector<RuleProblem> links = Warnings(kLogicDataType, chain, "");
  ASSERT_EQ(links.size(), 1u);
  ASSERT_EQ(links[0].fixes.size(), 1u);
  EXPECT_TRUE(Verifies(kLogicDataType, Fixed(chain, links[0].fixes[0])));
}

/// Of any rule every fix is a rule; brackets as the rule is read leave the document, and no reason
/// for the same warning.
TEST_F(WarningFixes, AreRulesOverTheWholeGrammar) {
  std::vector<RuleWord> words(SampleWords().begin(), SampleWords().end());
  RuleGenerator generator(20240518, words);
  std::size_t fixes = 0;
  for (int i = 0; i < 700; ++i) {
    const GeneratedRule made =
        i % 3 == 0 ? generator.Make(kVarDataType, 5) : generator.Make(kLogicDataType, 6);
    const std::vector<RuleProblem> found = Warnings(made.type, made.text, "DOMKG", true);
    const std::string document = DocumentWithoutBrackets();
    for (const RuleProblem& warning : found) {
      for (const RuleFix& fix : warning.fixes) {
        ++fixes;
        const std::u16string text = Fixed(made.text, fix);
        ASSERT_TRUE(Verifies(made.type, text)) << U8(made.text) << "\n" << U8(text);
        const bool keeps = warning.number <= kMsgMinusBeforeSum && &fix == warning.fixes.data();
        if (keeps) {
          ASSERT_EQ(DocumentWithoutBrackets(), document) << U8(text);
        }
      }
    }
  }
  EXPECT_GT(fixes, 150u);
}

}  // namespace
}  // namespace ORKBASE
