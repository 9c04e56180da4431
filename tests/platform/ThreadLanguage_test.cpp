// The language of a thread: names of languages, the wish, and the POSIX locale behind it.
#include "platform/ThreadLanguage.h"

#include "OrkPlatform.h"
#include "ScopedLocale.h"
#include "Utf8.h"
#include "foundation/MessageNumbers.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace ORKBASE {
namespace {

TEST(LanguageOfLocaleName, KnowsPosixNames) {
  struct Row {
    const char* name;
    LanguageId language;
  };
  const Row rows[] = {
      // clang-format off
      {"zh_CN",           0x0804},
      {"zh_CN.UTF-8",     0x0804},
      {"zh_CN.gb18030",   0x0804},
      {"zh_TW.UTF-8",     0x0404},
      {"en_US.UTF-8",     0x0409},
      {"en_GB",           0x0809},
      {"de_DE.UTF-8",     0x0407},
      {"de_DE@euro",      0x0407},
      {"ja_JP.eucJP",     0x0411},
      {"ko_KR",           0x0412},
      {"zh",              0x0804},
      {"en",              0x0409},
      {"C",               0},
      {"C.UTF-8",         0},
      {"POSIX",           0},
      {"",                0},
      {"xx_YY",           0},
      {"no such locale!", 0},
      // clang-format on
  };
  for (const Row& row : rows) EXPECT_EQ(LanguageOfLocaleName(row.name), row.language) << row.name;
  EXPECT_EQ(LanguageOfLocaleName(std::string(10000, 'z')), 0);
}

TEST(TagOfLanguage, IsOneThatGivesTheLanguageAgain) {
  EXPECT_EQ(TagOfLanguage(0x0409), u"en-US");
  EXPECT_EQ(TagOfLanguage(0x0804), u"zh-CN");
  EXPECT_EQ(TagOfLanguage(0x0407), u"de-DE");
  EXPECT_EQ(TagOfLanguage(0), u"");
  EXPECT_EQ(TagOfLanguage(0xFFFF), u"");
}

TEST(LanguageOfTag, KnowsTags) {
  struct Row {
    const char16_t* tag;
    LanguageId language;
  };
  const Row rows[] = {
      // clang-format off
      {u"zh-CN",      0x0804},
      {u"zh-cn",      0x0804},
      {u"zh_CN",      0x0804},
      {u"zh-Hans-CN", 0x0804},
      {u"zh-Hans",    0x0804},
      {u"zh-Hant",    0x0404},
      {u"zh",         0x0804},
      {u"en-US",      0x0409},
      {u"en",         0x0409},
      {u"en-GB",      0x0809},
      {u"de",         0x0407},
      {u"sr-Latn-RS", 0x241A},
      {u"und",        0},
      {u"",           0},
      {u"xx-YY",      0},
      {u"zh-CN!",     0},
      {u"中文",       0},
      // clang-format on
  };
  for (const Row& row : rows) EXPECT_EQ(LanguageOfTag(row.tag), row.language) << U8(row.tag);
  EXPECT_EQ(LanguageOfTag(std::u16string_view(u"en\0US", 5)), 0);
  EXPECT_EQ(LanguageOfTag(std::u16string(10000, u'z')), 0);
}

TEST(LanguageOfTag, TakesTheLikelyTerritoryForOneWithoutNumber) {
  EXPECT_EQ(LanguageOfTag(u"en-CN"), 0x0409);
  EXPECT_EQ(LanguageOfTag(u"zh-Hans-US"), 0x0804);
}

TEST(ThreadLanguage, IsTheWishOfTheThread) {
  SetThreadLanguage(u"zh-CN");
  EXPECT_EQ(U8(ThreadLanguage()), "zh-CN");
  EXPECT_EQ(ThreadLanguageId(), 0x0804);
  SetThreadLanguage(u"en-US");
  EXPECT_EQ(U8(ThreadLanguage()), "en-US");
  EXPECT_EQ(ThreadLanguageId(), 0x0409);
  SetThreadLanguage(u"nonsense-tag-that-is-none");
  EXPECT_EQ(ThreadLanguageId(), 0);
  SetThreadLanguage(u"");
}

TEST(ThreadLanguage, IsNoBusinessOfOtherThreads) {
  SetThreadLanguage(u"zh-CN");
  LanguageId other = 1;
  std::thread([&other] {
    SetThreadLanguage(u"de-DE");
    other = ThreadLanguageId();
  }).join();
  EXPECT_EQ(other, 0x0407);
  EXPECT_EQ(ThreadLanguageId(), 0x0804);
  SetThreadLanguage(u"");
}

// Nothing sets the locale of the process of this test, so it is "C".
TEST(ThreadLanguage, IsNoneInThePortableLocale) {
  EXPECT_EQ(ThreadLanguageId(), 0);
  EXPECT_EQ(U8(ThreadLanguage()), "");
}

TEST(ThreadLanguage, FollowsTheLocaleOfTheThread) {
  EXPECT_EQ(ThreadLanguageId(), 0);
  {
    const ScopedLocale chinese("zh_CN.UTF-8");
    EXPECT_EQ(ThreadLanguageId(), 0x0804);
    EXPECT_EQ(ThreadLanguageId(), 0x0804);
    EXPECT_EQ(U8(ThreadLanguage()), "zh-CN");
    EXPECT_EQ(U8(MessageText(kMsgThisReport)), "本报表");
    SetThreadLanguage(u"en-US");
    EXPECT_EQ(ThreadLanguageId(), 0x0409);
    EXPECT_EQ(U8(MessageText(kMsgThisReport)), "thisReport");
    SetThreadLanguage(u"");
    EXPECT_EQ(ThreadLanguageId(), 0x0804);
  }
  EXPECT_EQ(ThreadLanguageId(), 0);
}

TEST(ThreadLanguage, FollowsTheLocaleOfTheProcess) {
  ScopedLocale::FindBuiltLocales();
  const std::string before = setlocale(LC_ALL, nullptr);
  ASSERT_NE(setlocale(LC_ALL, "zh_CN.UTF-8"), nullptr);
  EXPECT_EQ(ThreadLanguageId(), 0x0804);
  EXPECT_EQ(U8(ThreadLanguage()), "zh-CN");
  setlocale(LC_ALL, before.c_str());
}

}  // namespace
}  // namespace ORKBASE
