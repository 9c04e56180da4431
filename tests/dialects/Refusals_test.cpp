// What Oracle cannot express leaves as an exception, and the engine stays as it was.
#include "Mx_Exception.h"
#include "OrkPlatform.h"
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "ScopedLocale.h"

#include <gtest/gtest.h>

#include <optional>

namespace ORKBASE {
namespace {

struct RefusalRow {
  MXRULE_DATATYPE type;
  const char16_t* rule;
  const char* function;
  std::uint32_t location;
  const char* message;
};

constexpr const char* kQuarters = "This database cannot count the quarters between two dates.";
constexpr const char* kWeeks = "This database cannot count the weeks between two dates.";
constexpr const char* kSets = "This database does not support thisSet.";
constexpr const char* kFiscal = "This database does not support fiscal periods.";

// clang-format off
constexpr RefusalRow kRefusals[] = {
    {kNumDataType,   u"timeInterval(qq, T.d, T.d)",         "Fn_timeInterval", 776, kQuarters},
    {kNumDataType,   u"timeInterval(WW, T.d, T.d)",         "Fn_timeInterval", 800, kWeeks},
    {kLogicDataType, u"T.a in thisSet(1)",                  "Fn_thisSet",      802, kSets},
    {kLogicDataType, u"T.a not_in thisSet(T.a)",            "Fn_thisSet",      802, kSets},
    {kNumDataType,   u"fisYear(T.d)",                       "fDatePart_acct",  437, kFiscal},
    {kNumDataType,   u"fisMonth(T.d)",                      "fDatePart_acct",  437, kFiscal},
    {kNumDataType,   u"fisQuarter(T.d)",                    "fDatePart_acct",  437, kFiscal},
    {kDateDataType,  u"fstDayOfFisYear(1)",                 "fStartOrEndTime", 437, kFiscal},
    {kDateDataType,  u"endOfFisYear(1)",                    "fStartOrEndTime", 437, kFiscal},
    {kDateDataType,  u"fstDayOfFisQuarter(1, 1)",           "fStartOrEndTime", 437, kFiscal},
    {kDateDataType,  u"endOfFisQuarter(1, 1)",              "fStartOrEndTime", 437, kFiscal},
    {kDateDataType,  u"fstDayOfFisMonth(1, 1)",             "fStartOrEndTime", 437, kFiscal},
    {kDateDataType,  u"endOfFisMonth(1, 1)",                "fStartOrEndTime", 437, kFiscal},
    {kLogicDataType, u"T.d between thisFisYear(1)",         "fStartOrEndTime", 437, kFiscal},
    {kLogicDataType, u"T.d between lastFisYear(1)",         "fStartOrEndTime", 437, kFiscal},
    {kLogicDataType, u"T.d between thisFisQuarter(1, 1)",   "fStartOrEndTime", 437, kFiscal},
    {kLogicDataType, u"T.d between lastFisQuarter(1, 1)",   "fStartOrEndTime", 437, kFiscal},
    {kLogicDataType, u"T.d between thisFisMonth(1, 1)",     "fStartOrEndTime", 437, kFiscal},
    {kLogicDataType, u"T.d between lastFisMonth(1, 1)",     "fStartOrEndTime", 437, kFiscal},
    // of two the first in document order: the outer before the inner, the left before the right
    {kNumDataType,   u"timeInterval(ww, T.d, T.d) + timeInterval(qq, T.d, T.d)",
                                                            "Fn_timeInterval", 800, kWeeks},
    {kLogicDataType, u"T.a in thisSet(fisYear(T.d))",       "Fn_thisSet",      802, kSets},
    {kLogicDataType, u"fisYear(T.d) in thisSet(1)",         "fDatePart_acct",  437, kFiscal},
    {kNumDataType,   u"year(fstDayOfFisYear(fisYear(T.d)))", "fStartOrEndTime", 437, kFiscal},
    {kLogicDataType, u"T.d between thisYear(timeInterval(qq, T.d, T.d))",
                                                            "Fn_timeInterval", 776, kQuarters},
};
// clang-format on

class Refusals : public testing::Test {
 protected:
  Refusals() : locale_("en_US.UTF-8") {}

  std::optional<Mx_Exception> Refused(MxExpression& rules, MXRULE_DATATYPE type,
                                      const std::u16string& rule) {
    std::u16string document;
    EXPECT_TRUE(rules.Verify(type, rule, document)) << U8(rule);
    translated_ = u"t";
    a_ = u"a";
    b_ = u"b";
    try {
      rules.GetSpec(document, kOracleDs, translated_, a_, b_, false);
      return {};
    } catch (const Mx_Exception& refusal) {
      return refusal;
    }
  }

  ScopedLocale locale_;
  ScopedLanguage language_{u"en"};
  std::u16string translated_;
  std::u16string a_;
  std::u16string b_;
};

TEST_F(Refusals, HaveExactFields) {
  SampleExpression rules(kOracleDs);
  for (const RefusalRow& row : kRefusals) {
    const std::string rule = U8(row.rule);
    const std::optional<Mx_Exception> refusal = Refused(rules, row.type, row.rule);
    ASSERT_TRUE(refusal) << rule;
    EXPECT_EQ(U8(refusal->message), row.message) << rule;
    EXPECT_EQ(U8(refusal->module), "mx_PLSql_translator") << rule;
    EXPECT_EQ(U8(refusal->function), row.function) << rule;
    EXPECT_EQ(refusal->location, row.location) << rule;
    EXPECT_EQ(U8(refusal->extra1), "") << rule;
    EXPECT_EQ(U8(refusal->extra2), "") << rule;
    EXPECT_EQ(refusal->extra3, 0u) << rule;
  }
}

TEST_F(Refusals, TellTheirMessageInUtf8) {
  SampleExpression rules(kOracleDs);
  const std::optional<Mx_Exception> refusal = Refused(rules, kNumDataType, u"fisYear(T.d)");
  ASSERT_TRUE(refusal);
  EXPECT_EQ(refusal->what(), U8(refusal->message));
}

TEST_F(Refusals, SpeakTheLanguageOfTheThread) {
  SampleExpression rules(kOracleDs);
  SetThreadLanguage(u"zh-CN");
  const std::optional<Mx_Exception> refusal = Refused(rules, kNumDataType, u"fisYear(T.d)");
  ASSERT_TRUE(refusal);
  EXPECT_EQ(refusal->message, MessageText(6257));
  SetThreadLanguage(u"en");
  EXPECT_NE(refusal->message, MessageText(6257));
}

TEST_F(Refusals, LeaveTheOutTextsAndTheErrorPair) {
  SampleExpression rules(kOracleDs);
  ASSERT_TRUE(Refused(rules, kNumDataType, u"fisYear(T.d)"));
  EXPECT_EQ(U8(translated_ + a_ + b_), "tab");
  EXPECT_EQ(rules.errNumber(), 0);
  EXPECT_EQ(U8(rules.errDescription()), "");
}

TEST_F(Refusals, LeaveTheObjectUsable) {
  SampleExpression rules;
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(Refused(rules, kNumDataType, u"fisYear(T.d)"));
    const MxExpression copy = rules;
    ASSERT_FALSE(Refused(rules, kNumDataType, u"year(T.d)"));
    EXPECT_EQ(U8(a_), "to_char(T.d,'yyyy')");
    std::u16string document;
    ASSERT_TRUE(rules.Verify(kNumDataType, u"fisYear(T.d)", document));
    ASSERT_TRUE(rules.GetSpec(document, kSqlServerDs, translated_, a_, b_, false));
    EXPECT_EQ(U8(a_), "dbo.fDatePart_acct('yy',[T].d)");
  }
}

TEST_F(Refusals, ComeInTwoTextsToo) {
  SampleExpression rules(kOracleDs);
  std::u16string document;
  ASSERT_TRUE(rules.Verify(kLogicDataType, u"sum(T.a) > fisYear(T.d)", document));
  EXPECT_THROW(rules.GetSpec(document, kOracleDs, translated_, a_, b_, true), Mx_Exception);
}

/// A refused function throws before its node is looked at: also one without arguments.
TEST_F(Refusals, DoNotLookAtTheArguments) {
  MxExpression rules;
  for (const char16_t* word :
       {u"fisYear", u"fisMonth", u"fisQuarter", u"thisSet", u"fstDayOfFisYear", u"endOfFisYear",
        u"fstDayOfFisQuarter", u"endOfFisQuarter", u"fstDayOfFisMonth", u"endOfFisMonth",
        u"thisFisYear", u"thisFisQuarter", u"thisFisMonth", u"lastFisYear", u"lastFisQuarter",
        u"lastFisMonth"}) {
    const std::u16string document =
        u"<tag primary='" + std::u16string(word) + u"' symbol='27' semanticType='1'/>";
    EXPECT_THROW(rules.GetSpec(document, kOracleDs, translated_, a_, b_, false), Mx_Exception)
        << U8(word);
  }
}

}  // namespace
}  // namespace ORKBASE
