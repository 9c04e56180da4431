// Oracle's date format out of the user's short date pattern.
#include "SampleDatabase.h"
#include "ScopedLanguage.h"
#include "ScopedLocale.h"
#include "dialects/MxPLsqlTranslator.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace ORKBASE {
namespace {

struct PatternRow {
  const char16_t* pattern;
  const char16_t* separator;
  const char* format;
};

// clang-format off
constexpr PatternRow kPatterns[] = {
    {u"yyyy/M/d",   u"/",  "yyyy/mm/dd hh24:mi:ss"},
    {u"dd.MM.yyyy", u".",  "dd.mm.yyyy hh24:mi:ss"},
    {u"M/d/yy",     u"/",  "mm/dd/yyyy hh24:mi:ss"},
    {u"d-MMM-y",    u"-",  "dd-mm-yyyy hh24:mi:ss"},
    {u"yy. M. d",   u". ", "yyyy. mm. dd hh24:mi:ss"},
    // of several letters the year goes before the month, the month before the day
    {u"dMy",        u"/",  "yyyy hh24:mi:ss"},
    {u"dM/y",       u"/",  "mm/yyyy hh24:mi:ss"},
    // a piece without any of them in capitals
    {u"y/w/d",      u"/",  "yyyy/W/dd hh24:mi:ss"},
    {u"/d",         u"/",  "/dd hh24:mi:ss"},
    {u"d/",         u"/",  "dd hh24:mi:ss"},
    {u"",           u"",   " hh24:mi:ss"},
    {u"",           u"/",  " hh24:mi:ss"},
};
// clang-format on

TEST(OracleDateFormat, FollowsThePattern) {
  for (const PatternRow& row : kPatterns) {
    EXPECT_EQ(U8(OracleDateFormat(row.pattern, row.separator)), row.format) << U8(row.pattern);
  }
}

struct LocaleRow {
  const char* name;
  const char* date;  // a constant that reads as a date there
  const char* format;
};

// clang-format off
constexpr LocaleRow kLocales[] = {
    {"en_US.UTF-8", "'12/31/2020'", "mm/dd/yyyy hh24:mi:ss"},
    {"en_GB.UTF-8", "'31/12/2020'", "dd/mm/yyyy hh24:mi:ss"},
    {"zh_CN.UTF-8", "'2020/12/31'", "yyyy/mm/dd hh24:mi:ss"},
    {"de_DE.UTF-8", "'31.12.2020'", "dd.mm.yyyy hh24:mi:ss"},
    {"ja_JP.UTF-8", "'2020/12/31'", "yyyy/mm/dd hh24:mi:ss"},
    {"ko_KR.UTF-8", "'2020-12-31'", "yyyy-mm-dd hh24:mi:ss"},
};
// clang-format on

std::string OracleSql(const std::string& rule) {
  const ScopedLanguage language(u"en");
  SampleExpression rules(kOracleDs);
  rules.set_useIsNull(false);
  std::u16string document;
  std::u16string translated;
  std::u16string sql;
  std::u16string unused;
  if (!rules.Verify(kDateDataType, U16(rule), document)) return U8(rules.errDescription());
  rules.GetSpec(document, kOracleDs, translated, sql, unused, false);
  return U8(sql);
}

TEST(OracleDateFormat, IsThatOfTheUser) {
  for (const LocaleRow& row : kLocales) {
    const ScopedLocale locale(row.name);
    const std::string format = row.format;
    EXPECT_EQ(U8(LocaleDateFormat()), format) << row.name;
    EXPECT_EQ(OracleSql(row.date), "to_date(" + std::string(row.date) + ",'" + format + "')");
    EXPECT_EQ(OracleSql("ToDate(T.s)"), "to_date(T.s,'" + format + "')");
  }
}

TEST(OracleDateFormat, FollowsTheThreadAtOnce) {
  const ScopedLocale outer("de_DE.UTF-8");
  EXPECT_EQ(OracleSql("ToDate(T.s)"), "to_date(T.s,'dd.mm.yyyy hh24:mi:ss')");
  {
    const ScopedLocale inner("zh_CN.UTF-8");
    EXPECT_EQ(OracleSql("ToDate(T.s)"), "to_date(T.s,'yyyy/mm/dd hh24:mi:ss')");
  }
  EXPECT_EQ(OracleSql("ToDate(T.s)"), "to_date(T.s,'dd.mm.yyyy hh24:mi:ss')");
}

[[noreturn]] void ReportUnreadable() {
  setenv("LC_ALL", "qq_QQ.UTF-8", 1);
  std::fprintf(stderr, "<%s><%s>", U8(LocaleDateFormat()).c_str(),
               OracleSql("ToDate(T.s)").c_str());
  std::_Exit(0);
}

TEST(OracleDateFormatDeathTest, OfAnUnreadableLocaleHasTheTimeOnly) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_EXIT(ReportUnreadable(), testing::ExitedWithCode(0),
              "^< hh24:mi:ss><to_date\\(T\\.s,' hh24:mi:ss'\\)>$");
}

TEST(OracleNames, ConstantsAndColumns) {
  const ScopedLocale locale("en_US.UTF-8");
  TagTree tree;
  const MxPLsqlTranslator oracle(tree);
  EXPECT_EQ(U8(oracle.TransDateConstant(u"")), "");
  EXPECT_EQ(U8(oracle.TransDateConstant(u"'x'")), "to_date('x','mm/dd/yyyy hh24:mi:ss')");
  EXPECT_EQ(U8(oracle.QuoteName(u"a b")), "a b");
  EXPECT_EQ(U8(oracle.TransColumnName(u"[Amount]")), "Amount");
  EXPECT_EQ(U8(oracle.TransColumnName(u"Amount")), "Amount");
  EXPECT_EQ(U8(oracle.TransColumnName(u"[")), "");
  EXPECT_EQ(U8(oracle.TransColumnName(u"[]")), "");
  EXPECT_EQ(U8(oracle.TransColumnName(u"[ab")), "a");
  EXPECT_EQ(U8(oracle.TransColumnName(u"")), "");
}

}  // namespace
}  // namespace ORKBASE
