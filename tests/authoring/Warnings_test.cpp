// Which rule gives which warning at which words for which databases, and which gives none.
#include "RuleWarnings.h"

#include <set>

namespace ORKBASE {
namespace {

constexpr MXRULE_DATATYPE kNumber = kNumDataType;
constexpr MXRULE_DATATYPE kText = kStrDataType;
constexpr MXRULE_DATATYPE kDate = kDateDataType;
constexpr MXRULE_DATATYPE kLogic = kLogicDataType;

/// `databases`: letters, with "2" for two texts. `warnings`: number and words, "; " between; i for
/// an information.
struct WarningRow {
  MXRULE_DATATYPE type;
  const char* databases;
  const char* rule;
  const char* warnings;
};

// clang-format off
constexpr WarningRow kRows[] = {
    // "or" before "and"
    {kLogic,  "", "T.a = 1 or T.b = 2 and T.a = 3",                     "7200 or"},
    {kLogic,  "", "(T.a = 1 or T.b = 2) and T.a = 3",                   ""},
    {kLogic,  "", "T.a = 1 or (T.b = 2 and T.a = 3)",                   ""},
    {kLogic,  "", "T.a = 1 and T.b = 2 or T.a = 3",                     ""},
    {kLogic,  "", "T.a = 1 or T.b = 2 or T.a = 3",                      ""},
    {kLogic,  "", "T.a = 1 or T.b = 2 and T.a = 3 or T.b = 4 and T.a = 5", "7200 or"},
    {kLogic,  "", "T.b = 1 and (T.a = 1 or T.b = 2 and T.a = 3)",       "7200 or"},
    {kLogic,  "", "not T.a = 1 or T.b = 2 and T.a = 3",                 "7200 or"},
    {kNumber, "", "switch(T.a = 1 or T.b = 2 and T.a = 3, 1, 2)",       "7200 or"},

    // a minus before a sum or product
    {kNumber, "", "-T.a + T.b",                                         "7201 -"},
    {kNumber, "", "-T.a * T.b",                                         "7201 -"},
    {kNumber, "", "T.b * -T.a - T.b",                                   "7201 -"},
    {kNumber, "", "-(T.a + T.b)",                                       ""},
    {kNumber, "", "(-T.a) + T.b",                                       ""},
    {kNumber, "", "T.a - T.b + 1",                                      ""},
    {kNumber, "", "-T.a",                                               ""},
    {kLogic,  "", "-T.a > T.b + 1",                                     ""},

    // a text that is no date
    {kLogic,  "", "T.d > 'soon'",                                       "7202 'soon'"},
    {kLogic,  "", "'soon' < lastDate(T.d)",                             "7202 'soon'"},
    {kLogic,  "", "T.d in thisSet('2024-01-15', 'soon')",               "7202 'soon'"},
    {kLogic,  "", "'soon' between thisYear(2024)",                      "7202 'soon'"},
    {kLogic,  "", "T.d > '2024-01-15'",                                 ""},
    {kLogic,  "", "T.s = 'soon'",                                       ""},
    {kLogic,  "", "T.d = T.s",                                          ""},

    // members of another type
    {kLogic,  "", "T.a in thisSet(1, 'x')",                             "7203 'x'"},
    {kLogic,  "", "T.s in thisSet('x', 1 + 2)",                         "7203 1 + 2"},
    {kLogic,  "", "T.a in thisSet(T.d)",                                "7203 T.d"},
    {kLogic,  "", "T.a between thisYear(2024)",                         "7203 T.a"},
    {kLogic,  "", "T.s in thisSet('x', '12.3')",                        ""},
    {kLogic,  "", "T.a in thisSet(1, T.b + 2)",                         ""},
    {kLogic,  "", "T.d between thisYear(2024)",                         ""},
    {kLogic,  "", "T.d in thisSet(max(T.d))",                           ""},

    // empty fields under not_in
    {kLogic,  "", "T.d not_in thisSet(Stock.Counted)",                  "7204i Stock.Counted"},
    {kLogic,  "", "T.d in thisSet(Stock.Counted)",                      ""},
    {kLogic,  "", "T.a not_in thisSet(Stock.Count)",                    "7204i Stock.Count"},
    {kLogic,  "", "T.a in thisSet(Stock.Count)",                        ""},
    {kLogic,  "", "T.d not_in thisSet('2024-01-15')",                   ""},

    // CAD documents, pictures, attachments
    {kLogic,  "", "thisDoc.Block.Title = 'x'",                                "7205 thisDoc.Block.Title"},
    {kLogic,  "", "sysVar.userName = 'x'",                              ""},
    {kLogic,  "", "Orders.Photo = 'x'",                                 "7206 Orders.Photo"},
    {kText,   "", "ToText(Orders.File)",                                "7206 Orders.File"},
    {kLogic,  "", "Orders.Photo null",                                  ""},
    {kNumber, "", "count(Orders.Photo)",                                ""},
    {kPicDataType, "", "switch(T.a = 1, Orders.Photo)",                 ""},

    // texts that are cut
    {kNumber, "D",  "length(ToText(T.s))",                              "7220 ToText"},
    {kLogic,  "M",  "ToText(T.s) = 'x'",                                "7220 ToText"},
    {kLogic,  "DM", "toUpper(ToText(T.s) & 'x') like 'x'",              "7220 ToText"},
    {kLogic,  "OKG", "ToText(T.s) = 'x'",                               ""},
    {kText,   "D",  "ToText(T.s)",                                      ""},
    {kNumber, "D",  "length(ToText(T.a))",                              ""},
    {kNumber, "D",  "length(ToText('x'))",                              ""},
    {kNumber, "",   "length(ToText(T.s))",                              ""},

    // texts that read as dates
    {kLogic,  "O", "T.s = '12.3'",                                      "7221 '12.3'"},
    {kVarDataType, "O", "IsNull(T.s, '12.3')",                          "7221 '12.3'"},
    {kLogic,  "O", "T.s = '12.3x'",                                     ""},
    {kLogic,  "DMKG", "T.s = '12.3'",                                   ""},

    // dates in another order than that of en_US
    {kLogic,  "O", "T.d > '2024-01-15'",                                "7222 '2024-01-15'"},
    {kDate,   "O", "dateAdd(dd, 1, '15.1.2024')",                       "7222 '15.1.2024'"},
    {kLogic,  "O", "T.d > '1/15/2024'",                                 ""},
    {kLogic,  "O", "T.d > '01-15-2024 10:30'",                          ""},
    {kLogic,  "DMKG", "T.d > '2024-01-15'",                             ""},

    // empty texts
    {kLogic,  "O", "T.s = ''",                                          "7223 ''"},
    {kLogic,  "O", "'' <> T.s",                                         "7223 ''"},
    {kLogic,  "O", "toUpper(T.s) > ''",                                 "7223 ''"},
    {kLogic,  "O", "T.s <> 'x'",                                        "7240i <>"},
    {kLogic,  "O", "T.s = 'x'",                                         ""},
    {kLogic,  "O", "T.s null",                                          ""},
    {kLogic,  "DMKG", "T.s = ''",                                       ""},
    {kLogic,  "DMKG", "T.s <> 'x'",                                     ""},

    // the year before
    {kLogic,  "O", "T.d between lastMonth(2024, 1)",                    "7224 lastMonth; 7225i lastMonth"},
    {kLogic,  "O", "T.d between lastQuarter(year(T.d), 1)",             "7224 lastQuarter; 7225i lastQuarter"},
    {kLogic,  "O", "T.d between lastMonth(2024, month(T.d))",           "7224i lastMonth; 7225i lastMonth"},
    {kLogic,  "O", "T.d between lastMonth(2024, 2)",                    "7225i lastMonth"},
    {kLogic,  "O", "T.d between lastYear(2024)",                        "7225i lastYear"},
    {kLogic,  "DMKG", "T.d between lastMonth(2024, 1)",                 ""},

    // where two databases differ
    {kNumber, "DO", "timeInterval(mm, T.d, sysVar.currentDate)",        "7226 timeInterval"},
    {kNumber, "DO", "timeInterval(yy, T.d, sysVar.currentDate)",        ""},
    {kNumber, "DM", "timeInterval(mm, T.d, sysVar.currentDate)",        ""},
    {kNumber, "O",  "timeInterval(mm, T.d, sysVar.currentDate)",        ""},
    {kDate,   "OG", "dateAdd(mm, 1, T.d)",                              "7227 dateAdd"},
    {kDate,   "OG", "dateAdd(dd, 1, T.d)",                              ""},
    {kDate,   "DK", "dateAdd(mm, 1, T.d)",                              ""},
    {kNumber, "DK", "weekDay(T.d)",                                     "7228 weekDay"},
    {kNumber, "DO", "weekDay(T.d)",                                     ""},
    {kNumber, "OG", "log(T.a)",                                         "7229 log"},
    {kNumber, "DOM", "log(T.a)",                                        ""},
    {kNumber, "OG", "log10(T.a)",                                       ""},
    {kNumber, "DO", "T.a / T.b",                                        "7230i /"},
    {kNumber, "DO", "1 / 3",                                            "7230 /"},
    {kNumber, "DO", "1.0 * T.a / T.b",                                  ""},
    {kNumber, "DM", "T.a / T.b",                                        ""},
    {kNumber, "KO", "ToNumber(T.s, 2)",                                 "7231 ToNumber"},
    {kNumber, "KO", "ToNumber(T.s)",                                    ""},
    {kText,   "DO", "substring(T.s, 0, 3)",                             "7232 substring"},
    {kText,   "DO", "substring(T.s, 1, 3)",                             ""},
    {kText,   "DG", "ToText(T.d, 'hh:mm:ss')",                          "7233 ToText"},
    {kText,   "DG", "ToText(T.d, 'yyyy-mm-dd')",                        ""},
    {kText,   "OG", "ToText(T.d, 'hh:mm:ss')",                          ""},

    // arguments without brackets
    {kDate,   "O", "dateAdd(yy, T.a + 1, T.d)",                         "7234 T.a + 1"},
    {kDate,   "K", "dateAdd(qq, T.a + 1, T.d)",                         "7234 T.a + 1"},
    {kDate,   "O", "dateAdd(yy, (T.a + 1), T.d)",                       ""},
    {kDate,   "O", "dateAdd(yy, T.a * 2, T.d)",                         ""},
    {kDate,   "O", "dateAdd(dd, T.a + 1, T.d)",                         ""},
    {kDate,   "DM", "dateAdd(qq, T.a + 1, T.d)",                        ""},
    {kDate,   "O", "fstDayOfMonth(2024, T.a + 1)",                      "7234 T.a + 1"},
    {kDate,   "O", "fstDayOfMonth(2024, T.a * 2)",                      ""},
    {kDate,   "O", "endOfQuarter(2024, T.a - 1)",                       "7234 T.a - 1"},
    {kDate,   "O", "fstDayOfQuarter(2024, T.a - 1)",                    ""},

    // operators
    {kNumber, "O",  "T.a ^ 2",                                          "7235 ^"},
    {kNumber, "DM", "T.a ^ 2",                                          "7236 ^"},
    {kNumber, "KG", "T.a ^ 2",                                          ""},
    {kNumber, "O",  "T.a % 2",                                          "7235 %"},
    {kNumber, "DMKG", "T.a % 2",                                        ""},
    {kLogic,  "O",  "T.a *= T.b",                                       "7235 *="},
    {kLogic,  "O",  "T.a = T.b",                                        ""},

    // calls
    {kNumber, "O",    "fisYear(T.d)",                                   "7237 fisYear"},
    {kNumber, "O",    "timeInterval(qq, T.d, T.d)",                     "7237 timeInterval"},
    {kNumber, "DMKG", "fisYear(T.d) + timeInterval(qq, T.d, T.d)",      ""},
    {kNumber, "O",    "timeInterval(dd, T.d, T.d)",                     ""},
    {kLogic,  "O",    "T.a in thisSet(fisYear(T.d))",                   "7237 thisSet; 7237 fisYear"},
    {kText,   "O",    "toLower(T.s)",                                   "7238 toLower"},
    {kNumber, "O",    "CEILING(RAND())",                                "7238 CEILING; 7238 RAND"},
    {kText,   "DMKG", "toLower(T.s)",                                   ""},
    {kText,   "O",    "toUpper(T.s)",                                   ""},
    {kText,   "O",    "fMd5(T.s)",                                      ""},

    // sets on openGauss
    {kLogic,  "G", "T.a in thisSet(Stock.Count)",                       "7239 Stock.Count"},
    {kLogic,  "G", "T.s in thisSet('x', Stock.Item)",                   "7239 Stock.Item"},
    {kLogic,  "G", "T.d in thisSet(Stock.Counted)",                     ""},
    {kLogic,  "G", "T.a in thisSet(1, 2)",                              ""},
    {kLogic,  "K", "T.a in thisSet(Stock.Count)",                       ""},

    // two texts
    {kLogic, "2",  "sum(T.a) > 1 or T.b > 2",                           "7260 or"},
    {kLogic, "2",  "sum(T.a) > 1 or T.b > 2 or T.b < 9",                "7260 or"},
    {kLogic, "2",  "not (sum(T.a) > 1 and T.b > 2)",                    "7260 not"},
    {kLogic, "2",  "sum(T.a) > 1 and T.b > 2",                          ""},
    {kLogic, "2",  "sum(T.a) > 1 or max(T.b) > 2",                      ""},
    {kLogic, "2",  "T.a > 1 or T.b > 2",                                ""},
    {kLogic, "",   "sum(T.a) > 1 or T.b > 2",                           ""},
    {kLogic, "2",  "not sum(T.a) > 1",                                  "7261 not"},
    {kLogic, "2",  "not T.a > 1 and sum(T.b) > 2",                      ""},
    {kLogic, "2",  "(sum(T.a) > 1 and sum(T.b) > 2) and T.b > 2",       "7261 ("},
    {kLogic, "2",  "(T.a > 1 and T.b > 2) and sum(T.b) > 2",            ""},
    {kLogic, "2",  "(sum(T.a) > 1) and T.b > 2",                        ""},
    {kLogic, "2",  "-sum(T.a) > 2",                                     "7261 -"},
    {kLogic, "2",  "sum(-T.a) > 2",                                     ""},
    {kLogic, "2",  "switch(sum(T.a) > 1, 1, 2) = 1",                    "7261 switch"},
    {kLogic, "2",  "switch(T.a > 1, 1, 2) = sum(T.b)",                  ""},
    {kLogic, "2",  "count1(T.a) > 2",                                   ""},
    {kLogic, "2",  "T.a in thisSet(max(T.b))",                          "7261 thisSet"},
    {kLogic, "K2", "weekDay(max(T.d)) = 2",                             "7261 weekDay"},
    {kLogic, "D2", "weekDay(max(T.d)) = 2",                             ""},
};
// clang-format on

std::string Shown(const std::string& rule, const std::vector<RuleProblem>& warnings) {
  std::string text;
  for (const RuleProblem& warning : warnings) {
    if (!text.empty()) text += "; ";
    text += std::to_string(warning.number);
    if (warning.severity == kInformationSeverity) text += "i";
    const std::string words = U8(U16(rule).substr(static_cast<std::size_t>(warning.offset),
                                                  static_cast<std::size_t>(warning.length)));
    text += " ";
    text += words;
  }
  return text;
}

class Warnings : public RuleWarnings {};

TEST_F(Warnings, AreThoseOfTheRuleAndTheDatabases) {
  for (const WarningRow& row : kRows) {
    SCOPED_TRACE(std::string(row.rule) + " on " + row.databases);
    const std::string databases = row.databases;
    const bool twoParts = databases.find('2') != std::string::npos;
    EXPECT_EQ(Shown(row.rule, RuleWarnings::Warnings(row.type, U16(row.rule), databases, twoParts)),
              row.warnings);
  }
}

TEST_F(Warnings, HaveARowForEachNumber) {
  std::string given;
  for (const WarningRow& row : kRows) given += std::string(row.warnings) + ";";
  const auto isGiven = [&given](std::int32_t number) {
    return given.find(std::to_string(number)) != std::string::npos;
  };
  for (std::int32_t number = kMsgOrBeforeAnd; number <= kMsgPictureUnused; ++number) {
    EXPECT_TRUE(isGiven(number)) << number;
  }
  for (std::int32_t number = kMsgTextIsCut; number <= kMsgEmptyFieldLeftOut; ++number) {
    EXPECT_TRUE(isGiven(number)) << number;
  }
  EXPECT_TRUE(isGiven(kMsgTornApart));
  EXPECT_TRUE(isGiven(kMsgLeftAlone));
}

TEST_F(Warnings, AreNoErrorsAndSayASentence) {
  for (const WarningRow& row : kRows) {
    const std::string databases = row.databases;
    const bool twoParts = databases.find('2') != std::string::npos;
    for (const std::u16string_view tag : {u"en", u"zh-CN"}) {
      const ScopedLanguage language(tag);
      ASSERT_TRUE(Verifies(row.type, U16(row.rule)));
      AuthoringCall call(view_, CurrentLanguage());
      for (const RuleProblem& warning :
           WarningsOf(call, row.type, U16(row.rule), document_, DatabasesOf(databases), twoParts)) {
        EXPECT_NE(warning.severity, kErrorSeverity);
        EXPECT_FALSE(warning.text.empty());
        EXPECT_EQ(warning.text.find(u'%' + std::u16string(u"s")), std::u16string::npos);
      }
    }
  }
}

TEST_F(Warnings, NameTheirDatabases) {
  const auto text = [this](MXRULE_DATATYPE type, const char16_t* rule, const char* databases) {
    const std::vector<RuleProblem> found = RuleWarnings::Warnings(type, rule, databases);
    return found.empty() ? std::string() : U8(found.front().text);
  };
  EXPECT_EQ(
      text(kNumber, u"log(T.a)", "GKDO"),
      "On SQL Server, Oracle this is the natural logarithm, on Kingbase, openGauss the one to "
      "base 10.");
  EXPECT_EQ(text(kLogic, u"T.d > '2024-01-15'", "O"),
            "On Oracle the date '2024-01-15' is read in the order mm/dd/yyyy, so it fails or means "
            "another day.");
  EXPECT_EQ(text(kNumber, u"fisYear(T.d)", "O"),
            "On Oracle the rule cannot be used: This database does not support fiscal periods.");
  EXPECT_EQ(
      text(kLogic, u"T.a in thisSet(1, 'x')", ""),
      "This value has another type (text) than the values that it is compared with (number).");
}

TEST_F(Warnings, FollowTheModesOfTheEngine) {
  rules_.set_useIsNull(false);
  EXPECT_EQ(Shown("T.a not_in thisSet(Stock.Count)",
                  RuleWarnings::Warnings(kLogic, u"T.a not_in thisSet(Stock.Count)", "G")),
            "7204i Stock.Count");
}

TEST_F(Warnings, TakeWordsOfALoadedCadDocument) {
  const std::u16string rule = u"thisDoc.TitleBlock.DrawingNo = 'A1'";
  EXPECT_EQ(RuleWarnings::Warnings(kLogic, rule, "").size(), 1u);
  rules_.SetCAXDD(1, U16(SourceText("tests/golden/cax.xml")));
  EXPECT_EQ(RuleWarnings::Warnings(kLogic, rule, "DOMKG").size(), 0u);
}

TEST_F(Warnings, TakeAnyText) {
  const std::u16string parts[] = {std::u16string(1, u'\xD800'), std::u16string(1, u'\xDC00'),
                                  std::u16string(2, u'\0'), std::u16string(u"\x0001\xFFFF<&>\"|"),
                                  std::u16string(500'000, u'x')};
  int taken = 0;
  for (const std::u16string& part : parts) {
    const std::u16string rule =
        u"T.s <> '" + part + u"' or T.s = '' and length(ToText(T.s)) > -1 + 1";
    if (!Verifies(kLogic, rule)) continue;
    ++taken;
    EXPECT_GE(RuleWarnings::Warnings(kLogic, rule, "DOMKG", true).size(), 2u);
  }
  EXPECT_EQ(taken, 5);
}

/// Each argument is part of the one around it.
TEST_F(Warnings, ShowOnlyTheBeginningOfLongArguments) {
  std::u16string rule;
  for (int i = 0; i < 400; ++i) rule += u"timeInterval(dd, T.d, dateAdd(yy, 1 + ";
  rule += u'1';
  for (int i = 0; i < 400; ++i) rule += u", T.d))";
  const std::vector<RuleProblem> found = RuleWarnings::Warnings(kNumber, rule, "O");
  ASSERT_EQ(found.size(), 400u);
  for (const RuleProblem& warning : found) EXPECT_LT(warning.text.size(), 300u);
}

TEST_F(Warnings, TakeLongRules) {
  std::u16string rule = u"T.a = 1";
  for (int i = 0; i < 12'000; ++i) {
    rule += i % 2 == 0 ? u" or T.s = ToText(T.s)" : u" and -T.a + 1 > T.a / 2";
  }
  const std::vector<RuleProblem> found = RuleWarnings::Warnings(kLogic, rule, "DOMKG", true);
  EXPECT_GT(found.size(), 12'000u);
}

}  // namespace
}  // namespace ORKBASE
