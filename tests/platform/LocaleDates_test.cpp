// What reads as a date in the user's locale, how each locale writes a short date, and which locale
// is the user's.
#include "platform/LocaleDates.h"

#include "ScopedLocale.h"
#include "Utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

using ORKBASE::DateSeparator;
using ORKBASE::IsDateText;
using ORKBASE::ShortDatePattern;

namespace {

constexpr const char* kLocales[] = {"en_US.UTF-8", "en_GB.UTF-8", "zh_CN.UTF-8",
                                    "de_DE.UTF-8", "ja_JP.UTF-8", "ko_KR.UTF-8"};

template <std::size_t n>
void ExpectDates(bool expected, const char* locale, const char16_t* const (&texts)[n]) {
  const ScopedLocale scope(locale);
  for (const char16_t* text : texts) {
    EXPECT_EQ(IsDateText(text), expected) << locale << " |" << U8(text) << "|";
  }
}

// clang-format off
constexpr const char16_t* kDatesEverywhere[] = {
    // parts in any order of those in use
    u"2020-1-2", u"2021-05-06", u"1/1/99", u"5/25/2015", u"12/1/15", u"13/1/2020", u"0/5/14",
    u"29-Feb-01", u"06-Jan-2021", u"October 19, 1962", u"19 October 1962", u"1962 October 19",
    u"1962 19 October", u"2020/31/1",
    // two parts
    u"12/24", u"27/8", u"1/2020", u"2020/1", u"12-1", u"30 6", u"30,6", u"2/30", u"30/2",
    u"January 16", u"16 January", u"Jan 2020", u"2020 Jan", u"31/4", u"2/29", u"29/2", u"Feb 29",
    // times
    u"12:00", u"23:30", u"1:30:59", u"0:00", u"00:00:00", u"23:59:59", u"5 PM", u"5PM", u"0 AM",
    u"23 pm", u"4:35:47 PM", u"13:55 PM", u"08:05am",
    // both
    u"2020-1-2 10:20:30", u"10:20 2020-1-2", u"06-Jan-2021 08:05AM", u"5 PM January 16",
    u"January 16 5 PM", u"2020-1-2, 10:20",
    // letters of either case
    u"jan 2020", u"JANUARY 16", u"mAy 5", u"4:35 pM",
    // a word needs no separator beside a number, blanks may stand around one
    u"29Feb2004", u"2020 - 1 - 2", u"October  19 ,  1962",
    // blanks at both ends are skipped
    u" 2020-01-02 ", u" 1/2", u"1/2 ", u"   October 19, 1962   ", u" 5 PM ", u" 12:00",
    // Chinese signs
    u"2020年1月2日", u"1月2日", u"2020年1月", u"2020年 1月 2日", u"2020 年 1 月 2 日", u"99年12月31日",
    u"2020年1月2日 10:20", u"2020年1月2日10:20", u"2日1月",
};

constexpr const char16_t* kNoDatesAnywhere[] = {
    u"", u" ", u"-", u" - ",
    // one part
    u"2020", u"12", u"20200102", u"January", u" 2020 ", u"12 10:20", u"10:20 2020", u"Jan 10:20", u"1月", u"2020年",
    // no words of dates
    u"abc", u"A-1", u"1e5", u"Friday, 3 January 2020", u"Fri 3 Jan 2020", u"January16th", u"Janu 16",
    u"16 Mayor", u"J 16", u"1 Jan Feb", u"T 1/2", u"5 P", u"5 a", u"x'y 1/2", u"1/2'", u"'1/2'",
    u"１/２", u"+1/2", u"1.2", u"1/2.", u"1_2", u"2020\t1\t2", u"\t1/2", u"1/2\u00a0", u"2020-1-2Z",
    // times
    u"24:00", u"12:60", u"1:30:60", u"PM", u"PM 5", u"24 PM", u"10:20:30:40", u"10:", u":10", u"10:20:",
    u"100:00", u"10:200", u"10 : 20", u"10:20 11:30", u"5 PM 6 PM", u"10:20 PM AM", u"2020 PM",
    u"2020-01-02T10:20:30", u"1/2 10:20:30-5", u"10:20:30-5", u"10:20:30-5 Jan 2020",
    u"10:20:30-5 2020-1-2", u"1 10:20 2", u"10:20 1/2 11:30",
    // separators
    u"27-8-", u"-1-2", u"1/2/", u"/1/2", u"1,2,", u"1//2", u"1--2", u"1,-2", u"1-/2", u"- 1/2", u"1/2 -", u"1/2 , ",
    // parts
    u"192-168-0-1", u"13/14/15", u"1-0", u"0-1", u"0/0", u"1/0/0", u"32/1/2020", u"1/32/2020", u"32/33",
    u"2020/13", u"13/2020", u"2020/2021", u"2020/1/2021", u"19 1962 October", u"Jan 0", u"0 Jan",
    // days that no calendar has
    u"2/29/2001", u"31/4/2020", u"2021-02-29", u"1900-2-29", u"2100-2-29", u"2021-4-31", u"2021-6-31",
    u"2021-9-31", u"2021-11-31", u"30 Feb 2020", u"31 June 2020", u"2021年2月29日",
    // years
    u"1/2/10000", u"1/2/99999", u"1/1/099", u"1/1/0000", u"1/1/0020", u"12345-1-1",
    // Chinese signs in a wrong place
    u"13月2日", u"1月32日", u"2日2020年", u"年1月2日", u"2020年1月2日3", u"月日", u"一月二日",
};
// clang-format on

TEST(LocaleDates, TheSameDatesInEveryLocale) {
  for (const char* locale : kLocales) ExpectDates(true, locale, kDatesEverywhere);
}

TEST(LocaleDates, TheSameRefusalsInEveryLocale) {
  for (const char* locale : kLocales) ExpectDates(false, locale, kNoDatesAnywhere);
}

TEST(LocaleDates, LeapYearsAsTheGregorianCalendarHasThem) {
  const char16_t* const leap[] = {u"2000-2-29", u"2004-2-29", u"2020-2-29", u"1600-2-29",
                                  u"400-2-29",  u"9996-2-29", u"2/29/2020", u"29/2/2020"};
  const char16_t* const common[] = {u"1900-2-29", u"2001-2-29", u"1700-2-29", u"100-2-29",
                                    u"2/29/2019", u"29/2/2019", u"2000-2-30"};
  ExpectDates(true, "en_US.UTF-8", leap);
  ExpectDates(false, "en_US.UTF-8", common);
}

// The signs keep each part in its place. Of the years 1930 to 2029 an answer shows only that 0 is
// 2000, which has a leap day, and not 1900, which has none.
TEST(LocaleDates, TwoDigitYears) {
  const char16_t* const leap[] = {u"28年2月29日", u"32年2月29日", u"0年2月29日",
                                  u"00年2月29日", u"96年2月29日", u"04年2月29日"};
  const char16_t* const common[] = {u"29年2月29日", u"30年2月29日", u"31年2月29日", u"99年2月29日",
                                    u"1年2月29日"};
  ExpectDates(true, "zh_CN.UTF-8", leap);
  ExpectDates(false, "zh_CN.UTF-8", common);
}

TEST(LocaleDates, YearsFrom100To9999) {
  const char16_t* const years[] = {u"100/1/1", u"1/1/100",  u"9999/12/31", u"0100-1-1",
                                   u"Jan 100", u"1/1/9999", u"999/1/1"};
  const char16_t* const others[] = {u"099/1/1", u"0099-1-1", u"Jan 099", u"000/1/1", u"001/2/2020"};
  ExpectDates(true, "en_GB.UTF-8", years);
  ExpectDates(false, "en_GB.UTF-8", others);
}

struct WordRow {
  const char* locale;
  const char16_t* text;
};

// clang-format off
constexpr WordRow kOwnWords[] = {
    {"de_DE.UTF-8", u"2- Januar 2020"},      // "2. Januar 2020"
    {"de_DE.UTF-8", u"2- Jan- 2020"},        // "2. Jan. 2020"
    {"de_DE.UTF-8", u"2 Jan 2020"},
    {"de_DE.UTF-8", u"24 Dezember"},
    {"de_DE.UTF-8", u"5 MÄRZ 2020"},
    {"zh_CN.UTF-8", u"十一月 5"},
    {"zh_CN.UTF-8", u"一月 2020"},
    {"zh_CN.UTF-8", u"5 下午"},
    {"zh_CN.UTF-8", u"2020年1月2日 10:20 上午"},
    {"ja_JP.UTF-8", u"10:20午前"},
    {"ko_KR.UTF-8", u"12월 24"},
    {"ko_KR.UTF-8", u"5:30 오후"},
};
// clang-format on

TEST(LocaleDates, WordsOfTheLocaleCountThereOnly) {
  for (const WordRow& row : kOwnWords) {
    {
      const ScopedLocale scope(row.locale);
      EXPECT_TRUE(IsDateText(row.text)) << row.locale << " |" << U8(row.text) << "|";
    }
    const ScopedLocale english("en_US.UTF-8");
    const bool isEnglish = std::u16string_view(row.text) == u"2- Jan- 2020" ||
                           std::u16string_view(row.text) == u"2 Jan 2020";
    EXPECT_EQ(IsDateText(row.text), isEnglish) << "en_US |" << U8(row.text) << "|";
  }
}

TEST(LocaleDates, OddInputIsNoDate) {
  const ScopedLocale scope("en_US.UTF-8");
  const std::size_t mebi = std::size_t{1} << 20;
  EXPECT_FALSE(IsDateText(std::u16string(mebi, u'1')));
  EXPECT_FALSE(IsDateText(std::u16string(mebi, u' ')));
  EXPECT_FALSE(IsDateText(u"1" + std::u16string(mebi, u' ')));
  EXPECT_FALSE(IsDateText(std::u16string(mebi, u'\u4e00') + u"1"));
  EXPECT_TRUE(IsDateText(u"1" + std::u16string(mebi, u' ') + u"2"));
  for (const char16_t unit : {u'\0', u'\xd800', u'\xdc00', u'\xffff', u'\'', u'"'}) {
    const std::u16string odd(1, unit);
    EXPECT_FALSE(IsDateText(odd));
    EXPECT_FALSE(IsDateText(odd + u"1/2/2020"));
    EXPECT_FALSE(IsDateText(u"1/2/2020" + odd));
    EXPECT_FALSE(IsDateText(u"1/2" + odd + u"/2020"));
    EXPECT_FALSE(IsDateText(u"Jan" + odd + u"2020"));
    EXPECT_FALSE(IsDateText(u"10:20" + odd));
  }
}

// Every real day of four years reads back in the orders in use, and the day behind a month's last
// does not where the year has four digits.
TEST(LocaleDates, EveryDayOfFourYears) {
  using namespace std::chrono;
  const ScopedLocale scope("en_US.UTF-8");
  for (year y{2019}; y <= year{2022}; ++y) {
    for (unsigned m = 1; m <= 12; ++m) {
      for (unsigned d = 1; d <= 31; ++d) {
        const bool real = (y / month{m} / day{d}).ok();
        const std::string year = std::to_string(static_cast<int>(y));
        const std::string month = std::to_string(m);
        const std::string day = std::to_string(d);
        for (const std::string& text :
             {month + '/' + day + '/' + year, day + '/' + month + '/' + year,
              year + '-' + month + '-' + day, year + ' ' + day + ' ' + month}) {
          const bool swapped = (y / std::chrono::month{d} / std::chrono::day{m}).ok();
          ASSERT_EQ(IsDateText(U16(text)), real || swapped) << text;
        }
      }
    }
  }
}

TEST(LocaleDates, TimeZonesChangeNothing) {
  const ScopedLocale scope("en_US.UTF-8");
  const char* const kept = std::getenv("TZ");
  const std::string before = kept == nullptr ? "" : kept;
  for (const char* zone : {"UTC", "Asia/Shanghai", "America/New_York", "Pacific/Apia"}) {
    setenv("TZ", zone, 1);
    tzset();
    EXPECT_TRUE(IsDateText(u"2011-12-30")) << zone;        // Apia never had this day
    EXPECT_TRUE(IsDateText(u"2020-3-8 2:30:00")) << zone;  // New York never had this hour
    EXPECT_FALSE(IsDateText(u"2021-2-29")) << zone;
    EXPECT_EQ(U8(ShortDatePattern()), "M/d/yy") << zone;
  }
  kept == nullptr ? unsetenv("TZ") : setenv("TZ", before.c_str(), 1);
  tzset();
}

struct PatternRow {
  const char* locale;
  const char* pattern;
  const char* separator;
};

// clang-format off
constexpr PatternRow kPatterns[] = {
    {"en_US.UTF-8", "M/d/yy",     "/"},
    {"en_GB.UTF-8", "dd/MM/y",    "/"},
    {"zh_CN.UTF-8", "y/M/d",      "/"},
    {"de_DE.UTF-8", "dd.MM.yy",   "."},
    {"ja_JP.UTF-8", "y/MM/dd",    "/"},
    {"ko_KR.UTF-8", "yyyy-MM-dd", "-"},
};
// clang-format on

TEST(LocaleDates, ShortDateOfEachLocale) {
  for (const PatternRow& row : kPatterns) {
    const ScopedLocale scope(row.locale);
    EXPECT_EQ(U8(ShortDatePattern()), row.pattern) << row.locale;
    EXPECT_EQ(U8(DateSeparator()), row.separator) << row.locale;
  }
}

TEST(LocaleDates, ScopesNest) {
  const ScopedLocale outer("zh_CN.UTF-8");
  EXPECT_EQ(U8(ShortDatePattern()), "y/M/d");
  {
    const ScopedLocale inner("de_DE.UTF-8");
    EXPECT_EQ(U8(ShortDatePattern()), "dd.MM.yy");
  }
  EXPECT_EQ(U8(ShortDatePattern()), "y/M/d");
}

TEST(LocaleDates, ThreadsHaveTheirOwnLocale) {
  std::vector<std::thread> threads;
  std::vector<int> wrong(std::size(kPatterns), 0);
  for (std::size_t i = 0; i < std::size(kPatterns); ++i) {
    threads.emplace_back([&, i] {
      const ScopedLocale scope(kPatterns[i].locale);
      for (int round = 0; round < 200; ++round) {
        if (U8(ShortDatePattern()) != kPatterns[i].pattern) ++wrong[i];
        if (!IsDateText(u"2020-1-2") || IsDateText(u"2021-2-29")) ++wrong[i];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::count(wrong.begin(), wrong.end(), 0),
            static_cast<std::ptrdiff_t>(std::size(kPatterns)));
}

// --- which locale is the user's: each row in a process of its own, as the environment is read once

struct UserRow {
  const char* thread;   // null: the thread has none of its own
  const char* process;  // null: setlocale is never called
  const char* lcAll;
  const char* lcTime;
  const char* lang;
  const char* pattern;
};

// clang-format off
constexpr UserRow kUsers[] = {
    {"ko_KR.UTF-8", "zh_CN.UTF-8", "de_DE.UTF-8", nullptr,       nullptr,       "yyyy-MM-dd"},
    {nullptr,       "zh_CN.UTF-8", "de_DE.UTF-8", nullptr,       nullptr,       "y/M/d"},
    {"C",           "zh_CN.UTF-8", "de_DE.UTF-8", nullptr,       nullptr,       "y/M/d"},
    {"POSIX",       nullptr,       "de_DE.UTF-8", nullptr,       nullptr,       "dd.MM.yy"},
    {nullptr,       nullptr,       "de_DE.UTF-8", "zh_CN.UTF-8", "ja_JP.UTF-8", "dd.MM.yy"},
    {nullptr,       nullptr,       "",            "zh_CN.UTF-8", "ja_JP.UTF-8", "y/M/d"},
    {nullptr,       nullptr,       nullptr,       nullptr,       "ja_JP.UTF-8", "y/MM/dd"},
    {nullptr,       nullptr,       nullptr,       nullptr,       nullptr,       "M/d/yy"},
    {nullptr,       "C",           nullptr,       nullptr,       "C.UTF-8",     "M/d/yy"},
    {nullptr,       nullptr,       "C",           "zh_CN.UTF-8", "ja_JP.UTF-8", "M/d/yy"},
    {nullptr,       nullptr,       "POSIX",       nullptr,       "ja_JP.UTF-8", "M/d/yy"},
    {nullptr,       nullptr,       nullptr,       nullptr,       "en_GB",       "dd/MM/y"},
    // not installed here, yet ICU knows it
    {nullptr,       nullptr,       nullptr,       nullptr,       "fr_FR.UTF-8", "dd/MM/y" },
    {nullptr,       nullptr,       nullptr,       nullptr,       "de_AT@euro",  "dd.MM.yy"},
    // direction marks, a blank in the separator and a dot at the end, quoted letters, an era
    {nullptr,       nullptr,       nullptr,       nullptr,       "ar_EG.UTF-8", "d/M/y"},
    {nullptr,       nullptr,       nullptr,       nullptr,       "hu_HU.UTF-8", "y. MM. dd"},
    {nullptr,       nullptr,       nullptr,       nullptr,       "bg_BG.UTF-8", "d.MM.yy."},
    {nullptr,       nullptr,       nullptr,       nullptr,       "th_TH.UTF-8", "d/M/yy"},
    // no locale that anyone knows
    {nullptr,       nullptr,       nullptr,       nullptr,       "qq_QQ.UTF-8", ""},
    {nullptr,       nullptr,       nullptr,       nullptr,       "?",           ""},
};
// clang-format on

void SetVariable(const char* name, const char* value) {
  value == nullptr ? unsetenv(name) : setenv(name, value, 1);
}

/// Prints the pattern and leaves the process.
[[noreturn]] void ReportUser(const UserRow& row) {
  ScopedLocale::FindBuiltLocales();
  SetVariable("LC_ALL", row.lcAll);
  SetVariable("LC_TIME", row.lcTime);
  SetVariable("LANG", row.lang);
  if (row.process != nullptr && setlocale(LC_ALL, row.process) == nullptr) std::_Exit(2);
  if (row.thread != nullptr) uselocale(newlocale(LC_ALL_MASK, row.thread, nullptr));
  const std::string pattern = U8(ShortDatePattern());
  const bool reads = IsDateText(u"2 January 2020") && !IsDateText(u"31/4/2020");
  std::fprintf(stderr, "<%s>%s", pattern.c_str(), reads ? "" : " misread");
  std::_Exit(0);
}

TEST(LocaleDatesDeathTest, ThreadThenProcessThenEnvironment) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  for (const UserRow& row : kUsers) {
    std::string expected = "^<";
    for (const char unit : std::string(row.pattern)) {
      expected += unit == '.' ? std::string("\\.") : std::string(1, unit);
    }
    EXPECT_EXIT(ReportUser(row), testing::ExitedWithCode(0), expected + ">$")
        << "lang " << (row.lang == nullptr ? "(none)" : row.lang);
  }
}

}  // namespace
